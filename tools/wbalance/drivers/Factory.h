#pragma once

#include <wbalance/CSerialObject.h>
#include <wbalance/Cwbalance.h>
#include <wbalance/WithLineReadiness.h>

#include <memory>

namespace tool {

/// The driver as it is: its own readiness check resets or detects, and keeps count of it.
template <class Driver>
std::unique_ptr<Cwbalance> Plain() {
    return std::make_unique<Driver>();
}

/// The driver with a readiness check that sends nothing, where its own would spoil the reading that
/// follows, end in a circle, or cost one reading more.
template <class Driver>
std::unique_ptr<Cwbalance> Quiet() {
    return std::make_unique<WithLineReadiness<Driver>>();
}

/// A quiet driver that resets its instrument to factory settings and sees the commands off: the
/// driver waits for no answer, and what no wait follows stays in the port's buffer.
template <class Driver>
class Resetting : public WithLineReadiness<Driver> {
 public:
    int RestoreFactorySettings() override {
        const int result = Driver::RestoreFactorySettings();
        if (result == 0 || this->serialObject == nullptr) return 0;
        char ignored[64];
        // A wait that finds unread data sends nothing, so one is not enough.
        this->serialObject->ReceiveAnswer(ignored, sizeof ignored, 3, nullptr);
        return result;
    }
};

}  // namespace tool
