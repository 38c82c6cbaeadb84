#include "Doctor.h"

#include <QtCore/QJsonObject>
#include <map>
#include <memory>

#include "BalanceOptions.h"
#include "ExampleInstruments.h"
#include "FormatOptions.h"
#include "doctor/Doctor.h"
#include "output/Columns.h"
#include "output/Json.h"
#include "output/Stream.h"

namespace tool {
namespace {

constexpr char kExamples[] = R"(Examples:
  wbalance doctor -d {balance} -p 0
  wbalance doctor -d {other} -p 3 --usb --line 9600,8N1

Checks the port, who may open it, who has it open, the adapter, the control lines, what comes
unasked, the answer and what it means. The last line is the diagnosis. The exit codes are those of
weigh.
)";

struct Options {
    BalanceOptions balance;
    bool json = false;
};

void PrintFinding(const std::string& what, const std::string& seen) {
    PrintLine(Padded(what, 14) + " " + seen);
}

// All members are there, whatever the doctor came to see.
QJsonObject NothingSeen(const std::string& driver) {
    QJsonObject object;
    object["driver"] = JsonText(driver);
    for (const char* member : {"port", "access", "adapter", "controlLines", "line", "answer",
                               "model", "serialNumber", "softwareVersion", "weight"})
        object[member] = "";
    return object;
}

QString MemberFor(const std::string& what) {
    static const std::map<std::string, const char*> kOthers = {{"control lines", "controlLines"},
                                                               {"serial number", "serialNumber"},
                                                               {"software", "softwareVersion"}};
    const auto other = kOthers.find(what);
    return other == kOthers.end() ? QString::fromStdString(what) : QString(other->second);
}

Diagnosis Examine(const BalanceOptions& options, const Doctor::Tell& tell) {
    const DriverInfo& driver = FindDriver(options.driver);
    const LineSettings line =
        options.line.empty() ? driver.line : LineSettings::Parse(options.line, driver.line);
    return Doctor({&driver, options.Port(), line, options.timeoutSeconds, options.trace,
                   options.recordPath},
                  tell)
        .Examine();
}

ExitCode Run(const Options& options) {
    if (!options.json) {
        const Diagnosis diagnosis = Examine(options.balance, PrintFinding);
        PrintFinding("diagnosis", diagnosis.sentence);
        return diagnosis.code;
    }
    QJsonObject object = NothingSeen(options.balance.driver);
    const Diagnosis diagnosis =
        Examine(options.balance, [&object](const std::string& what, const std::string& seen) {
            object[MemberFor(what)] = JsonText(seen);
        });
    object["diagnosis"] = JsonText(diagnosis.sentence);
    object["exitCode"] = static_cast<int>(diagnosis.code);
    PrintLine(JsonLine(object));
    return diagnosis.code;
}

}  // namespace

void AddDoctor(arguments::Command application, ExitCode& exitCode) {
    const auto command = application.AddSubcommand(
        "doctor", "Find out why a balance does not give its weight, and what to do");
    command.Footer(texts::WithExamples(kExamples));
    const auto options = std::make_shared<Options>();
    options->balance.AddTo(command);
    AddJsonFlag(command, options->json, "one JSON object, also of what is wrong");
    command.Callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace tool
