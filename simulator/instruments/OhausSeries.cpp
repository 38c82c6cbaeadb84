#include "simulator/instruments/OhausSeries.h"

#include <algorithm>

#include "simulator/instruments/Dialect.h"

namespace simulator {
namespace {

constexpr double kOunce = 28.349523125;
constexpr double kTroyOunce = 31.1034768;
constexpr double kPennyweight = 1.55517384;
constexpr double kPound = 453.59237;
constexpr double kGrain = 0.06479891;
constexpr double kNewton = 1000 / 9.80665;

/// The numbers of xU.
std::vector<OhausUnit> UnitsOfTheExplorer() {
    return {{0, "mg", 0.001},  {1, "g", 1},
            {2, "kg", 1000},   {3, "ct", 0.2},
            {4, "oz", kOunce}, {5, "ozt", kTroyOunce},
            {6, "lb", kPound}, {7, "dwt", kPennyweight},
            {8, "GN", kGrain}, {9, "N", kNewton}};
}

/// The numbers of xM on the Scout Pro, which chooses the unit and the counting alike.
std::vector<OhausUnit> UnitsOfTheScoutPro() {
    return {
        {0, "g", 1},         {1, "oz", kOunce}, {2, "ozt", kTroyOunce}, {3, "dwt", kPennyweight},
        {4, "PCS", 1, true}, {5, "lb", kPound}};
}

OhausSeries ScoutPro() {
    OhausSeries series;
    series.name = series.line = "scout-pro";
    series.choosesStability = true;
    series.units = UnitsOfTheScoutPro();
    return series;
}

/// What the newer series have in common.
OhausSeries Newer(const std::string& name) {
    OhausSeries series;
    series.name = name;
    series.line = "explorer";
    series.refuses = true;
    series.hasPrintCommands = true;
    return series;
}

OhausSeries Explorer() {
    OhausSeries series = Newer("explorer");
    series.acknowledges = true;
    series.hasAutoPrintCommands = true;
    series.presetsTare = true;
    series.saysSettings = true;
    series.choosesModeAndUnit = true;
    series.hasDoors = true;
    series.countingMode = 1;
    series.units = UnitsOfTheExplorer();
    return series;
}

OhausSeries Adventurer() {
    OhausSeries series = Newer("adventurer");
    series.acknowledges = true;
    series.hasAutoPrintCommands = true;
    series.presetsTare = true;
    series.choosesStability = true;
    series.choosesAcknowledging = true;
    return series;
}

OhausSeries Discovery() {
    OhausSeries series = Newer("discovery");
    series.hasAutoPrintCommands = true;
    series.presetsTare = true;
    series.presetsTareInGrams = true;
    series.saysSettings = true;
    return series;
}

OhausSeries Scout() {
    OhausSeries series = Newer("scout");
    series.line = "scout";
    series.acknowledges = true;
    series.choosesModeAndUnit = true;
    series.hasFormats = true;
    series.printsOverload = true;
    series.weighingMode = 1;
    series.units = UnitsOfTheExplorer();
    return series;
}

const std::vector<OhausSeries>& AllSeries() {
    static const std::vector<OhausSeries> all = {ScoutPro(), Explorer(), Adventurer(), Discovery(),
                                                 Scout()};
    return all;
}

std::vector<std::string> SeriesNames() {
    std::vector<std::string> names;
    for (const OhausSeries& each : AllSeries())
        names.push_back(each.name);
    return names;
}

}  // namespace

std::string OhausLine(const std::string& layout, const std::string& digits, const std::string& unit,
                      bool isStable, bool isNet) {
    const std::string mark = isStable ? " " : "?";
    const std::string apart = unit.empty() ? "" : " " + unit;
    if (layout == "explorer-pro")
        return RightAligned(digits, 9) + (unit.empty() ? "" : " " + LeftAligned(unit, 5)) + mark;
    if (layout == "explorer") return RightAligned(digits, 10) + apart + (isStable ? "" : " ?");
    if (layout == "scout-pro-narrow")
        return RightAligned(digits, 11) + apart + (isStable ? "" : " ?");
    if (layout == "scout")
        return RightAligned(digits, 10) + apart + " " + mark + (isNet ? " N" : "");
    const std::string gap = layout == "scout-pro-close-mark" ? "" : " ";
    return RightAligned(digits, 12) + " " + LeftAligned(unit, 5) + gap + mark;
}

const OhausSeries& ChosenOhausSeries(const Switches& switches) {
    const std::string& name = switches.Text("series");
    return *std::find_if(AllSeries().begin(), AllSeries().end(),
                         [&](const OhausSeries& each) { return each.name == name; });
}

std::vector<SwitchDescription> OhausSwitches() {
    return {
        {"series", "scout-pro", SeriesNames(), "commands; scout is the new Scout"},
        {"line",
         "of-series",
         {"of-series", "scout-pro", "scout-pro-close-mark", "scout-pro-narrow", "explorer",
          "explorer-pro", "scout"},
         "layout of a printed line"},
        OnOff("stable-print", true, "knows SP; a Scout Pro may not, and stays silent"),
        OnOff("stable-only", false, "P waits for the pan to rest, as after 1S"),
        OnOff("numeric-only", false, "prints no unit"),
        OnOff("factory-auto-print", false, "prints continuously after ESC R, until 0A"),
        OnOff("reset-changes-line", false, "understands nothing after ESC R: other line settings"),
        {"stability-time-out", "40s", {}, "how long SP and P wait for the pan to rest", true},
        {"wake-up-time", "2s", {}, "how long the balance needs after ON", true},
        {"serial-number", "B717693125", {}, "answer to PSN"},
        {"software", "1.10", {}, "answer to PV and V"},
    };
}

}  // namespace simulator
