#include "process/Recorder.h"

#include <gmock/gmock.h>

#include "Examples.h"
#include "TemporaryFile.h"
#include "readings/Measurement.h"

using examples::kBalance;
using record::Entry;
using testing::HasSubstr;
using testing::StartsWith;

namespace {

std::vector<tool::Report> WeighingsWith(const std::string& result) {
    record::Record record;
    record.entries = {
        {std::chrono::milliseconds(0), Entry::Kind::FromHost, "S\r\n", 2},
        {std::chrono::milliseconds(9), Entry::Kind::FromInstrument, "S D     12.34 g\r\n", 3},
        {std::chrono::milliseconds(9), Entry::Kind::Result, result, 4}};
    return tool::WeighingsIn(record);
}

std::string ReasonFor(const std::string& result) {
    try {
        WeighingsWith(result);
    } catch (const record::Error& error) {
        return error.what();
    }
    return "";
}

TEST(Recorder, A_weighing_that_is_read_again_has_its_mode) {
    EXPECT_EQ(WeighingsWith("weigh 1 12.34 stable").at(0).request.mode, 0);
    EXPECT_EQ(WeighingsWith("weigh 1 12.34 auto").at(0).request.mode, 1);
    EXPECT_EQ(WeighingsWith("weigh 1 12.34 now").at(0).request.mode, 2);
    EXPECT_EQ(WeighingsWith("weigh 1 12.34").at(0).request.mode, 1) << "as older records have it";
}

TEST(Recorder, Results_of_other_operations_are_no_weighings) {
    EXPECT_TRUE(WeighingsWith("tare 1 0").empty());
    EXPECT_TRUE(WeighingsWith("").empty());
}

TEST(Recorder, A_result_that_is_none_is_refused_with_its_line) {
    for (const char* result :
         {"weigh", "weigh 1", "weigh 1 x", "weigh 99999999999 1", "weigh 1 12,34", "weigh 1 1 soon",
          "weigh 1 1 auto more", "weigh 1.5 1"})
        EXPECT_THAT(ReasonFor(result), StartsWith("line 4 of the record: expected what a weighing"))
            << result;
}

TEST(Recorder, What_was_recorded_is_measured_alike) {
    const TemporaryFile file;
    tool::Request request;
    request.mode = tool::kStableOnly;
    tool::Report report;
    report.request = request;
    report.trace = {{{}, "<== S\r\n ... OK\n\n"},
                    {{}, "Read from scale: S D     12.34 g\r\n (time elapsed: 1 ms)\n"}};
    report.outcome = {1, 12.34};
    const tool::DriverInfo& driver = tool::FindDriver(kBalance);
    tool::Recorder(file.Path(), {&driver, {}, driver.line, 1}).Add(request, report);

    EXPECT_THAT(file.Text(), HasSubstr(" = weigh 1 12.34"));
    EXPECT_THAT(file.Text(), HasSubstr(" stable\n"));
    const auto again = tool::WeighingsIn(record::Read(file.Path()));
    ASSERT_EQ(again.size(), 1u);
    EXPECT_EQ(tool::Measure(driver, again[0]).reading.meaning, tool::Meaning::NotStable);
    EXPECT_EQ(tool::SentenceFor(tool::Measure(driver, again[0]).reading),
              tool::SentenceFor(tool::Measure(driver, report).reading));
}

}  // namespace
