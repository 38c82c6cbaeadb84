#pragma once

#include <map>
#include <set>
#include <utility>
#include <vector>

#include "simulator/ConnectedInstrument.h"

namespace simulator {

/// Finds out which instruments of a bench have something to do. The cost of a wait does not depend
/// on the number of instruments. All functions but Wake are called from one thread.
class ReadySet {
 public:
    ReadySet();  ///< throws std::system_error when the system gives no descriptors
    ~ReadySet();
    ReadySet(const ReadySet&) = delete;
    ReadySet& operator=(const ReadySet&) = delete;

    /// Watches the instrument's present descriptors and deadline until Wait has returned it once.
    /// Call it again after serving the instrument, and when descriptors or deadline have changed.
    void Watch(ConnectedInstrument& instrument);

    /// Sleeps until an instrument is ready or Wake is called. Returns the instruments that are
    /// ready.
    std::vector<ConnectedInstrument*> Wait();

    /// Ends the present wait, or the next one if there is none. May be called from any thread.
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
