#include <wbalance/WbalanceMettlerXS.h>

#include "MtSics.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceMettlerXS>() {
    return MettlerWithSwitch<WbalanceMettlerXS>("XS", "XS");
}

}  // namespace tool
