#pragma once

#include <string>
#include <vector>

#include "simulator/ConnectedInstrument.h"

namespace CLI {
class App;
}

/// What the command line says of one instrument.
class InstrumentOptions {
 public:
    /// Declares the instrument's options on a command, to be filled by its parsing.
    void addTo(CLI::App& command);

    /// The instrument that is meant. Throws std::invalid_argument when there is none of this name.
    simulator::CatalogEntry entry() const;

    /// How it is to be set up. Throws std::invalid_argument or std::runtime_error for what does
    /// not exist, is not allowed or can't be read.
    simulator::Options setUp() const;

 private:
    std::string name_;
    std::vector<std::string> loads_;
    std::vector<std::string> switches_;
    std::vector<std::string> faults_;
    std::vector<std::string> scripts_;
    std::string line_;
    int port_ = 0;
    bool usb_ = false;
    bool paced_ = false;
};
