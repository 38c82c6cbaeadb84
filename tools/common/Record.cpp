#include "Record.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>

#include "OutsideText.h"

namespace record {
namespace {

constexpr char kTitle[] = "# wbalance record 1";
// An answer of millions of bytes fits; a file that is no record does not fill the memory.
constexpr std::size_t kLongestLine = std::size_t{16} * 1024 * 1024;
// A hundred years of milliseconds: such a time can be added to any date.
constexpr long long kLatest = 100LL * 365 * 24 * 60 * 60 * 1000;

bool TakeHeaderField(const std::string& line, const char* name, std::string& value) {
    const std::string start = std::string("# ") + name + ": ";
    if (line.rfind(start, 0) != 0) return false;
    value = line.substr(start.size());
    return true;
}

void ReadHeaderLine(const std::string& line, Header& header) {
    TakeHeaderField(line, "driver", header.driver) || TakeHeaderField(line, "port", header.port) ||
        TakeHeaderField(line, "line", header.line) || TakeHeaderField(line, "date", header.date);
}

// The milliseconds at the beginning of a line; `end` is set to where they end.
std::chrono::milliseconds TimeIn(const std::string& line, std::size_t& end) {
    char* behind = nullptr;
    const long long milliseconds = std::strtoll(line.c_str(), &behind, 10);
    end = static_cast<std::size_t>(behind - line.c_str());
    if (end == 0 || *behind != ' ' || milliseconds < 0 || end + 1 >= line.size())
        throw Error("expected milliseconds, a blank and one of > < = !");
    if (milliseconds > kLatest) throw Error("the time is more than a hundred years");
    return std::chrono::milliseconds(milliseconds);
}

Entry::Kind KindFor(char letter) {
    if (letter == '/')
        throw Error(
            "this is the log of several instruments; only the log of one alone is a record");
    if (std::string("><=!").find(letter) == std::string::npos)
        throw Error("expected one of > < = ! behind the time");
    return static_cast<Entry::Kind>(letter);
}

bool WasCutOff(const std::string& line) {
    const std::size_t last = line.find_last_not_of('\\');
    return (line.size() - (last == std::string::npos ? 0 : last + 1)) % 2 == 1;
}

// "12 < S S     100.00 g\r\n"
Entry ReadEntry(const std::string& line) {
    if (WasCutOff(line)) throw Error("the line was cut off");
    std::size_t timeEnd = 0;
    Entry entry;
    entry.time = TimeIn(line, timeEnd);
    entry.kind = KindFor(line[timeEnd + 1]);
    if (timeEnd + 3 < line.size()) entry.bytes = Unescaped(line.substr(timeEnd + 3));
    return entry;
}

// A line without its end, if there is one more.
bool ReadLine(std::istream& file, std::string& line) {
    line.clear();
    for (char next = '\0'; file.get(next);) {
        if (next == '\n') return true;
        if (line.size() == kLongestLine) throw Error("the line is too long");
        line += next;
    }
    return !line.empty();
}

void TakeLine(const std::string& line, int number, Record& record) {
    if (number == 1 && line != kTitle)
        throw Error("no record: the first line is not \"" + std::string(kTitle) + "\"");
    if (line.empty()) return;
    if (line[0] == '#') return ReadHeaderLine(line, record.header);
    record.entries.push_back(ReadEntry(line));
    record.entries.back().line = number;
}

bool IsHexadecimal(const std::string& text) {
    return text.size() == 2 &&
           text.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos;
}

// The byte for the escape at `at`, which moves behind it.
char TakeEscape(const std::string& text, std::size_t& at) {
    const char letter = at + 1 < text.size() ? text[at + 1] : '\0';
    const std::string code = letter == 'x' ? text.substr(at + 2, 2) : "";
    at += 2 + code.size();
    if (letter == 'r') return '\r';
    if (letter == 'n') return '\n';
    if (letter == '\\') return '\\';
    if (!IsHexadecimal(code))
        throw Error("a \\ must be followed by r, n, \\ or x and two hexadecimal digits");
    return static_cast<char>(std::strtol(code.c_str(), nullptr, 16));
}

}  // namespace

std::string TextOf(const Header& header) {
    return std::string(kTitle) + "\n# driver: " + outside::Printable(header.driver) +
           "\n# port: " + outside::Printable(header.port) +
           "\n# line: " + outside::Printable(header.line) +
           "\n# date: " + outside::Printable(header.date) + "\n";
}

std::string TextOf(const Entry& entry) {
    return std::to_string(entry.time.count()) + " " + static_cast<char>(entry.kind) + " " +
           Escaped(entry.bytes);
}

std::string Escaped(const std::string& bytes) {
    std::string text;
    for (const char character : bytes) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '\r') {
            text += "\\r";
        } else if (character == '\n') {
            text += "\\n";
        } else if (character == '\\') {
            text += "\\\\";
        } else if (byte >= 0x20 && byte < 0x7f) {
            text += character;
        } else {
            char code[8];
            std::snprintf(code, sizeof code, "\\x%02x", byte);
            text += code;
        }
    }
    return text;
}

std::string Unescaped(const std::string& text) {
    std::string bytes;
    for (std::size_t at = 0; at < text.size();)
        bytes += text[at] == '\\' ? TakeEscape(text, at) : text[at++];
    return bytes;
}

Record Read(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw Error(path + ": " + std::strerror(errno));
    Record record;
    int number = 1;
    try {
        for (std::string line; ReadLine(file, line); ++number)
            TakeLine(line, number, record);
    } catch (const Error& error) {
        throw Error(path + ":" + std::to_string(number) + ": " + error.what());
    }
    // A folder, for one, opens and can't be read.
    if (file.bad()) throw Error(path + ": can't be read: " + std::strerror(errno));
    if (number == 1) throw Error(path + ": no record: the file is empty");
    return record;
}

Writer::Writer(const std::string& path, const Header& header) : path_(path) {
    std::error_code none;
    if (std::filesystem::is_regular_file(path, none) && !std::filesystem::is_empty(path, none))
        throw Error(path_ + ": the file is there already; choose another name, or remove it");
    file_.open(path_);
    if (!file_) throw Error(path_ + ": " + std::strerror(errno));
    Put(TextOf(header));
}

void Writer::Write(const Entry& entry) {
    Put(TextOf(entry) + "\n");
}

void Writer::Put(const std::string& lines) {
    file_ << lines << std::flush;
    if (!file_) throw WriteError(path_ + ": the record can't be written: " + std::strerror(errno));
}

}  // namespace record
