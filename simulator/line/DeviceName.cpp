#include "simulator/line/DeviceName.h"

#include "simulator/Text.h"

namespace simulator {
namespace {

const std::string kDirectory = "/dev/";

}  // namespace

std::optional<std::string> ServedDevice(const std::string& name) {
    const bool isPath = name.compare(0, kDirectory.size(), kDirectory) == 0;
    const std::string last = isPath ? name.substr(kDirectory.size()) : name;
    for (const std::string prefix : {"ttyS", "ttyUSB"})
        if (last.compare(0, prefix.size(), prefix) == 0 &&
            ParseWholeNumber(last.substr(prefix.size()), 0, 99'999))
            return kDirectory + last;
    return std::nullopt;
}

}  // namespace simulator
