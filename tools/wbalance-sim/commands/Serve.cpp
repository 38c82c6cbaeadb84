#include "Serve.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <stdexcept>

#include "ExampleInstruments.h"
#include "ExitCode.h"
#include "HostProgram.h"
#include "InstrumentList.h"
#include "Placement.h"
#include "WireLog.h"
#include "control/ControlServer.h"
#include "replay/ReplayPlacement.h"
#include "simulator/VirtualBench.h"

using simulator::ConnectedInstrument;
using simulator::LineEvent;
using simulator::VirtualBench;

namespace {

const char* const kDescription =
    "Runs a program with simulated balances at /dev/ttyS0 or other serial ports, or serves\n"
    "pseudo-terminals. It needs no hardware and no root, and creates nothing in /dev.\n"
    "Standard error says when the program's line settings differ from those of an instrument.";

const char* const kReplayDescription =
    "Takes the place of an instrument: when the host sends what the recorded host sent, gives the\n"
    "recorded answer. Says at which line of the record a host departs from it. A record is what\n"
    "wbalance --record or wbalance-sim --log has written.";

const char* const kReplayExamples =
    "Before each answer it waits as long as in the record, minus 0.2 s: the recorded answer may\n"
    "have been read later than it came. A command that is not in the record is reported and gets\n"
    "no answer; the next command of the record is still expected.\n"
    "Port and line settings are those of the record, if no option sets others.\n"
    "Examples:\n"
    "  wbalance weigh -d {balance} -p 3 --usb --record trouble.record\n"
    "  wbalance-sim replay trouble.record -- wbalance weigh -d {balance} -p 3 --usb\n"
    "  wbalance-sim replay trouble.record --fast --port 0 --log - -- ./my-host\n"
    "  wbalance-sim replay one.record --port 0 , replay other.record --port 1 -- ./my-host\n"
    "  wbalance-sim replay trouble.record --pty\n"
    "Exit code: the program's; 124 if the host has not done all that the record says; 125 if the\n"
    "record cannot be read or is not a record; otherwise as in wbalance-sim --help.";

const char* const kExamples =
    "Other commands, each with its own --help:\n"
    "  wbalance-sim control CHANGE    change something while it runs\n"
    "  wbalance-sim replay FILE       an instrument that answers as in a record\n"
    "Write a comma between several instruments, with a blank before and after it:\n"
    "  wbalance-sim {balance} --load 5 , {other} --port 1 --usb --load 7 -- ./my-host\n"
    "Examples:\n"
    "  wbalance-sim --list\n"
    "  wbalance-sim {balance} --load 12.34 -- ./my-host --port 0\n"
    "  wbalance-sim {balance} --usb --port 1 --load 0 --load 100@5s --log - -- ./my-host\n"
    "  wbalance-sim {balance} --line 9600,8N1 --fault silent@5s+2s -- ./my-host\n"
    "  wbalance-sim {balance} --script parcel.script -- ./my-host\n"
    "  wbalance-sim {balance} --with {switch} --pty\n"
    "A host built with a sanitizer needs the sanitizer's runtime first:\n"
    "  LD_PRELOAD=$(gcc -print-file-name=libasan.so) wbalance-sim {balance} -- ./my-host\n"
    "Exit code: the program's; 128 and the number of the signal that ended it; 125 when\n"
    "wbalance-sim itself fails, 126 and 127 when the program cannot be run or found.";

/// The options of the whole run, at any place on the command line.
struct RunOptions {
    std::string logFile;
    std::string controlPath;
    bool pty = false;
    bool list = false;

