#pragma once

#include <chrono>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

/// Records of what went over a balance's line, as plain text that people can read and write:
///
///     # wbalance record 1
///     # driver: sartorius
///     # port: /dev/ttyS0
///     # line: 1200,7O1
///     # date: 2026-11-21T03:12:00.000+01:00
///     0 > \x1bP\r\n
///     12 < +   100.00 g  \r\n
///     2015 = weigh 1 100 auto
///     3200 ! /dev/ttyS0 unplugged
///
/// Each line has the milliseconds since the start, what it is about, and the text:
///
///     >   what the host sent
///     <   what the instrument sent
///     =   what the library returned for the operation that ends here; of a weighing with its mode,
///         which is auto where it is missing
///     !   what else happened on the line, as a sentence; `wbalance-sim --log` writes such lines
///
/// In the text a backslash with r, n, xNN or another backslash stands for a byte. A line that ends
/// in a single backslash was cut off. Further "# name: value" lines and empty lines are allowed.
namespace record {

/// A file is not a record, or can't be read or written. The sentence says which file, where and
/// why.
class Error : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

/// An opened file can't be written, for example because the disk is full.
class WriteError : public Error {
 public:
    using Error::Error;
};

/// The texts of the header; what can't be shown of one is written as Printable() writes it.
struct Header {
    std::string driver;
    std::string port;
    std::string line;
    std::string date;
};

struct Entry {
    enum class Kind { FromHost = '>', FromInstrument = '<', Result = '=', Event = '!' };

    std::chrono::milliseconds time{0};  ///< since the start of the record
    Kind kind = Kind::FromHost;
    std::string bytes;
    int line = 0;  ///< where Read() found it in its file, counted from 1
};

struct Record {
    Header header;
    std::vector<Entry> entries;
};

/// The lines with which a record begins, each with its end.
std::string TextOf(const Header& header);
/// The line of an entry, without its end.
std::string TextOf(const Entry& entry);

/// Bytes as a record writes them.
std::string Escaped(const std::string& bytes);
/// The bytes that Escaped() wrote. Throws Error for a broken escape.
std::string Unescaped(const std::string& text);

/// Reads a whole record. Throws Error with the file's name and the line's number.
Record Read(const std::string& path);

/// Writes a record entry by entry; each is in the file when Write() returns.
class Writer {
 public:
    /// Throws Error when the file holds something already or can't be opened, WriteError when it
    /// can't be written, as does Write().
    Writer(const std::string& path, const Header& header);
    void Write(const Entry& entry);

 private:
    void Put(const std::string& lines);

    const std::string path_;
    std::ofstream file_;
};

}  // namespace record
