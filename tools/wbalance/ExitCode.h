#pragma once

namespace tool {

/// The exit codes of `wbalance`. They are part of its interface: scripts branch on them.
enum class ExitCode {
    Done = 0,           ///< the weight, or the operation, is there
    Usage = 2,          ///< the command line asks for something that does not exist
    PortFailed = 3,     ///< the port is missing, held, forbidden, or refuses the settings
    Silent = 4,         ///< nothing came back
    NotUnderstood = 5,  ///< bytes came back, but no weight or confirmation that can be relied on
    Overload = 6,       ///< the balance is overloaded
    Underload = 7,      ///< the balance is underloaded: the pan is off, or the zero too far away
    NotStable = 8,      ///< no stable weight in time, or the balance is busy
    Refused = 9,        ///< the balance reports an error, a refusal, calibration or stand-by
    OtherUnit = 10,     ///< the weight is in another unit than grams
    Truncated = 11,     ///< the record was cut off, or longer than the driver takes
    Internal = 70,      ///< the library or the tool itself gave up
    Interrupted = 130   ///< Ctrl-C
};

}  // namespace tool
