#include "simulator/instruments/RadwagFrame.h"

#include "simulator/instruments/Dialect.h"

namespace simulator {
namespace {

constexpr std::size_t kCommandColumns = 3;

/// Out of range there is no mass: it reads zero.
std::string MassOf(Indication indication) {
    if (indication.range != Indication::Range::Inside) indication.value = 0;
    return indication.Digits();
}

std::string MarkOf(const Indication& indication) {
    if (indication.range == Indication::Range::Over) return "^";
    if (indication.range == Indication::Range::Under) return "v";
    return indication.stable ? " " : "?";
}

}  // namespace

std::string RadwagFrame(const std::string& command, const Indication& indication, bool isWide) {
    return LeftAligned(command, kCommandColumns) + (isWide ? " " : "") + RadwagMass(indication);
}

std::string RadwagMass(const Indication& indication) {
    const std::string digits = MassOf(indication);
    const bool isNegative = digits.front() == '-';
    return MarkOf(indication) + " " + (isNegative ? "-" : " ") +
           RightAligned(digits.substr(isNegative ? 1 : 0), kRadwagMassColumns) + " " +
           LeftAligned(indication.unit == "PCS" ? "pcs" : indication.unit, kRadwagUnitColumns);
}

const std::vector<Unit>& RadwagUnits() {
    static const std::vector<Unit> all = {{"g", 1}, {"mg", 0.001}, {"ct", 0.2}};
    return all;
}

std::vector<SwitchDescription> RadwagSwitches() {
    return {
        {"series",
         "ps",
         {"ps", "hrp", "ma", "wtc", "wpw"},
         "commands: a terminal (wtc) has the fewest"},
        {"serial-number", "123456", {}, "answer to NB"},
        {"software", "r.3.0.9", {}, "answer to RV"},
        {"adjustment-time", "10s", {}, "how long IC takes", true},
        OnOff("confirms-at-once", false, "says A ahead of the frames of SI and SUI, as WPW does"),
        {"stability-time-out", "10s", {}, "how long S, T and Z wait for the pan to rest", true},
        {"during-wait",
         "refuse",
         {"refuse", "keep"},
         "whether a command that comes during such a wait gets I, or is carried out after it"},
        {"frame", "21", {"21", "22"}, "bytes of a frame: some models send a blank more"},
        {"repeat-interval", "100ms", {}, "time between two frames of C1 and CU1", true},
    };
}

}  // namespace simulator
