#include "Answers.h"

namespace answers {

namespace {

// The driver takes three pieces. Where single characters come the line is slow, so that a busy
// computer does not join them.
std::vector<InPieces> Pieces() {
    return {{"characters", "character", 300, 0, 0.0}, {"pl2303", "pl2303", 300, 0, 0.0},
            {"16550", "16550", 300, 0, 0.0},          {"16550_of_14", "16550:14", 0, 1, 12.34},
            {"ftdi", "ftdi", 19200, 1, 12.34},        {"ftdi_of_255_ms", "ftdi:255", 0, 1, 12.34}};
}

}  // namespace

template <>
Instrument InstrumentOf<WbalanceScaleHouseALD>() {
    return {Readiness::Reading,
            {{"P\r\n", " %.2f g N\r\n"}},
            {"Tare", "Weight 1"},
            Pieces(),
            {{" 0.00 g N\r\n", {"Tare"}, {"P\r\n", "Z\r\n", "T\r\n", "P\r\n"}}},
            {{"typical", "PROJ 17\r\nG     120.0 g\r\nT      20.0 g T\r\nN     100.0 g N\r\n",
              kStrtodOnATicket}},
            NullWeight::NoResult};
}

}  // namespace answers
