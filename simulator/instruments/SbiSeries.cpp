#include "simulator/instruments/SbiSeries.h"

#include <algorithm>

namespace simulator {
namespace {

using Print = SbiSeries::Print;

SbiSeries seriesNamed(const std::string& name, const std::string& model) {
    SbiSeries series{};
    series.name = name;
    series.model = model;
    series.saysSoftware = true;
    series.grossWord = "N";
    series.signsZero = true;
    series.waitsForRest = true;
    series.canRestart = true;
    return series;
}

SbiSeries la() {
    SbiSeries series = seriesNamed("la", "LA620S");
    series.hasFunctionKeys = true;
    series.hasSoftKeys = true;
    return series;
}

SbiSeries cp() {
    SbiSeries series = seriesNamed("cp", "CP622S");
    series.saysSoftware = false;
    series.print = Print::stopsAndStarts;
    return series;
}

SbiSeries extend() {
    SbiSeries series = seriesNamed("extend", "ED623S");
    series.takesBareCommands = true;
    series.print = Print::stopsAndStarts;
    return series;
}

SbiSeries mse() {
    SbiSeries series = seriesNamed("mse", "MSE1203S-100-DR");
    series.hasTareAlone = true;
    series.printsToAll = "p";
    series.print = Print::ends;
    series.signsZero = false;
    return series;
}

SbiSeries entris() {
    SbiSeries series = seriesNamed("entris2", "BCE124I-1CEU");
    series.hasTareAlone = true;
    series.hasFunctionKeys = true;
    series.printsToAll = "kP";
    series.takesBareCommands = true;
    series.print = Print::stopsAndStarts;
    series.word = "Model  ";
    return series;
}

SbiSeries quintix() {
    SbiSeries series = seriesNamed("quintix", "QUINTIX612-1S");
    series.hasTareAlone = true;
    series.printsToAll = "kP";
    series.endsWithBlankLine = true;
    return series;
}

SbiSeries cubis() {
    SbiSeries series = seriesNamed("cubis2", "MCA5201S");
    series.grossWord = "G";
    series.signsZero = false;
    series.waitsForRest = false;
    series.canRestart = false;
    return series;
}

const std::vector<SbiSeries>& allSeries() {
    static const std::vector<SbiSeries> all = {la(),     cp(),      extend(), mse(),
                                               entris(), quintix(), cubis()};
    return all;
}

std::vector<std::string> seriesNames() {
    std::vector<std::string> names;
    for (const SbiSeries& each : allSeries())
        names.push_back(each.name);
    return names;
}

}  // namespace

const SbiSeries& sbiSeries(const Switches& switches) {
    const std::string& name = switches.text("series");
    return *std::find_if(allSeries().begin(), allSeries().end(),
                         [&](const SbiSeries& each) { return each.name == name; });
}

std::vector<SwitchDescription> sbiSwitches() {
    return {
        {"series", "la", seriesNames(), "commands and lines: la with ME, LP, FB, GPC and Combics"},
        {"serial-number", "37454321", {}, "answer to ESC x2_"},
        {"software", "00-37-09", {}, "answer to ESC x3_"},
        {"adjustment-time", "10s", {}, "how long an adjustment takes", true},
        {"print", "stable", {"stable", "stable-or-nothing", "at-once"}, "when ESC P is answered"},
        {"line", "16", {"16", "22"}, "characters of a line, with its end; 22 has an identifier"},
        {"tare-line",
         "off",
         {"off", "TP1", "T1"},
         "identifier of a line ahead with the stored tare"},
        onOff("store-key", true, "soft key 4 stores what was typed as the tare"),
        onOff("verified", false, "the last digit stands in brackets"),
        onOff("words", false, "prints High and Low in place of H and L"),
        {"display",
         "weight",
         {"weight", "blank", "calibration", "external-calibration", "final", "error", "error-054",
          "standby"},
         "what is shown and printed"},
        onOff("auto-print", false, "prints 10 lines a second unasked"),
    };
}

}  // namespace simulator
