#pragma once

#include <string>

#include "Arguments.h"
#include "output/MeasurementFormat.h"

namespace tool {

/// The options of the commands that give weights.
struct WeighOptions {
    long mode = 1;
    bool json = false;
    bool csv = false;

    void AddTo(arguments::Command command);
    Format OutputFormat() const;
};

}  // namespace tool
