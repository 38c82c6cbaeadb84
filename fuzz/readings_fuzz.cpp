// Any trace of any driver: what the program `wbalance` makes of it is a weight only when the driver
// has accepted it and found the same number.

#include <cmath>

#include "Harness.h"
#include "readings/Measurement.h"

namespace {

std::string Traced(fuzz::Input& input) {
    const std::string text = input.Text(static_cast<std::size_t>(input.Below(40)));
    switch (input.Below(4)) {
        case 0:
            return "<== " + text + " ... OK\n\n";
        case 1:
            return text;
        default:
            return "Read from scale: " + text + " (time elapsed: 0 ms)\n";
    }
}

/// What the driver may have returned: mostly the number that is read from an answer.
double Weight(fuzz::Input& input, const tool::DriverInfo& driver, const std::string& answer) {
    if (input.Coin()) return driver.dialect(answer).Value();
    return input.Number() / 100.0;
}

bool IsNumber(const std::string& digits) {
    return !digits.empty() && digits.find_first_not_of("+-.0123456789") == std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto& drivers = tool::Drivers();
    const tool::DriverInfo& driver =
        drivers[static_cast<std::size_t>(input.Below(static_cast<int>(drivers.size())))];
    tool::Report report;
    report.outcome.result = input.Below(3);
    std::string answer;
    for (int texts = 1 + input.Below(8); texts != 0; --texts) {
        report.trace.push_back({{}, Traced(input)});
        const auto& exchanges = tool::Dialogue(report.trace).exchanges;
        if (!exchanges.empty()) answer = exchanges.back().answer;
    }
    report.outcome.weight = Weight(input, driver, answer);

    const tool::Reading reading = tool::Measure(driver, report).reading;

    fuzz::Require(!tool::SentenceFor(reading).empty(), "a sentence for people");
    fuzz::Require(!tool::WordFor(reading.meaning).empty(), "a word for programs");
    fuzz::Require((tool::CodeFor(reading.meaning) == tool::ExitCode::Done) == reading.IsWeight(),
                  "the exit code is that of a weight");
    if (!reading.IsWeight()) return 0;
    fuzz::Require(report.outcome.result != 0, "the driver has accepted it");
    fuzz::Require(IsNumber(reading.digits), "a number: " + reading.digits);
    const double value = reading.Value();
    fuzz::Require(std::isfinite(value), "a finite number");
    // The mean of several readings is written with their decimals.
    const double tolerance = reading.remark.empty() ? 1e-9 : 1.0;
    fuzz::Require(
        std::fabs(value - report.outcome.weight) <= tolerance * std::fmax(1.0, std::fabs(value)),
        "the driver's number");
    return 0;
}
