#include "Weigh.h"

#include <memory>

#include "BalanceOptions.h"
#include "ExampleInstruments.h"
#include "OutsideText.h"
#include "ToolError.h"
#include "WeighOptions.h"
#include "output/Stream.h"

namespace tool {
namespace {

constexpr char kExamples[] = R"(Examples:
  wbalance weigh --driver {balance} --port 0
  wbalance weigh -d {other} -p 3 --usb --mode stable --json
  wbalance weigh -d {third} -p /dev/serial/by-id/usb-FTDI_A1B2-if00-port0 --line 4800,8N2

Standard output has the weight and nothing else. Exit codes: 0 weight, 2 usage, 3 port,
4 silence, 5 not understood, 6 overload, 7 underload, 8 not stable, 9 error, calibration or stand-by,
10 other unit, 11 truncated, 70 internal, 130 interrupted.
)";

struct Options {
    BalanceOptions balance;
    WeighOptions weigh;
};

Measurement Weigh(const Options& options) {
    Session session = options.balance.Open();
    Request request;
    request.mode = options.weigh.mode;
    return Measure(*session.Reached().driver, session.Perform(request, "weighing"));
}

// The port can't be used, or the library gave up: no measurement was made.
LabelledMeasurement ErrorOf(const Options& options, const std::string& sentence) {
    Measurement nothing;
    nothing.time = std::chrono::system_clock::now();
    return {options.balance.driver, options.balance.Port().Text(), "error", sentence, nothing};
}

ExitCode WeighAndTell(const Options& options) {
    const Format& format = options.weigh.format.Chosen();
    const std::string port = options.balance.Port().Text();
    const Measurement measurement = Weigh(options);
    const Reading& reading = measurement.reading;
    const ExitCode code = CodeFor(reading.meaning);
    if (format.IsForPeople() && !reading.IsWeight()) {
        throw ToolError(code, port + ": " + SentenceFor(reading) +
                                  (measurement.answer.empty()
                                       ? ""
                                       : "; it sent " + outside::Quoted(measurement.answer)));
    }
    if (!format.header.empty()) PrintLine(format.header);
    PrintLine(format.line({options.balance.driver, port, "", "", measurement}));
    return code;
}

ExitCode Run(const Options& options) {
    const Format& format = options.weigh.format.Chosen();
    try {
        return WeighAndTell(options);
    } catch (const ToolError& error) {
        if (!format.tellsErrors || !IsForJson(error)) throw;
        PrintLine(format.line(ErrorOf(options, error.what())));
        return error.code;
    }
}

}  // namespace

void AddWeigh(arguments::Command application, ExitCode& exitCode) {
    const auto command = application.AddSubcommand("weigh", "Read the weight once");
    command.Footer(texts::WithExamples(kExamples));
    const auto options = std::make_shared<Options>();
    options->balance.AddTo(command);
    options->weigh.AddTo(command);
    command.Callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace tool
