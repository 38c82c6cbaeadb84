#pragma once

#include <poll.h>

#include <chrono>
#include <vector>

namespace tool {

/// Makes Ctrl-C, SIGTERM and a closed terminal end the program's waits and not the program itself,
/// so that it can end cleanly. Under nohup a closed terminal is ignored. If a file reaches its size
/// limit, the write fails and the program continues.
void CatchInterrupts();

/// Whether one of them has come.
bool Interrupted();

/// From now on, SIGHUP means that the log was moved, if the program has no terminal. With a
/// terminal, SIGHUP still means that the terminal was closed.
void TakeHangupsForTheLog();

/// Whether such a SIGHUP has come since the last call.
bool TakeHangup();

/// Blocks the signals of a terminal (its size has changed, stop, continue) except during Await(),
/// so that no picture is half drawn. Processes that are forked from now on do not get them.
void HoldTerminalSignals();

/// Whether the program was stopped and continued since the last call.
bool TakeContinuation();

/// Waits until one of the descriptors has news, the time has passed, or any signal has come.
void Await(std::vector<pollfd>& watched, std::chrono::milliseconds longest);

}  // namespace tool
