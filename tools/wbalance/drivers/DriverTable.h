#pragma once

#include <Instruments.h>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Identity.h"
#include "MenuSettings.h"
#include "Recognition.h"
#include "line/LineSettings.h"
#include "process/Request.h"
#include "readings/Interpreter.h"

class Cwbalance;
#define WBALANCE_DECLARE_CLASS(name, Class) class Class;
WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DECLARE_CLASS)
#undef WBALANCE_DECLARE_CLASS

namespace tool {

/// How an operation of a driver is called, and what shows that the instrument has done it.
struct OperationInfo {
    /// Calls the operation of the driver that the table's row constructs; 1 is success.
    std::function<int(Cwbalance& balance, const Request& request)> call;
    /// The start of the command that carries it out, where its answer is to be looked at because
    /// the driver takes any answer, or none, for success; else empty.
    std::string command;
    /// What the answer to that command must hold.
    std::string confirmation;
    /// Whether the driver decides by a weight that it reads afterwards; that must be one.
    bool checkedByWeight = false;
    /// What it does where that is not what its name says; else empty.
    std::string note;
    /// Of a preset tare that is checked so, the start of the command that sets it: the weight must
    /// be another behind it than before. Else empty.
    std::string setter = {};
    /// Whether it is a zeroing in place of the tare that it is named after.
    bool zeroes = false;
    /// The command that the driver falls back on where the balance refuses the operation, and whose
    /// success it reports as that of the operation; what is said then. Else empty.
    std::string fallback = {};
    std::string fellBack = {};
};

/// All that the tool knows of one driver of the library.
struct DriverInfo {
    std::string maker;      ///< "Mettler Toledo"
    std::string models;     ///< the instruments, for people
    Interpreter interpret;  ///< how its instrument's answers are to be read

    std::function<std::unique_ptr<Cwbalance>()> construct;
    bool readyFirst = false;  ///< some operations need an IsReady before them that opens the port

    std::string modes = {};  ///< what stable, auto and now do, for people
    std::map<Operation, OperationInfo> operations = {};
    /// Commands that the instrument answers at once, one after the other, where it says nothing to
    /// a request until its pan is at rest. Empty where it always says something.
    std::vector<std::string> question = {};
    Recognition recognition = {};  ///< how its instrument is found on a port
    /// What it is asked about itself, the surest answered first.
    std::vector<IdentityQuestion> identity = {};
    MenuSettings menu = {};  ///< what `doctor` tells to set

    double leastPresetTare = 0.0;           ///< grams
    double greatestPresetTare = 999999.99;  ///< grams
    std::size_t longestText = 57;           ///< characters of a display text

    std::string name = {};         ///< as the command line has it
    std::string driverClass = {};  ///< of the library
    LineSettings line = {};        ///< the driver's own defaults

    bool Has(Operation operation) const { return operations.count(operation) != 0; }
};

/// What is known of a driver, but for its name, class and line settings, which come from the list
/// of instruments and from the driver itself: instruments/.
template <class Driver>
DriverInfo InfoOf();

#define WBALANCE_DECLARE_INFO(name, Class) \
    template <>                            \
    DriverInfo InfoOf<Class>();
WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DECLARE_INFO)
#undef WBALANCE_DECLARE_INFO

/// Every driver of the library, in the order in which they are listed.
const std::vector<DriverInfo>& Drivers();

/// The driver of that name. Throws ToolError that names the drivers there are.
const DriverInfo& FindDriver(const std::string& name);

/// The operation's name on the command line: "preset-tare".
std::string WordFor(Operation operation);

}  // namespace tool
