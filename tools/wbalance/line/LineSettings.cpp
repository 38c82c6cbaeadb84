#include "LineSettings.h"

#include <cstdlib>
#include <map>
#include <vector>

#include "ToolError.h"

namespace tool {
namespace {

// The letters and words of the text, and the library's code for each.
const std::map<std::string, int> kParities = {{"N", 0}, {"O", 1}, {"E", 2},
                                              {"M", 3}, {"S", 4}, {"-", LineSettings::kKeepParity}};
const std::map<std::string, int> kStopBits = {{"1", 0}, {"1.5", 1}, {"2", 2}};
const std::map<std::string, int> kFlowControls = {{"none", 0}, {"rtscts", 3}, {"xonxoff", 16}};

// More than any port's rate has.
constexpr std::size_t kMostDigits = 8;

std::string WordOf(const std::map<std::string, int>& words, int code) {
    for (const auto& [word, value] : words) {
        if (value == code) return word;
    }
    return "?";
}

// The parts between commas or blanks.
std::vector<std::string> PartsOf(const std::string& text) {
    std::vector<std::string> parts;
    std::size_t start = 0;
    for (std::size_t end = 0; end != std::string::npos; start = end + 1) {
        end = text.find_first_of(", ", start);
        parts.push_back(text.substr(start, end - start));
    }
    return parts;
}

// "2400"
bool TakeBaudRate(const std::string& part, LineSettings& settings) {
    if (part.empty() || part.size() > kMostDigits || part[0] == '0') return false;
    if (part.find_first_not_of("0123456789") != std::string::npos) return false;
    settings.baudRate = std::atoi(part.c_str());
    return true;
}

// "7E1"
bool TakeFrame(const std::string& part, LineSettings& settings) {
    if (part.size() < 3 || (part[0] != '7' && part[0] != '8')) return false;
    const auto parity = kParities.find({static_cast<char>(std::toupper(part[1]))});
    const auto stopBits = kStopBits.find(part.substr(2));
    if (parity == kParities.end() || stopBits == kStopBits.end()) return false;
    settings.dataBits = part[0] - '0';
    settings.parity = parity->second;
    settings.stopBits = stopBits->second;
    return true;
}

// "rtscts"
bool TakeFlowControl(const std::string& part, LineSettings& settings) {
    const auto flowControl = kFlowControls.find(part);
    if (flowControl == kFlowControls.end()) return false;
    settings.flowControl = flowControl->second;
    return true;
}

bool Take(const std::vector<std::string>& parts, LineSettings& settings) {
    auto part = parts.begin();
    if (!TakeBaudRate(*part++, settings)) return false;
    if (part != parts.end() && TakeFrame(*part, settings)) ++part;
    if (part != parts.end() && TakeFlowControl(*part, settings)) ++part;
    return part == parts.end();
}

}  // namespace

LineSettings LineSettings::Parse(const std::string& text, const LineSettings& defaults) {
    LineSettings settings = defaults;
    if (!Take(PartsOf(text), settings)) {
        throw ToolError(ExitCode::Usage,
                        "line settings \"" + text +
                            "\": not understood; write baud rate, data bits, parity and stop "
                            "bits such as 2400,7E1, with ,rtscts or ,xonxoff for flow control");
    }
    return settings;
}

std::string LineSettings::Text() const {
    std::string text = std::to_string(baudRate) + "," + std::to_string(dataBits) +
                       WordOf(kParities, parity) + WordOf(kStopBits, stopBits);
    if (flowControl != 0) text += "," + WordOf(kFlowControls, flowControl);
    return text;
}

bool operator==(const LineSettings& a, const LineSettings& b) {
    return a.baudRate == b.baudRate && a.dataBits == b.dataBits && a.parity == b.parity &&
           a.stopBits == b.stopBits && a.flowControl == b.flowControl;
}

}  // namespace tool
