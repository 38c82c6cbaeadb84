#include "simulator/EventLog.h"

namespace simulator {
namespace {

constexpr std::size_t kMostEvents = 10'000;
constexpr std::size_t kMostBytes = std::size_t{1024} * 1024;

}  // namespace

const LineEvent& EventLog::Add(const LineEvent& event) {
    events_.push_back(event);
    bytes_ += event.bytes.size();
    while (events_.size() > kMostEvents || (events_.size() > 1 && bytes_ > kMostBytes)) {
        bytes_ -= events_.front().bytes.size();
        events_.pop_front();
    }
    return events_.back();
}

void EventLog::Clear() {
    events_.clear();
    bytes_ = 0;
}

}  // namespace simulator
