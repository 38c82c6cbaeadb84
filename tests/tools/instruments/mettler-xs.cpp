#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceMettlerXS>() {
    Instrument one;
    one.title = "Mettler Toledo, XS";
    one.line = "9600,8N1";
    one.operations = "tare preset-tare display on off";
    one.ownReadiness = true;

    one.modelAnswer = "I2 A \"XS204 220.0000 g\"\r\n";

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
    one.confirmed = {{"a_tare", {{"T\r\n", "T S     100.00 g\r\n"}}, "tare", 1, 0, ""},
                     {"silence", {{"T\r\n", ""}}, "tare", 0, 4, kNoAnswer},
                     {"a_tare_that_waits_for_the_pan",
                      {{"@\r\n", "I4 A \"1126493049\"\r\n"}, {"T\r\n", ""}},
                      "tare",
                      0,
                      8,
                      "the balance answers, but not this, as it does while its pan moves; it may "
                      "still carry it out when the pan comes to rest"},
                     {"a_preset_tare_that_waits_for_the_pan",
                      {{"@\r\n", "I4 A \"1126493049\"\r\n"}, {"T\r\n", ""}, {"TA 5.00 g\r\n", ""}},
                      "preset-tare",
                      1,
                      8,
                      "the balance answers, but not this, as it does while its pan moves; it may "
                      "still carry it out when the pan comes to rest"},
                     {"a_text_that_is_not_answered_which_has_nothing_to_do_with_the_pan",
                      {{"@\r\n", "I4 A \"1126493049\"\r\n"}, {"D \"HELLO\"\r\n", ""}},
                      "display",
                      0,
                      4,
                      "the balance did not answer it"}};
    one.sends = {{"display HELLO", {"D \"HELLO\"\\r\\n"}}};
    one.setByHost = {{"", "9600 cs8 -parenb", "M21 0 3\\r\\n", "S S    12500.0 mg\\r\\n"}};
    one.records = {{"mettler-xs-incomplete-average", 8}};
    one.identified = {
        {"an_XS204", "--load 3", "",
         "model          XS204 Excellence\n"
         "serial number  1126493049\n"
         "software       4.10\n"
         "weight         3.0000 g, stable\n"},
        {"one_on_a_slow_line", "--load 3 --line 300,7E1 --pace=ftdi:255", "-l 300,7E1",
         "model          XS204 Excellence\n"
         "serial number  1126493049\n"
         "software       4.10\n"
         "weight         3.0000 g, stable\n"}};
    one.detected = "model XS204 Excellence, serial number 1126493049, software 4.10";
    return one;
}

}  // namespace facts
