#pragma once

#include <wbalance/CSerialObject.h>
#include <wbalance/Cwbalance.h>
#include <wbalance/WithLineReadiness.h>

#include <memory>
#include <string>

namespace tool {

/// A line on which a command can be sent as it is.
class Askable {
 public:
    virtual ~Askable() = default;
    /// Sends the command; an empty one only listens. 1 when anything came back up to a line feed or
    /// a time-out.
    virtual int Ask(std::string command) = 0;
};

/// A driver whose line takes other commands too.
template <class Driver>
class Asking : public Driver, public Askable {
 public:
    int Ask(std::string command) override {
        if (Driver::OpenAndClear() == 0) return 0;
        if (!command.empty() && this->serialObject->SendCommand(command.data()) == 0) return 0;
        char answer[512];
        return this->serialObject->ReceiveAnswer(answer, sizeof answer, 1, "\n");
    }
};

/// The driver itself. Its own readiness check resets the instrument or detects its protocol, and
/// remembers that it has done so.
template <class Driver>
std::unique_ptr<Cwbalance> Plain() {
    return std::make_unique<Asking<Driver>>();
}

/// The driver with a readiness check that sends nothing, where its own would spoil the reading that
/// follows, end in a circle, or cost one reading more.
template <class Driver>
std::unique_ptr<Cwbalance> LineReady() {
    return std::make_unique<Asking<WithLineReadiness<Driver>>>();
}

/// A LineReady() driver that resets its instrument to factory settings and waits until the commands
/// are transmitted. The driver itself does not read after them, and bytes that no read follows stay
/// in the port's buffer.
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
