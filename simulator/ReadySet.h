#pragma once

#include <map>
#include <set>
#include <utility>
#include <vector>

#include "simulator/ConnectedInstrument.h"

namespace simulator {

/// Which instruments of a bench have something to do. A wait costs the same whether one instrument
/// or a thousand are watched. Used from one thread, but for wake.
class ReadySet {
 public:
    ReadySet();  ///< throws std::system_error when the system gives no descriptors
    ~ReadySet();
    ReadySet(const ReadySet&) = delete;
    ReadySet& operator=(const ReadySet&) = delete;

    /// Watches the instrument's present descriptors and deadline, until wait has named it once.
    /// Call again when it was served and when they have changed.
    void Watch(ConnectedInstrument& instrument);

    /// Sleeps until an instrument is ready or somebody wakes; returns the instruments that are
    /// ready.
    std::vector<ConnectedInstrument*> Wait();

    /// Ends the wait that is going on, or else the next one; from any thread.
    void Wake() const;

 private:
    using TimePoint = ConnectedInstrument::Clock::time_point;

    void WatchForever(int descriptor) const;
    void WatchOnce(int descriptor, ConnectedInstrument& instrument) const;
    void SetDeadline(ConnectedInstrument& instrument, TimePoint deadline);
    void SetTimer();

    int epoll_ = -1;
    int wakeUp_ = -1;
    int timer_ = -1;
    TimePoint timerSet_ = TimePoint::max();
    std::map<ConnectedInstrument*, TimePoint> deadlines_;
    std::set<std::pair<TimePoint, ConnectedInstrument*>> byDeadline_;
};

}  // namespace simulator
