#pragma once

#include <Instruments.h>

#include <string>
#include <vector>

#define WBALANCE_DECLARE_CLASS(name, Class) class Class;
WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DECLARE_CLASS)
#undef WBALANCE_DECLARE_CLASS

/// The facts about each instrument that tests of all drivers need, in a file named after its
/// driver. Its answers are enough for load tests and measurements, in which every operation has to
/// succeed and a simulation would take time itself.
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

/// What mode 2 gives with 12.34 g on the pan and a port that hands the answer over in pieces.
struct InPieces {
    std::string name;
    std::string port;  ///< as `wbalance-sim --port-like` has it
    int baudRate;      ///< 0: the instrument's own
    int result;
    double weight;
};

/// What a driver sends when every command has the same answer.
struct Sent {
    std::string answer;
    std::vector<std::string> operations;
    std::vector<std::string> commands;
};

/// What bench_parsers measures beside the parsers.
constexpr char kStrtod[] = "strtod/number_100_00";
constexpr char kStrtodOnACopy[] = "strtod/with_the_copy_of_an_answer";
constexpr char kStrtodOnATicket[] = "strtod/with_the_strings_and_trace_of_a_ticket";

/// A text for the driver's own parser, and what the measurements compare its time with.
struct Parsed {
    std::string name;
    std::string text;
    std::string comparedWith;
};

/// What a parser that stores the weight makes of a null pointer in its place.
enum class NullWeight { NotAllowed, SameResult, NoResult };

struct Instrument {
    Readiness readiness;
    std::vector<Answer> answers;
    /// The operations that send something and succeed with these answers and a weight of zero:
    /// "IsReady", "Tare", "Weight 1", "TareSet 5", "DisplayMessage READY".
    std::vector<std::string> operations;
    std::vector<InPieces> inPieces;
    std::vector<Sent> sent;
    std::vector<Parsed> parsed = {};
    NullWeight nullWeight = NullWeight::NotAllowed;
};

template <class Driver>
Instrument InstrumentOf();

#define WBALANCE_DECLARE_INSTRUMENT(name, Class) \
    template <>                                  \
    Instrument InstrumentOf<Class>();
WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DECLARE_INSTRUMENT)
#undef WBALANCE_DECLARE_INSTRUMENT

/// The pieces of a driver that reads up to an end mark, or goes on until nothing comes: it reads
/// the whole answer on every port.
std::vector<InPieces> WholeOnEveryPort(double weight, int baudRateOfFtdi = 0);

/// The bytes of an answer that shows `grams`.
std::string BytesOf(const Answer& answer, double grams);

}  // namespace answers
