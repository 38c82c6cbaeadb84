// A host whose only operation pauses for 500 ms, although its line is not open.

#include <wbalance/wbalance.h>

int main() {
    WbalanceOHAUS_SPU602 balance;
    double grams = 0.0;
    return balance.Weight(1, &grams, nullptr);
}
