#pragma once

#include <string>

#include "simulator/VirtualBench.h"

/// What is asked of a running bench from outside: which instrument, and what is to be done with it.
struct ControlRequest {
    std::string device;  ///< "ttyUSB1" or a whole path; empty: the only instrument that there is
    std::string words;   ///< as simulator::Change::Parse reads them, or "status"

    std::string Message() const { return device + "\n" + words; }
    static ControlRequest OfMessage(const std::string& message);
};

/// Does what is asked and returns what there is to say of it: nothing, the path under which an
/// adapter has come back, or for "status" a line for each instrument. Throws std::invalid_argument,
/// saying what to ask instead.
std::string CarryOut(const ControlRequest& request, simulator::VirtualBench& bench);
