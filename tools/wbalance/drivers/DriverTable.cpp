#include "DriverTable.h"

#include <wbalance/wbalance.h>

#include "ToolError.h"

namespace tool {
namespace {

// The driver as it is: its own readiness check resets or detects, and keeps count of it.
template <class Driver>
std::unique_ptr<Cwbalance> Plain() {
    return std::make_unique<Driver>();
}

// The driver with a readiness check that sends nothing, where its own would spoil the reading that
// follows or cost one more.
template <class Driver>
std::unique_ptr<Cwbalance> Quiet() {
    return std::make_unique<WithLineReadiness<Driver>>();
}

int Tare(Cwbalance& balance, const Request& /*request*/) {
    return balance.Tare();
}

DriverInfo MettlerToledo() {
    DriverInfo driver;
    driver.name = "mettler-toledo";
    driver.maker = "Mettler Toledo";
    driver.models = "any balance with the MT-SICS commands @, Z, S, SI";
    driver.driverClass = "WbalanceMettlerToledo";
    driver.line = {2400, 7, 2, 0, 0};
    driver.dialect = ReadMtSics;
    // The reset of the driver's own check is answered "I4 A ...", and its 4 is taken for the
    // weight.
    driver.construct = Quiet<WbalanceMettlerToledo>;
    driver.modes = "stable: S; auto: S, else the mean of five SI; now: SI";
    driver.operations = {{Operation::Tare, Tare}, {Operation::Zero, Tare}};
    driver.tareNote = "zeroes the balance (Z), which it refuses with a load on the pan";
    return driver;
}

}  // namespace

const std::vector<DriverInfo>& Drivers() {
    static const std::vector<DriverInfo> drivers = {MettlerToledo()};
    return drivers;
}

const DriverInfo& FindDriver(const std::string& name) {
    std::string names;
    for (const auto& driver : Drivers()) {
        if (driver.name == name) return driver;
        names += (names.empty() ? "" : ", ") + driver.name;
    }
    throw ToolError(ExitCode::Usage, "there is no driver \"" + name + "\"; there are: " + names);
}

}  // namespace tool
