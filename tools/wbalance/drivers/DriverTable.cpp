#include "DriverTable.h"

#include <wbalance/wbalance.h>

#include "Factory.h"
#include "ToolError.h"

namespace tool {
namespace {

constexpr char kMtModes[] = "stable: S; auto: S, else the mean of five SI; now: SI";

// @ ends the waiting of a command that has not been answered; it keeps zero and tare.
const std::vector<std::string> kMtQuestion = {"@\r\n", "SI\r\n"};

int Tare(Cwbalance& balance, const Request& /*request*/) {
    return balance.Tare();
}

int PresetTare(Cwbalance& balance, const Request& request) {
    return balance.TareSet(request.grams);
}

// Which of its protocols a balance speaks is known when it has been found ready.
int PresetTareOnceReady(Cwbalance& balance, const Request& request) {
    return balance.IsReady() == 0 ? 0 : balance.TareSet(request.grams);
}

int FactoryReset(Cwbalance& balance, const Request& /*request*/) {
    return balance.RestoreFactorySettings();
}

template <class Driver>
int Zero(Cwbalance& balance, const Request& /*request*/) {
    return static_cast<Driver&>(balance).Zero();
}

template <class Driver>
int Display(Cwbalance& balance, const Request& request) {
    std::string text = request.text;
    return static_cast<Driver&>(balance).DisplayMessage(text.data());
}

template <class Driver>
int SwitchOn(Cwbalance& balance, const Request& /*request*/) {
    return static_cast<Driver&>(balance).TurnItOn();
}

template <class Driver>
int SwitchOff(Cwbalance& balance, const Request& /*request*/) {
    return static_cast<Driver&>(balance).TurnItOff();
}

OperationInfo Trusted(decltype(OperationInfo::call) call, const std::string& note = "") {
    return {std::move(call), "", "", false, note};
}

OperationInfo Answered(decltype(OperationInfo::call) call, const std::string& command,
                       const std::string& confirmation, const std::string& note = "") {
    return {std::move(call), command, confirmation, false, note};
}

OperationInfo Weighed(decltype(OperationInfo::call) call, const std::string& note = "") {
    return {std::move(call), "", "", true, note};
}

DriverInfo MettlerToledo() {
    DriverInfo driver{"mettler-toledo",
                      "Mettler Toledo",
                      "any balance that speaks MT-SICS",
                      "WbalanceMettlerToledo",
                      {2400, 7, 2, 0, 0},
                      ReadMtSics,
                      // The reset of the driver's own check is answered "I4 A ...", and its 4 would
                      // be taken for the weight.
                      Quiet<WbalanceMettlerToledo>};
    driver.modes = kMtModes;
    driver.question = kMtQuestion;
    auto tare = Trusted(Tare,
                        "zeroes (Z) and does not tare, so that a load on the pan may prevent it; "
                        "the drivers of the models tare (T)");
    tare.zeroes = true;
    driver.operations = {{Operation::Tare, tare}, {Operation::Zero, Trusted(Tare)}};
    return driver;
}

DriverInfo MettlerPm() {
    DriverInfo driver{"mettler-pm",
                      "Mettler",
                      "PM, standard protocol or MT-SICS option",
                      "WbalanceMettlerPM",
                      {600, 7, 2, 0, 0},
                      ReadPm,
                      Plain<WbalanceMettlerPM>};
    driver.modes = kMtModes;
    driver.question = kMtQuestion;
    auto preset = Weighed(PresetTareOnceReady,
                          "tares first; with MT-SICS the tare that this gives is added to it");
    preset.command = "TA ";
    preset.confirmation = "TA A";
    preset.setter = "B ";
    driver.operations = {{Operation::Tare, Weighed(Tare)}, {Operation::PresetTare, preset}};
    return driver;
}

template <class Driver>
DriverInfo MettlerWithPanel(const char* name, const char* models, const char* driverClass,
                            const LineSettings& line) {
    DriverInfo driver{name, "Mettler Toledo", models, driverClass, line, ReadMtSics, Plain<Driver>};
    driver.modes = kMtModes;
    driver.question = kMtQuestion;
    driver.operations = {
        {Operation::Tare, Trusted(Tare)},
        {Operation::PresetTare,
         Answered(PresetTare, "TA ", "TA A",
                  "tares first, and the tare that this gives is added to the preset")},
        {Operation::Display,
         Answered(Display<Driver>, "D \"", "D A", "until the next operation on the balance")}};
    return driver;
}

template <class Driver>
DriverInfo MettlerWithSwitch(const char* name, const char* models, const char* driverClass,
                             const LineSettings& line) {
    DriverInfo driver = MettlerWithPanel<Driver>(name, models, driverClass, line);
    driver.operations[Operation::SwitchOn] = Answered(SwitchOn<Driver>, "PWR 1", "PWR A");
    driver.operations[Operation::SwitchOff] = Answered(SwitchOff<Driver>, "PWR 0", "PWR A");
    return driver;
}

DriverInfo Sartorius() {
    DriverInfo driver{
        "sartorius",        "Sartorius", "balances with SBI print lines", "WbalanceSartorius",
        {1200, 7, 1, 0, 0}, ReadSbi,     Quiet<WbalanceSartorius>};
    driver.readyFirst = true;
    driver.modes =
        "all alike: what the balance prints (ESC P), by its own setting after stability; with "
        "stable no weight when it prints one that is not";
    // The model: the queries are answered also while a print waits for stability.
    driver.question = {"\x1bx1_"};
    auto preset = Weighed(PresetTare, "tares first; works where soft key 4 stores the tare");
    preset.setter = "\x1bt";
    driver.operations = {{Operation::Tare, Weighed(Tare)}, {Operation::PresetTare, preset}};
    // The command's buffer holds a number of four characters; a longer one ends the process.
    driver.greatestPresetTare = 9.99;
    return driver;
}

DriverInfo Ohaus() {
    DriverInfo driver{"ohaus",
                      "Ohaus",
                      "Scout Pro, Explorer",
                      "WbalanceOHAUS_SPU602",
                      {2400, 7, 0, 0, 0},
                      ReadOhaus,
                      Plain<Resetting<WbalanceOHAUS_SPU602>>};
    driver.readyFirst = true;
    driver.modes = "stable: SP (a Scout Pro may not know it); auto and now: P, also while moving";
    driver.question = {"P\r\n"};
    driver.operations = {
        {Operation::Tare, Weighed(Tare, "its check reads with SP, which a Scout Pro may not know")},
        {Operation::FactoryReset, Trusted(FactoryReset, "may reset the line settings too")}};
    return driver;
}

DriverInfo Radwag() {
    DriverInfo driver{"radwag",
                      "Radwag",
                      "balances and terminals of the common command set",
                      "WbalanceRadwag",
                      {9600, 7, 2, 0, 0},
                      ReadRadwag,
                      Plain<WbalanceRadwag>};
    driver.modes = "stable: S; auto: S, else SI; now: SI";
    driver.operations = {
        {Operation::Tare, Trusted(Tare, "zeroes instead when the balance refuses the tare")},
        {Operation::Zero, Trusted(Zero<WbalanceRadwag>)}};
    return driver;
}

DriverInfo Kern() {
    DriverInfo driver{"kern",
                      "Kern",
                      "EW, EG-N, EWB",
                      "WbalanceKern_EW_EGN_EWB",
                      {1200, 8, 0, 2, 0},
                      ReadKern,
                      // The driver's own check weighs, and weighing checks first.
                      Quiet<WbalanceKern_EW_EGN_EWB>};
    driver.modes =
        "stable: O9, 5 s, and no weight when its status is blank; auto: O9, else the mean of five "
        "O8; now: O8";
    driver.operations = {{Operation::Tare, Trusted(Tare)}};
    return driver;
}

DriverInfo Gibertini() {
    DriverInfo driver{"gibertini",
                      "Gibertini",
                      "CRYSTAL, EU-C (CRYSTAL protocol)",
                      "WbalanceGibertini",
                      {9600, 7, LineSettings::kKeepParity, 0, 0},
                      ReadGibertini,
                      // The driver's own check weighs, and weighing checks first.
                      Quiet<WbalanceGibertini>};
    driver.modes =
        "all alike: B, the first valid record within 20 s; with stable no weight when that record "
        "is not stable";
    // Its record says that it is taring (T), and whether the pan is at rest (S) or not yet.
    driver.operations = {{Operation::Tare, Answered(Tare, "T", "TS")}};
    return driver;
}

template <class Driver>
DriverInfo Marked(const char* name, const char* maker, const char* models,
                  const char* driverClass) {
    // The driver's own check wants a stable weight, also before one that may be moving.
    DriverInfo driver{name,       maker,        models, driverClass, {2400, 8, 0, 0, 0},
                      ReadMarked, Quiet<Driver>};
    driver.readyFirst = true;
    driver.modes = "stable and auto: five requests for a stable weight; now: also while moving";
    driver.operations = {{Operation::Tare, Weighed(Tare)}};
    return driver;
}

DriverInfo ScaleHouse() {
    DriverInfo driver{"scale-house",
                      "Scale House",
                      "ALD",
                      "WbalanceScaleHouseALD",
                      {2400, 7, 0, 0, 0},
                      ReadTicket,
                      Quiet<WbalanceScaleHouseALD>};
    driver.readyFirst = true;
    driver.modes =
        "auto and now: P, the net weight of the ticket; stable: no weight, because a ticket does "
        "not tell whether it is stable";
    driver.operations = {{Operation::Tare, Weighed(Tare, "zeroes, then tares")}};
    return driver;
}

}  // namespace

const std::vector<DriverInfo>& Drivers() {
    static const std::vector<DriverInfo> drivers = {
        MettlerToledo(),
        MettlerPm(),
        MettlerWithSwitch<WbalanceMettlerPR2003>("mettler-pr2003", "PR2003 and the PR line",
                                                 "WbalanceMettlerPR2003", {2400, 7, 2, 0, 0}),
        MettlerWithSwitch<WbalanceMettlerXS>("mettler-xs", "XS", "WbalanceMettlerXS",
                                             {9600, 8, 0, 0, 0}),
        MettlerWithPanel<WbalanceMettlerSB32001>("mettler-sb32001", "SB32001",
                                                 "WbalanceMettlerSB32001", {2400, 7, 2, 0, 0}),
        Sartorius(),
        Ohaus(),
        Radwag(),
        Kern(),
        Gibertini(),
        Marked<WbalanceDIC_XL1800>("denver-xl1800", "Denver Instrument", "XL-1800",
                                   "WbalanceDIC_XL1800"),
        Marked<WbalanceSetra_EL_2000S>("setra-el2000s", "Setra", "EL-2000S",
                                       "WbalanceSetra_EL_2000S"),
        ScaleHouse()};
    return drivers;
}

const DriverInfo& FindDriver(const std::string& name) {
    std::string names;
    for (const auto& driver : Drivers()) {
        if (driver.name == name) return driver;
        names += (names.empty() ? "" : ", ") + driver.name;
    }
    throw ToolError(ExitCode::Usage, "there is no driver \"" + name + "\"; there are: " + names);
}

std::string WordFor(Operation operation) {
    switch (operation) {
        case Operation::Weigh:
            return "weigh";
        case Operation::Tare:
            return "tare";
        case Operation::Zero:
            return "zero";
        case Operation::PresetTare:
            return "preset-tare";
        case Operation::Display:
            return "display";
        case Operation::SwitchOn:
            return "on";
        case Operation::SwitchOff:
            return "off";
        case Operation::FactoryReset:
            return "factory-reset";
        case Operation::Ask:
            return "ask";
    }
    return "";
}

}  // namespace tool
