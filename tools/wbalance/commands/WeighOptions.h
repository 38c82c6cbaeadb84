#pragma once

#include <string>

#include "output/MeasurementFormat.h"

namespace CLI {
class App;
}

namespace tool {

/// The options of the commands that give weights.
struct WeighOptions {
    long mode = 1;
    bool json = false;
    bool csv = false;

    void AddTo(CLI::App& command);
    Format OutputFormat() const;
};

}  // namespace tool
