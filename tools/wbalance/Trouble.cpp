#include "Trouble.h"

#include <iterator>

#include "FilledText.h"

namespace tool {
namespace {

constexpr TroubleInfo kTroubles[] = {
    {Trouble::NoSuchPort, ExitCode::PortFailed, "there is no such port",
     "; is the adapter plugged in? `wbalance ports` lists the ports that are there"},
    {Trouble::NoSuchName, ExitCode::PortFailed, "{REASON}; is the adapter plugged in?",
     " `wbalance ports` lists the ports that are there"},
    {Trouble::OtherDevice, ExitCode::PortFailed,
     "only /dev/ttyS<number> and /dev/ttyUSB<number> can be used",
     "; connect the balance to such a port"},
    {Trouble::DeviceHasGone, ExitCode::PortFailed,
     "the node is there but no device is behind it ({REASON})", "; plug the adapter in again"},
    {Trouble::NoPortBehindNode, ExitCode::PortFailed, "no serial port is behind it",
     "; `wbalance ports` lists those that are there"},

    {Trouble::NotInGroup, ExitCode::PortFailed,
     "permission denied; its group is {GROUP}, you are not in it",
     ": sudo adduser {USER} {GROUP}, then log out and in again"},
    {Trouble::JoinedAfterLogin, ExitCode::PortFailed,
     "permission denied; its group is {GROUP}, which you joined after you had logged in",
     ": log out and in again"},
    {Trouble::KeptOut, ExitCode::PortFailed,
     "permission denied; its owner is {OWNER}, its group {GROUP}, its mode {MODE}, which keeps "
     "you out",
     ": check its udev rule"},
    {Trouble::Policy, ExitCode::PortFailed, "permission denied; its rights let you use it",
     ", so look for a container or a security policy that forbids it"},
    {Trouble::Forbidden, ExitCode::PortFailed, "permission denied", "; try again"},
    {Trouble::LeftLock, ExitCode::PortFailed,
     "the lock file of a program that has ended keeps the port closed", ": sudo rm {FILE}"},
    {Trouble::Held, ExitCode::PortFailed,
     "the port is in use; it is held by {PROGRAM} (process {N})", ": end that program first"},
    {Trouble::PerhapsHeld, ExitCode::PortFailed,
     "the port is in use; it is held by a program that may be {PROGRAM} (process {N})",
     ": end that program first; or, where it does not use the port, sudo rm {FILE}"},
    {Trouble::HeldByAnotherUser, ExitCode::PortFailed,
     "the port is in use; another user's program holds it", ": see sudo fuser -v {DEVICE}"},
    {Trouble::OpensByNow, ExitCode::PortFailed,
     "the port could not be opened a moment ago but can be now", "; try again"},
    {Trouble::SettingsRefused, ExitCode::PortFailed, "the port refuses the line settings {LINE}",
     "; choose others with --line, or use another adapter"},
    {Trouble::EverySettingRefused, ExitCode::PortFailed, "the port refuses all line settings",
     "; use another adapter"},

    {Trouble::NothingComesBack, ExitCode::Silent, "the port works but nothing comes back",
     "; is the balance switched on, is the cable the right one (straight or crossed), and does "
     "the balance send at {LINE}? `wbalance detect` tries other settings"},
    {Trouble::NoAnswer, ExitCode::Silent, "no answer",
     "; is the balance switched on, the cable plugged in, and are the line settings those of "
     "the balance?"},
    {Trouble::ClearToSendOff, ExitCode::Silent, "CTS is off, so nothing can be sent with rtscts",
     "; switch the balance on, use a cable that carries CTS, or leave rtscts out of --line"},

    {Trouble::SevenBits, ExitCode::NotUnderstood,
     "the balance sends 7 data bits with parity and the port reads 8",
     "; use --line {BAUD},7E1 (or 7O1)"},
    {Trouble::Garbled, ExitCode::NotUnderstood,
     "bytes come back but garbled: the baud rate is not that of the balance",
     " (`wbalance detect --thorough` tries others), or the cable picks up noise"},
    {Trouble::Echo, ExitCode::NotUnderstood, "what is sent comes back",
     ": the line is looped, or the instrument echoes; switch its echo off"},
    {Trouble::OtherInstrument, ExitCode::NotUnderstood,
     "the answer is not one for the driver {DRIVER}", "; try --driver {OTHER}"},
    // The drivers that read without an end mark take three pieces, however small; what is
    // behind them is read as the answer to the next command, or not at all.
    {Trouble::TooManyPieces, ExitCode::NotUnderstood,
     "the answer comes in more pieces than the three that the driver takes",
     ", and waiting longer does not help: use an FTDI adapter with its latency timer set to "
     "255 ms; a higher baud rate on the balance and in --line may do, too"},
    {Trouble::NoLineEnd, ExitCode::NotUnderstood, "the answer has no line end",
     ": either it is cut off (wait longer with --timeout, look for a loose cable), or the line "
     "settings are not those of the balance (`wbalance detect` tries others)"},
    {Trouble::OtherFormat, ExitCode::NotUnderstood,
     "the record is not one that the driver takes whole",
     "; choose the balance's standard print format"},
    {Trouble::CutOff, ExitCode::Truncated, "the record is cut off, or longer than the driver takes",
     ": digits are missing"},
    {Trouble::UnknownText, ExitCode::NotUnderstood,
     "text comes back that the driver {DRIVER} does not know",
     "; `wbalance detect` finds the instrument"},
    {Trouble::NoWeight, ExitCode::NotUnderstood,
     "an answer came that is not a weight of this balance",
     "; is this the right driver and are the line settings those of the balance?"},
    {Trouble::AnswerTooLong, ExitCode::Internal,
     "more came than an answer can hold, and the library gave up",
     "; switch the balance's continuous output off. It said: {WORDS}"},
    {Trouble::PrintsUnasked, ExitCode::NotUnderstood, "the balance sends without being asked",
     ", so that a host may take an old weight for the answer; in its menu, set {MENU}"},
    {Trouble::Endless, ExitCode::NotUnderstood, "the balance sends without end",
     ", so that no answer can be told from the next; switch its continuous output (auto print) "
     "off"},
    {Trouble::Killed, ExitCode::Internal,
     "the process that talked to the balance was killed ({SIGNAL})", "; try again"},
    {Trouble::GaveUp, ExitCode::Internal, "the process that talked to the balance gave up",
     "; try again. It said: {WORDS}"},
    {Trouble::NoProcess, ExitCode::Internal, "no process can be started for the balance: {REASON}",
     "; end other programs, or raise the limits of this one (ulimit -n, ulimit -u)"},

    {Trouble::Overload, ExitCode::Overload,
     "overload: more is on the pan than the balance can weigh", "; take something off"},
    {Trouble::Underload, ExitCode::Underload, "underload: less than the balance can weigh",
     "; is the pan in its place?"},
    {Trouble::StabilityUntold, ExitCode::NotStable,
     "the balance does not tell whether its weight is stable",
     ", so there is none with --mode stable; read with --mode auto or now"},
    {Trouble::NotStable, ExitCode::NotStable, "no stable weight",
     "; wait until the pan is at rest, or read with --mode now"},
    {Trouble::NoWeightYet, ExitCode::NotStable, "no weight yet",
     "; wait until the pan is at rest and the balance has finished"},
    {Trouble::NotAtRest, ExitCode::NotStable, "the line works, but the pan is not at rest",
     "; keep draughts and vibration away, or read with --mode now"},
    {Trouble::Calibrating, ExitCode::Refused, "the balance is calibrating, testing or taring",
     "; wait until it has finished"},
    {Trouble::Standby, ExitCode::Refused, "the balance is in stand-by or does not display a weight",
     "; switch it on"},
    {Trouble::InstrumentError, ExitCode::Refused, "the balance reports an error", ""},
    {Trouble::OtherUnit, ExitCode::OtherUnit, "the weight is not in grams",
     "; set the balance's unit to g"},

    {Trouble::None, ExitCode::Done, "everything works",
     "; `wbalance weigh --driver {DRIVER} --port {PORT}{LINE}` reads the weight"}};

const TroubleInfo& RowOf(Trouble trouble) {
    return Troubles().at(static_cast<std::size_t>(trouble));
}

}  // namespace

const std::vector<TroubleInfo>& Troubles() {
    static const std::vector<TroubleInfo> troubles(std::begin(kTroubles), std::end(kTroubles));
    return troubles;
}

std::string SentenceFor(const Finding& finding) {
    const TroubleInfo& row = RowOf(finding.trouble);
    const std::string remark = finding.remark.empty() ? "" : " (" + finding.remark + ")";
    return texts::Filled(row.says, finding.fillIns) + remark +
           texts::Filled(row.remedy, finding.fillIns);
}

ExitCode CodeFor(Trouble trouble) {
    return RowOf(trouble).code;
}

Diagnosis Diagnose(const std::string& subject, const Finding& finding) {
    return {CodeFor(finding.trouble), subject + ": " + SentenceFor(finding)};
}

}  // namespace tool