    void AddTo(arguments::Command command) {
        command.AddFlag("--list", list, "List instruments, their switches, and faults");
        command
            .AddOption("--log", logFile,
                       "Write the bytes with times, as a record; - is standard error")
            .TypeName("FILE");
        command
            .AddOption("--control", controlPath,
                       "A link through which wbalance-sim control reaches this run")
            .TypeName("PATH");
        command.AddFlag("--pty", pty,
                        "Print the paths of pseudo-terminals and serve them until Ctrl-C");
    }
};

/// What stands behind "--" belongs to the program and is not looked at here.
std::vector<std::string> CutProgram(std::vector<std::string>& words) {
    const auto end = std::find(words.begin(), words.end(), "--");
    std::vector<std::string> program;
    if (end != words.end()) program.assign(end + 1, words.end());
    words.erase(end, words.end());
    return program;
}

/// The words between the commas.
std::vector<std::vector<std::string>> CutRow(const std::vector<std::string>& words) {
    std::vector<std::vector<std::string>> row(1);
    for (const auto& word : words) {
        if (word == ",")
            row.emplace_back();
        else
            row.back().push_back(word);
    }
    return row;
}

using Row = std::vector<std::unique_ptr<Placement>>;

/// Reads what is said of one instrument.
std::unique_ptr<Placement> ParseOne(std::vector<std::string> words, RunOptions& run) {
    const bool isReplay = !words.empty() && words.front() == "replay";
    std::unique_ptr<Placement> placement;
    if (isReplay)
        placement = std::make_unique<ReplayPlacement>();
    else
        placement = std::make_unique<CatalogPlacement>();
    if (isReplay) words.erase(words.begin());
    const arguments::Grammar grammar{isReplay ? "wbalance-sim replay" : "wbalance-sim",
                                     isReplay ? kReplayDescription : kDescription,
                                     texts::WithExamples(isReplay ? kReplayExamples : kExamples)};
    arguments::Parse(grammar, words, [&](arguments::Command command) {
        placement->AddTo(command);
        run.AddTo(command);
    });
    return placement;
}

void Check(const RunOptions& run, const Row& row, const std::vector<std::string>& program) {
    for (const auto& each : row)
        each->Entry();
    if (run.pty && !program.empty())
        throw std::invalid_argument("--pty serves other software and runs no program");
    if (!run.pty && program.empty())
        throw std::invalid_argument(
            "nothing to run: put -- PROGRAM behind the options, or use --pty");
}

/// For those who wonder why they get no answer, or none that they can read.
std::string SettingsHint(ConnectedInstrument& from, const LineEvent& event) {
    const std::string host = event.settings.Text();
    return "the host speaks at " + host + " on " + from.Device() + ", but " + from.Name() +
           " listens at " + event.bytes + "; set the host to " + event.bytes +
           ", or the instrument to what the host has with --line " + host;
}

/// What a host is up to that has set the instrument's settings at a terminal; empty where they are
/// what a terminal has.
std::string TerminalHint(ConnectedInstrument& instrument) {
    simulator::UartSettings line = instrument.HostSettings();
    const std::string wanted = line.Text();
    line.dataBits = 8;
    line.parity = simulator::Parity::None;
    if (line.Text() == wanted) return "";
    return "wbalance-sim: " + instrument.Name() + " speaks at " + wanted + ", but " +
           instrument.Device() + " is a pseudo-terminal, which has 8 data bits without parity; " +
           "where a host can not set " + wanted + ", set it to " + line.Text() + "\n";
}

/// Follows an instrument: its bytes go into the log, new paths of its terminal to standard output,
/// what can't be done, and settings at which nobody understands the other, to standard error.
void Follow(ConnectedInstrument& instrument, const RunOptions& run, WireLog* log) {
    if (run.pty) {
        std::cout << instrument.Device() << std::endl;
        std::cerr << TerminalHint(instrument);
    }
    instrument.OnEvent([&run, log](ConnectedInstrument& from, const LineEvent& event) {
        if (log) log->Write(from.Device(), event);
        if (run.pty && event.kind == LineEvent::Kind::PluggedIn)
            std::cout << event.bytes << std::endl;
        if (event.kind == LineEvent::Kind::OtherSettings)
            std::cerr << "wbalance-sim: " + SettingsHint(from, event) + "\n";
        if (event.kind == LineEvent::Kind::Trouble)
            std::cerr << "wbalance-sim: " + event.bytes + "\n";
    });
}

/// Serves the instruments of the row until the program, or without one a signal, ends it.
int ServeRow(const RunOptions& run, const Row& row, const std::vector<std::string>& program,
             WireLog* log) {
    VirtualBench bench;
    for (const auto& each : row)
        run.pty ? bench.PlaceOnTerminal(each->Entry(), each->SetUp())
                : bench.Place(each->Entry(), each->SetUp());
    if (log) log->Begin(bench.Instruments());
    for (ConnectedInstrument* each : bench.Instruments())
        Follow(*each, run, log);
    const ControlServer control(bench, run.controlPath);
    if (!run.pty) return HostProgram(program).ExitCode();
    HostProgram::WaitForEndingSignal();
    return EXIT_SUCCESS;
}

int ServeLogged(const RunOptions& run, const Row& row, const std::vector<std::string>& program) {
    if (run.logFile.empty()) return ServeRow(run, row, program, nullptr);
    WireLog log(run.logFile);
    const int exitCode = ServeRow(run, row, program, &log);
    HostProgram::ReleaseSignals();  // the reader of the log may sleep for ever
    log.RequireWhole();
    return exitCode;
}

int Run(const RunOptions& run, const Row& row, const std::vector<std::string>& program) {
    Check(run, row, program);
    HostProgram::HoldSignals();
    int exitCode = ServeLogged(run, row, program);
    for (const auto& each : row)
        if (!each->Conclude()) exitCode = kDepartedFromRecord;
    return exitCode;
}

}  // namespace

int Serve(std::vector<std::string> words) {
    const std::vector<std::string> program = CutProgram(words);
    RunOptions options;
    Row row;
    for (const auto& each : CutRow(words))
        row.push_back(ParseOne(each, options));
    if (!options.list) return Run(options, row, program);
    WriteInstruments(std::cout);
    return EXIT_SUCCESS;
}
