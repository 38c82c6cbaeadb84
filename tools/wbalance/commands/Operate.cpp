#include "Operate.h"

#include <unistd.h>

#include <chrono>
#include <cmath>
#include <cstdio>
#include <iostream>
#include <memory>
#include <vector>

#include "BalanceOptions.h"
#include "ExampleInstruments.h"
#include "FormatOptions.h"
#include "ToolError.h"
#include "output/Json.h"
#include "output/MeasurementFormat.h"
#include "output/Stream.h"
#include "process/Interrupt.h"
#include "readings/Confirmation.h"

namespace tool {
namespace {

struct Options {
    BalanceOptions balance;
    Request request;
    bool json = false;
    bool yes = false;
};

std::string Grams(double grams) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", grams);
    return text;
}

std::string DoneText(const Request& request) {
    switch (request.operation) {
        case Operation::Weigh:
        case Operation::Ask:
            break;
        case Operation::Tare:
            return "tared";
        case Operation::Zero:
            return "zeroed";
        case Operation::PresetTare:
            return "preset tare set to " + Grams(request.grams) + " g";
        case Operation::Display:
            return "displayed";
        case Operation::SwitchOn:
            return "switched on";
        case Operation::SwitchOff:
            return "switched off";
        case Operation::FactoryReset:
            return "factory reset sent; the balance does not confirm it";
    }
    return "";
}

void RequireOperation(const DriverInfo& driver, Operation operation) {
    if (driver.Has(operation)) return;
    std::string others;
    for (const auto& one : Drivers()) {
        if (one.Has(operation)) others += (others.empty() ? "" : ", ") + one.name;
    }
    throw ToolError(ExitCode::Usage, "the driver " + driver.name + " has no " + WordFor(operation) +
                                         "; these have: " + others);
}

// The drivers send the preset with two decimals.
void RequirePresetTare(const DriverInfo& driver, double grams) {
    if (!(grams >= driver.leastPresetTare && grams <= driver.greatestPresetTare)) {
        throw ToolError(ExitCode::Usage, "the driver " + driver.name +
                                             " takes a preset tare from " +
                                             Grams(driver.leastPresetTare) + " to " +
                                             Grams(driver.greatestPresetTare) + " g");
    }
    if (std::fabs(grams * 100 - std::round(grams * 100)) > 1e-6)
        throw ToolError(ExitCode::Usage, "a preset tare is sent with two decimals; give no more");
}

void RequireText(const DriverInfo& driver, const std::string& text) {
    if (text.size() > driver.longestText) {
        throw ToolError(ExitCode::Usage, "the text has " + std::to_string(text.size()) +
                                             " characters; at most " +
                                             std::to_string(driver.longestText) + " can be sent");
    }
    for (const char character : text) {
        if (character < ' ' || character > '~' || character == '"')
            throw ToolError(ExitCode::Usage,
                            "the balance displays printable ASCII characters without \"");
    }
}

// A Ctrl-C that comes just before a read would not end it; here it is noticed at the next look.
void AwaitReply() {
    std::vector<pollfd> input = {{STDIN_FILENO, POLLIN, 0}};
    while (!Interrupted() && input.front().revents == 0)
        Await(input, std::chrono::milliseconds(200));
}

void RequireConsent(const Options& options) {
    if (options.request.operation != Operation::FactoryReset || options.yes) return;
    if (isatty(STDIN_FILENO) == 0)
        throw ToolError(ExitCode::Usage, "factory-reset asks first; without a terminal add --yes");
    Say("This puts the balance back to its factory settings, perhaps its line settings too.\n"
        "Continue? [y/N] ");
    AwaitReply();
    std::string reply;
    if (!Interrupted()) std::getline(std::cin, reply);
    if (Interrupted()) throw ToolError(ExitCode::Interrupted, "interrupted; nothing was sent");
    if (reply != "y" && reply != "Y" && reply != "yes")
        throw ToolError(ExitCode::Usage, "nothing was sent");
}

void Check(const Options& options) {
    const DriverInfo& driver = FindDriver(options.balance.driver);
    const Request& request = options.request;
    RequireOperation(driver, request.operation);
    if (request.operation == Operation::PresetTare) RequirePresetTare(driver, request.grams);
    if (request.operation == Operation::Display) RequireText(driver, request.text);
    RequireConsent(options);
}

std::string Json(const Options& options, const std::string& status, const std::string& message,
                 WallTime time) {
    QJsonObject object;
    object["time"] = JsonText(TimeText(time));
    object["driver"] = JsonText(options.balance.driver);
    object["port"] = JsonText(options.balance.Port().Text());
    object["operation"] = JsonText(WordFor(options.request.operation));
    object["status"] = JsonText(status);
    object["message"] = JsonText(message);
    return JsonLine(object);
}

ExitCode OperateAndTell(const Options& options) {
    Check(options);
    Session session = options.balance.Open();
    const Report report = session.Perform(options.request, WordFor(options.request.operation));
    const auto confirmation = Confirm(*session.Reached().driver, options.request.operation, report);
    if (options.json) {
        const bool done = confirmation.code == ExitCode::Done;
        PrintLine(Json(options, done ? "done" : "failed", confirmation.sentence, report.finished));
        return confirmation.code;
    }
    if (confirmation.code != ExitCode::Done) {
        throw ToolError(confirmation.code, options.balance.Port().Text() + ": " +
                                               WordFor(options.request.operation) + ": " +
                                               confirmation.sentence);
    }
    PrintLine(confirmation.sentence.empty() ? DoneText(options.request) : confirmation.sentence);
    return ExitCode::Done;
}

ExitCode Run(const Options& options) {
    try {
        return OperateAndTell(options);
    } catch (const ToolError& error) {
        if (!options.json || !IsForJson(error)) throw;
        PrintLine(Json(options, "error", error.what(), std::chrono::system_clock::now()));
        return error.code;
    }
}

arguments::Command Add(arguments::Command application, ExitCode& exitCode, Operation operation,
                       const std::string& description, const std::string& example,
                       const std::shared_ptr<Options>& options) {
    const std::string word = WordFor(operation);
    const auto command = application.AddSubcommand(word, description);
    std::string footer = "Example:\n  wbalance " + word + " " + texts::WithExamples(example) +
                         "\nDrivers that have it:";
    for (const auto& driver : Drivers()) {
        if (driver.Has(operation)) footer += " " + driver.name;
    }
    command.Footer(footer + "\n");
    options->request.operation = operation;
    options->balance.AddTo(command);
    AddJsonFlag(command, options->json, "one JSON object, also when the operation failed");
    command.Callback([options, &exitCode] { exitCode = Run(*options); });
    return command;
}

arguments::Command Add(arguments::Command application, ExitCode& exitCode, Operation operation,
                       const std::string& description, const std::string& example) {
    return Add(application, exitCode, operation, description, example, std::make_shared<Options>());
}

}  // namespace

