#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceOHAUS_SPU602>() {
    Instrument one;
    one.title = "Ohaus, Scout Pro, Explorer";
    one.line = "2400,7N1";
    one.operations = "tare factory-reset";
    one.readyFirst = true;

    one.questions = {"P\r\n"};
    one.known = {{"P\r\n", "       12.73 g    ?\r\n"}};

    one.performed = {{"tare", Pan::Empty, 0, "tared\n", 0},
                     {"tare", Pan::Light, 0, "tared\n", 0},
                     {"tare", Pan::Loaded, 0, "tared\n", 0},
                     {"tare", Pan::Moving, 8, kNotAtRest, 50},
                     {"factory-reset --yes", Pan::Loaded, 0,
                      "factory reset sent; the balance does not confirm it\n", 50}};
    one.noWeights = {{"another_unit", "--with unit=kg --load 3", "-t 0",
                      "the weight is not in grams; set the balance's unit to g; it sent \"     "
                      "0.00300 kg     \\r\\n\"",
                      10}};
    one.diagnoses = {
        {"another_unit", "--with unit=kg --load 3", "-t 0",
         "the line works; the weight is not in grams; set the balance's unit to g", 10},
        {"no_unit", "--with numeric-only=on --load 3", "-t 0",
         "the line works; the weight is not in grams; set the balance's unit to g (no unit was "
         "sent)",
         10}};
    one.confirmed = {{"a_check_that_shows_a_weight",
                      {{"T\r\n", ""}, {"SP\r\n", "        5.00 g      \r\n"}},
                      "tare",
                      0,
                      9,
                      "afterwards the balance shows 5.00 g, so it was not carried out"}};
    one.stableOnly = {{"       12.73 g    ?\r\n", 12.73, false, "it shows 12.73 g"}};
    one.numberOfAnyLength = {"", " g\r\n"};
    one.moving = {{"--fault busy --load 10", "-m stable", ""}};
    one.sends = {{"factory-reset --yes", {"R\\r\\n", "0A\\r\\n"}}};
    one.setByHost = {
        {"--with series=explorer", "2400 cs7 -parenb", "2U\\r\\n", "   0.01250 kg\\r\\n"},
        {"--with series=explorer", "2400 cs7 -parenb", "1M\\r\\n", "        13 PCS\\r\\n"}};
    one.records = {{"ohaus-kilograms", 10}};
    one.identified = {{"an_Explorer", "--load 3 --with series=explorer", "",
                       "serial number  B717693125\n"
                       "software       1.10\n"
                       "weight         3.00 g, stable\n"},
                      {"a_Scout_Pro_that_knows_V_alone", "--load 3", "",
                       "software       1.10\n"
                       "weight         3.00 g, stable\n"}};
    return one;
}

}  // namespace facts
