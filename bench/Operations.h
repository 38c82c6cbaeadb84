#pragma once

#include <wbalance/wbalance.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace bench {

/// One operation of one driver, with an instrument that answers it at once.
struct Operation {
    struct Answer {
        std::string command;
        std::string bytes;
    };

    std::string driver;
    std::string name;
    std::string line;             ///< the driver's settings, such as "2400,7E1"
    std::vector<Answer> answers;  ///< the instrument answers these commands and no other
    std::function<std::unique_ptr<Cwbalance>()> make;
    /// What a host has done before: the port is open, a reset or a detection is over.
    std::function<int(Cwbalance&)> prepare;
    std::function<int(Cwbalance&)> run;
};

/// Every operation and mode that ends in success, each driver with a time-out of 0 (100 ms), so
/// that waits which are the time-out's doing are short.
const std::vector<Operation>& Operations();

}  // namespace bench
