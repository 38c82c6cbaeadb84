#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceScaleHouseALD>() {
    Instrument one;
    one.title = "Scale House, ALD";
    one.line = "2400,7N1";
    one.operations = "tare";
    one.readyFirst = true;

    one.questions = {"P\r\n"};
    one.known = {{"P\r\n", "  123.40 g N\r\n"}, {"P\r\n", "PROJ 7\r\n  123.40 g\r\n"}};
    return one;
}

}  // namespace facts
