// The smallest host: it makes a driver and ends. Beside it stands the same program without the
// library.

#ifdef WITH_LIBRARY
#include <wbalance/wbalance.h>
#endif

int main() {
#ifdef WITH_LIBRARY
    const WbalanceMettlerToledo balance;
#endif
    return 0;
}
