#include "Operations.h"

#include <wbalance/wbalance.h>

#include "Answers.h"
#include "Call.h"
#include "simulator/Catalog.h"

namespace bench {
namespace {

/// A time-out of 0 is 100 ms.
template <class Driver>
class Quick : public Driver {
 public:
    Quick() { Driver::timeoutSeconds = 0; }
};

/// With the readiness that a host takes which reads often.
template <class Driver>
std::unique_ptr<Cwbalance> Make() {
    if (answers::InstrumentOf<Driver>().readiness == answers::Readiness::Cheap)
        return std::make_unique<Quick<Driver>>();
    return std::make_unique<Quick<WithLineReadiness<Driver>>>();
}

/// As the results name it: "weight 1", "preset tare".
std::string NameOf(const std::string& words) {
    if (words == "IsReady") return "ready";
    if (words == "Tare") return "tare";
    if (words.rfind("TareSet", 0) == 0) return "preset tare";
    if (words.rfind("DisplayMessage", 0) == 0) return "display";
    return "weight" + words.substr(words.find(' '));
}

template <class Driver>
void Add(std::vector<Operation>& operations, const std::string& driver) {
    const answers::Instrument instrument = answers::InstrumentOf<Driver>();
    std::vector<Operation::Answer> canned;
    for (const auto& answer : instrument.answers)
        canned.push_back({answer.command, answers::BytesOf(answer, 0.0)});
    const std::string line = simulator::FindInstrument(driver).line.Text();
    for (const auto& words : instrument.operations) {
        operations.push_back({driver, NameOf(words), line, canned, Make<Driver>,
                              [](Cwbalance& balance) { return balance.IsReady(); },
                              [words](Cwbalance& balance) {
                                  double weight = 0.0;
                                  int decimals = 0;
                                  return answers::Call(static_cast<Driver&>(balance), words,
                                                       &weight, &decimals);
                              }});
    }
}

}  // namespace

const std::vector<Operation>& Operations() {
    static const std::vector<Operation> operations = [] {
        std::vector<Operation> all;
#define WBALANCE_ADD(name, Class) Add<Class>(all, name);
        WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_ADD)
#undef WBALANCE_ADD
        return all;
    }();
    return operations;
}

}  // namespace bench
