#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceSartorius>() {
    Instrument one;
    one.title = "Sartorius, balances with SBI print lines";
    one.line = "1200,7O1";
    one.operations = "tare preset-tare";
    one.readyFirst = true;

    one.questions = {"\x1bP\r\n", "\x1bx1_\r\n"};
    one.ownAnswers = {"+   123.56 g  \r\n"};
    one.known = {{"\x1bP\r\n", "+   123.56 g  \r\n"}, {"\x1bx1_\r\n", "LA620S        \r\n"}};
    one.strange = {{"\x1bx1_\r\n", "ES\r\n"}};

    one.performed = {{"tare", Pan::Empty, 0, "tared\n", 0},
                     {"tare", Pan::Light, 0, "tared\n", 0},
                     {"tare", Pan::Loaded, 0, "tared\n", 0},
                     {"tare", Pan::Moving, 8, kNotAtRest, 50},
                     {"preset-tare 5", Pan::Empty, 0, "preset tare set to 5.00 g\n", -5},
                     {"preset-tare 5", Pan::Empty, 9,
                      "afterwards the balance still shows 0.00 g, so it was not carried out", 0,
                      "store-key=off"},
                     {"preset-tare 5", Pan::Loaded, 0, "preset tare set to 5.00 g\n", -5},
                     {"preset-tare 5", Pan::Loaded, 9,
                      "afterwards the balance still shows 0.00 g, so it was not carried out", 0,
                      "store-key=off"},
                     {"preset-tare 5", Pan::Moving, 8, kNotAtRest, 50}};
    one.noWeights = {
        {"nothing_but_a_sign_of_life_to_the_request_for_a_moving_weight", "--fault busy",
         "-t 0 -m now",
         "no weight yet; wait until the pan is at rest and the balance has finished (the balance "
         "answers other commands, so the pan moves or it is busy); it sent \"LA620S        "
         "\\r\\n\"",
         8},
        {"stand_by", "--with display=standby", "-t 0",
         "the balance is in stand-by or does not display a weight; switch it on; it sent \"     "
         "OFF      \\r\\n\"",
         9},
        {"calibration", "--with display=calibration", "-t 0",
         "the balance is calibrating, testing or taring; wait until it has finished; it sent \"    "
         "  C       \\r\\n\"",
         9},
        {"an_error", "--with display=error", "-t 0",
         "the balance reports an error (Err  54); it sent \"   Err  54    \\r\\n\"", 9}};
    one.diagnoses = {
        {"in_pieces_of_a_built_in_port", "--load 12.34 --pace=16550", "",
         "the answer comes in more pieces than the three that the driver takes, and waiting longer "
         "does not help: use an FTDI adapter with its latency timer set to 255 ms; a higher baud "
         "rate on the balance and in --line may do, too",
         5},
        {"in_few_pieces", "--load 12.34 --pace=ftdi:255", "",
         "everything works; `wbalance weigh --driver sartorius --port /dev/ttyS0` reads the weight",
         0},
        {"cut_off_so_that_it_looks_like_another_makers", "--load 12.5 --fault truncated=13", "-t 0",
         "the answer has no line end: either it is cut off (wait longer with --timeout, look for a "
         "loose cable), or the line settings are not those of the balance (`wbalance detect` tries "
         "others)",
         5},
        {"stand_by", "--with display=standby", "-t 0",
         "the line works; the balance is in stand-by or does not display a weight; switch it on",
         9},
        {"calibration", "--with display=calibration", "-t 0",
         "the line works; the balance is calibrating, testing or taring; wait until it has "
         "finished",
         9},
        {"an_error", "--with display=error", "-t 0",
         "the line works; the balance reports an error (Err  54)", 9}};
    one.confirmed = {{"an_overload_that_the_check_of_the_tare_reads_as_zero",
                      {{"\x1bT\r\n", ""}, {"\x1bP\r\n", "      H       \r\n"}},
                      "tare",
                      1,
                      6,
                      "it could not be checked: overload: more is on the pan than the balance can "
                      "weigh; take something off; the balance sent \"      H       \\r\\n\""},
                     {"a_key_that_stores_no_tare",
                      {{"\x1bT", ""},
                       {"\x1bP", "+     0.00 g  \r\n"},
                       {"\x1bt5.00_", ""},
                       {"\x1bkF4_", ""},
                       {"\x1bP", "+     0.00 g  \r\n"}},
                      "preset-tare",
                      1,
                      9,
                      "afterwards the balance still shows 0.00 g, so it was not carried out"}};
    one.stableOnly = {{"+   123.56    \r\n", 123.56, false, "it shows 123.56 "},
                      {"+   123.56 g  \r\n", 123.56, true, ""}};
    one.notKnownToBeStable = {
        {"--load 50 --fault busy --with print=at-once", ",not-stable,,\"\",dynamic,"}};
    one.moving = {{"--fault busy", "", "LA620S        \\r\\n"}};
    one.refused = {
        {"preset-tare 10", "the driver sartorius takes a preset tare from 0.00 to 9.99 g"}};
    one.records = {{"sartorius-overload-read-as-zero", 6}};
    one.identified = {
        {"an_LA620S", "--load 3", "",
         "model          LA620S\n"
         "serial number  37454321\n"
         "software       00-37-09\n"
         "weight         3.00 g, stable\n"},
        {"an_LA620S_in_lines_of_22", "--load 3 --with line=22", "",
         "model          LA620S\n"
         "serial number  37454321\n"
         "software       00-37-09\n"
         "weight         3.00 g, stable\n"},
        {"an_Entris_that_says_Model_in_front", "--load 3 --with series=entris2 --with line=22", "",
         "model          BCE124I-1CEU\n"
         "serial number  37454321\n"
         "software       00-37-09\n"
         "weight         3.00 g, stable\n"},
        {"a_CP622S_that_is_silent_about_its_software", "--load 3 --with series=cp", "",
         "model          CP622S\n"
         "serial number  37454321\n"
         "weight         3.00 g, stable\n"},
        {"a_balance_whose_pan_never_rests", "--load 3 --fault busy", "",
         "model          LA620S\n"
         "serial number  37454321\n"
         "software       00-37-09\n"}};
    return one;
}

}  // namespace facts
