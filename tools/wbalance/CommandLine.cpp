#include "CommandLine.h"

#include <CLI/CLI.hpp>
#include <csignal>
#include <sstream>

#include "Record.h"
#include "ToolError.h"
#include "commands/Detect.h"
#include "commands/Doctor.h"
#include "commands/Drivers.h"
#include "commands/Monitor.h"
#include "commands/Operate.h"
#include "commands/Ports.h"
#include "commands/Replay.h"
#include "commands/Weigh.h"
#include "output/Stream.h"
#include "process/Interrupt.h"

namespace tool {
namespace {

// A closed pipe ends this program as it ends others, but not before the port is closed and its lock
// file has gone.
int EndAsItsReaderHas() {
    std::signal(SIGPIPE, SIG_DFL);
    return std::raise(SIGPIPE);
}

int Complain(ExitCode code, const std::string& sentence) {
    // What an interrupted call reports is not what went wrong.
    const bool interrupted = Interrupted() && code != ExitCode::Interrupted;
    SayLine("wbalance: " + (interrupted ? "interrupted: " + sentence : sentence));
    return static_cast<int>(interrupted ? ExitCode::Interrupted : code);
}

// CLI11 would say that a command is required.
void RequireCommand(const CLI::App& application, const std::string& name) {
    if (name.empty() || name.front() == '-') return;
    std::string names;
    for (const CLI::App* command : application.get_subcommands({})) {
        if (command->get_name() == name) return;
        names += (names.empty() ? "" : ", ") + command->get_name();
    }
    throw ToolError(ExitCode::Usage, "there is no command \"" + name + "\"; there are: " + names);
}

// "wbalance weigh --help", of the command that was given.
std::string HelpFor(const CLI::App& application) {
    const auto given = application.get_subcommands();
    return "wbalance " + (given.empty() ? "" : given.front()->get_name() + " ") + "--help";
}

// "wbalance help" and "wbalance help weigh", which say the same as --help.
void AddHelp(CLI::App& application) {
    auto* command = application.add_subcommand("help", "Show the help of a command");
    const auto name = std::make_shared<std::string>();
    command->add_option("COMMAND", *name, "the command; without one, all are listed")
        ->type_name("");
    command->callback([&application, name] {
        RequireCommand(application, *name);
        const CLI::App& shown = name->empty() ? application : *application.get_subcommand(*name);
        // Its own help() would be that of the command that was given, which is this one.
        Print(shown.get_formatter()->make_help(
            &shown, application.get_name() + (name->empty() ? "" : " " + *name),
            CLI::AppFormatMode::Normal));
    });
}

// What CLI11 prints instead of carrying a command out: help and version.
int Show(const CLI::App& application, const CLI::Success& success) {
    std::ostringstream text;
    application.exit(success, text, text);
    Print(text.str());
    return static_cast<int>(ExitCode::Done);
}

// Carries out what the words ask for.
int Run(CLI::App& application, const ExitCode& exitCode, int argc, char* argv[]) {
    try {
        RequireCommand(application, argc < 2 ? "" : argv[1]);
        application.parse(argc, argv);
        return static_cast<int>(exitCode);
    } catch (const CLI::Success& success) {
        return Show(application, success);
    }
}

}  // namespace

int RunCommandLine(int argc, char* argv[]) {
    ExitCode exitCode = ExitCode::Done;
    CLI::App application("Read and drive weighing balances on a serial line", "wbalance");
    application.set_version_flag("--version", WBALANCE_VERSION);
    application.require_subcommand(1);
    application.get_formatter()->column_width(28);
    AddWeigh(application, exitCode);
    AddMonitor(application, exitCode);
    AddOperations(application, exitCode);
    AddReplay(application, exitCode);
    AddDetect(application, exitCode);
    AddDoctor(application, exitCode);
    AddDrivers(application, exitCode);
    AddPorts(application, exitCode);
    AddHelp(application);
    CatchInterrupts();
    std::signal(SIGPIPE, SIG_IGN);
    try {
        return Run(application, exitCode, argc, argv);
    } catch (const ReaderGone&) {
        return EndAsItsReaderHas();
    } catch (const CLI::ParseError& error) {
        return Complain(ExitCode::Usage, error.what() + ("; see " + HelpFor(application)));
    } catch (const ToolError& error) {
        return Complain(error.code, error.what());
    } catch (const record::WriteError& error) {
        return Complain(ExitCode::Internal, error.what());
    } catch (const record::Error& error) {
        return Complain(ExitCode::Usage, error.what());
    } catch (const std::exception& error) {
        return Complain(ExitCode::Internal, error.what());
    }
}

}  // namespace tool
