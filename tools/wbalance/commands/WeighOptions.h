#pragma once

#include <string>

#include "Arguments.h"
#include "FormatOptions.h"

namespace tool {

/// The options of the commands that give weights.
struct WeighOptions {
    long mode = 1;
    FormatOptions format;

    void AddTo(arguments::Command command);
};

}  // namespace tool
