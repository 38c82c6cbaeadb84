#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceKern_EW_EGN_EWB>() {
    Instrument one;
    one.title = "Kern, EW, EG-N, EWB";
    one.line = "1200,8N2";
    one.operations = "tare";

    one.questions = {"O8\r\n"};
    one.known = {{"SI\r\n", "E01\r\n"}, {"O8\r\n", "A00\r\n+  12.50 G U\r\n"}};

    one.performed = {{"tare", Pan::Empty, 0, "tared\n", 0},
                     {"tare", Pan::Light, 0, "tared\n", 0},
                     {"tare", Pan::Loaded, 0, "tared\n", 0},
                     {"tare", Pan::Moving, 0, "tared\n", 0}};
    one.noWeights = {{"more_digits_than_the_driver_takes",
                      "--with digits=7 --with readability=0.001 --load 12.345", "-t 0",
                      "the record is cut off, or longer than the driver takes: digits are missing "
                      "(the driver reads it as 12.34); it sent \"A00\\r\\n+  12.345 G S\\r\\n\"",
                      11}};
    one.diagnoses = {{"more_digits_than_the_driver_takes",
                      "--with digits=7 --with readability=0.001 --load 12.345", "-t 0",
                      "the record is not one that the driver takes whole (the driver reads it as "
                      "12.34); choose the balance's standard print format",
                      11},
                     {"a_record_that_the_driver_does_not_take",
                      "--with acknowledgement=none --load 12.5", "-t 0",
                      "the record is not one that the driver takes whole (the driver does not take "
                      "this answer); choose the balance's standard print format",
                      5},
                     {"a_pan_that_is_not_at_rest", "--fault busy", "-t 0",
                      "the line works, but the pan is not at rest; keep draughts and vibration "
                      "away, or read with --mode now",
                      8}};
    one.confirmed = {{"a_command_that_the_balance_does_not_take",
                      {{"T \r\n", "E01\r\n"}},
                      "tare",
                      0,
                      9,
                      "the balance did not confirm it; it sent \"E01\\r\\n\""}};
    one.stableOnly = {{"A00\r\n+  12.50 G  \r\n", 12.5, false, kStabilityUntold},
                      {"A00\r\n+  12.50 G S\r\n", 12.5, true, ""}};
    one.records = {{"kern-seven-digits", 11}};
    one.identified = {
        {"nothing_of_one_that_has_no_question", "--load 3", "", "weight         3.00 G, stable\n"}};
    return one;
}

}  // namespace facts
