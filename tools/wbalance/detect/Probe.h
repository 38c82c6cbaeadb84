#pragma once

#include <string>
#include <vector>

#include "drivers/DriverTable.h"

namespace tool {

/// A question that changes nothing on any instrument, and who answers it how: what the rows of the
/// drivers say about it, taken together.
struct Probe {
    std::string command;
    std::vector<const DriverInfo*> drivers;  ///< that it can find

    /// The driver whose instrument answers so; null when the answer is none of those.
    const DriverInfo* DriverFor(const std::string& answer) const;
};

/// The questions in the order in which they are asked.
const std::vector<Probe>& Probes();

/// The drivers of the models that answer like the instrument of `found` and are only told from it
/// by its question for the model.
std::vector<const DriverInfo*> ModelsLike(const DriverInfo& found);

/// The driver of the model that the answer to that question shows; `found` where it shows none.
const DriverInfo& DriverForModel(const DriverInfo& found, const std::string& answer);

}  // namespace tool
