// One reading through the library, the way a host takes it. Prints it on standard error.
//
//     bench_library_host mettler-toledo|kern

#include <wbalance/wbalance.h>

#include <cstdio>
#include <cstring>

namespace {

template <class Driver>
int Weigh() {
    WithLineReadiness<Driver> balance;
    double grams = 0.0;
    int decimals = 0;
    const int status = balance.Weight(2, &grams, &decimals);
    std::fprintf(stderr, "%.2f g\n", grams);
    return status == 0 ? 1 : 0;
}

}  // namespace

int main(int count, char** arguments) {
    const bool kern = count > 1 && std::strcmp(arguments[1], "kern") == 0;
    return kern ? Weigh<WbalanceKern_EW_EGN_EWB>() : Weigh<WbalanceMettlerToledo>();
}
