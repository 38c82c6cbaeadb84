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
constexpr std::size_t kLongestLine = 16 * 1024 * 1024;
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

// "12 < S S     100.00 g\r\n"
Entry ReadEntry(const std::string& line) {
    char* end = nullptr;
    Entry entry;
    const long long milliseconds = std::strtoll(line.c_str(), &end, 10);
    const auto kindAt = static_cast<std::size_t>(end - line.c_str()) + 1;
    if (end == line.c_str() || *end != ' ' || milliseconds < 0 || kindAt >= line.size())
        throw Error("expected milliseconds, a blank and one of > < =");
    if (milliseconds > kLatest) throw Error("the time is more than a hundred years");
    if (std::string("><=").find(line[kindAt]) == std::string::npos)
        throw Error("expected one of > < = behind the time");
    entry.time = std::chrono::milliseconds(milliseconds);
    entry.kind = static_cast<Entry::Kind>(line[kindAt]);
    if (kindAt + 2 < line.size()) entry.bytes = Unescaped(line.substr(kindAt + 2));
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

}  // namespace

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
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char escape = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (text[i] != '\\') {
            bytes += text[i];
            continue;
        }
        ++i;
        if (escape == 'r') {
            bytes += '\r';
        } else if (escape == 'n') {
            bytes += '\n';
        } else if (escape == '\\') {
            bytes += '\\';
        } else if (escape == 'x' && IsHexadecimal(text.substr(i + 1, 2))) {
            bytes += static_cast<char>(std::strtol(text.substr(i + 1, 2).c_str(), nullptr, 16));
            i += 2;
        } else {
            throw Error("a \\ must be followed by r, n, \\ or x and two hexadecimal digits");
        }
    }
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
    WriteLine(kTitle);
    WriteLine("# driver: " + outside::Printable(header.driver));
    WriteLine("# port: " + outside::Printable(header.port));
    WriteLine("# line: " + outside::Printable(header.line));
    WriteLine("# date: " + outside::Printable(header.date));
}

void Writer::Write(const Entry& entry) {
    WriteLine(std::to_string(entry.time.count()) + " " + static_cast<char>(entry.kind) + " " +
              Escaped(entry.bytes));
}

void Writer::WriteLine(const std::string& line) {
    file_ << line << std::endl;
    if (!file_) throw WriteError(path_ + ": the record can't be written: " + std::strerror(errno));
}

}  // namespace record
