#pragma once

#include <functional>
#include <string>
#include <type_traits>
#include <vector>

#include "ScriptedTest.h"

namespace scripted {

/// What comes of an operation when one call on the port fails.
struct FailingCall {
    std::string call;  ///< as the transcript names it, for example `write "S\r\n"`
    int result;        ///< what the operation returns
    std::string
        port;  ///< "open", "held" (after an open that failed), "closed" or "gone" (for good)
    /// Any other one follows the row in which the same call refuses.
    PortFault fault = PortFault::Refuse;
};

template <class Driver>
std::string PortOf(const Driver& driver) {
    const Line& line = Line::Here();
    if (line.PortObjects() == 0) return driver.serialObject == nullptr ? "gone" : "closed";
    if (line.PortObjects() > 1 || driver.serialObject == nullptr) return "left behind";
    return line.IsOpen() ? "open" : "held";
}

// Not deduced, so that a lambda will do.
template <class Driver>
using Step = std::function<void(std::common_type_t<Driver>&)>;
template <class Driver>
using Operation = std::function<int(std::common_type_t<Driver>&)>;

/// Runs `operation` on a new driver once for each of the calls that it makes on the port, listed in
/// their order, and lets that one fail. `script` sets up the line and the driver before; what has
/// to hold of a driver afterwards, whichever call failed, is said by `afterwards`.
template <class Driver, class Tested = Open<Driver>>
void ExpectWhenEachCallFails(const std::vector<FailingCall>& calls, const Step<Tested>& script,
                             const Operation<Tested>& operation,
                             const Step<Tested>& afterwards = {}) {
    Line& line = Line::Here();
    int number = 0;
    for (const FailingCall& row : calls) {
        if (row.fault == PortFault::Refuse) ++number;
        SCOPED_TRACE("call " + std::to_string(number) + ": " + row.call);
        line.Reset();
        Tested driver;
        script(driver);
        line.FailCall(line.CallCount() + number, row.fault);
        EXPECT_EQ(operation(driver), row.result);
        const bool refused = row.fault == PortFault::Refuse;
        EXPECT_THAT(
            line.Transcript(),
            testing::Contains(testing::StartsWith(row.call + (refused ? ": refused" : ""))));
        EXPECT_EQ(PortOf(driver), row.port);
        if (afterwards) afterwards(driver);
    }
    line.Reset();
    Tested driver;
    script(driver);
    const int before = line.CallCount();
    operation(driver);
    EXPECT_EQ(line.CallCount() - before, number) << "calls without a failure";
}

}  // namespace scripted
