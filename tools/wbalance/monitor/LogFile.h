#pragma once

#include <string>

#include "process/Descriptor.h"

namespace tool {

/// A file to which whole lines are added. A line that Write() has returned for is on the disk: it
/// survives the end of the program and of the computer.
class LogFile {
 public:
    /// Opens or creates the file and appends to it. If its last line was cut off, ends that line
    /// first. An empty file gets `header`. Where that is empty, every line begins with
    /// `lineBegins`. Throws ToolError, also for a file that was begun with another header or as
    /// another kind.
    LogFile(const std::string& path, const std::string& header, const std::string& lineBegins);

    /// Adds a line, in a new file where the old one was moved, deleted or emptied. Throws
    /// ToolError, naming the file, when it can't be written.
    void Write(const std::string& line);

    /// Begins a new file where the old one was moved or deleted.
    void FollowRotation();

 private:
    void Open();
    void PutHeader();
    bool IsInPlace() const;
    void Put(const std::string& bytes);

    const std::string path_;
    const std::string header_;
    const std::string beginning_;  ///< of what the file holds
    Descriptor file_;
};

}  // namespace tool
