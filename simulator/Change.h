#pragma once

#include <string>

#include "simulator/Fault.h"
#include "simulator/instruments/Dialect.h"

namespace simulator {

/// One thing that is done to an instrument while it runs, in the words of a script and of
/// `wbalance-sim control`.
struct Change {
    enum class Kind {
        Load,       ///< `grams` lie on the pan
        Setting,    ///< `text` is a switch, "name=value"
        Fault,      ///< `fault` begins; its times count from the change
        EndFaults,  ///< the faults named `text` that are in force end; empty: all of them
        PlugIn,     ///< the unplugged adapter is back as `text`; empty: under its old name
        Press,      ///< someone presses `key`
    };

    Kind kind = Kind::Load;
    double grams = 0;
    std::string text;
    Fault fault;
    Key key = Key::Print;

    /// Reads one of
    ///   load GRAMS noise GRAMS, drift GRAMS-PER-HOUR switch NAME=VALUE fault NAME[=VALUE] [at
    ///   START] [for DURATION] end [NAME] unplug [at START] [for DURATION] [as DEVICE] plug-in [as
    ///   DEVICE] press print|tare|zero with blanks and tabs between the words. Throws
    ///   std::invalid_argument, saying what is allowed, for other text. It does not check that the
    ///   instrument has the switch: setting the switch does.
    static Change Parse(const std::string& text);
};

}  // namespace simulator
