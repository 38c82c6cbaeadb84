#include "Doctor.h"

#include <memory>

#include "BalanceOptions.h"
#include "ExampleDrivers.h"
#include "doctor/Doctor.h"
#include "output/Columns.h"
#include "output/Stream.h"

namespace tool {
namespace {

constexpr char kExamples[] = R"(Examples:
  wbalance doctor -d {driver} -p 0
  wbalance doctor -d {other} -p 3 --usb --line 9600,8N1

Checks the port, who may open it, who has it open, the adapter, the control lines, the answer and
what it means. The last line is the diagnosis. The exit codes are those of weigh.
)";

void PrintFinding(const std::string& what, const std::string& seen) {
    PrintLine(Padded(what, 14) + " " + seen);
}

ExitCode Run(const BalanceOptions& options) {
    const DriverInfo& driver = FindDriver(options.driver);
    const LineSettings line =
        options.line.empty() ? driver.line : LineSettings::Parse(options.line, driver.line);
    Doctor doctor(
        {&driver, options.Port(), line, options.timeoutSeconds, options.trace, options.recordPath},
        PrintFinding);
    const Diagnosis diagnosis = doctor.Examine();
    PrintFinding("diagnosis", diagnosis.sentence);
    return diagnosis.code;
}

}  // namespace

void AddDoctor(arguments::Command application, ExitCode& exitCode) {
    const auto command = application.AddSubcommand(
        "doctor", "Find out why a balance does not give its weight, and what to do");
    command.Footer(WithExampleDrivers(kExamples));
    const auto options = std::make_shared<BalanceOptions>();
    options->AddTo(command);
    command.Callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace tool
