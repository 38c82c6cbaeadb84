#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceMettlerPR2003>() {
    Instrument one;
    one.title = "Mettler Toledo, PR2003 and the PR line";
    one.line = "2400,7E1";
    one.operations = "tare preset-tare display on off";
    one.ownReadiness = true;

    one.modelAnswer = "I2 A \"PR2003 2100.000 g\"\r\n";

    one.performed = {{"tare", Pan::Empty, 0, "tared\n", 0},
                     {"tare", Pan::Light, 0, "tared\n", 0},
                     {"tare", Pan::Loaded, 0, "tared\n", 0},
                     {"tare", Pan::Moving, 8, kNotAtRest, 50},
                     {"preset-tare 5", Pan::Empty, 0, "preset tare set to 5.00 g\n", -5},
                     {"preset-tare 5", Pan::Loaded, 0, "preset tare set to 5.00 g\n", -5},
                     {"preset-tare 5", Pan::Moving, 8, kNotAtRest, 50},
                     {"display HI", Pan::Loaded, 0, "displayed\n", 50},
                     {"on", Pan::Loaded, 0, "switched on\n", 50},
                     {"off", Pan::Loaded, 0, "switched off\n", 50}};
    one.confirmed = {{"a_preset_tare_that_the_driver_calls_done_and_the_balance_refuses",
                      {{"T\r\n", "T S       0.00 g\r\n"}, {"TA 10.00 g\r\n", "TA L\r\n"}},
                      "preset-tare",
                      1,
                      9,
                      "the balance did not confirm it; it sent \"TA L\\r\\n\""}};
    one.hidesItsModel = "--with model=level-1";
    return one;
}

}  // namespace facts
