#include <wbalance/WbalanceMettlerSB32001.h>

#include "MtSics.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceMettlerSB32001>() {
    return MettlerWithPanel<WbalanceMettlerSB32001>("SB32001", "SB");
}

}  // namespace tool
