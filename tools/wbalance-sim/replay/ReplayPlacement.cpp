#include "ReplayPlacement.h"

#include <iostream>
#include <stdexcept>

#include "replay/RecordedInstrument.h"
#include "simulator/line/DeviceName.h"

void ReplayPlacement::AddTo(arguments::Command command) {
    command.AddOption("FILE", file_, "What wbalance --record has written");
    command.AddFlag("--fast", fast_, "Answer at once, not after the pauses of the record");
    Placement::AddTo(command);
}

std::shared_ptr<Playback> ReplayPlacement::SharedPlayback() const {
    if (file_.empty()) throw std::invalid_argument("which record? See wbalance-sim replay --help");
    const auto complain = [](const std::string& sentence) {
        std::cerr << "wbalance-sim: " + sentence + "\n";
    };
    if (!playback_) playback_ = std::make_shared<Playback>(record::Read(file_), file_, complain);
    return playback_;
}

simulator::CatalogEntry ReplayPlacement::Entry() const {
    return RecordedInstrumentEntry(SharedPlayback(), fast_);
}

bool ReplayPlacement::Conclude() {
    return SharedPlayback()->Conclude();
}

std::string ReplayPlacement::UsualDevice() const {
    return simulator::ServedDevice(SharedPlayback()->Record().header.port)
        .value_or(Placement::UsualDevice());
}
