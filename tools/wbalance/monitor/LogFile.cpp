#include "LogFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "ToolError.h"
#include "output/Stream.h"

namespace tool {
namespace {

/// 0 also where there is none, as in a pipe.
off_t SizeOf(int file) {
    return std::max<off_t>(lseek(file, 0, SEEK_END), 0);
}

bool EndsWithinALine(int file) {
    const off_t size = SizeOf(file);
    char last = '\n';
    return size > 0 && pread(file, &last, 1, size - 1) == 1 && last != '\n';
}

bool BeginsWith(int file, const std::string& beginning) {
    std::string first(beginning.size(), '\0');
    return pread(file, first.data(), first.size(), 0) > 0 && first == beginning;
}

}  // namespace

LogFile::LogFile(const std::string& path, const std::string& header, const std::string& lineBegins)
    : path_(path), header_(header), beginning_(header.empty() ? lineBegins : header + "\n") {
    Open();
}

void LogFile::Open() {
    file_ = Descriptor(open(path_.c_str(), O_RDWR | O_APPEND | O_CREAT | O_CLOEXEC, 0666));
    if (file_.Get() < 0) throw ToolError(ExitCode::Usage, path_ + ": " + std::strerror(errno));
    if (SizeOf(file_.Get()) > 0 && !BeginsWith(file_.Get(), beginning_)) {
        throw ToolError(ExitCode::Usage,
                        path_ +
                            ": holds lines of another kind than those that would be added; choose "
                            "another file, or the output format that it was begun with");
    }
    if (EndsWithinALine(file_.Get())) Put("\n");
    PutHeader();
}

void LogFile::PutHeader() {
    if (!header_.empty() && SizeOf(file_.Get()) == 0) Put(header_ + "\n");
}

// Whether the name still leads to the file; log rotation moves or deletes it.
bool LogFile::IsInPlace() const {
    struct stat named {};
    struct stat opened {};
    return stat(path_.c_str(), &named) == 0 && fstat(file_.Get(), &opened) == 0 &&
           named.st_dev == opened.st_dev && named.st_ino == opened.st_ino;
}

void LogFile::FollowRotation() {
    if (!IsInPlace()) Open();
}

void LogFile::Write(const std::string& line) {
    FollowRotation();
    PutHeader();  // rotation by copying empties the file
    Put(line + "\n");
    // Not every file can be brought to a disk; a pipe or /dev/null can't, and that is no failure.
    if (fdatasync(file_.Get()) != 0 && errno != EINVAL && errno != EROFS)
        throw ToolError(ExitCode::Internal, path_ + ": " + std::strerror(errno));
}

void LogFile::Put(const std::string& bytes) {
    const std::error_code failure = WriteAll(file_.Get(), bytes);
    if (!failure) return;
    const bool interrupted = failure == std::errc::interrupted;
    throw ToolError(interrupted ? ExitCode::Interrupted : ExitCode::Internal,
                    path_ + ": the log can't be written: " + failure.message());
}

}  // namespace tool
