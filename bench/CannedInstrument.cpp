#include "CannedInstrument.h"

#include "simulator/instruments/Dialect.h"

namespace bench {
namespace {

class CannedDialect : public simulator::Dialect {
 public:
    CannedDialect(simulator::BalanceModel& balance, std::vector<Operation::Answer> answers)
        : Dialect(balance, ""), answers_(std::move(answers)) {}

 protected:
    std::optional<std::string> CutCommand(std::string& received) override {
        // Commands that nothing answers go by with what follows them.
        for (; !received.empty(); received.erase(0, 1)) {
            bool mayBecomeOne = false;
            for (const auto& answer : answers_) {
                if (received.rfind(answer.command, 0) == 0) {
                    received.erase(0, answer.command.size());
                    return answer.command;
                }
                mayBecomeOne = mayBecomeOne || answer.command.rfind(received, 0) == 0;
            }
            if (mayBecomeOne) return std::nullopt;
        }
        return std::nullopt;
    }

    void Execute(const std::string& command) override {
        for (const auto& answer : answers_) {
            if (answer.command == command) Send(answer.bytes);
        }
    }

    void Unknown(const std::string& /*command*/) override {}
    void PrintKey() override {}

 private:
    std::vector<Operation::Answer> answers_;
};

}  // namespace

simulator::CatalogEntry CannedInstrument(const Operation& operation) {
    simulator::CatalogEntry entry;
    entry.name = operation.driver;
    entry.line = simulator::UartSettings::Parse(operation.line).value();
    entry.createDialect = [answers = operation.answers](simulator::BalanceModel& balance,
                                                        const simulator::Switches&) {
        return std::make_unique<CannedDialect>(balance, answers);
    };
    return entry;
}

}  // namespace bench
