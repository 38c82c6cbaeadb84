#include "DriverTable.h"

#include <wbalance/wbalance.h>

#include "ToolError.h"

namespace tool {
namespace {

/// A driver whose settings can be seen.
template <class Driver>
class Seen : public Driver {
 public:
    LineSettings Line() const {
        return {this->baudRate, this->dataBits, this->parityCode, this->stopBitsCode,
                this->flowControlCode};
    }
};

template <class Driver>
DriverInfo Row(const char* name, const char* driverClass) {
    DriverInfo info = InfoOf<Driver>();
    info.name = name;
    info.driverClass = driverClass;
    info.line = Seen<Driver>().Line();
    return info;
}

}  // namespace

const std::vector<DriverInfo>& Drivers() {
#define WBALANCE_ROW(name, Class) Row<Class>(name, #Class),
    static const std::vector<DriverInfo> drivers = {WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_ROW)};
#undef WBALANCE_ROW
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

std::string WordFor(Operation operation) {
    switch (operation) {
        case Operation::Weigh:
            return "weigh";
        case Operation::Tare:
            return "tare";
        case Operation::Zero:
            return "zero";
        case Operation::PresetTare:
            return "preset-tare";
        case Operation::Display:
            return "display";
        case Operation::SwitchOn:
            return "on";
        case Operation::SwitchOff:
            return "off";
        case Operation::FactoryReset:
            return "factory-reset";
        case Operation::Ask:
            return "ask";
    }
    return "";
}

}  // namespace tool