void AddOperations(arguments::Command application, ExitCode& exitCode) {
    Add(application, exitCode, Operation::Tare, "Tare the balance", "-d {other} -p 3 --usb");
    Add(application, exitCode, Operation::Zero, "Zero the balance", "-d {other} -p 3 --usb");

    const auto preset = std::make_shared<Options>();
    Add(application, exitCode, Operation::PresetTare, "Set a preset tare", "-d {panel} -p 0 12.50",
        preset)
        .AddOption("GRAMS", preset->request.grams, "the preset tare in grams, two decimals")
        .TypeName("")
        .Required();

    const auto display = std::make_shared<Options>();
    Add(application, exitCode, Operation::Display, "Show a text on the balance's display",
        "-d {panel} -p 0 \"NEXT SAMPLE\"", display)
        .AddOption("TEXT", display->request.text, "at most 57 characters")
        .TypeName("")
        .Required();

    Add(application, exitCode, Operation::SwitchOn, "Switch the balance on", "-d {panel} -p 0");
    Add(application, exitCode, Operation::SwitchOff, "Switch the balance off", "-d {panel} -p 0");

    const auto reset = std::make_shared<Options>();
    Add(application, exitCode, Operation::FactoryReset,
        "Restore the balance's factory settings (asks first)", "-d {reset} -p 0 --yes", reset)
        .AddFlag("--yes", reset->yes, "do not ask");
}

}  // namespace tool
