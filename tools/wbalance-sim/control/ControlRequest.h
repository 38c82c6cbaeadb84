#pragma once

#include <string>

#include "simulator/VirtualBench.h"

/// A request to a running bench from another process: the instrument, and the change.
struct ControlRequest {
    std::string device;  ///< "ttyUSB1" or a whole path; empty: the only instrument that there is
    std::string words;   ///< as simulator::Change::Parse reads them, or "status"

    std::string Message() const { return device + "\n" + words; }
    static ControlRequest OfMessage(const std::string& message);
};

/// Carries the request out and returns the answer: nothing, the new path of an adapter that was
/// plugged in, or a line for each instrument for "status". Throws std::invalid_argument with a
/// sentence that says what is allowed.
std::string CarryOut(const ControlRequest& request, simulator::VirtualBench& bench);
