#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Arguments.h"
#include "simulator/ConnectedInstrument.h"

/// The options of one instrument on the bench: which instrument, at which port, and what happens to
/// it.
class Placement {
 public:
    Placement() = default;
    virtual ~Placement() = default;
    Placement(const Placement&) = delete;
    Placement& operator=(const Placement&) = delete;

    /// Declares the options on a command, to be filled by its parsing.
    virtual void AddTo(arguments::Command command);

    /// The instrument that is meant. Throws std::exception when there is none.
    virtual simulator::CatalogEntry Entry() const = 0;

    /// How it is to be set up. Throws std::invalid_argument or std::runtime_error for what does
    /// not exist, is not allowed or can't be read.
    virtual simulator::Options SetUp() const;

    /// Called after the bench has ended. Returns whether everything went as this instrument
    /// expects.
    virtual bool Conclude() { return true; }

 protected:
    /// The device when the command line names none.
    virtual std::string UsualDevice() const { return "/dev/ttyS0"; }

 private:
    std::vector<std::string> faults_;
    std::vector<std::string> scripts_;
    std::string line_;
    std::optional<int> port_;
    bool usb_ = false;
    std::string pace_;
};

/// An instrument of the catalog.
class CatalogPlacement final : public Placement {
 public:
    void AddTo(arguments::Command command) override;
    simulator::CatalogEntry Entry() const override;
    simulator::Options SetUp() const override;

 private:
    std::string name_;
    std::vector<std::string> loads_;
    std::vector<std::string> switches_;
};
