#include "Facts.h"

namespace facts {

template <>
Instrument Of<WbalanceDIC_XL1800>() {
    Instrument one;
    one.title = "Denver Instrument, XL-1800";
    one.line = "2400,8N1";
    one.operations = "tare";
    one.readyFirst = true;

    one.questions = {"?1"};
    one.known = {{"?1", "1+   12.34 g\r\n"}};
    one.strange = {{"?1", "?1+   12.34\r\n"}};
    return one;
}

}  // namespace facts
