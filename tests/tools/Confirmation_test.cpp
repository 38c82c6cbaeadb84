#include "readings/Confirmation.h"

#include <gmock/gmock.h>

#include "Facts.h"

using tool::Confirmation;
using tool::Operation;

namespace {

/// An operation as its report shows it.
class Performed {
 public:
    Performed& Exchange(const std::string& command, const std::string& answer) {
        const auto now = std::chrono::system_clock::now();
        report_.trace.push_back({now, "<== " + command + " ... OK\n\n"});
        report_.trace.push_back({now, "Read from scale: " + answer + " (time elapsed: 0 ms)\n"});
        return *this;
    }

    Confirmation By(const std::string& driver, Operation operation, int result) {
        report_.request.operation = operation;
        report_.request.grams = 5.0;
        report_.outcome.result = result;
        return Confirm(tool::FindDriver(driver), operation, report_);
    }

 private:
    tool::Report report_;
};

struct Case {
    std::string driver;
    facts::Confirmed confirmed;
};

std::vector<Case> Cases() {
    std::vector<Case> cases;
    for (const auto& one : facts::All()) {
        for (const auto& confirmed : one.confirmed)
            cases.push_back({one.name, confirmed});
    }
    return cases;
}

Operation OperationOf(const std::string& driver, const std::string& word) {
    for (const auto& [operation, info] : tool::FindDriver(driver).operations) {
        if (WordFor(operation) == word) return operation;
    }
    ADD_FAILURE() << driver << " has no " << word;
    return Operation::Weigh;
}

class Confirmations : public testing::TestWithParam<Case> {};

TEST_P(Confirmations, Tell_what_the_operation_came_to) {
    const auto& [driver, expected] = GetParam();
    Performed performed;
    for (const auto& [command, answer] : expected.exchanges)
        performed.Exchange(command, answer);
    const Confirmation confirmation =
        performed.By(driver, OperationOf(driver, expected.operation), expected.result);
    EXPECT_EQ(static_cast<int>(confirmation.code), expected.exitCode);
    EXPECT_EQ(confirmation.sentence, expected.says);
}

INSTANTIATE_TEST_SUITE_P(Of, Confirmations, testing::ValuesIn(Cases()), [](const auto& one) {
    return facts::TestNameOf(one.param.driver) + "_" + one.param.confirmed.name;
});

}  // namespace
