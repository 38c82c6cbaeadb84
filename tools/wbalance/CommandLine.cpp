#include "CommandLine.h"

#include <poll.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>

#include "OutsideText.h"
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
#include "process/Interrupt.h"

namespace tool {
namespace {

// Whoever read standard output has gone, as in `| head -1`.
bool ReaderHasGone() {
    pollfd output{STDOUT_FILENO, POLLOUT, 0};
    return std::ferror(stdout) != 0 && poll(&output, 1, 0) > 0 && (output.revents & POLLERR) != 0;
}

// A closed pipe ends this program as it ends others, but not before the port is closed and its lock
// file has gone.
void EndAsItsReaderHas() {
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
}

int Complain(ExitCode code, const std::string& sentence) {
    if (ReaderHasGone()) EndAsItsReaderHas();
    std::fprintf(stderr, "wbalance: %s\n", outside::Printable(sentence).c_str());
    return static_cast<int>(code);
}

// CLI11 would say that a command is required.
void RequireKnownCommand(const CLI::App& application, int argc, char* argv[]) {
    if (argc < 2 || argv[1][0] == '-') return;
    std::string names;
    for (const CLI::App* command : application.get_subcommands({})) {
        if (command->get_name() == argv[1]) return;
        names += (names.empty() ? "" : ", ") + command->get_name();
    }
    throw ToolError(ExitCode::Usage,
                    std::string("there is no command \"") + argv[1] + "\"; there are: " + names);
}

// "wbalance weigh --help", of the command that was given.
std::string HelpFor(const CLI::App& application) {
    const auto given = application.get_subcommands();
    return "wbalance " + (given.empty() ? "" : given.front()->get_name() + " ") + "--help";
}

// Results that did not reach their file or pipe are not done.
int Delivered(ExitCode code) {
    if (std::fflush(stdout) == 0 && std::ferror(stdout) == 0) return static_cast<int>(code);
    return Complain(ExitCode::Internal, "the result could not be written to standard output");
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
    CatchInterrupts();
    std::signal(SIGPIPE, SIG_IGN);
    try {
        RequireKnownCommand(application, argc, argv);
        application.parse(argc, argv);
        return Delivered(exitCode);
    } catch (const CLI::Success& success) {
        return application.exit(success);
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
