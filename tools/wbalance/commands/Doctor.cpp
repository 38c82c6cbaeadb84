#include "Doctor.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <memory>

#include "BalanceOptions.h"
#include "OutsideText.h"
#include "doctor/Doctor.h"

namespace tool {
namespace {

constexpr char kExamples[] =
    "Examples:\n"
    "  wbalance doctor -d mettler-toledo -p 0\n"
    "  wbalance doctor -d radwag -p 3 --usb --line 9600,8N1\n"
    "\n"
    "Looks at the port, who may use it and who holds it, the adapter, the control lines, what "
    "comes\n"
    "back and what it means; the last line is the diagnosis. The exit codes are those of weigh.\n";

ExitCode Run(const BalanceOptions& options) {
    const DriverInfo& driver = FindDriver(options.driver);
    const LineSettings line =
        options.line.empty() ? driver.line : LineSettings::Parse(options.line, driver.line);
    Doctor doctor(
        {&driver, options.Port(), line, options.timeoutSeconds, options.trace, options.recordPath},
        [](const std::string& what, const std::string& seen) {
            std::printf("%-14s %s\n", what.c_str(), outside::Printable(seen).c_str());
            std::fflush(stdout);
        });
    const Diagnosis diagnosis = doctor.Examine();
    std::printf("%-14s %s\n", "diagnosis", outside::Printable(diagnosis.sentence).c_str());
    return diagnosis.code;
}

}  // namespace

void AddDoctor(CLI::App& application, ExitCode& exitCode) {
    auto* command = application.add_subcommand(
        "doctor", "Find out why a balance does not give its weight, and what to do");
    command->footer(kExamples);
    const auto options = std::make_shared<BalanceOptions>();
    options->AddTo(*command);
    command->callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace tool
