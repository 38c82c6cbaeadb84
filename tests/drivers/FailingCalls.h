#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ScriptedTest.h"

namespace scripted {

/// What comes of an operation when one call on the port fails.
struct FailingCall {
    std::string call;  ///< as the transcript names it, for example `write "S\r\n"`
    int result;        ///< what the operation returns
    std::string
        port;  ///< "open", "held" (after an open that failed), "closed" or "gone" (for good)
};

inline std::vector<FailingCall> operator+(std::vector<FailingCall> first,
                                          const std::vector<FailingCall>& then) {
    first.insert(first.end(), then.begin(), then.end());
    return first;
}

template <class Driver>
std::string PortOf(const Open<Driver>& driver) {
    if (driver.serialObject == nullptr) return "gone";
    if (Line::Here().PortObjects() == 0) return "closed";
    return Line::Here().IsOpen() ? "open" : "held";
}

/// Runs `operation` on a new driver once for each of the calls that it makes on the port, listed in
/// their order, and lets that one fail. `script` sets up the line and the driver before.
template <class Driver>
void ExpectWhenEachCallFails(const std::vector<FailingCall>& calls,
                             const std::function<void(Open<Driver>&)>& script,
                             const std::function<int(Open<Driver>&)>& operation) {
    Line& line = Line::Here();
    for (std::size_t i = 0; i <= calls.size(); ++i) {
        line.Reset();
        Open<Driver> driver;
        script(driver);
        const int before = line.CallCount();
        if (i == calls.size()) {
            operation(driver);
            EXPECT_EQ(line.CallCount() - before, static_cast<int>(i)) << "calls without a failure";
            return;
        }
        SCOPED_TRACE("call " + std::to_string(i + 1) + ": " + calls[i].call);
        line.FailCall(before + static_cast<int>(i) + 1);
        EXPECT_EQ(operation(driver), calls[i].result);
        EXPECT_THAT(line.Transcript(), testing::Contains(calls[i].call + ": refused"));
        EXPECT_EQ(PortOf(driver), calls[i].port);
    }
}

}  // namespace scripted
