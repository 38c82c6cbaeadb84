#pragma once

#include <string>

namespace tool {

/// A help text with the drivers of its command lines put in: {driver}, {other} and {third} are of
/// three makers; {panel} can show a text, be switched on and off and takes a preset tare; {reset}
/// can be put back to factory settings.
std::string WithExampleDrivers(const std::string& text);

}  // namespace tool
