#pragma once

#include <string>
#include <vector>

#include "ExitCode.h"
#include "FilledText.h"

namespace tool {

/// The reasons why there is no weight.
enum class Trouble {
    // The port is not there.
    NoSuchPort,
    NoSuchName,
    OtherDevice,
    DeviceHasGone,
    NoPortBehindNode,
    // It may not be opened.
    NotInGroup,
    JoinedAfterLogin,
    KeptOut,
    Policy,
    Forbidden,
    LeftLock,
    Held,
    PerhapsHeld,
    HeldByAnotherUser,
    OpensByNow,
    SettingsRefused,
    EverySettingRefused,
    // Nothing comes back.
    NothingComesBack,
    NoAnswer,
    ClearToSendOff,
    // What comes back makes no sense.
    SevenBits,
    Garbled,
    Echo,
    OtherInstrument,
    TooManyPieces,
    NoLineEnd,
    OtherFormat,
    CutOff,
    UnknownText,
    NoWeight,
    AnswerTooLong,
    PrintsUnasked,
    Endless,
    Killed,
    GaveUp,
    NoProcess,
    // There is no weight.
    Overload,
    Underload,
    StabilityUntold,
    NotStable,
    NoWeightYet,
    NotAtRest,
    Calibrating,
    Standby,
    InstrumentError,
    OtherUnit,
    // There is one.
    None
};

/// A row of the table that docs/troubleshooting.md has in its own words. Words in braces differ
/// from case to case: {DEVICE}.
struct TroubleInfo {
    Trouble trouble;
    ExitCode code;
    const char* says;    ///< what is wrong; quoted on the page
    const char* remedy;  ///< what to do about it, with what joins it to the sentence
};

/// Every trouble, in the order of the enumeration.
const std::vector<TroubleInfo>& Troubles();

/// A trouble with the details of this case.
struct Finding {
    Trouble trouble = Trouble::None;
    texts::FillIns fillIns = {};
    std::string remark = {};  ///< one more fact, which stands in brackets ahead of the remedy
};

/// What is wrong and what to do about it.
std::string SentenceFor(const Finding& finding);

ExitCode CodeFor(Trouble trouble);

/// What the program ends with: the exit code, and the sentence for people.
struct Diagnosis {
    ExitCode code = ExitCode::Done;
    std::string sentence;
};

/// "/dev/ttyS0: " and the sentence.
Diagnosis Diagnose(const std::string& subject, const Finding& finding);

}  // namespace tool
