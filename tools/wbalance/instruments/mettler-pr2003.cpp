#include <wbalance/WbalanceMettlerPR2003.h>

#include "MtSics.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceMettlerPR2003>() {
    return MettlerWithSwitch<WbalanceMettlerPR2003>("PR2003 and the PR line", "PR");
}

}  // namespace tool
