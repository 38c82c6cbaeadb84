#include "simulator/instruments/ohaus.h"

#include "InstrumentTest.h"

using namespace std::chrono_literals;

namespace {

class Ohaus : public InstrumentTest {
 protected:
    void have(double load, const std::vector<std::string>& switches = {}) {
        InstrumentTest::have("ohaus", load, switches);
    }
};

TEST_F(Ohaus, Scout_Pro_prints_weight_unit_and_mark_in_their_columns) {
    have(12.73);
    EXPECT_EQ(ask("P\r\n"), "       12.73 g      \r\n");
    addFault("busy");
    EXPECT_EQ(ask("P\r\n"), "       12.73 g     ?\r\n");
}

TEST_F(Ohaus, Scout_Pro_may_print_the_mark_closer) {
    have(12.73, {"line=scout-pro-close-mark"});
    addFault("busy");
    EXPECT_EQ(ask("P\r\n"), "       12.73 g    ?\r\n");
}

TEST_F(Ohaus, Scout_Pro_of_the_larger_ranges_prints_a_narrow_unit) {
    have(311, {"line=scout-pro-narrow", "readability=1"});
    EXPECT_EQ(ask("P\r\n"), "        311 g\r\n");
    addFault("busy");
    EXPECT_EQ(ask("P\r\n"), "        311 g ?\r\n");
}

TEST_F(Ohaus, Explorer_prints_ten_columns) {
    have(192.21, {"line=explorer"});
    EXPECT_EQ(ask("P\r\n"), "    192.21 g\r\n");
    have(0.01, {"line=explorer"});
    addFault("busy");
    EXPECT_EQ(ask("P\r\n"), "      0.01 g ?\r\n");
}

TEST_F(Ohaus, Explorer_Pro_prints_nine_columns_and_a_wide_unit) {
    have(-12.21, {"line=explorer-pro"});
    EXPECT_EQ(ask("P\r\n"), "   -12.21 g     \r\n");
    addFault("busy");
    EXPECT_EQ(ask("P\r\n"), "   -12.21 g    ?\r\n");
}

TEST_F(Ohaus, Numeric_only_leaves_the_unit_out) {
    have(12.73, {"numeric-only"});
    EXPECT_EQ(ask("P\r\n"), "       12.73        \r\n");
    have(12.73, {"numeric-only", "line=explorer"});
    EXPECT_EQ(ask("P\r\n"), "     12.73\r\n");
    have(12.73, {"numeric-only", "line=explorer-pro"});
    EXPECT_EQ(ask("P\r\n"), "    12.73 \r\n");
}

TEST_F(Ohaus, Commands_end_in_CR_with_or_without_LF) {
    have(1, {"line=explorer"});
    EXPECT_EQ(ask("P\r"), "      1.00 g\r\n");
    EXPECT_EQ(ask("\nP\rP\r\n"), "      1.00 g\r\n      1.00 g\r\n");
}

TEST_F(Ohaus, SP_waits_until_the_pan_is_at_rest_and_P_does_not) {
    have(0, {"line=explorer"});
    putOn(50);
    EXPECT_EQ(ask("P\r\n", 100ms), "     24.33 g ?\r\n");
    EXPECT_EQ(ask("SP\r\n", 100ms), "");
    EXPECT_EQ(answersUntil(5000ms), "     50.00 g\r\n");
}

TEST_F(Ohaus, P_waits_as_well_in_stable_only_mode) {
    have(0, {"line=explorer", "stable-only"});
    putOn(50);
    EXPECT_EQ(ask("P\r\n", 100ms), "");
    EXPECT_EQ(answersUntil(5000ms), "     50.00 g\r\n");
    putOn(60);
    EXPECT_EQ(ask("0S\r\nP\r\n", 5100ms), "     54.87 g ?\r\n");
    EXPECT_EQ(ask("1S\r\nP\r\n", 5150ms), "");
}

TEST_F(Ohaus, A_Scout_Pro_that_does_not_know_SP_stays_silent) {
    have(1, {"stable-print=off"});
    EXPECT_EQ(ask("SP\r\n"), "");
    EXPECT_EQ(answersUntil(60s), "");
    EXPECT_EQ(ask("P\r\n", 60s), "        1.00 g      \r\n");
}

TEST_F(Ohaus, An_Explorer_that_never_comes_to_rest_says_ES_after_40_seconds) {
    have(1, {"line=explorer"});
    addFault("busy");
    EXPECT_EQ(ask("SP\r\n"), "");
    EXPECT_EQ(answersUntil(39999ms), "");
    EXPECT_EQ(answersUntil(40000ms), "ES\r\n");
    have(1);
    addFault("busy");
    EXPECT_EQ(ask("SP\r\n"), "");
    EXPECT_EQ(answersUntil(60s), "");
}

TEST_F(Ohaus, T_zeroes_near_zero_and_tares_elsewhere) {
    have(5, {"line=explorer"});
    EXPECT_EQ(ask("T\r\nP\r\n"), "      0.00 g\r\n");
    have(50, {"line=explorer"});
    EXPECT_EQ(ask("T\r\nP\r\n"), "      0.00 g\r\n");
}

TEST_F(Ohaus, Prints_unasked_until_0A) {
    have(1, {"line=explorer"});
    EXPECT_EQ(ask("2A\r\n"), "      1.00 g\r\n");
    EXPECT_EQ(answersUntil(4s), "      1.00 g\r\n      1.00 g\r\n");
    EXPECT_EQ(ask("CA\r\n", 4s), "      1.00 g\r\n");
    EXPECT_EQ(answersUntil(4400ms), "      1.00 g\r\n      1.00 g\r\n");
    EXPECT_EQ(ask("0A\r\n", 4400ms), "");
    EXPECT_EQ(answersUntil(60s), "");
}

TEST_F(Ohaus, Factory_settings_may_print_unasked_until_0A) {
    have(1, {"line=explorer", "factory-auto-print"});
    EXPECT_EQ(ask("\x1bR\r\n0A\r\n"), "      1.00 g\r\n");
    EXPECT_EQ(answersUntil(60s), "");
    EXPECT_EQ(ask("\x1bR\r\n", 60s), "      1.00 g\r\n");
    EXPECT_EQ(answersUntil(60200ms), "      1.00 g\r\n");
}

TEST_F(Ohaus, Factory_settings_may_change_the_line_so_that_nothing_is_understood) {
    have(1, {"line=explorer", "reset-changes-line", "factory-auto-print"});
    EXPECT_EQ(ask("\x1bR\r\n0A\r\n"), "      1.00 g\r\n");
    EXPECT_EQ(answersUntil(200ms), "      1.00 g\r\n");
}

TEST_F(Ohaus, Unknown_commands_and_loads_out_of_range_print_nothing) {
    have(1);
    EXPECT_EQ(ask("X\r\n\r\nXA\r\n9999A\r\nP 1\r\n"), "");
    have(610.01);
    EXPECT_EQ(ask("P\r\nSP\r\n"), "");
}

TEST_F(Ohaus, Other_units_are_printed_as_such) {
    have(1234, {"line=explorer", "unit=kg", "capacity=2000", "readability=1"});
    EXPECT_EQ(ask("P\r\n"), "     1.234 kg\r\n");
    have(28.35, {"line=explorer", "unit=oz"});
    EXPECT_EQ(ask("P\r\n"), "    1.0000 oz\r\n");
}

}  // namespace
