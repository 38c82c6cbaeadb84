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
