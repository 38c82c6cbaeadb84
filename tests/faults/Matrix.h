#pragma once

#include <wbalance/wbalance.h>

#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <vector>

#include "Oracle.h"

namespace faults {

/// A command and what the instrument answers to it.
struct Exchange {
    std::string command;
    std::vector<scripted::Reply> replies;
};
using Script = std::vector<Exchange>;

struct Act {
    Call call;
    Script script;
};

constexpr double kUntouchedWeight = -777.25;
constexpr int kUntouchedDecimals = -777;

/// An operation without a fault. The faults are derived from it.
struct FaultDialogue {
    std::string name;
    Act act;
    int result;
    double weight = kUntouchedWeight;  ///< the value of *weight at the end
    int decimals = kUntouchedDecimals;
    long boundMs = 0;              ///< the longest that the operation may take, whatever fails
    std::vector<Act> before = {};  ///< earlier calls on the same object, without faults
    /// The operation calls itself without end. Only a failing call on the port ends it.
    bool endless = false;
};

/// A driver object of the library, with one interface for all drivers.
class Subject {
 public:
    virtual ~Subject() = default;
    virtual int Perform(const Call& call, double* weight, int* decimals) = 0;
};
using MakeSubject = std::function<std::unique_ptr<Subject>()>;

template <class Driver, class = void>
struct HasDisplay : std::false_type {};
template <class Driver>
struct HasDisplay<Driver, std::void_t<decltype(&Driver::DisplayMessage)>> : std::true_type {};

template <class Driver, class = void>
struct HasSwitch : std::false_type {};
template <class Driver>
struct HasSwitch<Driver, std::void_t<decltype(&Driver::TurnItOn)>> : std::true_type {};

template <class Driver, class = void>
struct HasZero : std::false_type {};
template <class Driver>
struct HasZero<Driver, std::void_t<decltype(&Driver::Zero)>> : std::true_type {};

template <class Driver>
class SubjectOf : public Subject {
 public:
    int Perform(const Call& call, double* weight, int* decimals) override {
        const std::string& operation = call.operation;
        if (operation == "IsReady") return balance_.IsReady();
        if (operation == "Tare") return balance_.Tare();
        if (operation == "Weight") return balance_.Weight(call.mode, weight, decimals);
        if (operation == "TareSet") return balance_.TareSet(call.preset);
        if (operation == "RestoreFactorySettings") return balance_.RestoreFactorySettings();
        if constexpr (HasDisplay<Driver>::value) {
            std::string text = call.text;
            if (operation == "DisplayMessage") return balance_.DisplayMessage(text.data());
        }
        if constexpr (HasSwitch<Driver>::value) {
            if (operation == "TurnItOn") return balance_.TurnItOn();
            if (operation == "TurnItOff") return balance_.TurnItOff();
        }
        if constexpr (HasZero<Driver>::value) {
            if (operation == "Zero") return balance_.Zero();
            if (operation == "_Tare") return balance_._Tare();
        }
        throw std::logic_error("no operation " + operation);
    }

 private:
    Driver balance_;
};

/// The operations that a host can call on a driver.
template <class Driver>
std::vector<const char*> OperationsOf() {
    std::vector<const char*> operations = {"IsReady", "Tare", "Weight", "TareSet"};
    const auto add = [&operations](std::initializer_list<const char*> more) {
        operations.insert(operations.end(), more);
    };
    if constexpr (HasDisplay<Driver>::value) add({"DisplayMessage"});
    if constexpr (HasSwitch<Driver>::value) add({"TurnItOn", "TurnItOff"});
    if constexpr (HasZero<Driver>::value) add({"_Tare", "Zero"});
    add({"RestoreFactorySettings"});
    return operations;
}

/// A driver of the library, its table and the dialogues from which the faults are bred.
struct Matrix {
    Description description;
    std::vector<FaultDialogue> dialogues;
    MakeSubject make;
};

template <class Driver>
MakeSubject Make() {
    return [] { return std::make_unique<SubjectOf<Driver>>(); };
}

/// Runs each dialogue once without a fault and once with each single fault: every call on the port
/// fails in each possible way, and every answer is missing, cut, split, late, doubled, or has
/// strange bytes. After each run, the operation is called once more without a fault.
/// The library must do what the table says. This includes the order of calls, the text of the
/// traces, the pauses, the virtual time, the results and what is written. The operation must end
/// within the dialogue's bound. Reports to GoogleTest, and prints the number of cells.
void ExpectEveryFaultMet(const Matrix& matrix);

}  // namespace faults
