#include "Reading.h"

#include <cstdlib>

#include "OutsideText.h"

namespace tool {
namespace {

// Who has asked for a weight of the moving pan gains nothing by asking for it.
Trouble WhyNotStable(const Reading& reading) {
    if (reading.askedAtOnce) return Trouble::NoWeightYet;
    const bool untold = reading.stability == Stability::Unknown && !reading.digits.empty();
    return untold ? Trouble::StabilityUntold : Trouble::NotStable;
}

}  // namespace

double Reading::Value() const {
    return std::strtod(digits.c_str(), nullptr);
}

int Reading::Decimals() const {
    const std::size_t point = digits.find('.');
    return point == std::string::npos ? 0 : static_cast<int>(digits.size() - point - 1);
}

std::string WordFor(Meaning meaning) {
    switch (meaning) {
        case Meaning::Weight:
            return "weight";
        case Meaning::Overload:
            return "overload";
        case Meaning::Underload:
            return "underload";
        case Meaning::NotStable:
            return "not-stable";
        case Meaning::Calibrating:
            return "calibrating";
        case Meaning::Standby:
            return "standby";
        case Meaning::InstrumentError:
            return "instrument-error";
        case Meaning::OtherUnit:
            return "other-unit";
        case Meaning::Truncated:
            return "truncated";
        case Meaning::NotUnderstood:
            return "not-understood";
        case Meaning::Silence:
            return "silence";
    }
    return "";
}

std::string WordFor(Stability stability) {
    switch (stability) {
        case Stability::Stable:
            return "stable";
        case Stability::Dynamic:
            return "dynamic";
        case Stability::Unknown:
            return "unknown";
    }
    return "";
}

Trouble TroubleOf(Meaning meaning) {
    switch (meaning) {
        case Meaning::Weight:
            return Trouble::None;
        case Meaning::Overload:
            return Trouble::Overload;
        case Meaning::Underload:
            return Trouble::Underload;
        case Meaning::NotStable:
            return Trouble::NotStable;
        case Meaning::Calibrating:
            return Trouble::Calibrating;
        case Meaning::Standby:
            return Trouble::Standby;
        case Meaning::InstrumentError:
            return Trouble::InstrumentError;
        case Meaning::OtherUnit:
            return Trouble::OtherUnit;
        case Meaning::Truncated:
            return Trouble::CutOff;
        case Meaning::NotUnderstood:
            return Trouble::NoWeight;
        case Meaning::Silence:
            return Trouble::NoAnswer;
    }
    return Trouble::NoWeight;
}

std::string SentenceFor(const Reading& reading) {
    const Trouble trouble =
        reading.meaning == Meaning::NotStable ? WhyNotStable(reading) : TroubleOf(reading.meaning);
    // A remark may quote the instrument, which may send anything.
    const std::string remark = outside::Printable(outside::Shortened(reading.remark));
    const std::string sentence = reading.IsWeight() ? "a weight" : SentenceFor(Finding{trouble});
    return sentence + (remark.empty() ? "" : " (" + remark + ")");
}

}  // namespace tool
