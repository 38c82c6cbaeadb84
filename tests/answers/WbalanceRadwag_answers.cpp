#include "Answers.h"

namespace answers {

namespace {

// The driver takes three pieces. Where single characters come the line is slow, so that a busy
// computer does not join them.
std::vector<InPieces> Pieces() {
    return {{"characters", "character", 300, 1, 0.0},
            {"pl2303", "pl2303", 300, 1, 0.0},
            {"16550_below_2400", "16550", 300, 1, 0.0},
            {"16550", "16550", 0, 1, 12.34},
            {"ftdi", "ftdi", 0, 1, 12.34},
            {"ftdi_of_255_ms", "ftdi:255", 0, 1, 12.34}};
}

}  // namespace

template <>
Instrument InstrumentOf<WbalanceRadwag>() {
    return {
        Readiness::Cheap,
        {{"S\r\n", "S A\r\nS      %8.2f g  \r\n"},
         {"SI\r\n", "SI ?   %8.2f g  \r\n"},
         {"T\r\n", "T A\r\nT D\r\n"},
         {"Z\r\n", "Z A\r\nZ D\r\n"}},
        {"IsReady", "Tare", "Weight 0", "Weight 1", "Weight 2"},
        Pieces(),
        {{"T D Z D S    0.00 g SI 0.00 g\r\n",
          {"Tare", "Zero", "Weight 0", "Weight 2"},
          {"T\r\n", "Z\r\n", "S\r\n", "SI\r\n"}}},
        {{"typical", "S         100.00 g  \r\n", kStrtodOnACopy},
         {"worst", "S A\r\nS A\r\nS A\r\nS A\r\nS A\r\nS         100.00 g  \r\n", kStrtodOnACopy}},
        NullWeight::SameResult};
}

}  // namespace answers
