#include "Drivers.h"

#include <cstdio>
#include <memory>

#include "ExitCode.h"
#include "drivers/DriverTable.h"

namespace tool {
namespace {

constexpr char kExamples[] =
    "Examples:\n"
    "  wbalance drivers\n"
    "  wbalance drivers radwag\n";

const std::map<Operation, std::string> kWords = {{Operation::Tare, "tare"},
                                                 {Operation::Zero, "zero"},
                                                 {Operation::PresetTare, "preset-tare"},
                                                 {Operation::Display, "display"},
                                                 {Operation::SwitchOn, "on"},
                                                 {Operation::SwitchOff, "off"},
                                                 {Operation::FactoryReset, "factory-reset"}};

std::string OperationsText(const DriverInfo& driver) {
    std::string text = "weigh";
    for (const auto& [operation, step] : driver.operations)
        text += " " + kWords.at(operation);
    return text;
}

void List() {
    for (const auto& driver : Drivers()) {
        std::printf("%-16s %-12s %s, %s\n", driver.name.c_str(), driver.line.Text().c_str(),
                    driver.maker.c_str(), driver.models.c_str());
    }
}

void Describe(const DriverInfo& driver) {
    std::printf("%s: %s, %s\n", driver.name.c_str(), driver.maker.c_str(), driver.models.c_str());
    std::printf("  class       %s\n", driver.driverClass.c_str());
    std::printf("  line        %s\n", driver.line.Text().c_str());
    std::printf("  operations  %s\n", OperationsText(driver).c_str());
    std::printf("  modes       %s\n", driver.modes.c_str());
    if (!driver.tareNote.empty()) std::printf("  tare        %s\n", driver.tareNote.c_str());
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
