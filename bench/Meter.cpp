#include "Meter.h"

#include <algorithm>
#include <cstddef>

namespace {

thread_local unsigned long allocationCount = 0;

}  // namespace

extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);

// The C library lets a program bring its own allocation functions; these only count.

__attribute__((visibility("default"))) void* malloc(std::size_t size) {
    ++allocationCount;
    return __libc_malloc(size);
}

__attribute__((visibility("default"))) void* calloc(std::size_t count, std::size_t size) {
    ++allocationCount;
    return __libc_calloc(count, size);
}

__attribute__((visibility("default"))) void* realloc(void* memory, std::size_t size) {
    ++allocationCount;
    return __libc_realloc(memory, size);
}
}

namespace bench {

double Meter::Milliseconds(clockid_t clock) {
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

Meter::Meter()
    : wallMs_(Milliseconds(CLOCK_MONOTONIC)),
      processorMs_(Milliseconds(CLOCK_THREAD_CPUTIME_ID)),
      allocations_(allocationCount) {}

Cost Meter::Read() const {
    return {Milliseconds(CLOCK_MONOTONIC) - wallMs_,
            Milliseconds(CLOCK_THREAD_CPUTIME_ID) - processorMs_,
            static_cast<double>(allocationCount - allocations_)};
}

double Quantile(std::vector<double> values, double share) {
    if (values.empty()) return 0.0;
    const auto rank =
        static_cast<std::size_t>(share * static_cast<double>(values.size() - 1) + 0.5);
    std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(rank),
                     values.end());
    return values[rank];
}

double Median(std::vector<double> values) {
    return Quantile(std::move(values), 0.5);
}

Cost Median(const std::vector<Cost>& costs) {
    const auto of = [&costs](double Cost::*part) {
        std::vector<double> values;
        for (const Cost& cost : costs)
            values.push_back(cost.*part);
        return Median(std::move(values));
    };
    return {of(&Cost::wallMs), of(&Cost::processorMs), of(&Cost::allocations)};
}

}  // namespace bench
