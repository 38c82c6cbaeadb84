#include "simulator/instruments/SignedReading.h"

namespace simulator {
namespace {

constexpr Time patience = 60s;
constexpr std::size_t numberColumns = 9;

}  // namespace

SignedReading::SignedReading(BalanceModel& model, const Switches& switches,
                             const std::string& request, const std::string& tareCommand)
    : Dialect(model, "\r\n"), switches_(switches) {
    on(request, [this](const std::string&) { sayReading(); });
    on(tareCommand, [this](const std::string&) { tare(); });
}

std::optional<std::string> SignedReading::cutCommand(std::string& received) {
    return cutKey(received);
}

void SignedReading::execute(const std::string& command) {
    if (switches_.isOn("echo")) send(command);
    Dialect::execute(command);
}

void SignedReading::sayReading() {
    const std::string text = line(balance().read());
    const Time gap = switches_.time("gap");
    if (gap == Time(0)) return say(text);
    send(text.substr(0, 1));
    after(gap, [this, text] { say(text.substr(1)); });
}

void SignedReading::tare() {
    whenStable(
        patience, [this] { balance().tare(); }, [] {});
}

// "1+    12.34 g" at rest, "U-     0.50 g" while the pan moves
std::string SignedReading::line(const Reading& reading) const {
    return (reading.stable ? "1" : "U") + sign(reading) +
           rightAligned(number(reading), numberColumns) + " " + reading.unit;
}

std::string SignedReading::number(const Reading& reading) {
    if (reading.range == Reading::Range::over) return "HHH";
    if (reading.range == Reading::Range::under) return "LLL";
    return reading.digits().substr(reading.value < 0 ? 1 : 0);
}

std::vector<SwitchDescription> signedReadingSwitches() {
    return {
        onOff("echo", false, "sends back what it receives"),
        {"gap", "0ms", {}, "pause within a line, behind its first character", true},
    };
}

}  // namespace simulator
