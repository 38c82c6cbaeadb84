#include "readings/Measurement.h"

#include <gmock/gmock.h>

#include <cmath>

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
        return Measure(tool::FindDriver("mettler-toledo"), report_);
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
Measurement MeasureStable(const char* driver, const std::string& answer, double weight) {
    tool::Report report;
    report.request.mode = tool::kStableOnly;
    report.trace = {{{}, "<== P\r\n ... OK\n\n"},
                    {{}, "Read from scale: " + answer + " (time elapsed: 0 ms)\n"}};
    report.outcome = {1, weight};
    return Measure(tool::FindDriver(driver), report);
}

TEST(Measurement, A_moving_weight_that_a_driver_gives_for_a_stable_one_is_none) {
    const auto gibertini = MeasureStable("gibertini", "    123.45 g   DI\r\n", 123.45);
    EXPECT_EQ(gibertini.reading.meaning, Meaning::NotStable);
    EXPECT_EQ(CodeFor(gibertini.reading.meaning), tool::ExitCode::NotStable);
    EXPECT_EQ(SentenceFor(gibertini.reading),
              "no stable weight; wait until the pan is at rest, or read with --mode now (it shows "
              "123.45 g)");
    EXPECT_EQ(MeasureStable("sartorius", "+   123.56    \r\n", 123.56).reading.meaning,
              Meaning::NotStable);
    EXPECT_EQ(MeasureStable("mettler-pm", "S D      12.34 g\r\n", 12.34).reading.meaning,
              Meaning::NotStable);
    EXPECT_EQ(MeasureStable("ohaus", "       12.73 g    ?\r\n", 12.73).reading.meaning,
              Meaning::NotStable);
}

TEST(Measurement, A_weight_that_is_not_known_to_be_stable_is_none_where_only_a_stable_one_is) {
    const std::string sentence =
        "the balance does not tell whether its weight is stable, so there is none with --mode "
        "stable; read with --mode auto or now";
    const auto ticket = MeasureStable("scale-house", " 123.40 g N\r\n", 123.4);
    EXPECT_EQ(ticket.reading.meaning, Meaning::NotStable);
    EXPECT_EQ(SentenceFor(ticket.reading), sentence);
    const auto blank = MeasureStable("kern", "A00\r\n+  12.50 G  \r\n", 12.5);
    EXPECT_EQ(blank.reading.meaning, Meaning::NotStable);
    EXPECT_EQ(SentenceFor(blank.reading), sentence);
}

TEST(Measurement, A_stable_weight_is_one_where_only_a_stable_one_is) {
    EXPECT_TRUE(MeasureStable("gibertini", "    123.45 g   DS\r\n", 123.45).reading.IsWeight());
    EXPECT_TRUE(MeasureStable("sartorius", "+   123.56 g  \r\n", 123.56).reading.IsWeight());
    EXPECT_TRUE(MeasureStable("radwag", "S     12.34 g  \r\n", 12.34).reading.IsWeight());
    EXPECT_TRUE(MeasureStable("kern", "A00\r\n+  12.50 G S\r\n", 12.5).reading.IsWeight());
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
