#include "simulator/ReadySet.h"

#include <sys/epoll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <system_error>

namespace simulator {
namespace {

int Valid(int descriptor) {
    if (descriptor < 0)
        throw std::system_error(errno, std::generic_category(), "cannot serve instruments");
    return descriptor;
}

itimerspec At(ConnectedInstrument::Clock::time_point time) {
    const auto sinceBoot = time.time_since_epoch();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(sinceBoot);
    itimerspec timer = {};
    timer.it_value.tv_sec = seconds.count();
    timer.it_value.tv_nsec = std::chrono::nanoseconds(sinceBoot - seconds).count();
    return timer;
}

}  // namespace

ReadySet::ReadySet()
    : epoll_(Valid(::epoll_create1(EPOLL_CLOEXEC))),
      wakeUp_(Valid(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))),
      timer_(Valid(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK))) {
    WatchForever(wakeUp_);
    WatchForever(timer_);
}

ReadySet::~ReadySet() {
    for (const int descriptor : {epoll_, wakeUp_, timer_})
        ::close(descriptor);
}

void ReadySet::Watch(ConnectedInstrument& instrument) {
    for (const int descriptor : instrument.Descriptors())
        WatchOnce(descriptor, instrument);
    SetDeadline(instrument, instrument.Deadline());
}

std::vector<ConnectedInstrument*> ReadySet::Wait() {
    SetTimer();
    std::array<epoll_event, 64> events;
    const int count = ::epoll_wait(epoll_, events.data(), events.size(), -1);
    std::vector<ConnectedInstrument*> ready;
    const auto add = [&](void* instrument) {
        if (std::find(ready.begin(), ready.end(), instrument) == ready.end())
            ready.push_back(static_cast<ConnectedInstrument*>(instrument));
    };
    for (int i = 0; i < count; ++i) {
        eventfd_t wakes = 0;
        if (void* instrument = events[static_cast<std::size_t>(i)].data.ptr)
            add(instrument);
        else
            ::eventfd_read(wakeUp_, &wakes);
    }
    const TimePoint now = ConnectedInstrument::Clock::now();
    for (const auto& [deadline, instrument] : byDeadline_) {
        if (deadline > now) break;
        add(instrument);
    }
    return ready;
}

void ReadySet::Wake() const {
    ::eventfd_write(wakeUp_, 1);
}

void ReadySet::WatchForever(int descriptor) const {
    epoll_event event = {};
    event.events = EPOLLIN;
    Valid(::epoll_ctl(epoll_, EPOLL_CTL_ADD, descriptor, &event));
}

/// Once, because a closed terminal is always ready. So it does not matter either whether a
/// descriptor is still the one that was watched before.
void ReadySet::WatchOnce(int descriptor, ConnectedInstrument& instrument) const {
    epoll_event event = {};
    event.events = EPOLLIN | EPOLLONESHOT;
    event.data.ptr = &instrument;
    if (::epoll_ctl(epoll_, EPOLL_CTL_MOD, descriptor, &event) != 0)
        ::epoll_ctl(epoll_, EPOLL_CTL_ADD, descriptor, &event);
}

void ReadySet::SetDeadline(ConnectedInstrument& instrument, TimePoint deadline) {
    TimePoint& known = deadlines_.try_emplace(&instrument, TimePoint::max()).first->second;
    if (known == deadline) return;
    byDeadline_.erase({known, &instrument});
    if (deadline != TimePoint::max()) byDeadline_.emplace(deadline, &instrument);
    known = deadline;
}

void ReadySet::SetTimer() {
    const TimePoint first = byDeadline_.empty() ? TimePoint::max() : byDeadline_.begin()->first;
    if (first == timerSet_) return;
    timerSet_ = first;
    const itimerspec timer = first == TimePoint::max() ? itimerspec{} : At(first);
    ::timerfd_settime(timer_, TFD_TIMER_ABSTIME, &timer, nullptr);
}

}  // namespace simulator
