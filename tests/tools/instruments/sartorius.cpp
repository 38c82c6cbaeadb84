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
    one.known = {{"\x1bP\r\n", "+   123.56 g  \r\n"}, {"\x1bx1_\r\n", "LA620S        \r\n"}};
    one.strange = {{"\x1bx1_\r\n", "ES\r\n"}};
    return one;
}

}  // namespace facts
