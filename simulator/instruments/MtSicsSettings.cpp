// What a host sets at an MT-SICS balance: display, power, unit, clock, rate, sensitivity.

#include <algorithm>
#include <array>

#include "simulator/Text.h"
#include "simulator/instruments/MtSics.h"

namespace simulator {
namespace {

struct HostUnit {
    int code;
    const char* text;
    double grams;
};

/// The units with their codes in M21 and SIS.
constexpr std::array<HostUnit, 7> kHostUnits = {{{0, "g", 1},
                                                 {1, "kg", 1000},
                                                 {3, "mg", 0.001},
                                                 {4, "ug", 0.000001},
                                                 {5, "ct", 0.2},
                                                 {7, "lb", 453.59237},
                                                 {8, "oz", 28.349523125}}};

/// Lines a second at the most: a new reading is there every 50 ms.
constexpr int kFastestRate = 20;

}  // namespace

std::optional<std::string> MtSics::QuotedText(const std::string& parameters) {
    const std::size_t length = parameters.size();
    if (length < 2 || parameters.front() != '"' || parameters.back() != '"') return std::nullopt;
    return parameters.substr(1, length - 2);
}

// > D "READY"   < "D A"; a text that the display cannot hold is shown cut
void MtSics::ShowText(const std::string& parameters) {
    if (IsUnable()) return Say("D I");
    const auto text = QuotedText(parameters);
    if (!text) return Say("D L");
    const std::size_t width = std::stoul(switches_.Text("display-width"));
    Balance().ShowText(text->substr(0, width));
    Say(text->size() <= width ? "D A" : "D " + switches_.Text("cut-text"));
}

void MtSics::ShowWeight() {
    if (IsUnable()) return Say("DW I");
    Balance().ShowWeight();
    Say("DW A");
}

// > "PWR 1"   < "PWR A" and then I4 A "1126493049"
void MtSics::Power(const std::string& parameters) {
    if (parameters != "0" && parameters != "1") return Say("PWR L");
    Say("PWR A");
    if (parameters == "0") return Balance().SwitchOff();
    Balance().SwitchOn();
    SaySerialNumber();
}

// > "M21 0 3"   < "M21 A", and weights come in mg. The form of a query is not documented.
void MtSics::ChooseUnit(const std::string& parameters) {
    const auto named = [&](const HostUnit& unit) {
        return parameters == "0 " + std::to_string(unit.code);
    };
    const auto unit = std::find_if(kHostUnits.begin(), kHostUnits.end(), named);
    if (unit == kHostUnits.end()) return Say("M21 L");
    Balance().SetHostUnit({unit->text, unit->grams});
    Say("M21 A");
}

// > "SIS"   < "SIS A 0 100.00 0 2 1 0 0": state, value, unit, decimals, step, approval, tare
void MtSics::SayStatus() {
    const Indication indication = Weight();
    const auto unit = std::find_if(kHostUnits.begin(), kHostUnits.end(), [&](const HostUnit& each) {
        return each.text == indication.unit;
    });
    if (IsUnable() || unit == kHostUnits.end()) return Say("SIS I");
    std::string state = indication.stable ? "0" : "1";
    if (indication.range != Indication::Range::Inside)
        state = indication.range == Indication::Range::Over ? "4" : "5";
    if (switches_.IsOn("faulty-cell")) state = "6";
    const double tare = Balance().TareWeight();
    const std::string info = tare == 0 ? "0" : (tare == enteredTare_ ? "2" : "1");
    Say("SIS A " + state + " " + indication.Digits() + " " + std::to_string(unit->code) + " " +
        std::to_string(indication.decimals) + " 1 0 " + info);
}

// > "DAT"   < "DAT A 22 11 2026";  > "DAT 01 10 2021"   < "DAT A"
void MtSics::SetDate(const std::string& parameters) {
    if (parameters.empty()) return Say("DAT A " + calendar_.DateText(Now()));
    Say(calendar_.SetDate(parameters, Now()) ? "DAT A" : "DAT L");
}

// > "TIM"   < "TIM A 09 56 11";  > "TIM 10 00 00"   < "TIM A"
void MtSics::SetTime(const std::string& parameters) {
    if (parameters.empty()) return Say("TIM A " + calendar_.TimeText(Now()));
    Say(calendar_.SetTime(parameters, Now()) ? "TIM A" : "TIM L");
}

// > "UPD"   < "UPD A 5": lines a second of SIR;  > "UPD 10"   < "UPD A"
void MtSics::SetRate(const std::string& parameters) {
    if (parameters.empty()) return Say("UPD A " + std::to_string(1s / interval_));
    const auto rate = ParseWholeNumber(parameters, 1, kFastestRate);
    if (!rate) return Say("UPD L");
    interval_ = Time(1s) / *rate;
    Say("UPD A");
}

// > "M28" < "M28 A 1 21.8": a line for each probe; here there is one
void MtSics::SayTemperature() {
    Answer("M28", "1 21.8");
}

// > "WS"  < "WS A 0": the doors are closed; > "WS 0"  < "WS A"  closes them
void MtSics::MoveDoors(const std::string& parameters) {
    if (parameters.empty()) return Say("WS A 0");
    Say(parameters == "0" ? "WS A" : "WS L");
}

// > "C0"  < C0 A 1 0 "": 2 in place of 1 where the balance wants an adjustment
void MtSics::SayAdjustment(const std::string& parameters) {
    if (!parameters.empty()) return Say("C0 L");
    Answer("C0", std::string(wantsAdjustment_ ? "2" : "1") + " 0 \"\"");
}

void MtSics::AdjustAsSet() {
    Adjust("C1");
}

void MtSics::AdjustInternally() {
    Adjust("C3");
}

// > "C3"   < "C3 B", a minute later "C3 A", or "C3 I" when the pan does not rest
void MtSics::Adjust(const std::string& id) {
    if (IsUnable()) return Say(id + " I");
    Say(id + " B");
    adjusting_ = true;
    After(switches_.TimeOf("adjustment-time"), [this, id] {
        adjusting_ = false;
        const bool isDone = !IsBusy() && Balance().Read().stable;
        if (isDone) wantsAdjustment_ = false;
        Say(id + (isDone ? " A" : " I"));
    });
}

}  // namespace simulator
