#pragma once

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>

/// A file that goes when the test ends.
class TemporaryFile {
 public:
    TemporaryFile() {
        const int descriptor = mkstemp(path_);
        if (descriptor >= 0) close(descriptor);
    }
    ~TemporaryFile() { unlink(path_); }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::string Path() const { return path_; }
    std::string Text() const {
        std::ifstream file(path_);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void Write(const std::string& text) const { std::ofstream(path_) << text; }

 private:
    char path_[32] = "/tmp/wbalance-test-XXXXXX";
};
