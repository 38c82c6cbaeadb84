#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceMettlerSB32001>() {
    Instrument one;
    one.title = "Mettler Toledo, SB32001";
    one.line = "2400,7E1";
    one.operations = "tare preset-tare display";
    one.ownReadiness = true;

    one.modelAnswer = "I2 A \"SB32001 32100.0 g\"\r\n";

    one.performed = {{"tare", Pan::Empty, 0, "tared\n", 0},
                     {"tare", Pan::Light, 0, "tared\n", 0},
                     {"tare", Pan::Loaded, 0, "tared\n", 0},
                     {"tare", Pan::Moving, 8, kNotAtRest, 50},
                     {"preset-tare 5", Pan::Empty, 0, "preset tare set to 5.00 g\n", -5},
                     {"preset-tare 5", Pan::Loaded, 0, "preset tare set to 5.00 g\n", -5},
                     {"preset-tare 5", Pan::Moving, 8, kNotAtRest, 50},
                     {"display HI", Pan::Loaded, 0, "displayed\n", 50}};
    one.confirmed = {{"a_preset_tare_without_an_answer",
                      {{"TA 10.00 g\r\n", ""}},
                      "preset-tare",
                      1,
                      4,
                      kNoAnswer}};
    one.hidesItsModel = "--with model=level-1";
    return one;
}

}  // namespace facts
