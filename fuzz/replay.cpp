// Feeds files, and the files of folders, to a fuzz target once each.

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void Feed(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(stream), {}};
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

int main(int count, char** arguments) {
    int fed = 0;
    for (int i = 1; i < count; ++i) {
        if (!std::filesystem::is_directory(arguments[i])) {
            Feed(arguments[i]);
            ++fed;
            continue;
        }
        for (const auto& entry : std::filesystem::directory_iterator(arguments[i])) {
            Feed(entry.path());
            ++fed;
        }
    }
    std::printf("%d inputs\n", fed);
    return fed != 0 ? 0 : 1;
}
