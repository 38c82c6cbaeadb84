#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceSetra_EL_2000S>() {
    Instrument one;
    one.title = "Setra, EL-2000S";
    one.line = "2400,8N1";
    one.operations = "tare";
    one.readyFirst = true;

    one.questions = {"#"};
    one.known = {{"#", "1+   12.34 g\r\n"}};

    one.performed = {{"tare", Pan::Empty, 0, "tared\n", 0},
                     {"tare", Pan::Light, 0, "tared\n", 0},
                     {"tare", Pan::Loaded, 0, "tared\n", 0},
                     {"tare", Pan::Moving, 8, kPanMoves, 50}};
    one.diagnoses = {{"unknown_text", "--with form=l-series --load 3", "-t 0",
                      "text comes back that the driver setra-el2000s does not know; `wbalance "
                      "detect` finds the instrument",
                      5}};
    one.numberOfAnyLength = {"1+ ", " g\r\n"};
    return one;
}

}  // namespace facts
