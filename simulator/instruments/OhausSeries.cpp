#include "simulator/instruments/OhausSeries.h"

#include <algorithm>

#include "simulator/instruments/Dialect.h"

namespace simulator {
namespace {

constexpr double ounce = 28.349523125;
constexpr double troyOunce = 31.1034768;
constexpr double pennyweight = 1.55517384;
constexpr double pound = 453.59237;
constexpr double grain = 0.06479891;

/// The numbers of xU.
std::vector<OhausUnit> unitsOfTheExplorer() {
    return {{0, "mg", 0.001}, {1, "g", 1},           {2, "kg", 1000},  {3, "ct", 0.2},
            {4, "oz", ounce}, {5, "ozt", troyOunce}, {6, "lb", pound}, {7, "dwt", pennyweight},
            {8, "GN", grain}};
}

/// The numbers of xM on the Scout Pro, which chooses the unit and the counting alike.
std::vector<OhausUnit> unitsOfTheScoutPro() {
    return {{0, "g", 1},         {1, "oz", ounce}, {2, "ozt", troyOunce}, {3, "dwt", pennyweight},
            {4, "PCS", 1, true}, {5, "lb", pound}};
}

const std::vector<OhausSeries>& allSeries() {
    static const std::vector<OhausSeries> all = {
        {"scout-pro", "scout-pro", false, false, false, false, false, false, false, 0, -1,
         unitsOfTheScoutPro()},
        {"explorer", "explorer", true, true, true, true, true, true, false, 0, 1,
         unitsOfTheExplorer()},
        {"discovery", "explorer", false, true, true, true, true, false, false, 0, -1, {}},
        {"scout", "scout", true, true, true, false, false, true, true, 1, -1, unitsOfTheExplorer()},
    };
    return all;
}

std::vector<std::string> seriesNames() {
    std::vector<std::string> names;
    for (const OhausSeries& each : allSeries())
        names.push_back(each.name);
    return names;
}

}  // namespace

std::string ohausLine(const std::string& layout, const std::string& digits, const std::string& unit,
                      bool isStable, bool isNet) {
    const std::string mark = isStable ? " " : "?";
    const std::string apart = unit.empty() ? "" : " " + unit;
    if (layout == "explorer-pro")
        return rightAligned(digits, 9) + (unit.empty() ? "" : " " + leftAligned(unit, 5)) + mark;
    if (layout == "explorer") return rightAligned(digits, 10) + apart + (isStable ? "" : " ?");
    if (layout == "scout-pro-narrow")
        return rightAligned(digits, 11) + apart + (isStable ? "" : " ?");
    if (layout == "scout")
        return rightAligned(digits, 10) + apart + " " + mark + (isNet ? " N" : "");
    const std::string gap = layout == "scout-pro-close-mark" ? "" : " ";
    return rightAligned(digits, 12) + " " + leftAligned(unit, 5) + gap + mark;
}

const OhausSeries& ohausSeries(const Switches& switches) {
    const std::string& name = switches.text("series");
    return *std::find_if(allSeries().begin(), allSeries().end(),
                         [&](const OhausSeries& each) { return each.name == name; });
}

std::vector<SwitchDescription> ohausSwitches() {
    return {
        {"series", "scout-pro", seriesNames(), "commands; scout is the new Scout"},
        {"line",
         "of-series",
         {"of-series", "scout-pro", "scout-pro-close-mark", "scout-pro-narrow", "explorer",
          "explorer-pro", "scout"},
         "layout of a printed line"},
        onOff("stable-print", true, "knows SP; a Scout Pro may not, and stays silent"),
        onOff("stable-only", false, "P waits for the pan to rest, as after 1S"),
        onOff("numeric-only", false, "prints no unit"),
        onOff("factory-auto-print", false, "prints continuously after ESC R, until 0A"),
        onOff("reset-changes-line", false, "understands nothing after ESC R: other line settings"),
        {"stability-time-out", "40s", {}, "how long SP and P wait for the pan to rest", true},
        {"wake-up-time", "2s", {}, "how long the balance needs after ON", true},
        {"serial-number", "B717693125", {}, "answer to PSN"},
        {"software", "1.10", {}, "answer to PV and V"},
    };
}

}  // namespace simulator
