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
    std::string name;           ///< of the switch
    std::string line;           ///< layout of its line
    bool acknowledges;          ///< says "OK!" when something was set
    bool refuses;               ///< says "ES" to what it does not know; else nothing
    bool hasPrintCommands;      ///< IP, Z, ON, OFF, PSN, PV: the newer set
    bool hasAutoPrintCommands;  ///< CP, xP, SLP, SLZP
    bool saysSettings;          ///< PM, PU, PT and xT
    bool choosesModeAndUnit;    ///< xM, M, xU, U
    bool hasFormats;            ///< xFMT
    int weighingMode;           ///< number of the mode for weighing
    int countingMode;           ///< and for counting; -1 where it is not known
    std::vector<OhausUnit> units;
};

/// A printed line in one of the layouts of the switch "line"; without unit where that is empty.
std::string OhausLine(const std::string& layout, const std::string& digits, const std::string& unit,
                      bool isStable, bool isNet);

const OhausSeries& ChosenOhausSeries(const Switches& switches);
std::vector<SwitchDescription> OhausSwitches();

}  // namespace simulator
