#pragma once

#include <string>

#include "simulator/Fault.h"
#include "simulator/instruments/Dialect.h"

namespace simulator {

/// One thing that is done to an instrument while it runs, in the words of a script and of
/// `wbalance-sim control`.
struct Change {
    enum class Kind {
        load,       ///< `grams` lie on the pan
        setting,    ///< `text` is a switch, "name=value"
        fault,      ///< `fault` begins; its times count from the change
        endFaults,  ///< the faults named `text` that are in force end; empty: all of them
        plugIn,     ///< the unplugged adapter is back as `text`; empty: under its old name
        press,      ///< someone presses `key`
    };

    Kind kind = Kind::load;
    double grams = 0;
    std::string text;
    Fault fault;
    Key key = Key::print;

    /// Reads one of
    ///   load GRAMS
    ///   noise GRAMS, drift GRAMS-PER-HOUR
    ///   switch NAME=VALUE
    ///   fault NAME[=VALUE] [at START] [for DURATION]
    ///   end [NAME]
    ///   unplug [at START] [for DURATION] [as DEVICE]
    ///   plug-in [as DEVICE]
    ///   press print|tare|zero
    /// with blanks and tabs between the words. Throws std::invalid_argument, saying what is
    /// allowed, for other text. Whether the instrument has the switch shows when it is set.
    static Change parse(const std::string& text);
};

}  // namespace simulator
