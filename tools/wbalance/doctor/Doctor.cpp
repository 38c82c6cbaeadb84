#include "Doctor.h"

#include <fcntl.h>
#include <sys/ioctl.h>
#include <termios.h>

#include <optional>

#include "Explanation.h"
#include "OutsideText.h"
#include "ToolError.h"
#include "UnaskedOutput.h"
#include "detect/Identification.h"
#include "detect/RawLine.h"
#include "line/PortList.h"
#include "line/PortTrouble.h"

namespace tool {
namespace {

constexpr int kHardwareFlowControl = 3;
constexpr int kListeningSeconds = 1;
constexpr int kIdentitySeconds = 2;  // enough for the longest answer at 300 baud

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

Finding PrintsUnasked(const DriverInfo& driver) {
    return {Trouble::PrintsUnasked, {{"MENU", driver.menu.onRequest}}};
}

// What may also help, behind what is to be done.
std::string OrSet(const std::string& menu) {
    return menu.empty() ? "" : "; or, in its menu, set " + menu;
}

// An answer that the driver can make nothing of.
Finding FindingIn(const DriverInfo& driver, const LineSettings& line, const Report& report,
                  const Measurement& measurement) {
    if (EndsInMidAnswer(report.trace, measurement.answer)) return {Trouble::TooManyPieces};
    const WireExchanges wire(report.trace);
    return ExplainAnswer(driver, line, wire.exchanges.back().command, measurement);
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
    if (opened.Get() < 0) return WhyNotOpened(device);
    if (const auto held = WhyHeld(device)) return *held;
    tell_("access", "opens, nobody else holds it");
    tell_("adapter", AdapterText(device));
    const auto lines = ControlLines(opened);
    opened.Close();
    tell_("control lines", lines ? LinesText(*lines) : "the port does not tell");
    if (patient_.line.flowControl == kHardwareFlowControl && lines && (*lines & TIOCM_CTS) == 0)
        return Diagnose(device, {Trouble::ClearToSendOff});
    tell_("line", patient_.line.Text());
    return ExamineBalance({patient_.driver, port, patient_.line, patient_.timeoutSeconds});
}

Diagnosis Doctor::ExamineBalance(const Connection& connection) {
    const std::string device = connection.port.Device();
    const DriverInfo& driver = *connection.driver;
    // Ahead of the request, because some instruments stop at it until they are switched on again.
    const bool unasked = IsHeardUnasked(connection);
    const Report report = AskForTheWeight(connection);
    const Measurement measurement = Measure(driver, report);
    const Meaning meaning = measurement.reading.meaning;
    if (meaning == Meaning::Silence) {
        tell_("answer", "none");
        if (unasked) return Diagnose(device, PrintsUnasked(driver));
        Diagnosis silence =
            Diagnose(device, {Trouble::NothingComesBack, {{"LINE", connection.line.Text()}}});
        silence.sentence += OrSet(driver.menu.whenSilent);
        return silence;
    }
    tell_("answer", outside::Quoted(measurement.answer));
    if (meaning == Meaning::NotUnderstood || meaning == Meaning::Truncated) {
        const Finding finding = FindingIn(driver, connection.line, report, measurement);
        if (unasked && finding.trouble != Trouble::OtherInstrument)
            return Diagnose(device, PrintsUnasked(driver));
        return {CodeFor(meaning), Diagnose(device, finding).sentence};
    }
    TellIdentity(connection);
    const Diagnosis diagnosis = Judge(connection, measurement.reading);
    return unasked ? Diagnose(device, PrintsUnasked(driver)) : diagnosis;
}

bool Doctor::IsHeardUnasked(const Connection& connection) const {
    BalanceProcess line({&RawLine(), connection.port, connection.line, kListeningSeconds},
                        SinkFor(patient_.showTrace));
    return SendsUnasked(line);
}

Report Doctor::AskForTheWeight(const Connection& connection) const {
    Session session(connection, patient_.showTrace, patient_.recordPath);
    Request request;
    request.mode = kAtOnce;
    return session.Perform(request, "asking for the weight");
}

void Doctor::TellIdentity(const Connection& connection) const {
    const DriverInfo& driver = *connection.driver;
    if (driver.identity.empty()) return;
    BalanceProcess line({&RawLine(), connection.port, connection.line, kIdentitySeconds},
                        SinkFor(patient_.showTrace));
    const Identity identity = Identify(line, driver);
    if (!identity.model.empty()) tell_("model", identity.model);
    if (!identity.serialNumber.empty()) tell_("serial number", identity.serialNumber);
    if (!identity.softwareVersion.empty()) tell_("software", identity.softwareVersion);
}

Diagnosis Doctor::Judge(const Connection& connection, const Reading& reading) const {
    const std::string device = connection.port.Device();
    if (!reading.IsWeight()) {
        const std::string help =
            reading.meaning == Meaning::NotStable ? OrSet(connection.driver->menu.whileMoving) : "";
        return {CodeFor(reading.meaning),
                device + ": the line works; " + SentenceFor(reading) + help};
    }
    tell_("weight", reading.digits + " " + reading.unit + ", " + WordFor(reading.stability));
    if (reading.stability == Stability::Dynamic) return Diagnose(device, {Trouble::NotAtRest});
    const DriverInfo& driver = *connection.driver;
    const std::string line =
        connection.line == driver.line ? "" : " --line " + connection.line.Text();
    return Diagnose(
        device,
        {Trouble::None, {{"DRIVER", driver.name}, {"PORT", patient_.port.Text()}, {"LINE", line}}});
}

}  // namespace tool
