// wbalance-sim: a simulated balance on a serial port that needs neither hardware nor root.

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdlib>
#include <iostream>

#include "HostProgram.h"
#include "InstrumentList.h"
#include "WireLog.h"
#include "simulator/VirtualBench.h"

namespace {

/// As with env and timeout: what goes wrong here is not mistaken for the program's own exit code.
constexpr int ownFailure = 125;

const char* const description =
    "Runs a program against a simulated balance on /dev/ttyS0 or another serial port, or serves a\n"
    "pseudo-terminal. No hardware, no root, nothing is created in /dev.";

const char* const examples =
    "Examples:\n"
    "  wbalance-sim --list\n"
    "  wbalance-sim mettler-toledo --load 12.34 -- ./my-host --port 0\n"
    "  wbalance-sim mettler-xs --usb --port 1 --load 0 --load 100@5s --log - -- ./my-host\n"
    "  wbalance-sim mettler-toledo --line 9600,8N1 --fault silent@5s+2s -- ./my-host\n"
    "  wbalance-sim mettler-toledo --with reset-answer=off --pty\n"
    "A host built with a sanitizer needs the sanitizer's runtime first:\n"
    "  LD_PRELOAD=$(gcc -print-file-name=libasan.so) wbalance-sim mettler-toledo -- ./my-host\n"
    "Exit code: the program's; 128 and the number of the signal that ended it; 125 when\n"
    "wbalance-sim itself fails, 126 and 127 when the program cannot be run or found.";

struct Arguments {
    std::string instrument;
    std::vector<std::string> loads;
    std::vector<std::string> switches;
    std::vector<std::string> faults;
    std::string line;
    std::string logFile;
    int port = 0;
    bool usb = false;
    bool pty = false;
    bool paced = false;
    bool list = false;
    std::vector<std::string> program;
};

void declare(CLI::App& app, Arguments& arguments) {
    app.footer(examples);
    app.add_option("INSTRUMENT", arguments.instrument, "Name of the instrument, see --list");
    app.add_flag("--list", arguments.list, "List instruments, their switches, and faults");
    app.add_option("--load", arguments.loads, "Load in grams; again with @TIME for later loads")
        ->type_name("GRAMS[@TIME]")
        ->allow_extra_args(false);
    app.add_option("--port", arguments.port, "Number of the port")
        ->type_name("N")
        ->check(CLI::Range(0, 99999));
    app.add_flag("--usb", arguments.usb, "/dev/ttyUSB<N> instead of /dev/ttyS<N>");
    app.add_option("--line", arguments.line, "The instrument's line settings, such as 2400,7E1")
        ->type_name("SETTINGS");
    app.add_option("--with", arguments.switches, "Set a switch of the instrument")
        ->type_name("NAME[=VALUE]")
        ->allow_extra_args(false);
    app.add_option("--fault", arguments.faults, "Let something go wrong, such as late=2s@5s+10s")
        ->type_name("NAME[=VALUE][@START[+DURATION]]")
        ->allow_extra_args(false);
    app.add_flag("--pace", arguments.paced, "Characters take their time on the line");
    app.add_option("--log", arguments.logFile, "Write the bytes with times; - is standard error")
        ->type_name("FILE");
    app.add_flag("--pty", arguments.pty,
                 "Print the path of a pseudo-terminal and serve it until Ctrl-C");
}

/// What stands behind "--" belongs to the program and is not looked at here.
std::vector<std::string> cutProgram(std::vector<std::string>& words) {
    const auto end = std::find(words.begin(), words.end(), "--");
    std::vector<std::string> program;
    if (end != words.end()) program.assign(end + 1, words.end());
    words.erase(end, words.end());
    return program;
}

simulator::Options optionsOf(const Arguments& arguments) {
    simulator::Options options;
    options.on((arguments.usb ? "/dev/ttyUSB" : "/dev/ttyS") + std::to_string(arguments.port));
    for (const auto& load : arguments.loads)
        options.loads.push_back(simulator::LoadStep::parse(load));
    for (const auto& fault : arguments.faults)
        options.withFault(fault);
    options.switches = arguments.switches;
    if (!arguments.line.empty()) options.at(arguments.line);
    options.paced = arguments.paced;
    return options;
}

void check(const Arguments& arguments) {
    if (arguments.instrument.empty())
        throw std::invalid_argument("which instrument? See wbalance-sim --list");
    if (arguments.pty && !arguments.program.empty())
        throw std::invalid_argument("--pty serves other software and runs no program");
    if (!arguments.pty && arguments.program.empty())
        throw std::invalid_argument(
            "nothing to run: put -- PROGRAM behind the options, or use --pty");
}

int serve(const Arguments& arguments) {
    check(arguments);
    const simulator::Options options = optionsOf(arguments);
    HostProgram::holdSignals();
    std::unique_ptr<WireLog> log;
    if (!arguments.logFile.empty()) log = std::make_unique<WireLog>(arguments.logFile);
    simulator::VirtualBench bench;
    auto& instrument = arguments.pty ? bench.placeOnTerminal(arguments.instrument, options)
                                     : bench.place(arguments.instrument, options);
    if (log) instrument.onEvent([&](const simulator::LineEvent& event) { log->write(event); });
    if (!arguments.pty) return HostProgram(arguments.program).exitCode();
    std::cout << instrument.device() << std::endl;
    HostProgram::waitForEndingSignal();
    return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
    std::vector<std::string> words(argv + 1, argv + argc);
    Arguments arguments;
    arguments.program = cutProgram(words);
    CLI::App app(description, "wbalance-sim");
    declare(app, arguments);
    try {
        std::reverse(words.begin(), words.end());  // the parser takes them from the back
        app.parse(words);
        if (!arguments.list) return serve(arguments);
        writeInstruments(std::cout);
        return EXIT_SUCCESS;
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const std::exception& error) {
        std::cerr << "wbalance-sim: " << error.what() << "\n";
        return ownFailure;
    }
}
