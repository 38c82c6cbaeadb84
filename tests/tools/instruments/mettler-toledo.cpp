#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceMettlerToledo>() {
    Instrument one;
    one.title = "Mettler Toledo, any balance that speaks MT-SICS";
    one.line = "2400,7E1";
    one.operations = "tare zero";

    one.questions = {"SI\r\n"};
    one.known = {{"SI\r\n", "S S     100.00 g\r\n"}, {"SI\r\n", "S I\r\n"}};

    one.performed = {
        {"tare", Pan::Empty, 0, "zeroed, as this driver does in place of taring\n", 0},
        {"tare", Pan::Light, 0, "zeroed, as this driver does in place of taring\n", 0},
        {"tare", Pan::Loaded, 6,
         "the load is above the range for zeroing, which this driver does in place of taring", 50},
        {"tare", Pan::Moving, 8, kNotAtRest, 50},
        {"zero", Pan::Empty, 0, "zeroed\n", 0},
        {"zero", Pan::Light, 0, "zeroed\n", 0},
        {"zero", Pan::Loaded, 6, "the load is above the range for it", 50},
        {"zero", Pan::Moving, 8, kNotAtRest, 50}};
    one.confirmed = {
        {"a_refused_zero",
         {{"Z\r\n", "Z I\r\n"}},
         "zero",
         0,
         8,
         "the balance was busy or not stable in time; it sent \"Z I\\r\\n\""},
        {"a_load_above_the_range",
         {{"Z\r\n", "Z +\r\n"}},
         "zero",
         0,
         6,
         "the load is above the range for it; it sent \"Z +\\r\\n\""},
        {"a_tare_that_is_a_zeroing",
         {{"Z\r\n", "Z A\r\n"}},
         "tare",
         1,
         0,
         "zeroed, as this driver does in place of taring"},
        {"a_tare_above_the_range_of_zeroing",
         {{"Z\r\n", "Z +\r\n"}},
         "tare",
         0,
         6,
         "the load is above the range for zeroing, which this driver does in place of taring; the "
         "drivers of the models tare (`wbalance drivers`); it sent \"Z +\\r\\n\""}};
    one.numberOfAnyLength = {"S S ", " g\r\n"};
    one.moving = {{"--fault busy", "-m stable", "S I\\r\\n"}};
    one.records = {{"mettler-toledo-reset-answer-taken-for-4", 5}};
    return one;
}

}  // namespace facts
