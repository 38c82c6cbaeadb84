#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceRadwag>() {
    Instrument one;
    one.title = "Radwag, balances and terminals of the common command set";
    one.line = "9600,7E1";
    one.operations = "tare zero";
    one.ownReadiness = true;

    one.questions = {"SI\r\n"};
    one.ownAnswers = {"SI ?       18.5 g  \r\n"};
    one.known = {{"SI\r\n", "SI ?       18.5 g  \r\n"}, {"SI\r\n", "SI ^      0.000 g  \r\n"}};

    one.performed = {
        {"tare", Pan::Empty, 0, "tared\n", 0},   {"tare", Pan::Light, 0, "tared\n", 0},
        {"tare", Pan::Loaded, 0, "tared\n", 0},  {"tare", Pan::Moving, 8, kBegun, 50},
        {"zero", Pan::Empty, 0, "zeroed\n", 0},  {"zero", Pan::Light, 0, "zeroed\n", 0},
        {"zero", Pan::Loaded, 0, "zeroed\n", 0}, {"zero", Pan::Moving, 8, kBegun, 50}};
    one.confirmed = {{"a_zeroing_in_place_of_the_tare",
                      {{"T\r\n", "T v\r\n"}, {"Z\r\n", "Z A\r\nZ D\r\n"}},
                      "tare",
                      1,
                      0,
                      "zeroed, because the balance did not confirm the tare"},
                     {"a_zeroing_that_was_asked_for",
                      {{"T\r\n", "T v\r\n"}, {"Z\r\n", "Z A\r\nZ D\r\n"}},
                      "zero",
                      1,
                      0,
                      ""},
                     {"a_load_above_the_range",
                      {{"Z\r\n", "Z ^\r\n"}},
                      "zero",
                      0,
                      6,
                      "the load is above the range for it; it sent \"Z ^\\r\\n\""},
                     {"a_tare_that_has_begun",
                      {{"T\r\n", "T A\r\n"}},
                      "tare",
                      0,
                      8,
                      "the balance has begun it and finishes it when its pan comes to rest; it "
                      "sent \"T A\\r\\n\""}};
    one.stableOnly = {{"S     12.34 g  \r\n", 12.34, true, ""}};
    one.numberOfAnyLength = {"S ", " g\r\n"};
    one.noWeights = {
        {"overload_though_the_driver_says_that_it_is_one", "--fault overload", "-t 0",
         "overload: more is on the pan than the balance can weigh; take something off; it sent \"S "
         "A\\r\\nS  ^       0.00 g  \\r\\n\"",
         6},
        {"underload_though_the_driver_says_that_it_is_one", "--fault underload", "-t 0",
         "underload: less than the balance can weigh; is the pan in its place?; it sent \"S "
         "A\\r\\nS  v       0.00 g  \\r\\n\"",
         7}};
    one.records = {{"radwag-overload", 6}};
    one.identified = {{"a_PS", "--load 3", "",
                       "model          PS\n"
                       "serial number  123456\n"
                       "software       r.3.0.9\n"
                       "weight         3.00 g, stable\n"},
                      {"a_terminal_that_knows_NB_alone", "--load 3 --with series=wtc", "",
                       "serial number  123456\n"
                       "weight         3.00 g, stable\n"}};
    one.detected = "model PS, serial number 123456, software r.3.0.9";
    return one;
}

}  // namespace facts
