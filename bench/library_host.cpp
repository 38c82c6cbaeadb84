// One reading through the library, the way a host takes it. Prints it on standard error.
//
//     bench_library_host INSTRUMENT

#include <Instruments.h>
#include <wbalance/wbalance.h>

#include <cstdio>
#include <string>

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
    const std::string instrument = count > 1 ? arguments[1] : "";
#define WBALANCE_WEIGH(name, Class) \
    if (instrument == name) return Weigh<Class>();
    WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_WEIGH)
#undef WBALANCE_WEIGH
    std::fprintf(stderr, "no instrument %s\n", instrument.c_str());
    return 2;
}
