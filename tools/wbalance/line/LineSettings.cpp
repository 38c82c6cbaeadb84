#include "LineSettings.h"

#include <cstdlib>
#include <map>
#include <regex>

#include "ToolError.h"

namespace tool {
namespace {

// The letters and words of the text, and the library's code for each.
const std::map<std::string, int> kParities = {{"N", 0}, {"O", 1}, {"E", 2},
                                              {"M", 3}, {"S", 4}, {"-", LineSettings::kKeepParity}};
const std::map<std::string, int> kStopBits = {{"1", 0}, {"1.5", 1}, {"2", 2}};
const std::map<std::string, int> kFlowControls = {{"none", 0}, {"rtscts", 3}, {"xonxoff", 16}};

std::string WordOf(const std::map<std::string, int>& words, int code) {
    for (const auto& [word, value] : words) {
        if (value == code) return word;
    }
    return "?";
}

}  // namespace

LineSettings LineSettings::Parse(const std::string& text, const LineSettings& defaults) {
    static const std::regex kForm(R"(([1-9][0-9]{0,7})(?:[, ]([78])([NOEMSnoems-])(1\.5|1|2))?)"
                                  R"((?:[, ](none|rtscts|xonxoff))?)");
    std::smatch part;
    if (!std::regex_match(text, part, kForm)) {
        throw ToolError(ExitCode::Usage,
                        "line settings \"" + text +
                            "\": not understood; write baud rate, data bits, parity and stop "
                            "bits such as 2400,7E1, with ,rtscts or ,xonxoff for flow control");
    }
    LineSettings settings = defaults;
    settings.baudRate = std::atoi(part[1].str().c_str());
    if (part[2].matched) {
        std::string parity = part[3];
        parity[0] = static_cast<char>(std::toupper(parity[0]));
        settings.dataBits = std::atoi(part[2].str().c_str());
        settings.parity = kParities.at(parity);
        settings.stopBits = kStopBits.at(part[4]);
    }
    if (part[5].matched) settings.flowControl = kFlowControls.at(part[5]);
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
