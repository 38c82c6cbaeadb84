#pragma once

#include <ctime>
#include <vector>

namespace bench {

/// What one stretch of work cost this thread.
struct Cost {
    double wallMs = 0.0;
    double processorMs = 0.0;
    double allocations = 0.0;
};

/// Begins to count at construction; allocations of this thread only (malloc and what stands on it).
class Meter {
 public:
    Meter();
    Cost Read() const;

 private:
    static double Milliseconds(clockid_t clock);

    double wallMs_;
    double processorMs_;
    unsigned long allocations_;
};

double Median(std::vector<double> values);
/// The value below which `share` (0 to 1) of all lie.
double Quantile(std::vector<double> values, double share);
Cost Median(const std::vector<Cost>& costs);

}  // namespace bench
