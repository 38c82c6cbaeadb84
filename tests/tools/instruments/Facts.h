#pragma once

#include <Instruments.h>

#include <string>
#include <vector>

#define WBALANCE_DECLARE_CLASS(name, Class) class Class;
WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DECLARE_CLASS)
#undef WBALANCE_DECLARE_CLASS

/// What the tests of the program expect of each instrument, in a file with the instrument's name.
/// The tests themselves name none: they go through all.
namespace facts {

struct Answer {
    std::string question;
    std::string answer;
};

/// Sentences that several instruments come to.
inline constexpr char kNoAnswer[] =
    "no answer; is the balance switched on, the cable plugged in, and are the line settings those "
    "of the balance?";
inline constexpr char kNotAtRest[] =
    "the balance answers, but not this, as it does while its pan moves";
inline constexpr char kBegun[] =
    "the balance has begun it and finishes it when its pan comes to rest";
inline constexpr char kPanMoves[] = "afterwards the balance shows 50.00 g and the pan moves";
inline constexpr char kStabilityUntold[] =
    "the balance does not tell whether its weight is stable, so there is none with --mode stable; "
    "read with --mode auto or now";

/// With nothing, 2 g or 50 g on it, or with 50 g and never at rest.
enum class Pan { Empty, Light, Loaded, Moving };

/// An operation on the simulated instrument.
struct Performed {
    std::string operation;  ///< with its argument
    Pan pan;
    int exitCode;
    std::string says;       ///< on standard output, or a part of the error
    double shows;           ///< the instrument afterwards
    std::string with = {};  ///< a switch of the instrument
};

/// What the program says at a simulated instrument that is not as it should be.
struct Said {
    std::string name;       ///< of the test
    std::string simulated;  ///< the simulator's arguments behind the instrument
    std::string arguments;  ///< the command's arguments behind the driver
    std::string says;
    int exitCode;
};

/// What an operation comes to that the driver has ended with this result after these exchanges.
struct Confirmed {
    std::string name;  ///< of the test
    std::vector<Answer> exchanges;
    std::string operation;
    int result;
    int exitCode;
    std::string says;
};

/// What an answer that the driver takes for this weight comes to where only a stable one is wanted.
struct StableOnly {
    std::string answer;
    double weight;
    bool isWeight;
    std::string says;  ///< a part of the sentence
};

/// A pan that never comes to rest, and what the instrument sends meanwhile to the question for a
/// sign of life.
struct Moving {
    std::string simulated;
    std::string arguments;
    std::string sent;
};

/// A weight that is not known to be stable, and what a line of the monitor for programs holds.
struct NotKnownToBeStable {
    std::string simulated;
    std::string csv;
};

/// An operation with the bytes that must go over the line for it, as the simulator's log has them.
struct Sent {
    std::string operation;
    std::vector<std::string> bytes;
};

/// A command line that is refused before anything is sent.
struct Refused {
    std::string arguments;
    std::string says;
};

/// A unit or a mode that another program sets at the simulated instrument, and the weight of 12.5 g
/// then.
struct SetByHost {
    std::string with;    ///< switches of the instrument
    std::string line;    ///< as stty takes it
    std::string sent;    ///< as printf takes it
    std::string weight;  ///< the line that comes
};

/// What `doctor` tells between the answer and the diagnosis.
struct Identified {
    std::string name;       ///< of the test
    std::string simulated;  ///< the simulator's arguments behind the instrument
    std::string arguments;  ///< the command's arguments behind the driver
    std::string told;       ///< lines such as "model          PS\n"
};

/// A record of the folder records, and how replaying it ends.
struct Replayed {
    std::string record;
    int exitCode;
};

struct Instrument {
    std::string name = {};

    std::string title;       ///< maker and models
    std::string line;        ///< the settings of its driver
    std::string operations;  ///< of its driver, in the order in which they are listed
    /// Whether the driver's own readiness check, which resets or detects, is kept.
    bool ownReadiness = false;
    /// Whether the driver is made ready first, because its Weight() does not open the port.
    bool readyFirst = false;

    /// What `detect` asks for it, and answers by which it is known or must not be.
    std::vector<std::string> questions = {};
    std::vector<Answer> known = {};
    std::vector<Answer> strange = {};
    /// Answers for which `doctor` names its driver to who has taken another.
    std::vector<std::string> ownAnswers = {};
    /// Its answer to the question for the model, where it shares a protocol with others.
    std::string modelAnswer = {};
    /// What keeps the simulated instrument from telling its model.
    std::string hidesItsModel = {};

    std::vector<Performed> performed = {};  ///< every operation of the driver
    std::vector<Confirmed> confirmed = {};
    std::vector<Said> diagnoses = {};  ///< of `doctor`
    std::vector<Said> noWeights = {};  ///< of `weigh`
    std::vector<StableOnly> stableOnly = {};
    std::vector<NotKnownToBeStable> notKnownToBeStable = {};
    std::vector<Moving> moving = {};
    std::vector<Sent> sends = {};
    std::vector<Refused> refused = {};
    std::vector<SetByHost> setByHost = {};
    std::vector<Replayed> records = {};
    std::vector<Identified> identified = {};
    /// What `detect` tells of the one in the first of those rows.
    std::string detected = {};
    /// What stands in front of a number of any length and behind it; empty where an answer has a
    /// length of its own.
    std::vector<std::string> numberOfAnyLength = {};

    /// Whether its driver has the operation.
    bool Has(const std::string& operation) const;
};

template <class Driver>
Instrument Of();

#define WBALANCE_DECLARE_FACTS(name, Class) \
    template <>                             \
    Instrument Of<Class>();
WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DECLARE_FACTS)
#undef WBALANCE_DECLARE_FACTS

/// Those of all instruments, in the order of the list.
const std::vector<Instrument>& All();

/// Their names.
std::vector<std::string> Names();

/// The name of the first whose driver has the operation.
std::string FirstWith(const std::string& operation);

/// An instrument's name as a part of a test's name.
std::string TestNameOf(const std::string& instrument);

}  // namespace facts
