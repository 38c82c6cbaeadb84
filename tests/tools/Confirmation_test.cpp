#include "readings/Confirmation.h"

#include <gmock/gmock.h>

using testing::HasSubstr;
using tool::Confirmation;
using tool::ExitCode;
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

    Confirmation By(const char* driver, Operation operation, int result) {
        report_.request.operation = operation;
        report_.request.grams = 5.0;
        report_.outcome.result = result;
        return Confirm(tool::FindDriver(driver), operation, report_);
    }

 private:
    tool::Report report_;
};

TEST(Confirmation, A_tare_that_the_driver_and_the_balance_confirm_is_done) {
    const auto confirmation =
        Performed().Exchange("T\r\n", "T S     100.00 g\r\n").By("mettler-xs", Operation::Tare, 1);
    EXPECT_EQ(confirmation.code, ExitCode::Done);
    EXPECT_EQ(confirmation.sentence, "");
}

TEST(Confirmation, A_preset_tare_that_the_driver_calls_done_and_the_balance_refuses_is_refused) {
    const auto confirmation = Performed()
                                  .Exchange("T\r\n", "T S       0.00 g\r\n")
                                  .Exchange("TA 10.00 g\r\n", "TA L\r\n")
                                  .By("mettler-pr2003", Operation::PresetTare, 1);
    EXPECT_EQ(confirmation.code, ExitCode::Refused);
    EXPECT_THAT(confirmation.sentence, HasSubstr("TA L"));
}

TEST(Confirmation, A_preset_tare_without_an_answer_is_not_done) {
    const auto confirmation =
        Performed().Exchange("TA 10.00 g\r\n", "").By("mettler-sb32001", Operation::PresetTare, 1);
    EXPECT_EQ(confirmation.code, ExitCode::Silent);
}

TEST(Confirmation, A_sartorius_tare_whose_check_reads_an_overload_as_zero_is_not_done) {
    const auto confirmation = Performed()
                                  .Exchange("\x1bT\r\n", "")
                                  .Exchange("\x1bP\r\n", "      H       \r\n")
                                  .By("sartorius", Operation::Tare, 1);
    EXPECT_EQ(confirmation.code, ExitCode::Overload);
}

TEST(Confirmation, A_radwag_that_zeroed_instead_says_so) {
    const auto confirmation = Performed()
                                  .Exchange("T\r\n", "T v\r\n")
                                  .Exchange("Z\r\n", "Z A\r\nZ D\r\n")
                                  .By("radwag", Operation::Tare, 1);
    EXPECT_EQ(confirmation.code, ExitCode::Done);
    EXPECT_EQ(confirmation.sentence, "zeroed, because the balance did not confirm the tare");
}

TEST(Confirmation, The_balances_own_reason_for_a_failure_is_told) {
    EXPECT_EQ(
        Performed().Exchange("Z\r\n", "Z I\r\n").By("mettler-toledo", Operation::Zero, 0).code,
        ExitCode::NotStable);
    EXPECT_EQ(
        Performed().Exchange("Z\r\n", "Z +\r\n").By("mettler-toledo", Operation::Zero, 0).code,
        ExitCode::Overload);
    EXPECT_EQ(Performed().Exchange("Z\r\n", "Z ^\r\n").By("radwag", Operation::Zero, 0).code,
              ExitCode::Overload);
    EXPECT_EQ(Performed().Exchange("T \r\n", "E01\r\n").By("kern", Operation::Tare, 0).code,
              ExitCode::Refused);
    EXPECT_EQ(Performed().Exchange("T\r\n", "").By("mettler-xs", Operation::Tare, 0).code,
              ExitCode::Silent);
}

// A PM of the standard protocol sets a preset tare; `first` is on its pan.
Performed PmPreset(const std::string& first, const std::string& after) {
    return Performed()
        .Exchange("@\r\n", "ES\r\n")
        .Exchange("SI\r\n", first)
        .Exchange("T\r\n", "")
        .Exchange("SI\r\n", "S        0.00 g\r\n")
        .Exchange("S\r\n", "S        0.00 g\r\n")
        .Exchange("B 5.00\r\n", "")
        .Exchange("SI\r\n", after)
        .Exchange("S\r\n", after);
}

TEST(Confirmation, A_preset_tare_of_a_loaded_PM_that_its_driver_calls_a_failure_is_done) {
    const auto confirmation = PmPreset("S       50.00 g\r\n", "S       45.00 g\r\n")
                                  .By("mettler-pm", Operation::PresetTare, 0);
    EXPECT_EQ(confirmation.sentence, "");
    EXPECT_EQ(confirmation.code, ExitCode::Done);
}

TEST(Confirmation, A_preset_tare_after_which_a_PM_shows_zero_as_before_is_not_done) {
    const auto confirmation = PmPreset("S       50.00 g\r\n", "S        0.00 g\r\n")
                                  .By("mettler-pm", Operation::PresetTare, 1);
    EXPECT_EQ(confirmation.sentence,
              "afterwards the balance still shows 0.00 g, so it was not carried out");
    EXPECT_EQ(confirmation.code, ExitCode::Refused);
}

