#include "simulator/line/DeviceName.h"

#include "simulator/Text.h"

namespace simulator {
namespace {

const std::string directory = "/dev/";

}  // namespace

std::optional<std::string> servedDevice(const std::string& name) {
    const bool isPath = name.compare(0, directory.size(), directory) == 0;
    const std::string last = isPath ? name.substr(directory.size()) : name;
    for (const std::string prefix : {"ttyS", "ttyUSB"})
        if (last.compare(0, prefix.size(), prefix) == 0 &&
            parseWholeNumber(last.substr(prefix.size()), 0, 99'999))
            return directory + last;
    return std::nullopt;
}

}  // namespace simulator
