#pragma once

#include <optional>
#include <string>

namespace simulator {

/// The device that `name` stands for, "/dev/ttyUSB1" for "ttyUSB1" and for "/dev/ttyUSB1"; empty
/// for everything that is no "ttyS<N>" and no "ttyUSB<N>" with N from 0 to 99999.
std::optional<std::string> ServedDevice(const std::string& name);

}  // namespace simulator
