#pragma once

#include <memory>
#include <string>

#include "Arguments.h"
#include "Placement.h"
#include "replay/Playback.h"

/// A record in an instrument's place.
class ReplayPlacement final : public Placement {
 public:
    void addTo(arguments::Command command) override;
    simulator::CatalogEntry entry() const override;
    bool conclude() override;

 protected:
    std::string usualDevice() const override;

 private:
    std::shared_ptr<Playback> playback() const;

    std::string file_;
    bool fast_ = false;
    mutable std::shared_ptr<Playback> playback_;  // read when it is first needed
};
