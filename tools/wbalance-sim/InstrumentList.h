#pragma once

#include <ostream>

/// Writes every instrument with its settings and switches, and every fault.
void WriteInstruments(std::ostream& out);
