#include "Monitor.h"

#include <unistd.h>

#include <charconv>
#include <limits>
#include <map>
#include <memory>
#include <set>

#include "BalanceOptions.h"
#include "ExampleInstruments.h"
#include "ToolError.h"
#include "WeighOptions.h"
#include "monitor/Monitor.h"

namespace tool {
namespace {

constexpr double kLongestDuration = 100000.0;  // of any unit

constexpr char kExamples[] = R"(Examples:
  wbalance monitor {balance}@0
  wbalance monitor {other}@/dev/serial/by-id/usb-FTDI_A1B2-if00-port0 {third}@1@4800,8N2
  wbalance monitor {other}@ttyUSB3 --interval 0 --timeout 0 --json --log weights.jsonl
  wbalance monitor {other}@ttyUSB3 --for 8h --log shift.csv
  wbalance monitor {other}@ttyUSB3 --json | mosquitto_pub -l -h broker -t lab/balance

monitor reports a balance that is unplugged or silent as lost, looks for it, and reports it as
back. Ctrl-C ends monitor, which then prints a summary on standard error. If its log was moved or
deleted, it starts a new one at the next line; without a terminal, SIGHUP does so at once.
)";

struct Options {
    std::vector<std::string> balances;
    BalanceOptions shared;
    WeighOptions weigh;
    double interval = 1.0;
    std::string logPath;
    int count = 0;
    std::chrono::milliseconds duration{0};
    bool countsDynamic = false;
};

std::chrono::milliseconds Milliseconds(double seconds) {
    return std::chrono::milliseconds(static_cast<long>(seconds * 1000));
}

// "90", "90s", "1.5h"
std::chrono::milliseconds DurationOf(const std::string& text) {
    static const std::map<std::string, double> kSeconds = {
        {"", 1.0}, {"s", 1.0}, {"min", 60.0}, {"h", 3600.0}, {"d", 86400.0}};
    double number = 0.0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const auto unit = kSeconds.find(rest);
    // This way round, what is no number is refused, too.
    const bool isInRange = number > 0.0 && number <= kLongestDuration;
    if (error != std::errc() || unit == kSeconds.end() || !isInRange) {
        throw ToolError(ExitCode::Usage, "there is no duration \"" + text +
                                             "\"; write seconds, or a number with its unit: 90s, "
                                             "10min, 8h, 7d");
    }
    return Milliseconds(number * unit->second);
}

// "JSON with --json, else CSV"
std::string LogFormats() {
    const Format& usual = LogFormatFor(Formats().front());
    std::string chosen;
    for (const auto& format : Formats())
        if (!format.IsForPeople() && format.name != usual.name)
            chosen += format.title + " with --" + format.name + ", ";
    return chosen + "else " + usual.title;
}

// DRIVER@/dev/ttyUSB1@4800,8N2
MonitoredBalance::Settings SettingsOf(const std::string& text, const Options& options) {
    const std::size_t first = text.find('@');
    if (first == std::string::npos)
        throw ToolError(ExitCode::Usage,
                        "balance \"" + text + "\": write DRIVER@PORT or DRIVER@PORT@LINE");
    const std::size_t second = text.find('@', first + 1);
    const DriverInfo& driver = FindDriver(text.substr(0, first));
    const std::string port = second == std::string::npos
                                 ? text.substr(first + 1)
                                 : text.substr(first + 1, second - first - 1);
    const LineSettings line = second == std::string::npos
                                  ? driver.line
                                  : LineSettings::Parse(text.substr(second + 1), driver.line);
    return {&driver,
            PortName(port, false),
            line,
            options.shared.timeoutSeconds,
            options.weigh.mode,
            Milliseconds(options.interval)};
}

void RequireDifferentPorts(const std::vector<MonitoredBalance::Settings>& balances) {
    std::set<std::string> ports;
    for (const auto& balance : balances) {
        if (!ports.insert(balance.port.Text()).second)
            throw ToolError(ExitCode::Usage, "two balances are at " + balance.port.Text() +
                                                 "; a port has one balance");
    }
}

ExitCode Run(const Options& options) {
    Monitor::Settings settings;
    for (const auto& text : options.balances)
        settings.balances.push_back(SettingsOf(text, options));
    RequireDifferentPorts(settings.balances);
    settings.format = options.weigh.format.Chosen();
    settings.trace = options.shared.trace;
    settings.live = settings.format.IsForPeople() && !settings.trace && isatty(STDOUT_FILENO) != 0;
    settings.logPath = options.logPath;
    settings.count = options.count;
    settings.duration = options.duration;
    settings.countsDynamic = options.countsDynamic;
    Monitor(settings).Run();
    return ExitCode::Done;
}

}  // namespace

void AddMonitor(arguments::Command application, ExitCode& exitCode) {
    const auto command =
        application.AddSubcommand("monitor", "Read one or more balances repeatedly");
    command.Footer(texts::WithExamples(kExamples));
    const auto options = std::make_shared<Options>();
    command.AddOption("BALANCE", options->balances, "DRIVER@PORT[@LINE], one or more")
        .TypeName("")
        .Required();
    command
        .AddOption("-i,--interval", options->interval,
                   "seconds between the starts of two readings; 0: as fast as the balance answers")
        .TypeName("SECONDS")
        .Range(0.0, 86400.0)
        .ShowDefault();
    command
        .AddOption("-n,--count", options->count,
                   "end when every balance has given this many readings; 0: never")
        .TypeName("N")
        .Range(0, std::numeric_limits<int>::max());
    command
        .AddOption(
            "--for", [options](const std::string& text) { options->duration = DurationOf(text); },
            "end after this time: 90s, 10min, 8h or 7d; a number alone is seconds")
        .TypeName("DURATION");
    command.AddFlag("--dynamic", options->countsDynamic,
                    "include weights of a moving pan in the statistics");
    command
        .AddOption("--log", options->logPath,
                   "write every line to a file (" + LogFormats() + ") before showing it")
        .TypeName("FILE");
    options->shared.AddSharedTo(command);
    options->weigh.AddTo(command);
    command.Callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace tool
