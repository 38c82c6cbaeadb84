#pragma once

/// Opens /dev/null for standard input, output or error if the program was started with it closed.
/// Otherwise a file or socket could get this number and be written to as if it were the stream.
/// Call it before anything else. A write to such an output fails, so a lost result is noticed.
void OccupyStandardStreams();
