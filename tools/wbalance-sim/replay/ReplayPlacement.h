#pragma once

#include <memory>
#include <string>

#include "Arguments.h"
#include "Placement.h"
#include "replay/Playback.h"

/// A record in an instrument's place.
class ReplayPlacement final : public Placement {
 public:
    void AddTo(arguments::Command command) override;
    simulator::CatalogEntry Entry() const override;
    bool Conclude() override;

 protected:
    std::string UsualDevice() const override;

 private:
    std::shared_ptr<Playback> SharedPlayback() const;

    std::string file_;
    bool fast_ = false;
    mutable std::shared_ptr<Playback> playback_;  // read when it is first needed
};
