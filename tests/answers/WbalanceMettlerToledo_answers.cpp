#include "MtSicsAnswers.h"

namespace answers {

namespace {

// The driver takes three pieces. Where single characters come the line is slow, so that a busy
// computer does not join them.
std::vector<InPieces> Pieces() {
    return {{"characters", "character", 300, 0, 0.0},
            {"pl2303", "pl2303", 300, 0, 0.0},
            {"16550_below_2400", "16550", 300, 0, 0.0},
            {"16550", "16550", 0, 1, 12.34},
            {"16550_of_4_reads_half_a_number", "16550:4", 0, 1, 12.0},
            {"ftdi", "ftdi", 9600, 1, 12.34},
            {"ftdi_of_255_ms", "ftdi:255", 0, 1, 12.34}};
}

}  // namespace

template <>
Instrument InstrumentOf<WbalanceMettlerToledo>() {
    return {Readiness::Spoiling,
            // Without an answer to the reset, which would stay in the line and be read as the next
            // weight.
            {{"S\r\n", "S S   %8.2f g\r\n"}, {"SI\r\n", "S D   %8.2f g\r\n"}, {"Z\r\n", "Z A\r\n"}},
            {"Tare", "Weight 0", "Weight 1", "Weight 2"},
            Pieces(),
            {{kMtSicsAnswer,
              {"Tare", "Weight 0", "Weight 2"},
              {"@\r\n", "Z\r\n", "@\r\n", "S\r\n", "@\r\n", "SI\r\n"}}},
            {{"typical", "S S     100.00 g\r\n", kStrtodOnACopy},
             {"worst", "S S " + std::string(85, ' ') + "1 g\r\n", kStrtodOnACopy}}};
}

}  // namespace answers
