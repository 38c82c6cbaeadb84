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
constexpr std::array<HostUnit, 7> hostUnits = {{{0, "g", 1},
                                                {1, "kg", 1000},
                                                {3, "mg", 0.001},
                                                {4, "ug", 0.000001},
                                                {5, "ct", 0.2},
                                                {7, "lb", 453.59237},
                                                {8, "oz", 28.349523125}}};

/// Lines a second at the most: a new reading is there every 50 ms.
constexpr int fastestRate = 20;

}  // namespace

std::optional<std::string> MtSics::quotedText(const std::string& parameters) {
    const std::size_t length = parameters.size();
    if (length < 2 || parameters.front() != '"' || parameters.back() != '"') return std::nullopt;
    return parameters.substr(1, length - 2);
}

// > D "READY"   < "D A"; a text that the display cannot hold is shown cut
void MtSics::showText(const std::string& parameters) {
    const auto text = quotedText(parameters);
    if (!text) return say("D L");
    const std::size_t width = std::stoul(switches_.text("display-width"));
    balance().showText(text->substr(0, width));
    say(text->size() <= width ? "D A" : "D " + switches_.text("cut-text"));
}

void MtSics::showWeight() {
    balance().showWeight();
    say("DW A");
}

// > "PWR 1"   < "PWR A" and then I4 A "1126493049"
void MtSics::power(const std::string& parameters) {
    if (parameters != "0" && parameters != "1") return say("PWR L");
    say("PWR A");
    if (parameters == "0") return balance().switchOff();
    balance().switchOn();
    saySerialNumber();
}

// > "M21 0 3"   < "M21 A", and weights come in mg. The form of a query is not documented.
void MtSics::chooseUnit(const std::string& parameters) {
    const auto named = [&](const HostUnit& unit) {
        return parameters == "0 " + std::to_string(unit.code);
    };
    const auto unit = std::find_if(hostUnits.begin(), hostUnits.end(), named);
    if (unit == hostUnits.end()) return say("M21 L");
    balance().showUnit(unit->text, unit->grams);
    say("M21 A");
}

// > "SIS"   < "SIS A 0 100.00 0 2 1 0 0": state, value, unit, decimals, step, approval, tare
void MtSics::sayStatus() {
    const Reading reading = balance().read();
    const auto unit = std::find_if(hostUnits.begin(), hostUnits.end(),
                                   [&](const HostUnit& each) { return each.text == reading.unit; });
    if (isUnable() || unit == hostUnits.end()) return say("SIS I");
    std::string state = reading.stable ? "0" : "1";
    if (reading.range != Reading::Range::inside)
        state = reading.range == Reading::Range::over ? "4" : "5";
    const double tare = balance().tareWeight();
    const std::string info = tare == 0 ? "0" : (tare == enteredTare_ ? "2" : "1");
    say("SIS A " + state + " " + reading.digits() + " " + std::to_string(unit->code) + " " +
        std::to_string(reading.decimals) + " 1 0 " + info);
}

// > "DAT"   < "DAT A 22 11 2026";  > "DAT 01 10 2021"   < "DAT A"
void MtSics::setDate(const std::string& parameters) {
    if (parameters.empty()) return say("DAT A " + calendar_.date(now()));
    say(calendar_.setDate(parameters, now()) ? "DAT A" : "DAT L");
}

// > "TIM"   < "TIM A 09 56 11";  > "TIM 10 00 00"   < "TIM A"
void MtSics::setTime(const std::string& parameters) {
    if (parameters.empty()) return say("TIM A " + calendar_.time(now()));
    say(calendar_.setTime(parameters, now()) ? "TIM A" : "TIM L");
}

// > "UPD"   < "UPD A 5": lines a second of SIR;  > "UPD 10"   < "UPD A"
void MtSics::setRate(const std::string& parameters) {
    if (parameters.empty()) return say("UPD A " + std::to_string(1s / interval_));
    const auto rate = parseWholeNumber(parameters, 1, fastestRate);
    if (!rate) return say("UPD L");
    interval_ = Time(1s) / *rate;
    say("UPD A");
}

void MtSics::adjustAsSet() {
    adjust("C1");
}

void MtSics::adjustInternally() {
    adjust("C3");
}

// > "C3"   < "C3 B", a minute later "C3 A", or "C3 I" when the pan does not rest
void MtSics::adjust(const std::string& id) {
    if (isUnable()) return say(id + " I");
    say(id + " B");
    adjusting_ = true;
    after(switches_.time("adjustment-time"), [this, id] {
        adjusting_ = false;
        say(id + (!isBusy() && balance().read().stable ? " A" : " I"));
    });
}

}  // namespace simulator
