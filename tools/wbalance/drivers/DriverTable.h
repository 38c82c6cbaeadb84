#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "line/LineSettings.h"
#include "process/Request.h"
#include "readings/Dialect.h"

class Cwbalance;

namespace tool {

/// All that the tool knows of one driver of the library.
struct DriverInfo {
    /// Calls an operation of the driver that the table's row constructs.
    using Step = std::function<int(Cwbalance& balance, const Request& request)>;

    std::string name;    ///< as the command line has it: "mettler-toledo"
    std::string maker;   ///< "Mettler Toledo"
    std::string models;  ///< the instruments, for people
    std::string driverClass;
    LineSettings line;  ///< the driver's own defaults
    Dialect dialect;    ///< how its instrument's answers are to be read

    std::function<std::unique_ptr<Cwbalance>()> construct;
    bool readyFirst = false;  ///< Weight and the like need an IsReady that opens the port

    std::string modes;  ///< what stable, auto and now do, for people
    std::map<Operation, Step> operations;

    double leastPresetTare = 0.0;           ///< grams
    double greatestPresetTare = 999999.99;  ///< grams
    std::size_t longestText = 0;            ///< characters of a display text
    std::string tareNote;  ///< what tare does where it is not just that, else empty

    bool Has(Operation operation) const { return operations.count(operation) != 0; }
};

/// Every driver of the library, in the order in which they are listed.
const std::vector<DriverInfo>& Drivers();

/// The driver of that name. Throws ToolError that names the drivers there are.
const DriverInfo& FindDriver(const std::string& name);

}  // namespace tool
