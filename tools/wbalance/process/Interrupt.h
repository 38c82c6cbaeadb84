#pragma once

#include <poll.h>

#include <chrono>
#include <vector>

namespace tool {

/// Lets Ctrl-C, SIGTERM and a closed terminal end the tool's waits instead of the tool, so that it
/// can end cleanly. A closed terminal stays ignored where nohup has said so. A file at its limit of
/// size is a write that fails, and no end either.
void CatchInterrupts();

/// Whether one of them has come.
bool Interrupted();

/// In a program without a terminal SIGHUP means from now on that its log was moved. With one it
/// goes on meaning that the terminal was closed.
void TakeHangupsForTheLog();

/// Whether such a SIGHUP has come since this was asked last.
bool TakeHangup();

/// Holds the signals of a terminal (its size has changed, stop, go on) back but in Await(), so that
/// nothing is drawn by half. The processes forked from now on never see them.
void HoldTerminalSignals();

/// Whether the program was stopped and goes on since this was asked last.
bool TakeContinuation();

/// Waits until one of the descriptors has news, the time has passed, or any signal has come.
void Await(std::vector<pollfd>& watched, std::chrono::milliseconds longest);

}  // namespace tool
