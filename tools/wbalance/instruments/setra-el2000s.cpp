#include <wbalance/WbalanceSetra_EL_2000S.h>

#include "Marked.h"

namespace tool {

template <>
DriverInfo InfoOf<WbalanceSetra_EL_2000S>() {
    return Marked<WbalanceSetra_EL_2000S>("Setra", "EL-2000S", "#");
}

}  // namespace tool
