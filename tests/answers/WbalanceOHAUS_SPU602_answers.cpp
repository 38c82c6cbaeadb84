#include "Answers.h"

namespace answers {

namespace {

// The driver takes three pieces. Where single characters come the line is slow, so that a busy
// computer does not join them.
std::vector<InPieces> Pieces() {
    return {
        {"characters", "character", 300, 0, 0.0},   {"pl2303", "pl2303", 300, 0, 0.0},
        {"16550_below_2400", "16550", 300, 0, 0.0}, {"16550", "16550", 0, 1, 12.34},
        {"ftdi", "ftdi", 9600, 1, 12.34},           {"ftdi_of_255_ms", "ftdi:255", 0, 1, 12.34}};
}

}  // namespace

template <>
Instrument InstrumentOf<WbalanceOHAUS_SPU602>() {
    return {Readiness::Reading,
            {{"SP\r\n", "   %8.2f g     \r\n"}, {"P\r\n", "   %8.2f g    ?\r\n"}},
            {"Tare", "Weight 0", "Weight 1"},
            Pieces(),
            {{"  0.00 g\r\n",
              {"Tare", "RestoreFactorySettings"},
              {"P\r\n", "T\r\n", "SP\r\n", "\x1bR\r\n", "0A\r\n"}}},
            {{"typical", "      100.00 g     \r\n", kStrtodOnACopy}}};
}

}  // namespace answers
