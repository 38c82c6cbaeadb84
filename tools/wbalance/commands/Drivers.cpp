#include "Drivers.h"

#include <memory>

#include "ExampleInstruments.h"
#include "FormatOptions.h"
#include "drivers/DriverTable.h"
#include "output/Columns.h"
#include "output/Json.h"
#include "output/Stream.h"

namespace tool {
namespace {

constexpr char kExamples[] = R"(Examples:
  wbalance drivers
  wbalance drivers {other}
  wbalance drivers --json
)";

struct Options {
    std::string name;
    bool json = false;
};

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

std::string Json(const DriverInfo& driver) {
    QJsonObject object;
    object["driver"] = JsonText(driver.name);
    object["maker"] = JsonText(driver.maker);
    object["models"] = JsonText(driver.models);
    object["class"] = JsonText(driver.driverClass);
    object["line"] = JsonText(driver.line.Text());
    object["modes"] = JsonText(driver.modes);
    QJsonObject operations;
    for (const auto& [operation, info] : driver.operations)
        operations[JsonText(WordFor(operation))] = JsonText(info.note);
    object["operations"] = operations;
    return JsonLine(object);
}

ExitCode Run(const Options& options) {
    if (!options.json) {
        options.name.empty() ? List() : Describe(FindDriver(options.name));
    } else if (!options.name.empty()) {
        PrintLine(Json(FindDriver(options.name)));
    } else {
        for (const auto& driver : Drivers())
            PrintLine(Json(driver));
    }
    return ExitCode::Done;
}

}  // namespace

void AddDrivers(arguments::Command application, ExitCode& exitCode) {
    const auto command = application.AddSubcommand("drivers", "List the drivers, or describe one");
    command.Footer(texts::WithExamples(kExamples));
    const auto options = std::make_shared<Options>();
    command.AddOption("NAME", options->name, "the driver to describe").TypeName("");
    AddJsonFlag(command, options->json, "one JSON object per line");
    command.Callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace tool
