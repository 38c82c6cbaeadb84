#include "simulator/line/LineSettings.h"

#include <cctype>

#include "simulator/Text.h"

namespace simulator {
namespace {

const std::string parityLetters = "NOEMS";

std::string flowControlText(FlowControl flowControl) {
    if (flowControl == FlowControl::hardware) return ",rtscts";
    if (flowControl == FlowControl::software) return ",xonxoff";
    return "";
}

std::optional<FlowControl> parseFlowControl(const std::optional<std::string>& text) {
    if (!text) return FlowControl::none;
    if (*text == "rtscts") return FlowControl::hardware;
    if (*text == "xonxoff") return FlowControl::software;
    return std::nullopt;
}

}  // namespace

std::optional<LineSettings> LineSettings::parse(const std::string& text) {
    const auto [rate, rest] = cutAt(text, text.find(' ') < text.find(',') ? ' ' : ',');
    const auto [format, flow] = cutAt(rest.value_or(""), ',');
    const auto flowControl = parseFlowControl(flow);
    const auto baudRate = parseWholeNumber(rate, 1, 9'999'999);
    if (!baudRate || format.size() != 3 || !flowControl) return std::nullopt;
    const auto dataBits = parseWholeNumber(format.substr(0, 1), 5, 8);
    const auto parity = parityLetters.find(static_cast<char>(std::toupper(format[1])));
    const auto stopBits = parseWholeNumber(format.substr(2), 1, 2);
    if (!dataBits || parity == std::string::npos || !stopBits) return std::nullopt;
    return LineSettings{*baudRate, *dataBits, static_cast<Parity>(parity), *stopBits, *flowControl};
}

std::string LineSettings::text() const {
    return std::to_string(baudRate) + "," + std::to_string(dataBits) +
           parityLetters[static_cast<std::size_t>(parity)] + std::to_string(stopBits) +
           flowControlText(flowControl);
}

int LineSettings::bitsPerCharacter() const {
    return 1 + dataBits + (parity == Parity::none ? 0 : 1) + stopBits;
}

std::chrono::microseconds LineSettings::characterTime() const {
    if (baudRate <= 0) return std::chrono::microseconds(0);
    return std::chrono::microseconds(1'000'000LL * bitsPerCharacter() / baudRate);
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
