#pragma once

#include <sys/types.h>

#include <string>

namespace tool {

/// The file that stands for an open port, whether or not it is there: "/var/lock/LCK..ttyUSB0".
std::string LockFile(const std::string& device);

/// The process that holds the lock file of a port in /var/lock, where serial programs leave one
/// each: its number, or 0 when there is no such file or the process has ended. Another process may
/// have got that number since.
pid_t LockHolder(const std::string& device);

/// Whether something else is in the place of the lock file of a port, such as a pipe, a link or a
/// folder: who opens the port would wait for a pipe for ever.
bool LockIsNoFile(const std::string& device);

/// Takes the lock file of a port away if it is that of `process`, which has ended.
void RemoveLockOf(const std::string& device, pid_t process);

}  // namespace tool
