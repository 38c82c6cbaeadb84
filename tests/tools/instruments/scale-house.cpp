#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceScaleHouseALD>() {
    Instrument one;
    one.title = "Scale House, ALD";
    one.line = "2400,7N1";
    one.operations = "tare";
    one.readyFirst = true;

    one.questions = {"P\r\n"};
    one.known = {{"P\r\n", "  123.40 g N\r\n"}, {"P\r\n", "PROJ 7\r\n  123.40 g\r\n"}};

    one.performed = {{"tare", Pan::Empty, 0, "tared\n", 0},
                     {"tare", Pan::Light, 0, "tared\n", 0},
                     {"tare", Pan::Loaded, 0, "tared\n", 0},
                     {"tare", Pan::Moving, 0, "tared\n", 0}};
    one.noWeights = {{"a_line_of_another_kind", "--with ticket=total-word --load 12.5", "-t 0",
                      "an answer came that is not a weight of this balance; is this the right "
                      "driver and are the line settings those of the balance? (the line shows an "
                      "accumulated total); it sent \" 12.50 g TOTAL\\r\\n\"",
                      5},
                     {"a_tare_line_ahead", "--with ticket=tare-line-first --load 12.5", "-t 0",
                      "an answer came that is not a weight of this balance; is this the right "
                      "driver and are the line settings those of the balance? (the driver reads it "
                      "as 0); it sent \" 0.00 g T\\r\\n 12.50 g\\r\\n\"",
                      5}};
    one.diagnoses = {{"a_tare_line_ahead_that_the_driver_takes_for_the_weight",
                      "--with ticket=tare-line-first --load 12.5", "-t 0",
                      "the record is not one that the driver takes whole (the driver reads it as "
                      "0); choose the balance's standard print format",
                      5},
                     {"a_line_of_another_kind", "--with ticket=total-word --load 12.5", "-t 0",
                      "text comes back that the driver scale-house does not know (the line shows "
                      "an accumulated total); `wbalance detect` finds the instrument",
                      5}};
    one.stableOnly = {{" 123.40 g N\r\n", 123.4, false, kStabilityUntold}};
    one.notKnownToBeStable = {{"--load 50", ",not-stable,,\"g\",unknown,"}};
    one.numberOfAnyLength = {" ", " g N\r\n"};
    return one;
}

}  // namespace facts
