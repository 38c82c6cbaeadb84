#include "Detect.h"

#include <QtCore/QJsonArray>
#include <memory>

#include "FormatOptions.h"
#include "OutsideText.h"
#include "ToolError.h"
#include "detect/Detector.h"
#include "detect/Identification.h"
#include "line/PortTrouble.h"
#include "output/Columns.h"
#include "output/Json.h"
#include "output/Stream.h"
#include "process/Session.h"

namespace tool {
namespace {

constexpr char kExamples[] = R"(Examples:
  wbalance detect --port 0
  wbalance detect -p 3 --usb --thorough

detect only asks for readings: it does not tare, zero, reset or set anything. (A Kern balance
that prints automatically stops this until it is switched on again.) It first tries every
instrument at its factory settings, which takes about 15 s. --thorough asks every question at
every usual setting, which takes some minutes.
)";

struct Options {
    std::string port = "0";
    bool usb = false;
    bool thorough = false;
    bool trace = false;
    bool json = false;
};

std::string PortArguments(const Options& options) {
    return "--port " + options.port + (options.usb ? " --usb" : "");
}

// What a host writes.
std::string CallsFor(PortNumber port, const LineSettings& line) {
    std::string calls =
        "balance.SetCommPort(" + std::to_string(port.number) + "); balance.SetCommConfig(";
    for (const int setting :
         {line.baudRate, line.parity, line.dataBits, line.stopBits, line.flowControl})
        calls += std::to_string(setting) + ", ";
    return calls + "1, '" + port.kind + "');";
}

void Report(const Options& options, PortNumber port, const Detection& found) {
    const DriverInfo& driver = FindDriver(found.driver);
    const bool own = found.line == driver.line;
    PrintLine(driver.maker + ", " + driver.models + ", at " + found.line.Text() + " on " +
              port.Device());
    PrintLine("  wbalance weigh --driver " + driver.name + " " + PortArguments(options) +
              (own ? "" : " --line " + found.line.Text()));
    PrintLine("  " + driver.driverClass + " balance; " + CallsFor(port, found.line));
    if (const std::string known = TextOf(found.identity); !known.empty()) PrintLine("  " + known);
    const auto models = ModelsLike(driver);
    if (models.empty()) return;
    PrintLine("  If it is one of these models, its own driver can more:");
    for (const DriverInfo* model : models)
        PrintLine("  --driver " + Padded(model->name, 16) + " " + model->models);
}

std::string TextOf(const std::vector<LineSettings>& settings) {
    std::string text;
    for (const auto& line : settings)
        text += (text.empty() ? "" : " ") + line.Text();
    return text;
}

std::string Json(const Options& options, const Detection& found, const std::string& status,
                 const std::string& message) {
    QJsonObject object;
    object["port"] = JsonText(PortName(options.port, options.usb).Text());
    object["status"] = JsonText(status);
    object["driver"] = JsonText(found.driver);
    object["line"] = JsonText(found.driver.empty() ? "" : found.line.Text());
    object["answer"] = JsonBytes(found.answer);
    object["model"] = JsonText(found.identity.model);
    object["serialNumber"] = JsonText(found.identity.serialNumber);
    object["softwareVersion"] = JsonText(found.identity.softwareVersion);
    QJsonArray refused;
    for (const auto& line : found.refused)
        refused.append(JsonText(line.Text()));
    object["refused"] = refused;
    object["message"] = JsonText(message);
    return JsonLine(object);
}

[[noreturn]] void Fail(const Options& options, PortNumber port, const Detection& found) {
    const std::string device = port.Device();
    const std::string sent = outside::Quoted(found.answer) + " at " + found.heardAt.Text();
    const std::string more = options.thorough ? "" : "; `wbalance detect --thorough` tries more";
    if (found.foreignText) {
        throw ToolError(
            ExitCode::NotUnderstood,
            device + ": text comes back, but not of an instrument that is known: " + sent + more);
    }
    if (found.garbled) {
        throw ToolError(ExitCode::NotUnderstood,
                        device +
                            ": bytes come back but garbled: the line settings are not those of the "
                            "balance, or the cable picks up noise: " +
                            sent + more);
    }
    throw ToolError(ExitCode::Silent,
                    device +
                        ": nothing comes back: switch the balance on, look at the plugs, try a "
                        "straight cable and a crossed one" +
                        more);
}

Detection Detect(const Options& options, PortNumber port) {
    // Its questions, at one baud rate after the other, would get into somebody else's conversation.
    if (const auto held = WhyHeld(port.Device())) throw ToolError(*held);
    Detector detector(
        port, SinkFor(options.trace), [](const std::string& note) { SayLine(note); },
        options.thorough);
    const Detection found = detector.Run();
    if (!found.refused.empty()) SayLine("refused by the port: " + TextOf(found.refused));
    return found;
}

ExitCode Run(const Options& options) {
    Detection found;
    try {
        const PortNumber port = PortName(options.port, options.usb).Resolve();
        found = Detect(options, port);
        if (found.driver.empty()) Fail(options, port, found);
        options.json ? PrintLine(Json(options, found, "found", "")) : Report(options, port, found);
        return ExitCode::Done;
    } catch (const ToolError& error) {
        if (!options.json || !IsForJson(error)) throw;
        PrintLine(Json(options, found, "error", error.what()));
        return error.code;
    }
}

}  // namespace

void AddDetect(arguments::Command application, ExitCode& exitCode) {
    const auto command = application.AddSubcommand(
        "detect", "Find out which balance is at a port, without changing it");
    command.Footer(kExamples);
    const auto options = std::make_shared<Options>();
    command.AddOption("-p,--port", options->port, "port number or name, as for weigh")
        .TypeName("PORT")
        .ShowDefault();
    command.AddFlag("-u,--usb", options->usb, "the port number is that of a USB adapter");
    command.AddFlag("--thorough", options->thorough, "ask every question at every usual setting");
    AddJsonFlag(command, options->json, "one JSON object, also when nothing is found");
    command.AddFlag("--trace", options->trace, "show the library's trace on standard error");
    command.Callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace tool
