#pragma once

#include <string>
#include <vector>

#include "simulator/Switches.h"

namespace simulator {

/// A series of Sartorius balances: which commands it has and how its lines differ.
struct SbiSeries {
    /// What ESC P does while automatic print is on.
    enum class Print { GoesBetween, StopsAndStarts, Ends };

    std::string name;         ///< of the switch
    std::string model;        ///< in the answer to ESC x1_
    bool hasTareAlone;        ///< ESC U and ESC V: tare and zero apart
    bool hasFunctionKeys;     ///< ESC f3_ and f4_: zero and tare apart
    bool hasSoftKeys;         ///< ESC t and ESC kF4_
    bool saysSoftware;        ///< ESC x3_
    std::string printsToAll;  ///< command that prints on every interface; empty: none
    bool takesBareCommands;   ///< ESC may be left out
    Print print;
    std::string word;        ///< in front of the model
    std::string grossWord;   ///< identifier of a weight without tare
    bool signsZero;          ///< "+     0.00 g", not "      0.00 g"
    bool waitsForRest;       ///< whether ESC P waits as the switch "print" says
    bool endsWithBlankLine;  ///< behind what was printed
    bool canRestart;         ///< ESC S
    bool hasCalKey;          ///< ESC f1_
    bool hasKeysByName;      ///< ESC kZE_ and kT_: the keys for zero and tare
    std::string platform;    ///< in the answer to ESC i_; empty: not known
    bool saysLastKey;        ///< ESC x8_
    std::string typeText;    ///< command that shows a text on the display; empty: none
};

const SbiSeries& ChosenSbiSeries(const Switches& switches);
std::vector<SwitchDescription> SbiSwitches();

}  // namespace simulator
