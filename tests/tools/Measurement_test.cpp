#include "readings/Measurement.h"

#include <gmock/gmock.h>

#include <cmath>

#include "Examples.h"
#include "Facts.h"

using examples::kBalance;
using testing::EndsWith;
using testing::HasSubstr;
using tool::Meaning;
using tool::Measurement;
using tool::Stability;

namespace {

/// A weighing as its report shows it.
class Weighing {
 public:
    Weighing& Exchange(const std::string& command, const std::string& answer) {
        const auto now = std::chrono::system_clock::now();
        report_.trace.push_back({now, "<== " + command + " ... OK\n\n"});
        report_.trace.push_back({now, "Read from scale: " + answer + " (time elapsed: 0 ms)\n"});
        return *this;
    }

    Measurement Result(int status, double weight) {
        report_.outcome = {status, weight};
        return Measure(tool::FindDriver(examples::kBalance), report_);
    }

 private:
    tool::Report report_;
};

TEST(Measurement, A_weight_that_driver_and_answer_agree_on_is_a_weight) {
    const auto measurement = Weighing().Exchange("S\r\n", "S S     100.00 g\r\n").Result(1, 100.0);
    EXPECT_EQ(measurement.reading.meaning, Meaning::Weight);
    EXPECT_EQ(measurement.reading.digits, "100.00");
    EXPECT_EQ(measurement.answer, "S S     100.00 g\r\n");
}

TEST(Measurement, The_4_of_the_reset_answer_is_no_weight) {
    const auto measurement =
        Weighing().Exchange("S\r\n", "I4 A \"1126493049\"\r\nS S     100.00 g\r\n").Result(1, 4.0);
    EXPECT_EQ(measurement.reading.meaning, Meaning::NotUnderstood);
    EXPECT_EQ(measurement.reading.remark, "the driver reads it as 4");
}

TEST(Measurement, Digits_that_the_driver_left_out_are_a_truncation) {
    const auto measurement = Weighing().Exchange("S\r\n", "S S     12.345 g\r\n").Result(1, 12.34);
    EXPECT_EQ(measurement.reading.meaning, Meaning::Truncated);
}

TEST(Measurement, A_number_beyond_all_weights_is_no_weight_whatever_the_driver_made_of_it) {
    const std::string answer = "S S " + std::string(400, '9') + " g\r\n";
    EXPECT_EQ(Weighing().Exchange("S\r\n", answer).Result(1, 100.0).reading.meaning,
              Meaning::NotUnderstood);
    EXPECT_EQ(Weighing().Exchange("S\r\n", answer).Result(1, HUGE_VAL).reading.meaning,
              Meaning::NotUnderstood);
}

TEST(Measurement, Kilograms_taken_for_grams_are_no_weight) {
    const auto measurement = Weighing().Exchange("S\r\n", "S S     1.234 kg\r\n").Result(1, 1.234);
    EXPECT_EQ(measurement.reading.meaning, Meaning::OtherUnit);
}

TEST(Measurement, The_mean_of_five_dynamic_readings_is_a_dynamic_weight) {
    const auto measurement = Weighing()
                                 .Exchange("S\r\n", "S I\r\n")
                                 .Exchange("SI\r\n", "S D      10.0 g\r\n")
                                 .Exchange("SI\r\n", "S D      10.0 g\r\n")
                                 .Exchange("SI\r\n", "S D      10.5 g\r\n")
                                 .Exchange("SI\r\n", "S D      10.5 g\r\n")
                                 .Exchange("SI\r\n", "S D      11.5 g\r\n")
                                 .Result(2, 10.5);
    EXPECT_EQ(measurement.reading.meaning, Meaning::Weight);
    EXPECT_EQ(measurement.reading.stability, Stability::Dynamic);
    EXPECT_EQ(measurement.reading.digits, "10.5");
}

TEST(Measurement, A_mean_that_counts_silence_as_zero_is_no_weight) {
    const auto measurement = Weighing()
                                 .Exchange("S\r\n", "")
                                 .Exchange("SI\r\n", "S D      10.0 g\r\n")
                                 .Exchange("SI\r\n", "S D      10.0 g\r\n")
                                 .Exchange("SI\r\n", "S D      10.0 g\r\n")
                                 .Exchange("SI\r\n", "")
                                 .Exchange("SI\r\n", "")
                                 .Result(2, 6.0);
    EXPECT_EQ(measurement.reading.meaning, Meaning::NotStable);
    EXPECT_THAT(measurement.reading.remark, HasSubstr("only 3 of 5"));
}

TEST(Measurement, An_overload_that_the_driver_only_calls_a_failure_is_an_overload) {
    const auto measurement = Weighing().Exchange("S\r\n", "S +\r\n").Result(0, 0.0);
    EXPECT_EQ(measurement.reading.meaning, Meaning::Overload);
}

TEST(Measurement, A_dynamic_weight_that_the_driver_rejects_is_not_stable) {
    const auto measurement = Weighing().Exchange("S\r\n", "S D      10.0 g\r\n").Result(0, 0.0);
    EXPECT_EQ(measurement.reading.meaning, Meaning::NotStable);
}

TEST(Measurement, A_balance_that_answers_all_but_the_weight_waits_for_its_pan) {
    const auto measurement = Weighing()
                                 .Exchange("@\r\n", "I4 A \"1126493049\"\r\n")
                                 .Exchange("S\r\n", "")
                                 .Result(0, 0.0);
    EXPECT_EQ(measurement.reading.meaning, Meaning::NotStable);
    EXPECT_THAT(measurement.reading.remark, HasSubstr("waiting for stability"));
}

/// A weighing of mode stable that the driver took for a success.
Measurement MeasureStable(const std::string& driver, const std::string& answer, double weight) {
    tool::Report report;
    report.request.mode = tool::kStableOnly;
    report.trace = {{{}, "<== P\r\n ... OK\n\n"},
                    {{}, "Read from scale: " + answer + " (time elapsed: 0 ms)\n"}};
    report.outcome = {1, weight};
    return Measure(tool::FindDriver(driver), report);
}

TEST(Measurement, Where_only_a_stable_weight_is_one_no_other_is) {
    for (const auto& one : facts::All()) {
        for (const auto& expected : one.stableOnly) {
            SCOPED_TRACE(one.name + ": " + expected.answer);
            const auto reading = MeasureStable(one.name, expected.answer, expected.weight).reading;
            EXPECT_EQ(reading.IsWeight(), expected.isWeight);
            if (expected.isWeight) continue;
            EXPECT_EQ(reading.meaning, Meaning::NotStable);
            EXPECT_EQ(CodeFor(reading.meaning), tool::ExitCode::NotStable);
            EXPECT_THAT(SentenceFor(reading), HasSubstr(expected.says));
        }
    }
}

TEST(Measurement, What_a_sentence_quotes_changes_no_terminal) {
    const auto measurement = Weighing().Exchange("S\r\n", "I4 A \"\x1b[2J\"\r\n").Result(0, 0.0);
    EXPECT_THAT(tool::SentenceFor(measurement.reading),
                EndsWith("(the balance announced itself: I4 A \"\\x1b[2J\")"));
}

TEST(Measurement, Nothing_received_is_silence) {
    const auto measurement = Weighing().Exchange("S\r\n", "").Result(0, 0.0);
    EXPECT_EQ(measurement.reading.meaning, Meaning::Silence);
}

}  // namespace