TEST(Confirmation, A_preset_tare_of_as_much_as_is_on_the_pan_can_not_be_told) {
    const auto confirmation = PmPreset("S        5.00 g\r\n", "S        0.00 g\r\n")
                                  .By("mettler-pm", Operation::PresetTare, 1);
    EXPECT_EQ(confirmation.code, ExitCode::NotUnderstood);
    EXPECT_EQ(confirmation.sentence,
              "the pan holds as much as the preset, so that the balance shows 0.00 g with it and "
              "without; take the load off and set it again");
}

TEST(Confirmation, A_sartorius_whose_key_stores_no_tare_has_none_set) {
    const auto confirmation = Performed()
                                  .Exchange("\x1bT", "")
                                  .Exchange("\x1bP", "+     0.00 g  \r\n")
                                  .Exchange("\x1bt5.00_", "")
                                  .Exchange("\x1bkF4_", "")
                                  .Exchange("\x1bP", "+     0.00 g  \r\n")
                                  .By("sartorius", Operation::PresetTare, 1);
    EXPECT_EQ(confirmation.code, ExitCode::Refused);
}

TEST(Confirmation, Only_zeroing_is_what_a_generic_Mettler_Toledo_does_for_a_tare) {
    EXPECT_EQ(
        Performed().Exchange("Z\r\n", "Z A\r\n").By("mettler-toledo", Operation::Tare, 1).sentence,
        "zeroed, as this driver does in place of taring");
    EXPECT_EQ(
        Performed().Exchange("Z\r\n", "Z +\r\n").By("mettler-toledo", Operation::Tare, 0).sentence,
        "the load is above the range for zeroing, which this driver does in place of taring; the "
        "drivers of the models tare (`wbalance drivers`); it sent \"Z +\\r\\n\"");
    EXPECT_EQ(
        Performed().Exchange("Z\r\n", "Z +\r\n").By("mettler-toledo", Operation::Zero, 0).sentence,
        "the load is above the range for it; it sent \"Z +\\r\\n\"");
}

TEST(Confirmation, A_balance_that_answers_all_but_the_tare_waits_for_its_pan) {
    const auto tare = Performed()
                          .Exchange("@\r\n", "I4 A \"1126493049\"\r\n")
                          .Exchange("T\r\n", "")
                          .By("mettler-xs", Operation::Tare, 0);
    EXPECT_EQ(tare.code, ExitCode::NotStable);
    EXPECT_EQ(tare.sentence,
              "the balance answers, but not this, as it does while its pan moves; it may still "
              "carry it out when the pan comes to rest");
    const auto preset = Performed()
                            .Exchange("@\r\n", "I4 A \"1126493049\"\r\n")
                            .Exchange("T\r\n", "")
                            .Exchange("TA 5.00 g\r\n", "")
                            .By("mettler-xs", Operation::PresetTare, 1);
    EXPECT_EQ(preset.code, ExitCode::NotStable);
}

TEST(Confirmation, A_text_that_is_not_answered_has_nothing_to_do_with_the_pan) {
    const auto display = Performed()
                             .Exchange("@\r\n", "I4 A \"1126493049\"\r\n")
                             .Exchange("D \"HELLO\"\r\n", "")
                             .By("mettler-xs", Operation::Display, 0);
    EXPECT_EQ(display.code, ExitCode::Silent);
    EXPECT_EQ(display.sentence, "the balance did not answer it");
}

TEST(Confirmation, A_tare_that_has_begun_is_not_done) {
    const std::string begun = "the balance has begun it and finishes it when its pan comes to rest";
    const auto radwag = Performed().Exchange("T\r\n", "T A\r\n").By("radwag", Operation::Tare, 0);
    EXPECT_EQ(radwag.code, ExitCode::NotStable);
    EXPECT_EQ(radwag.sentence, begun + "; it sent \"T A\\r\\n\"");
    const auto gibertini =
        Performed().Exchange("T\r\n", "     50.00 g   TI\r\n").By("gibertini", Operation::Tare, 1);
    EXPECT_EQ(gibertini.code, ExitCode::NotStable);
    const auto rested =
        Performed().Exchange("T\r\n", "     50.00 g   TS\r\n").By("gibertini", Operation::Tare, 1);
    EXPECT_EQ(rested.code, ExitCode::Done);
}

TEST(Confirmation, A_check_that_shows_a_moving_weight_is_none) {
    const auto confirmation = Performed()
                                  .Exchange("T", "")
                                  .Exchange("?", "U+    50.31 g\r\n")
                                  .By("denver-xl1800", Operation::Tare, 0);
    EXPECT_EQ(confirmation.code, ExitCode::NotStable);
    EXPECT_EQ(confirmation.sentence,
              "afterwards the balance shows 50.31 g and the pan moves, so it may have been carried "
              "out or not; wait until it is at rest");
}

TEST(Confirmation, A_check_that_shows_a_weight_tells_it) {
    const auto confirmation = Performed()
                                  .Exchange("T\r\n", "")
                                  .Exchange("SP\r\n", "        5.00 g      \r\n")
                                  .By("ohaus", Operation::Tare, 0);
    EXPECT_EQ(confirmation.code, ExitCode::Refused);
    EXPECT_EQ(confirmation.sentence,
              "afterwards the balance shows 5.00 g, so it was not carried out");
}

}  // namespace
