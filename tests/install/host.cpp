// A host of the installed library: asks a balance on a port that no machine has for its weight.

#include <wbalance/wbalance.h>

#include <cstdio>

class HostBalance : public WithLineReadiness<WbalanceGibertini> {
 public:
    int TimeoutSeconds() const { return timeoutSeconds; }
};

int main() {
    HostBalance balance;
    balance.SetCommPort(2147483647);
    double grams = -1.0;
    int decimals = 0;
    const int status = balance.Weight(1, &grams, &decimals);
    std::printf("%d after %d s\n", status, balance.TimeoutSeconds());
    return 0;
}
