#include "Drivers.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "drivers/DriverTable.h"

namespace tool {
namespace {

constexpr char kExamples[] =
    "Examples:\n"
    "  wbalance drivers\n"
    "  wbalance drivers radwag\n";

void List() {
    for (const auto& driver : Drivers()) {
        std::printf("%-16s %-10s %s, %s\n", driver.name.c_str(), driver.line.Text().c_str(),
                    driver.maker.c_str(), driver.models.c_str());
    }
}

void Describe(const DriverInfo& driver) {
    std::printf("%s: %s, %s\n", driver.name.c_str(), driver.maker.c_str(), driver.models.c_str());
    std::printf("  class          %s\n", driver.driverClass.c_str());
    std::printf("  line           %s\n", driver.line.Text().c_str());
    std::printf("  weigh --mode   %s\n", driver.modes.c_str());
    for (const auto& [operation, info] : driver.operations)
        std::printf("  %-14s %s\n", WordFor(operation).c_str(),
                    info.note.empty() ? "yes" : info.note.c_str());
}

}  // namespace

void AddDrivers(CLI::App& application, ExitCode& exitCode) {
    auto* command = application.add_subcommand("drivers", "List the drivers, or describe one");
    command->footer(kExamples);
    const auto name = std::make_shared<std::string>();
    command->add_option("NAME", *name, "the driver to describe")->type_name("");
    command->callback([name, &exitCode] {
        name->empty() ? List() : Describe(FindDriver(*name));
        exitCode = ExitCode::Done;
    });
}

}  // namespace tool
