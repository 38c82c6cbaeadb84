#pragma once

namespace tool {

/// Lets Ctrl-C, SIGTERM and a closed terminal end the tool's waits instead of the tool, so that it
/// can end cleanly. A closed terminal stays ignored where nohup has said so.
void CatchInterrupts();

/// Whether one of them has come.
bool Interrupted();

}  // namespace tool
