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
    /// Its answer to the question for the model, where it shares a protocol with others.
    std::string modelAnswer = {};
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

/// An instrument's name as a part of a test's name.
std::string TestNameOf(const Instrument& instrument);

}  // namespace facts
