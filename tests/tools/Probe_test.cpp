#include "detect/Probe.h"

#include <gmock/gmock.h>

#include "detect/Detector.h"

using tool::Probes;

namespace {

std::string DriverFor(const std::string& command, const std::string& answer) {
    for (const auto& probe : Probes()) {
        if (probe.command == command) return probe.driverFor(answer);
    }
    return "no such question";
}

TEST(Probe, No_question_tares_zeroes_resets_or_sets_anything) {
    std::string questions;
    for (const auto& probe : Probes())
        questions += probe.command + "|";
    EXPECT_EQ(questions, "SI\r\n|\x1bP\r\n|\x1bx1_\r\n|P\r\n|O8\r\n|?1|#|\rB\r|");
}

TEST(Probe, The_question_that_a_PM_takes_for_a_preset_tare_comes_last) {
    EXPECT_EQ(Probes().front().command, "SI\r\n");
    EXPECT_EQ(Probes().back().command, "\rB\r");
}

TEST(Probe, The_immediate_weight_tells_four_makers_apart) {
    EXPECT_EQ(DriverFor("SI\r\n", "S S     100.00 g\r\n"), "mettler-toledo");
    EXPECT_EQ(DriverFor("SI\r\n", "S I\r\n"), "mettler-toledo");
    EXPECT_EQ(DriverFor("SI\r\n", "SD      12.34 g\r\n"), "mettler-pm");
    EXPECT_EQ(DriverFor("SI\r\n", "S      -12.34 g\r\n"), "mettler-pm");
    EXPECT_EQ(DriverFor("SI\r\n", "SI+\r\n"), "mettler-pm");
    EXPECT_EQ(DriverFor("SI\r\n", "SI ?       18.5 g  \r\n"), "radwag");
    EXPECT_EQ(DriverFor("SI\r\n", "SI ^      0.000 g  \r\n"), "radwag");
    EXPECT_EQ(DriverFor("SI\r\n", "E01\r\n"), "kern");
}

TEST(Probe, An_echo_and_an_error_are_no_instrument) {
    EXPECT_EQ(DriverFor("SI\r\n", "SI\r\n"), "");
    EXPECT_EQ(DriverFor("SI\r\n", "ES\r\n"), "");
    EXPECT_EQ(DriverFor("?1", "?1+   12.34\r\n"), "");
    EXPECT_EQ(DriverFor("\x1bx1_\r\n", "\x1bx1_\r\n"), "");
    EXPECT_EQ(DriverFor("\x1bx1_\r\n", "ES\r\n"), "");
}

TEST(Probe, Print_lines_and_tickets_are_told_apart) {
    EXPECT_EQ(DriverFor("P\r\n", "       12.73 g    ?\r\n"), "ohaus");
    EXPECT_EQ(DriverFor("P\r\n", "  123.40 g N\r\n"), "scale-house");
    EXPECT_EQ(DriverFor("P\r\n", "PROJ 7\r\n  123.40 g\r\n"), "scale-house");
}

TEST(Probe, The_others_answer_their_own_questions) {
    EXPECT_EQ(DriverFor("\x1bP\r\n", "+   123.56 g  \r\n"), "sartorius");
    EXPECT_EQ(DriverFor("\x1bx1_\r\n", "LA620S        \r\n"), "sartorius");
    EXPECT_EQ(DriverFor("\x1bx1_\r\n", "MSE1203S-100-DR     \r\n"), "sartorius");
    EXPECT_EQ(DriverFor("O8\r\n", "A00\r\n+  12.50 G S\r\n"), "kern");
    EXPECT_EQ(DriverFor("?1", "1+   12.34 g\r\n"), "denver-xl1800");
    EXPECT_EQ(DriverFor("#", "1+   12.34 g\r\n"), "setra-el2000s");
    EXPECT_EQ(DriverFor("\rB\r", "    123.45 g   DS\r\n"), "gibertini");
}

TEST(Probe, The_model_chooses_among_the_drivers_for_MT_SICS) {
    EXPECT_EQ(tool::DriverForModel("I2 A \"PR2003 2100.000 g\"\r\n"), "mettler-pr2003");
    EXPECT_EQ(tool::DriverForModel("I2 A \"XS204 220.0000 g\"\r\n"), "mettler-xs");
    EXPECT_EQ(tool::DriverForModel("I2 A \"SB32001 32100.0 g\"\r\n"), "mettler-sb32001");
    EXPECT_EQ(tool::DriverForModel("ES\r\n"), "mettler-toledo");
}

// A Gibertini that has heard them, and answers no unknown command, would take "?1#B" for one.
TEST(Probe, The_questions_without_a_line_end_do_not_spoil_the_next_one) {
    bool open = false;
    for (const auto& probe : Probes()) {
        if (open && probe.command.back() == '\r') {
            EXPECT_EQ(probe.command.front(), '\r');
        }
        open = probe.command.back() != '\r' && probe.command.back() != '\n';
    }
}

TEST(Detector, Tries_every_instruments_own_settings_once) {
    std::string settings;
    for (const auto& line : tool::Detector::Settings(false))
        settings += line.Text() + " ";
    EXPECT_EQ(settings,
              "2400,7E1 600,7E1 9600,8N1 1200,7O1 2400,7N1 9600,7E1 1200,8N2 9600,7-1 2400,8N1 ");
}

TEST(Detector, Tries_more_settings_when_it_is_to_be_thorough) {
    EXPECT_EQ(tool::Detector::Settings(true).size(), 20u);
}

}  // namespace
