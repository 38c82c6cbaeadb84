#pragma once

/// Gives standard input, output and error a place where the program was started with any of them
/// closed: a file or socket that got such a number would be written to as if it were the stream.
/// To be called before anything else. What is written to such an output fails, so that a result is
/// not lost without a word.
void OccupyStandardStreams();
