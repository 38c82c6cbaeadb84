#pragma once

#include <string>

namespace texts {

/// A help text with the instruments of its command lines put in: {balance}, {other} and {third} are
/// of three makers; {other} can be zeroed; {panel} can show a text, be switched on and off and
/// takes a preset tare; {reset} can be put back to factory settings; {switch} is a switch of the
/// simulated {balance}.
std::string WithExamples(const std::string& text);

}  // namespace texts
