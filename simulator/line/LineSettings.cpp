#include "simulator/line/LineSettings.h"

#include <regex>

namespace simulator {
namespace {

const std::string parityLetters = "NOEMS";

std::string flowControlText(FlowControl flowControl) {
    if (flowControl == FlowControl::hardware) return ",rtscts";
    if (flowControl == FlowControl::software) return ",xonxoff";
    return "";
}

}  // namespace

std::optional<LineSettings> LineSettings::parse(const std::string& text) {
    static const std::regex form(
        "([1-9][0-9]{0,6})[ ,]([5-8])([NOEMSnoems])([12])(,rtscts|,xonxoff)?");
    std::smatch part;
    if (!std::regex_match(text, part, form)) return std::nullopt;
    LineSettings settings;
    settings.baudRate = std::stoi(part[1]);
    settings.dataBits = std::stoi(part[2]);
    const char letter = static_cast<char>(std::toupper(part[3].str().front()));
    settings.parity = static_cast<Parity>(parityLetters.find(letter));
    settings.stopBits = std::stoi(part[4]);
    if (part[5] == ",rtscts") settings.flowControl = FlowControl::hardware;
    if (part[5] == ",xonxoff") settings.flowControl = FlowControl::software;
    return settings;
}

std::string LineSettings::text() const {
    return std::to_string(baudRate) + "," + std::to_string(dataBits) +
           parityLetters[static_cast<std::size_t>(parity)] + std::to_string(stopBits) +
           flowControlText(flowControl);
}

int LineSettings::bitsPerCharacter() const {
    return 1 + dataBits + (parity == Parity::none ? 0 : 1) + stopBits;
}

bool LineSettings::agreesWith(const LineSettings& other) const {
    return baudRate == other.baudRate && dataBits == other.dataBits && parity == other.parity &&
           stopBits == other.stopBits;
}

bool operator==(const LineSettings& a, const LineSettings& b) {
    return a.agreesWith(b) && a.flowControl == b.flowControl;
}

bool operator!=(const LineSettings& a, const LineSettings& b) {
    return !(a == b);
}

}  // namespace simulator
