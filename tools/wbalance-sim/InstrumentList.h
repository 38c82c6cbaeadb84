#pragma once

#include <ostream>

/// Writes every instrument with its settings and switches, and every fault.
void writeInstruments(std::ostream& out);
