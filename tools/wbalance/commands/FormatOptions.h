#pragma once

#include <map>
#include <string>

#include "Arguments.h"
#include "output/MeasurementFormat.h"

namespace tool {

/// The options that choose how measurements are printed: one for each format, of which one at most
/// is given.
class FormatOptions {
 public:
    /// `ofErrors` stands behind the help of a format that tells errors, too.
    void AddTo(arguments::Command command, const std::string& ofErrors);
    /// The one that was chosen, or the first of all.
    const Format& Chosen() const;

 private:
    std::map<std::string, bool> given_;
};

/// The option of a command that prints something else than measurements.
void AddJsonFlag(arguments::Command command, bool& given, const std::string& help);

}  // namespace tool
