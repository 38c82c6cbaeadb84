#include <wbalance/WbalanceDIC_XL1800.h>

#include "SignedReading.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceDIC_XL1800>() {
    return SignedReading<WbalanceDIC_XL1800>("Denver Instrument", "XL-1800", "?1");
}

}  // namespace tool
