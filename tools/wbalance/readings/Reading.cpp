#include "Reading.h"

#include <cstdlib>

#include "OutsideText.h"

namespace tool {
namespace {

constexpr char kStabilityUntold[] =
    "the balance does not tell whether its weight is stable, so there is none with --mode stable; "
    "read with --mode auto or now";

std::string SentenceFor(Meaning meaning) {
    switch (meaning) {
        case Meaning::Weight:
            return "a weight";
        case Meaning::Overload:
            return "overload: more is on the pan than the balance can weigh; take something off";
        case Meaning::Underload:
            return "underload: less than the balance can weigh; is the pan in its place?";
        case Meaning::NotStable:
            return "no stable weight; wait until the pan is at rest, or read with --mode now";
        case Meaning::Calibrating:
            return "the balance is calibrating, testing or taring; wait until it has finished";
        case Meaning::Standby:
            return "the balance is in stand-by or does not display a weight; switch it on";
        case Meaning::InstrumentError:
            return "the balance reports an error";
        case Meaning::OtherUnit:
            return "the weight is not in grams; set the balance's unit to g";
        case Meaning::Truncated:
            return "the record is cut off, or longer than the driver takes: digits are missing";
        case Meaning::NotUnderstood:
            return "an answer came that is not a weight of this balance; is this the right driver "
                   "and are the line settings those of the balance?";
        case Meaning::Silence:
            return "no answer; is the balance switched on, the cable plugged in, and are the line "
                   "settings those of the balance?";
    }
    return "";
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

std::string SentenceFor(const Reading& reading) {
    const bool untold = reading.stability == Stability::Unknown && !reading.digits.empty();
    const std::string sentence = reading.meaning == Meaning::NotStable && untold
                                     ? kStabilityUntold
                                     : SentenceFor(reading.meaning);
    // A remark may quote the instrument, which may send anything.
    const std::string remark = outside::Printable(outside::Shortened(reading.remark));
    return remark.empty() ? sentence : sentence + " (" + remark + ")";
}

}  // namespace tool
