#include "Doctor.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "OutsideText.h"
#include "ToolError.h"
#include "line/PortList.h"
#include "line/PortTrouble.h"
#include "readings/Fields.h"

namespace tool {
namespace {

constexpr int kHardwareFlowControl = 3;

// The control lines that the other end drives; empty where the port does not tell.
std::optional<int> ControlLines(const Descriptor& port) {
    int lines = 0;
    if (ioctl(port.Get(), TIOCMGET, &lines) != 0) return std::nullopt;
    return lines;
}

std::string LinesText(int lines) {
    return std::string("CTS ") + ((lines & TIOCM_CTS) != 0 ? "on" : "off") + ", DSR " +
           ((lines & TIOCM_DSR) != 0 ? "on" : "off") + ", DCD " +
           ((lines & TIOCM_CAR) != 0 ? "on" : "off");
}

std::string AdapterText(const std::string& device) {
    for (const auto& port : ListPorts()) {
        if (port.device == device && !port.product.empty())
            return port.maker + " " + port.product + " " + port.serialNumber;
    }
    return "none that tells its name";
}

std::string SevenBits(std::string bytes) {
    for (char& byte : bytes)
        byte = static_cast<char>(byte & 0x7f);
    return bytes;
}

const DriverInfo* SpeakerOf(const DriverInfo& asked, const std::string& answer) {
    for (const auto& driver : Drivers()) {
        if (driver.dialect != asked.dialect && driver.dialect(answer).IsWeight()) return &driver;
    }
    return nullptr;
}

// The drivers that read without an end mark take three pieces, however small; what is behind them
// is read as the answer to the next command, or not at all.
const std::string kTooManyPieces =
    "the answer comes in more pieces than the three that the driver takes, and waiting longer does "
    "not help: use an FTDI adapter with its latency timer set to 255 ms; a higher baud rate on the "
    "balance and in --line may do, too";

// Whether reading has stopped while characters were still coming: a read that ends for any other
// reason has either met the line end or waited in vain, which it says.
bool EndsInMidAnswer(const std::vector<TraceText>& trace, const std::string& answer) {
    const auto begins = [](const TraceText& text, const char* words) {
        return text.text.rfind(words, 0) == 0;
    };
    bool waitedInVain = true;
    for (const auto& text : trace) {
        if (begins(text, "<== ")) waitedInVain = false;
        if (begins(text, "Timeout elapsed")) waitedInVain = true;
    }
    return !waitedInVain && LooksLikeText(answer) && answer.back() != '\n';
}

// A whole line of text.
std::string ExplainLine(const DriverInfo& driver, const Measurement& measurement) {
    const Meaning own = driver.dialect(measurement.answer).meaning;
    const DriverInfo* speaker =
        own == Meaning::Weight ? nullptr : SpeakerOf(driver, measurement.answer);
    if (speaker != nullptr) {
        return "the answer is not one for the driver " + driver.name + "; try --driver " +
               speaker->name;
    }
    const std::string seen = outside::Printable(outside::Shortened(measurement.reading.remark));
    const std::string remark = seen.empty() ? "" : " (" + seen + ")";
    if (own == Meaning::Weight || own == Meaning::Truncated) {
        return "the record is not one that the driver takes whole" + remark +
               "; choose the balance's standard print format";
    }
    return "text comes back that the driver " + driver.name + " does not know" + remark +
           "; `wbalance detect` finds the instrument";
}

}  // namespace

Doctor::Doctor(Patient patient, Tell tell) : patient_(std::move(patient)), tell_(std::move(tell)) {}

Diagnosis Doctor::Examine() {
    try {
        return ExamineLine(patient_.port.Resolve());
    } catch (const ToolError& error) {
        if (error.code == ExitCode::Interrupted) throw;
        return {error.code, error.what()};
    }
}

Diagnosis Doctor::ExamineLine(PortNumber port) {
    const std::string device = port.Device();
    tell_("port", patient_.port.Text() == device ? device : patient_.port.Text() + " is " + device);
    Descriptor opened(open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    if (opened.Get() < 0) return {ExitCode::PortFailed, WhyNotOpened(device)};
    if (const std::string held = WhyHeld(device); !held.empty())
        return {ExitCode::PortFailed, held};
    tell_("access", "opens, nobody else holds it");
    tell_("adapter", AdapterText(device));
    const auto lines = ControlLines(opened);
    opened.Close();
    tell_("control lines", lines ? LinesText(*lines) : "the port does not tell");
    if (patient_.line.flowControl == kHardwareFlowControl && lines && (*lines & TIOCM_CTS) == 0) {
        return {ExitCode::Silent,
                device +
                    ": CTS is off, so nothing can be sent with rtscts; switch the balance on, "
                    "use a cable that carries CTS, or leave rtscts out of --line"};
    }
    return ExamineBalance({patient_.driver, port, patient_.line, patient_.timeoutSeconds});
}

Diagnosis Doctor::ExamineBalance(const Connection& connection) {
    const std::string device = connection.port.Device();
    tell_("line", connection.line.Text());
    Session session(connection, patient_.showTrace, patient_.recordPath);
    Request request;
    request.mode = 2;
    const Report report = session.Perform(request, "asking for the weight");
    const Measurement measurement = Measure(*connection.driver, report);
    const Reading& reading = measurement.reading;
    if (reading.meaning == Meaning::Silence) {
        tell_("answer", "none");
        return {ExitCode::Silent,
                device +
                    ": the port works but nothing comes back; is the balance switched on, is "
                    "the cable the right one (straight or crossed), and does the balance send "
                    "at " +
                    connection.line.Text() + "? `wbalance detect` tries other settings"};
    }
    tell_("answer", outside::Quoted(measurement.answer));
    if (reading.meaning == Meaning::NotUnderstood || reading.meaning == Meaning::Truncated) {
        const Dialogue dialogue(report.trace);
        return {CodeFor(reading.meaning),
                device + ": " +
                    (EndsInMidAnswer(report.trace, measurement.answer)
                         ? kTooManyPieces
                         : ExplainAnswer(*connection.driver, connection.line,
                                         dialogue.exchanges.back().command, measurement))};
    }
    if (!reading.IsWeight())
        return {CodeFor(reading.meaning), device + ": the line works; " + SentenceFor(reading)};
    tell_("weight", reading.digits + " " + reading.unit + ", " + WordFor(reading.stability));
    if (reading.stability == Stability::Dynamic) {
        return {ExitCode::NotStable,
                device +
                    ": the line works, but the pan is not at rest; keep draughts and "
                    "vibration away, or read with --mode now"};
    }
    const std::string line =
        connection.line == connection.driver->line ? "" : " --line " + connection.line.Text();
    return {ExitCode::Done, device + ": everything works; `wbalance weigh --driver " +
                                connection.driver->name + " --port " + patient_.port.Text() + line +
                                "` reads the weight"};
}

std::string ExplainAnswer(const DriverInfo& driver, const LineSettings& line,
                          const std::string& command, const Measurement& measurement) {
    const std::string& answer = measurement.answer;
    const bool eighthBit =
        std::any_of(answer.begin(), answer.end(), [](char byte) { return (byte & 0x80) != 0; });
    if (eighthBit && LooksLikeText(SevenBits(answer))) {
        return "the balance sends 7 data bits with parity and the port reads 8; use --line " +
               std::to_string(line.baudRate) + ",7E1 (or 7O1)";
    }
    if (!LooksLikeText(answer)) {
        return "bytes come back but garbled: the baud rate is not that of the balance (`wbalance "
               "detect --thorough` tries others), or the cable picks up noise";
    }
    if (!command.empty() && answer.rfind(command, 0) == 0) {
        return "what is sent comes back: the line is looped, or the instrument echoes; switch its "
               "echo off";
    }
    // What is cut off may look like another instrument's line.
    if (answer.back() != '\n') {
        return "the answer has no line end: either it is cut off (wait longer with --timeout, look "
               "for a loose cable), or the line settings are not those of the balance (`wbalance "
               "detect` tries others)";
    }
    return ExplainLine(driver, measurement);
}

}  // namespace tool
