#include <wbalance/WbalanceDIC_XL1800.h>

#include "Marked.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceDIC_XL1800>() {
    return Marked<WbalanceDIC_XL1800>("Denver Instrument", "XL-1800", "?1");
}

}  // namespace tool
