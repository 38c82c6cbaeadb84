#include "Answers.h"

namespace answers {

namespace {

// The driver takes three pieces. Where single characters come the line is slow, so that a busy
// computer does not join them.
std::vector<InPieces> Pieces() {
    return {
        {"characters", "character", 300, 1, 0.0},   {"pl2303", "pl2303", 300, 1, 0.0},
        {"16550_below_2400", "16550", 300, 1, 0.0}, {"16550", "16550", 2400, 1, 12.34},
        {"ftdi", "ftdi", 9600, 1, 12.34},           {"ftdi_of_255_ms", "ftdi:255", 0, 1, 12.34}};
}

}  // namespace

template <>
Instrument InstrumentOf<WbalanceSartorius>() {
    return {Readiness::Reading,
            {{"\x1bP\r\n", "+ %8.2f g  \r\n"}},
            {"Tare", "Weight 1", "TareSet 0"},
            Pieces(),
            {{"+     0.00 g  \r\n",
              {"IsReady", "TareSet 5"},
              {"\x1bP\r\n", "\x1bs3_\r\n", "\x1bT\r\n", "\x1bt5.00_\r\n", "\x1bkF4_\r\n",
               "\x1bP\r\n"}}},
            {{"typical", "+   100.00 g  \r\n", kStrtodOnACopy},
             {"worst", "TP1   +   123.56 g  \r\nN1    +   100.00 g  \r\n", kStrtodOnACopy}}};
}

}  // namespace answers
