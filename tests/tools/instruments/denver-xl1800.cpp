#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceDIC_XL1800>() {
    Instrument one;
    one.title = "Denver Instrument, XL-1800";
    one.line = "2400,8N1";
    one.operations = "tare";
    one.readyFirst = true;

    one.questions = {"?1"};
    one.known = {{"?1", "1+   12.34 g\r\n"}};
    one.strange = {{"?1", "?1+   12.34\r\n"}};

    one.performed = {{"tare", Pan::Empty, 0, "tared\n", 0},
                     {"tare", Pan::Light, 0, "tared\n", 0},
                     {"tare", Pan::Loaded, 0, "tared\n", 0},
                     {"tare", Pan::Moving, 8, kPanMoves, 50}};
    one.noWeights = {{"no_stable_weight", "--fault busy --load 3", "-t 0",
                      "no stable weight; wait until the pan is at rest, or read with --mode now; "
                      "it sent \"U+     3.00 g\\r\\n\"",
                      8}};
    one.diagnoses = {{"an_echo", "--with echo=on --load 3", "-t 0",
                      "what is sent comes back: the line is looped, or the instrument echoes; "
                      "switch its echo off",
                      5}};
    one.confirmed = {{"a_check_that_shows_a_moving_weight",
                      {{"T", ""}, {"?", "U+    50.31 g\r\n"}},
                      "tare",
                      0,
                      8,
                      "afterwards the balance shows 50.31 g and the pan moves, so it may have been "
                      "carried out or not; wait until it is at rest"}};
    one.numberOfAnyLength = {"1+ ", " g\r\n"};
    one.noWeights.push_back(
        {"a_number_that_is_cut", "--load 3 --fault truncated=9", "-t 0",
         "the record is cut off, or longer than the driver takes: digits are missing (the answer "
         "ends in the middle of the number); it sent \"1+     3.\"",
         11});
    return one;
}

}  // namespace facts
