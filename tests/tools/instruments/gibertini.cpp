#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceGibertini>() {
    Instrument one;
    one.title = "Gibertini, CRYSTAL, EU-C (CRYSTAL protocol)";
    one.line = "9600,7-1";
    one.operations = "tare";

    one.questions = {"\rB\r"};
    one.known = {{"\rB\r", "    123.45 g   DS\r\n"}};

    one.performed = {{"tare", Pan::Empty, 0, "tared\n", 0},
                     {"tare", Pan::Light, 0, "tared\n", 0},
                     {"tare", Pan::Loaded, 0, "tared\n", 0},
                     {"tare", Pan::Moving, 8, kBegun, 50}};
    one.confirmed = {{"a_tare_that_has_begun",
                      {{"T\r\n", "     50.00 g   TI\r\n"}},
                      "tare",
                      1,
                      8,
                      "the balance has begun it and finishes it when its pan comes to rest; it "
                      "sent \"     50.00 g   TI\\r\\n\""},
                     {"a_tare_at_rest", {{"T\r\n", "     50.00 g   TS\r\n"}}, "tare", 1, 0, ""}};
    one.stableOnly = {{"    123.45 g   DI\r\n", 123.45, false,
                       "no stable weight; wait until the pan is at rest, or read with --mode now "
                       "(it shows 123.45 g)"},
                      {"    123.45 g   DS\r\n", 123.45, true, ""}};
    one.notKnownToBeStable = {{"--load 50 --fault busy", ",not-stable,,\"g\",dynamic,"}};
    one.records = {{"gibertini-stable", 0}};
    return one;
}

}  // namespace facts
