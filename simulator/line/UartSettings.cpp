#include "simulator/line/UartSettings.h"

#include <cctype>

#include "simulator/Text.h"

namespace simulator {
namespace {

const std::string kParityLetters = "NOEMS";

std::string FlowControlText(FlowControl flowControl) {
    if (flowControl == FlowControl::Hardware) return ",rtscts";
    if (flowControl == FlowControl::Software) return ",xonxoff";
    return "";
}

std::optional<FlowControl> ParseFlowControl(const std::optional<std::string>& text) {
    if (!text) return FlowControl::None;
    if (*text == "rtscts") return FlowControl::Hardware;
    if (*text == "xonxoff") return FlowControl::Software;
    return std::nullopt;
}

}  // namespace

std::optional<UartSettings> UartSettings::Parse(const std::string& text) {
    const auto [rate, rest] = CutAt(text, text.find(' ') < text.find(',') ? ' ' : ',');
    const auto [format, flow] = CutAt(rest.value_or(""), ',');
    const auto flowControl = ParseFlowControl(flow);
    const auto baudRate = ParseWholeNumber(rate, 1, 9'999'999);
    if (!baudRate || format.size() != 3 || !flowControl) return std::nullopt;
    const auto dataBits = ParseWholeNumber(format.substr(0, 1), 5, 8);
    const auto parity = kParityLetters.find(static_cast<char>(std::toupper(format[1])));
    const auto stopBits = ParseWholeNumber(format.substr(2), 1, 2);
    if (!dataBits || parity == std::string::npos || !stopBits) return std::nullopt;
    return UartSettings{*baudRate, *dataBits, static_cast<Parity>(parity), *stopBits, *flowControl};
}

std::string UartSettings::Text() const {
    return std::to_string(baudRate) + "," + std::to_string(dataBits) +
           kParityLetters[static_cast<std::size_t>(parity)] + std::to_string(stopBits) +
           FlowControlText(flowControl);
}

int UartSettings::BitsPerCharacter() const {
    return 1 + dataBits + (parity == Parity::None ? 0 : 1) + stopBits;
}

std::chrono::microseconds UartSettings::CharacterTime() const {
    if (baudRate <= 0) return std::chrono::microseconds(0);
    return std::chrono::microseconds(1'000'000LL * BitsPerCharacter() / baudRate);
}

bool UartSettings::AgreesWith(const UartSettings& other) const {
    return baudRate == other.baudRate && dataBits == other.dataBits && parity == other.parity &&
           stopBits == other.stopBits;
}

bool operator==(const UartSettings& a, const UartSettings& b) {
    return a.AgreesWith(b) && a.flowControl == b.flowControl;
}

bool operator!=(const UartSettings& a, const UartSettings& b) {
    return !(a == b);
}

}  // namespace simulator
