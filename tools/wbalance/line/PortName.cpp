#include "PortName.h"

#include <climits>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <utility>

#include "ToolError.h"

namespace tool {
namespace {

constexpr char kBuiltIn[] = "/dev/ttyS";
constexpr char kUsb[] = "/dev/ttyUSB";

// "/dev/ttyUSB" and 8 digits are what the library's name buffer holds.
constexpr std::size_t kMostDigits = 8;

// Far more than a device has, few enough for a circle.
constexpr int kMostLinks = 16;

// The port at the end of a chain of links, whether or not its device is there now.
std::optional<PortNumber> FollowLinks(std::filesystem::path path) {
    for (int i = 0; i < kMostLinks; ++i) {
        if (const auto port = PortNumber::OfDevice(path)) return port;
        std::error_code error;
        const auto target = std::filesystem::read_symlink(path, error);
        if (error) return std::nullopt;
        path = (path.parent_path() / target).lexically_normal();
    }
    return std::nullopt;
}

bool IsNumber(const std::string& text) {
    return !text.empty() && text.find_first_not_of("0123456789") == std::string::npos;
}

}  // namespace

std::string PortNumber::Device() const {
    return (kind == 'U' ? kUsb : kBuiltIn) + std::to_string(number);
}

std::optional<PortNumber> PortNumber::OfDevice(const std::string& device) {
    for (const auto& [start, kind] : {std::pair(kUsb, 'U'), std::pair(kBuiltIn, 'S')}) {
        const std::string number =
            device.rfind(start, 0) == 0 ? device.substr(std::string_view(start).size()) : "";
        const bool leads = number.size() > 1 && number[0] == '0';
        if (IsNumber(number) && number.size() <= kMostDigits && !leads)
            return PortNumber{std::atoi(number.c_str()), kind};
    }
    return std::nullopt;
}

PortName::PortName(const std::string& text, bool usb) {
    if (IsNumber(text)) {
        if (text.size() > kMostDigits)
            throw ToolError(ExitCode::Usage,
                            "port number " + text + ": too large; at most 8 digits");
        path_ = PortNumber{std::atoi(text.c_str()), usb ? 'U' : 'S'}.Device();
        return;
    }
    if (text.empty() || text[0] == '-')
        throw ToolError(ExitCode::Usage,
                        "port \"" + text + "\": give a number, or a name such as /dev/ttyS0");
    if (usb)
        throw ToolError(ExitCode::Usage,
                        "--usb goes with a port number, not with the name " + text);
    path_ = text.find('/') == std::string::npos ? "/dev/" + text : text;
}

PortNumber PortName::Resolve() const {
    if (const auto port = FollowLinks(path_)) return *port;
    std::error_code error;
    const std::string device = std::filesystem::canonical(path_, error).string();
    if (error) {
        throw ToolError(Diagnose(path_, {Trouble::NoSuchName, {{"REASON", error.message()}}}));
    }
    if (const auto port = PortNumber::OfDevice(device)) return *port;
    const std::string named = device == path_ ? path_ : path_ + " is " + device;
    throw ToolError(Diagnose(named, {Trouble::OtherDevice}));
}

}  // namespace tool
