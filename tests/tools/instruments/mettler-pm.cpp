#include "Facts.h"

namespace facts {
namespace {

// A preset tare by the standard protocol: `first` is on the pan, `after` is shown behind it.
std::vector<Answer> PresetTare(const std::string& first, const std::string& after) {
    return {{"@\r\n", "ES\r\n"},
            {"SI\r\n", first},
            {"T\r\n", ""},
            {"SI\r\n", "S        0.00 g\r\n"},
            {"S\r\n", "S        0.00 g\r\n"},
            {"B 5.00\r\n", ""},
            {"SI\r\n", after},
            {"S\r\n", after}};
}

}  // namespace

template <>
Instrument Of<WbalanceMettlerPM>() {
    Instrument one;
    one.title = "Mettler, PM, standard protocol or MT-SICS option";
    one.line = "600,7E1";
    one.operations = "tare preset-tare";
    one.ownReadiness = true;

    one.questions = {"SI\r\n"};
    one.known = {{"SI\r\n", "SD      12.34 g\r\n"},
                 {"SI\r\n", "S      -12.34 g\r\n"},
                 {"SI\r\n", "SI+\r\n"}};
    one.modelAnswer = "I2 A \"PM4000 4100.00 g\"\r\n";

    one.performed = {
        {"tare", Pan::Empty, 0, "tared\n", 0},
        {"tare", Pan::Light, 0, "tared\n", 0},
        {"tare", Pan::Loaded, 0, "tared\n", 0},
        {"tare", Pan::Moving, 8, kNotAtRest, 50},
        {"preset-tare 5", Pan::Empty, 0, "preset tare set to 5.00 g\n", -5},
        {"preset-tare 5", Pan::Loaded, 0, "preset tare set to 5.00 g\n", 45},
        {"preset-tare 5", Pan::Moving, 8, kNotAtRest, 50},
        {"tare", Pan::Empty, 0, "tared\n", 0, "protocol=mt-sics"},
        {"tare", Pan::Light, 0, "tared\n", 0, "protocol=mt-sics"},
        {"tare", Pan::Loaded, 0, "tared\n", 0, "protocol=mt-sics"},
        {"tare", Pan::Moving, 8, kNotAtRest, 50, "protocol=mt-sics"},
        {"preset-tare 5", Pan::Empty, 0, "preset tare set to 5.00 g\n", -5, "protocol=mt-sics"},
        {"preset-tare 5", Pan::Loaded, 0, "preset tare set to 5.00 g\n", -5, "protocol=mt-sics"},
        {"preset-tare 5", Pan::Moving, 8, kNotAtRest, 50, "protocol=mt-sics"}};
    one.diagnoses = {{"cut_off_in_its_number", "--load 12.5 --fault truncated=12", "-t 0",
                      "the answer has no line end: either it is cut off (wait longer with "
                      "--timeout, look for a loose cable), or the line settings are not those of "
                      "the balance (`wbalance detect` tries others)",
                      11}};
    one.confirmed = {
        {"a_preset_tare_with_a_load_that_the_driver_calls_a_failure",
         PresetTare("S       50.00 g\r\n", "S       45.00 g\r\n"), "preset-tare", 0, 0, ""},
        {"a_preset_tare_behind_which_zero_is_shown_as_before",
         PresetTare("S       50.00 g\r\n", "S        0.00 g\r\n"), "preset-tare", 1, 9,
         "afterwards the balance still shows 0.00 g, so it was not carried out"},
        {"a_preset_tare_of_as_much_as_is_on_the_pan",
         PresetTare("S        5.00 g\r\n", "S        0.00 g\r\n"), "preset-tare", 1, 5,
         "the pan holds as much as the preset, so that the balance shows 0.00 g with it and "
         "without; take the load off and set it again"}};
    one.stableOnly = {{"S D      12.34 g\r\n", 12.34, false, "it shows 12.34 g"}};
    one.numberOfAnyLength = {"S ", " g\r\n"};
    one.records = {{"mettler-pm-busy-read-as-zero", 8}};
    one.identified = {{"a_PM_with_the_MT_SICS_option", "--load 3 --with protocol=mt-sics", "",
                       "model          MT-SICS\n"
                       "serial number  1126493049\n"
                       "software       1.20\n"
                       "weight         3.00 g, stable\n"},
                      {"a_PM_that_answers_ES", "--load 3", "", "weight         3.00 g, stable\n"}};
    return one;
}

}  // namespace facts
