#pragma once

#include <string>

namespace trace_text {

/// Interprets `format` as printf does in the "C" locale without any argument: every missing
/// argument counts as zero or empty, and no directive reads or writes memory.
/// CSerialObject::TavinTrace() has the rules.
std::string Interpret(const char* format);

}  // namespace trace_text
