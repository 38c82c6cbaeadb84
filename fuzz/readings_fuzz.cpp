// Any trace of any driver: what the program `wbalance` makes of it is a weight only when the driver
// has accepted it and found the same number.

#include <cmath>

#include "AnyReport.h"

namespace {

bool IsNumber(const std::string& digits) {
    return !digits.empty() && digits.find_first_not_of("+-.0123456789") == std::string::npos;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const tool::DriverInfo& driver = fuzz::AnyDriver(input);
    const tool::Report report = fuzz::AnyReport(input, driver);

    const tool::Reading reading = tool::Measure(driver, report).reading;

    fuzz::Require(!tool::SentenceFor(reading).empty(), "a sentence for people");
    fuzz::Require(!tool::WordFor(reading.meaning).empty(), "a word for programs");
    fuzz::Require((tool::CodeFor(reading.meaning) == tool::ExitCode::Done) == reading.IsWeight(),
                  "the exit code is that of a weight");
    if (!reading.IsWeight()) return 0;
    fuzz::Require(report.outcome.result != 0, "the driver has accepted it");
    fuzz::Require(IsNumber(reading.digits), "a number: " + reading.digits);
    fuzz::Require(
        report.request.mode != tool::kStableOnly || reading.stability == tool::Stability::Stable,
        "a stable weight where only that is one");
    const double value = reading.Value();
    fuzz::Require(std::isfinite(value), "a finite number");
    // The mean of several readings is written with their decimals.
    const double tolerance = reading.remark.empty() ? 1e-9 : 1.0;
    fuzz::Require(
        std::fabs(value - report.outcome.weight) <= tolerance * std::fmax(1.0, std::fabs(value)),
        "the driver's number");
    return 0;
}
