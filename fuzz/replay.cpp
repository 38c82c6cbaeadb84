// Feeds a corpus to a fuzz target once, and then many changes of it: words of the target's
// dictionary put in, bytes changed, inputs joined. Always the same changes, so that what fails once
// fails again.
//
//   TARGET CORPUS CHANGES [DICTIONARY]

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr std::size_t kLongest = 400;

void Feed(const std::string& input) {
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

std::string Content(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

/// The inputs in the order of their names, which is the same everywhere.
std::vector<std::string> Corpus(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(folder))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    std::vector<std::string> inputs;
    for (const auto& file : files)
        inputs.push_back(Content(file));
    return inputs;
}

/// The word of a line of a dictionary: "weigh\x0a".
std::string WordOf(const std::string& line) {
    std::string word;
    for (std::size_t i = line.find('"') + 1; i < line.rfind('"'); ++i) {
        if (line[i] != '\\') {
            word += line[i];
        } else if (line[++i] == 'x') {
            word += static_cast<char>(std::stoi(line.substr(i + 1, 2), nullptr, 16));
            i += 2;
        } else {
            word += line[i];
        }
    }
    return word;
}

std::vector<std::string> Dictionary(const char* file) {
    std::vector<std::string> words;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        if (line.find('"') != std::string::npos) words.push_back(WordOf(line));
    }
    return words;
}

/// Makes inputs from others.
class Changes {
 public:
    Changes(std::vector<std::string> inputs, std::vector<std::string> words)
        : inputs_(std::move(inputs)), words_(std::move(words)) {}

    std::string Next() {
        std::string input = OneOf(inputs_);
        for (std::size_t count = 1 + Below(4); count != 0; --count)
            Change(input);
        return input.substr(0, kLongest);
    }

 private:
    std::size_t Below(std::size_t limit) { return random_() % limit; }
    const std::string& OneOf(const std::vector<std::string>& texts) {
        return texts[Below(texts.size())];
    }

    void Change(std::string& input) {
        const std::size_t at = Below(input.size() + 1);
        switch (Below(4)) {
            case 0:
                input.insert(at, 1, static_cast<char>(Below(256)));
                break;
            case 1:
                input.erase(at, 1 + Below(4));
                break;
            case 2:
                input = input.substr(0, at) + OneOf(inputs_);
                break;
            default:
                if (!words_.empty()) input.insert(at, OneOf(words_));
        }
    }

    const std::vector<std::string> inputs_;
    const std::vector<std::string> words_;
    std::minstd_rand random_{1};
};

}  // namespace

int main(int count, char** arguments) {
    if (count < 3) return 1;
    const auto inputs = Corpus(arguments[1]);
    if (inputs.empty()) return 1;
    for (const auto& input : inputs)
        Feed(input);
    Changes changes(inputs, count > 3 ? Dictionary(arguments[3]) : std::vector<std::string>());
    const int changed = std::atoi(arguments[2]);
    for (int i = 0; i < changed; ++i)
        Feed(changes.Next());
    std::printf("%zu inputs, %d changes of them\n", inputs.size(), changed);
    return 0;
}
