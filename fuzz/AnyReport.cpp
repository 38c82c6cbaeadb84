#include "AnyReport.h"

namespace fuzz {
namespace {

constexpr std::size_t kLongest = 100'000;

std::string Traced(Input& input) {
    switch (input.Below(4)) {
        case 0:
            return "<== S" + AnyText(input) + " ... OK\n\n";
        case 1:
            return AnyText(input);
        default:
            return "Read from scale: " + AnyText(input) + " (time elapsed: 0 ms)\n";
    }
}

double Weight(Input& input, const tool::DriverInfo& driver, const tool::WireExchanges& wire) {
    const std::string answer = wire.exchanges.empty() ? "" : wire.exchanges.back().answer;
    if (input.Coin()) return driver.interpret(answer).Value();
    return input.Number() / 100.0;
}

}  // namespace

const tool::DriverInfo& AnyDriver(Input& input) {
    const auto& drivers = tool::Drivers();
    return drivers[static_cast<std::size_t>(input.Below(static_cast<int>(drivers.size())))];
}

std::string AnyText(Input& input) {
    const int kind = input.Below(64);
    const std::string text = input.Text(static_cast<std::size_t>(input.Below(60)));
    if (kind == 0) return text + input.Rest();
    if (kind != 1 || text.empty()) return text;
    std::string repeated;
    for (const std::size_t length = kLongest >> static_cast<unsigned>(input.Below(8));
         repeated.size() < length;)
        repeated += text;
    return repeated + input.Text(static_cast<std::size_t>(input.Below(20)));
}

tool::Report AnyReport(Input& input, const tool::DriverInfo& driver) {
    tool::Report report;
    report.request.mode = input.Below(3);
    report.request.grams = input.Number() / 100.0;
    report.outcome.result = input.Below(3);
    for (int texts = 1 + input.Below(8); texts != 0; --texts)
        report.trace.push_back({{}, Traced(input)});
    report.outcome.weight = Weight(input, driver, tool::WireExchanges(report.trace));
    return report;
}

}  // namespace fuzz
