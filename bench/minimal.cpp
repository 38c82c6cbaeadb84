// The smallest host: it makes a driver and ends. Beside it stands the same program without the
// library.

#ifdef WITH_LIBRARY
#include <wbalance/wbalance.h>

#include "Examples.h"
#endif

int main() {
#ifdef WITH_LIBRARY
    const examples::Balance balance;
#endif
    return 0;
}
