#include "simulator/instruments/SignedReading.h"

namespace simulator {
namespace {

constexpr Time kPatience = 60s;
constexpr std::size_t kNumberColumns = 9;

}  // namespace

SignedReading::SignedReading(BalanceModel& model, const Switches& switches,
                             const std::string& request, const std::string& tareCommand)
    : Dialect(model, "\r\n"), switches_(switches) {
    On(request, [this](const std::string&) { SayReading(); });
    On(tareCommand, [this](const std::string&) { Tare(); });
}

std::optional<std::string> SignedReading::CutCommand(std::string& received) {
    return CutKey(received);
}

void SignedReading::Execute(const std::string& command) {
    if (switches_.IsOn("echo")) Send(command);
    Dialect::Execute(command);
}

void SignedReading::SayReading() {
    const std::string text = Line(Balance().Read());
    const Time gap = switches_.TimeOf("gap");
    if (gap == Time(0)) return Say(text);
    Send(text.substr(0, 1));
    After(gap, [this, text] { Say(text.substr(1)); });
}

void SignedReading::Tare() {
    WhenStable(
        kPatience, [this] { Balance().Tare(); }, [] {});
}

// "1+    12.34 g" at rest, "U-     0.50 g" while the pan moves
std::string SignedReading::Line(const Indication& indication) const {
    return (indication.stable ? "1" : "U") + Sign(indication) +
           RightAligned(Number(indication), kNumberColumns) + " " + indication.unit;
}

std::string SignedReading::Number(const Indication& indication) {
    if (indication.range == Indication::Range::Over) return "HHH";
    if (indication.range == Indication::Range::Under) return "LLL";
    return indication.Digits().substr(indication.value < 0 ? 1 : 0);
}

std::vector<SwitchDescription> SignedReadingSwitches() {
    return {
        OnOff("echo", false, "sends back what it receives"),
        {"gap", "0ms", {}, "pause within a line, behind its first character", true},
    };
}

}  // namespace simulator
