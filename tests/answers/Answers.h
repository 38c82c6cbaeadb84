#pragma once

#include <Instruments.h>

#include <string>
#include <vector>

#define WBALANCE_DECLARE_CLASS(name, Class) class Class;
WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DECLARE_CLASS)
#undef WBALANCE_DECLARE_CLASS

/// What each instrument answers, in a file named after its driver: enough for load tests and
/// measurements, in which every operation has to succeed and a simulation would take time itself.
namespace answers {

struct Answer {
    std::string command;
    std::string format;  ///< of printf, with a "%8.2f" where it shows the weight
};

/// What the driver's own readiness check means for what follows it.
enum class Readiness {
    Cheap,     ///< nothing
    Reading,   ///< it takes as long as a reading
    Spoiling,  ///< an answer that it leaves in the line is read as the next weight
    Endless    ///< it weighs, and weighing asks for readiness
};

struct Instrument {
    Readiness readiness;
    std::vector<Answer> answers;
    /// The operations that send something and succeed with these answers and a weight of zero:
    /// "IsReady", "Tare", "Weight 1", "TareSet 5", "DisplayMessage READY".
    std::vector<std::string> operations;
};

template <class Driver>
Instrument InstrumentOf();

#define WBALANCE_DECLARE_INSTRUMENT(name, Class) \
    template <>                                  \
    Instrument InstrumentOf<Class>();
WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DECLARE_INSTRUMENT)
#undef WBALANCE_DECLARE_INSTRUMENT

/// The bytes of an answer that shows `grams`.
std::string BytesOf(const Answer& answer, double grams);

}  // namespace answers
