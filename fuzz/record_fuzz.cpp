// Any file as a record: it is refused with a reason, or what was read is written so that the same
// is read again.

#include <sys/mman.h>
#include <unistd.h>

#include <string>

#include "Harness.h"
#include "OutsideText.h"
#include "Record.h"

namespace {

/// A file that exists in memory only.
class MemoryFile {
 public:
    MemoryFile() : descriptor_(memfd_create("record", 0)) {}
    ~MemoryFile() { close(descriptor_); }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;

    void Write(const std::uint8_t* data, std::size_t size) const {
        fuzz::Require(write(descriptor_, data, size) == static_cast<ssize_t>(size), "the file");
    }
    std::string Path() const { return "/proc/self/fd/" + std::to_string(descriptor_); }

 private:
    int descriptor_;
};

bool Same(const record::Entry& one, const record::Entry& other) {
    return one.time == other.time && one.kind == other.kind && one.bytes == other.bytes;
}

bool IsKnown(record::Entry::Kind kind) {
    return kind == record::Entry::Kind::FromHost || kind == record::Entry::Kind::FromInstrument ||
           kind == record::Entry::Kind::Result || kind == record::Entry::Kind::Event;
}

void WrittenAndReadAgain(const record::Record& record) {
    const MemoryFile file;
    record::Writer writer(file.Path(), record.header);
    for (const record::Entry& entry : record.entries) {
        fuzz::Require(IsKnown(entry.kind), "host, instrument, result or event");
        fuzz::Require(entry.time.count() >= 0, "no time before the start");
        writer.Write(entry);
    }
    const record::Record again = record::Read(file.Path());
    fuzz::Require(again.header.driver == outside::Printable(record.header.driver), "the driver");
    fuzz::Require(again.header.port == outside::Printable(record.header.port), "the port");
    fuzz::Require(again.header.line == outside::Printable(record.header.line), "the line settings");
    fuzz::Require(again.header.date == outside::Printable(record.header.date), "the date");
    fuzz::Require(again.entries.size() == record.entries.size(), "the number of entries");
    for (std::size_t i = 0; i < again.entries.size(); ++i)
        fuzz::Require(Same(again.entries[i], record.entries[i]), "an entry");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const MemoryFile file;
    file.Write(data, size);
    record::Record record;
    try {
        record = record::Read(file.Path());
    } catch (const record::Error& error) {
        fuzz::Require(*error.what() != '\0', "a reason");
        return 0;
    }
    WrittenAndReadAgain(record);
    return 0;
}
