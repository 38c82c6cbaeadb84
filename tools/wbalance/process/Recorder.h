#pragma once

#include <string>

#include "BalanceProcess.h"
#include "Record.h"

namespace tool {

/// Writes what operations brought to a record, one operation after the other.
class Recorder {
 public:
    /// Throws record::Error when the file can't be written.
    Recorder(const std::string& path, const Connection& connection);
    void Add(const Request& request, const Report& report);

 private:
    void WriteExchanges(const std::vector<TraceText>& trace);
    void Write(WallTime time, record::Entry::Kind kind, const std::string& bytes);

    const WallTime start_;
    record::Writer writer_;
};

/// The report of each weighing in a record, as it was when it was made. Throws record::Error for
/// one whose result is none.
std::vector<Report> WeighingsIn(const record::Record& record);

}  // namespace tool
