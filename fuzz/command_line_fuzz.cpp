// Any words on the command line of `wbalance`, up to where a command would be carried out: they are
// understood, or refused with a sentence. Then the texts that a command reads before it opens a
// port.

#include <CLI/CLI.hpp>
#include <vector>

#include "Harness.h"
#include "ToolError.h"
#include "commands/Detect.h"
#include "commands/Doctor.h"
#include "commands/Drivers.h"
#include "commands/Monitor.h"
#include "commands/Operate.h"
#include "commands/Ports.h"
#include "commands/Replay.h"
#include "commands/Weigh.h"
#include "line/LineSettings.h"
#include "line/PortName.h"

namespace {

struct Understood {};

/// The words of a line, in the order in which the parser takes them: the last one first.
std::vector<std::string> Words(const std::string& line) {
    std::vector<std::string> words;
    std::size_t start = 0;
    for (std::size_t end = 0; end != std::string::npos; start = end + 1) {
        end = line.find('\n', start);
        words.insert(words.begin(), line.substr(start, end - start));
    }
    return words;
}

void Parse(const std::string& line) {
    tool::ExitCode exitCode = tool::ExitCode::Done;
    CLI::App application("", "wbalance");
    application.require_subcommand(1);
    tool::AddWeigh(application, exitCode);
    tool::AddMonitor(application, exitCode);
    tool::AddOperations(application, exitCode);
    tool::AddReplay(application, exitCode);
    tool::AddDetect(application, exitCode);
    tool::AddDoctor(application, exitCode);
    tool::AddDrivers(application, exitCode);
    tool::AddPorts(application, exitCode);
    // A command is complete before it is carried out, and here that is where it ends.
    for (CLI::App* command : application.get_subcommands([](const CLI::App*) { return true; }))
        command->parse_complete_callback([] { throw Understood{}; });
    try {
        application.parse(Words(line));
        fuzz::Require(false, "no command is no success");
    } catch (const Understood&) {
    } catch (const CLI::ParseError& error) {
        fuzz::Require(*error.what() != '\0', "a sentence");
    } catch (const tool::ToolError& error) {
        // A word that an option itself does not know, such as a mode.
        fuzz::Require(error.code == tool::ExitCode::Usage, "a wrong use");
        fuzz::Require(*error.what() != '\0', "a sentence");
    }
}

void ParseLineSettings(const std::string& text) {
    try {
        const auto settings = tool::LineSettings::Parse(text, {});
        fuzz::Require(settings.baudRate > 0, "a baud rate");
        fuzz::Require(tool::LineSettings::Parse(settings.Text(), {}) == settings,
                      "the settings as they are written");
    } catch (const tool::ToolError& error) {
        fuzz::Require(error.code == tool::ExitCode::Usage, "a wrong use");
    }
}

void ParsePortName(const std::string& text, bool usb) {
    try {
        fuzz::Require(!tool::PortName(text, usb).Text().empty(), "a name");
    } catch (const tool::ToolError& error) {
        fuzz::Require(*error.what() != '\0', "a sentence");
    }
    if (const auto port = tool::PortNumber::OfDevice(text)) {
        fuzz::Require(port->number >= 0, "no negative port");
        fuzz::Require(port->kind == 'S' || port->kind == 'U', "a kind");
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // A word of the command line has no zero byte in it.
    const std::string text = std::string(reinterpret_cast<const char*>(data), size).c_str();
    Parse(text);
    ParseLineSettings(text);
    ParsePortName(text, false);
    ParsePortName(text, true);
    return 0;
}
