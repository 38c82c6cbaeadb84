#include "Drivers.h"

#include <memory>

#include "drivers/DriverTable.h"
#include "output/Columns.h"
#include "output/Stream.h"

namespace tool {
namespace {

constexpr char kExamples[] =
    "Examples:\n"
    "  wbalance drivers\n"
    "  wbalance drivers radwag\n";

void List() {
    for (const auto& driver : Drivers()) {
        PrintLine(Padded(driver.name, 16) + " " + Padded(driver.line.Text(), 10) + " " +
                  driver.maker + ", " + driver.models);
    }
}

void Describe(const DriverInfo& driver) {
    PrintLine(driver.name + ": " + driver.maker + ", " + driver.models);
    PrintLine("  class          " + driver.driverClass);
    PrintLine("  line           " + driver.line.Text());
    PrintLine("  weigh --mode   " + driver.modes);
    for (const auto& [operation, info] : driver.operations)
        PrintLine("  " + Padded(WordFor(operation), 14) + " " +
                  (info.note.empty() ? "yes" : info.note));
}

}  // namespace

void AddDrivers(arguments::Command application, ExitCode& exitCode) {
    const auto command = application.AddSubcommand("drivers", "List the drivers, or describe one");
    command.Footer(kExamples);
    const auto name = std::make_shared<std::string>();
    command.AddOption("NAME", *name, "the driver to describe").TypeName("");
    command.Callback([name, &exitCode] {
        name->empty() ? List() : Describe(FindDriver(*name));
        exitCode = ExitCode::Done;
    });
}

}  // namespace tool
