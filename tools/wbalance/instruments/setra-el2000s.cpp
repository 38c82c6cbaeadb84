#include <wbalance/WbalanceSetra_EL_2000S.h>

#include "SignedReading.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceSetra_EL_2000S>() {
    return SignedReading<WbalanceSetra_EL_2000S>("Setra", "EL-2000S", "#");
}

}  // namespace tool
