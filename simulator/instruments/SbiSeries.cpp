#include "simulator/instruments/SbiSeries.h"

#include <algorithm>

namespace simulator {
namespace {

using Print = SbiSeries::Print;

SbiSeries SeriesNamed(const std::string& name, const std::string& model) {
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

SbiSeries La() {
    SbiSeries series = SeriesNamed("la", "LA620S");
    series.hasCalKey = true;
    series.hasFunctionKeys = true;
    series.hasSoftKeys = true;
    series.typeText = "t";
    return series;
}

SbiSeries Combics() {
    SbiSeries series = SeriesNamed("combics", "CW2P1U-6DC");
    series.hasFunctionKeys = true;
    series.printsToAll = "kP";
    series.hasKeysByName = true;
    series.platform = "C2/016202/1";
    return series;
}

SbiSeries Pma() {
    SbiSeries series = SeriesNamed("pma", "PMA7501-X00V1");
    series.saysLastKey = true;
    series.typeText = "a3";
    return series;
}

SbiSeries Cp() {
    SbiSeries series = SeriesNamed("cp", "CP622S");
    series.saysSoftware = false;
    series.print = Print::StopsAndStarts;
    return series;
}

SbiSeries Extend() {
    SbiSeries series = SeriesNamed("extend", "ED623S");
    series.hasCalKey = true;
    series.takesBareCommands = true;
    series.print = Print::StopsAndStarts;
    return series;
}

SbiSeries Mse() {
    SbiSeries series = SeriesNamed("mse", "MSE1203S-100-DR");
    series.hasCalKey = true;
    series.hasTareAlone = true;
    series.printsToAll = "p";
    series.print = Print::Ends;
    series.signsZero = false;
    return series;
}

SbiSeries Entris() {
    SbiSeries series = SeriesNamed("entris2", "BCE124I-1CEU");
    series.hasCalKey = true;
    series.hasTareAlone = true;
    series.hasFunctionKeys = true;
    series.printsToAll = "kP";
    series.takesBareCommands = true;
    series.print = Print::StopsAndStarts;
    series.word = "Model  ";
    return series;
}

SbiSeries Quintix() {
    SbiSeries series = SeriesNamed("quintix", "QUINTIX612-1S");
    series.hasTareAlone = true;
    series.printsToAll = "kP";
    series.endsWithBlankLine = true;
    return series;
}

SbiSeries Cubis() {
    SbiSeries series = SeriesNamed("cubis2", "MCA5201S");
    series.grossWord = "G";
    series.signsZero = false;
    series.waitsForRest = false;
    series.canRestart = false;
    return series;
}

const std::vector<SbiSeries>& AllSeries() {
    static const std::vector<SbiSeries> all = {La(),      Cp(),    Extend(),  Mse(), Entris(),
                                               Quintix(), Cubis(), Combics(), Pma()};
    return all;
}

std::vector<std::string> SeriesNames() {
    std::vector<std::string> names;
    for (const SbiSeries& each : AllSeries())
        names.push_back(each.name);
    return names;
}

}  // namespace

const SbiSeries& ChosenSbiSeries(const Switches& switches) {
    const std::string& name = switches.Text("series");
    return *std::find_if(AllSeries().begin(), AllSeries().end(),
                         [&](const SbiSeries& each) { return each.name == name; });
}

std::vector<SwitchDescription> SbiSwitches() {
    return {
        {"series", "la", SeriesNames(), "commands and lines: la with ME, LP, FB and GPC"},
        {"serial-number", "37454321", {}, "answer to ESC x2_"},
        {"software", "00-37-09", {}, "answer to ESC x3_"},
        {"adjustment-time", "10s", {}, "how long an adjustment takes", true},
        {"print", "stable", {"stable", "stable-or-nothing", "at-once"}, "when ESC P is answered"},
        {"line", "16", {"16", "22"}, "characters of a line, with its end; 22 has an identifier"},
        {"tare-line",
         "off",
         {"off", "TP1", "T1"},
         "identifier of a line ahead with the stored tare"},
        OnOff("store-key", true, "soft key 4 stores what was typed as the tare"),
        OnOff("verified", false, "the last digit stands in brackets"),
        OnOff("unverified", false, "\"!\" stands in place of the unit"),
        OnOff("words", false, "prints High and Low in place of H and L"),
        {"display",
         "weight",
         {"weight", "blank", "calibration", "external-calibration", "final", "error", "error-054",
          "standby"},
         "what is shown and printed"},
        OnOff("auto-print", false, "prints 10 lines a second unasked"),
    };
}

}  // namespace simulator
