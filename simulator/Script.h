#pragma once

#include <istream>
#include <string>
#include <vector>

#include "simulator/Change.h"
#include "simulator/Time.h"

namespace simulator {

/// One line of a script: what happens, and when.
struct ScriptStep {
    Time at;  ///< since the instrument was set up
    Change change;
    std::string place;  ///< "bench.script:3", for complaints
};

/// A script says what happens to an instrument, as plain text that people write:
///
///     # a parcel is put on, the balance is unplugged, and so on
///     0s      load 0
///     2s      load 100
///     +500ms  noise 0.02
///     5s      unplug for 2s as ttyUSB1
///     8s      fault silent for 2s
/// A line has a time and a change that Change::Parse reads. The time is counted from the set-up of
/// the instrument, or, with a plus sign, from the line before. "#" begins a comment. Lines may be
/// empty.
using Script = std::vector<ScriptStep>;

/// Reads a script, called `name` in complaints; its steps come in the order of their times. Throws
/// std::invalid_argument with the number of the line and what to write instead.
Script ReadScript(std::istream& text, const std::string& name);

/// Reads the script in a file. Throws std::runtime_error as well, when it can't be read.
Script ReadScriptFile(const std::string& path);

}  // namespace simulator
