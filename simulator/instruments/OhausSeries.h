#pragma once

#include <string>
#include <vector>

#include "simulator/Switches.h"

namespace simulator {

/// A unit as a command chooses it: by its number, and as it is printed.
struct OhausUnit {
    int number;
    std::string text;
    double grams;
    bool countsPieces = false;
};

/// A series of Ohaus balances: which commands it has and what it acknowledges.
struct OhausSeries {
    std::string name;                   ///< of the switch
    std::string line;                   ///< layout of its line
    bool acknowledges = false;          ///< says "OK!" when something was set
    bool refuses = false;               ///< says "ES" to what it does not know; else nothing
    bool hasPrintCommands = false;      ///< IP, Z, ON, OFF, PSN, PV: the newer set
    bool hasAutoPrintCommands = false;  ///< CP, xP, SLP, SLZP
    bool presetsTare = false;           ///< xT
    bool presetsTareInGrams = false;    ///< and not in the unit that is shown
    bool saysSettings = false;          ///< PM, PU, PT
    bool choosesModeAndUnit = false;    ///< xM, M, xU, U
    bool choosesStability = false;      ///< 0S and 1S
    bool choosesAcknowledging = false;  ///< 0RL and 1RL
    bool hasDoors = false;              ///< WI
    bool hasFormats = false;            ///< xFMT
    bool printsOverload = false;        ///< a line of words out of range; else nothing
    int weighingMode = 0;               ///< number of the mode for weighing
    int countingMode = -1;              ///< and for counting; -1 where it is not known
    std::vector<OhausUnit> units;
};

/// A printed line in one of the layouts of the switch "line"; without unit where that is empty.
std::string OhausLine(const std::string& layout, const std::string& digits, const std::string& unit,
                      bool isStable, bool isNet);

const OhausSeries& ChosenOhausSeries(const Switches& switches);
std::vector<SwitchDescription> OhausSwitches();

}  // namespace simulator
