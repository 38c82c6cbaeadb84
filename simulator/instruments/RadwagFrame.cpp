#include "simulator/instruments/RadwagFrame.h"

#include "simulator/instruments/Dialect.h"

namespace simulator {
namespace {

constexpr std::size_t commandColumns = 3;

/// Out of range there is no mass: it reads zero.
std::string massOf(Reading reading) {
    if (reading.range != Reading::Range::inside) reading.value = 0;
    return reading.digits();
}

std::string markOf(const Reading& reading) {
    if (reading.range == Reading::Range::over) return "^";
    if (reading.range == Reading::Range::under) return "v";
    return reading.stable ? " " : "?";
}

}  // namespace

std::string radwagFrame(const std::string& command, const Reading& reading, bool isWide) {
    return leftAligned(command, commandColumns) + (isWide ? " " : "") + radwagMass(reading);
}

std::string radwagMass(const Reading& reading) {
    const std::string digits = massOf(reading);
    const bool isNegative = digits.front() == '-';
    return markOf(reading) + " " + (isNegative ? "-" : " ") +
           rightAligned(digits.substr(isNegative), radwagMassColumns) + " " +
           leftAligned(reading.unit == "PCS" ? "pcs" : reading.unit, radwagUnitColumns);
}

const std::vector<Unit>& radwagUnits() {
    static const std::vector<Unit> all = {{"g", 1}, {"mg", 0.001}, {"ct", 0.2}};
    return all;
}

std::vector<SwitchDescription> radwagSwitches() {
    return {
        {"series", "ps", {"ps", "hrp", "ma", "wtc"}, "commands: a terminal (wtc) has the fewest"},
        {"serial-number", "123456", {}, "answer to NB"},
        {"software", "r.3.0.9", {}, "answer to RV"},
        {"adjustment-time", "10s", {}, "how long IC takes", true},
        onOff("confirms-at-once", false, "says A ahead of the frames of SI and SUI, as WPW does"),
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
