#include "Record.h"

#include <gmock/gmock.h>

#include "TemporaryFile.h"

using record::Entry;
using testing::HasSubstr;

namespace {

std::string ReasonFor(const std::string& text) {
    const TemporaryFile file;
    file.Write(text);
    try {
        record::Read(file.Path());
    } catch (const record::Error& error) {
        return error.what();
    }
    return "";
}

TEST(Record, Every_byte_is_written_so_that_it_can_be_read_again) {
    std::string bytes;
    for (int byte = 0; byte < 256; ++byte)
        bytes += static_cast<char>(byte);
    EXPECT_EQ(record::Unescaped(record::Escaped(bytes)), bytes);
    EXPECT_EQ(record::Escaped(std::string("\x1bP\r\n\\\0\xff", 7)), "\\x1bP\\r\\n\\\\\\x00\\xff");
}

TEST(Record, What_was_written_is_read) {
    const TemporaryFile file;
    record::Writer writer(file.Path(), {"example", "/dev/ttyS0", "1200,8N2", "2026-11-21"});
    writer.Write({std::chrono::milliseconds(12), Entry::Kind::FromInstrument, "A00\r\n"});

    const record::Record record = record::Read(file.Path());

    EXPECT_EQ(record.header.driver, "example");
    EXPECT_EQ(record.header.port, "/dev/ttyS0");
    EXPECT_EQ(record.header.line, "1200,8N2");
    EXPECT_EQ(record.header.date, "2026-11-21");
    ASSERT_EQ(record.entries.size(), 1u);
    EXPECT_EQ(record.entries[0].time.count(), 12);
    EXPECT_EQ(record.entries[0].kind, Entry::Kind::FromInstrument);
    EXPECT_EQ(record.entries[0].bytes, "A00\r\n");
}

TEST(Record, A_time_of_more_than_a_hundred_years_is_refused) {
    EXPECT_EQ(ReasonFor("# wbalance record 1\n3153600000000 < S\n"), "");
    for (const char* time :
         {"3153600000001", "99999999999999", "9223372036854775807", "99999999999999999999999"}) {
        EXPECT_THAT(ReasonFor(std::string("# wbalance record 1\n") + time + " < S\n"),
                    HasSubstr(":2: the time is more than a hundred years"))
            << time;
    }
}

TEST(Record, An_answer_of_a_million_bytes_is_written_and_read) {
    const TemporaryFile file;
    const std::string answer(1'000'000, '\xff');
    record::Writer(file.Path(), {}).Write({{}, Entry::Kind::FromInstrument, answer});
    EXPECT_EQ(record::Read(file.Path()).entries.at(0).bytes, answer);
}

TEST(Record, A_line_without_an_end_does_not_fill_the_memory) {
    const TemporaryFile file;
    file.Write("# wbalance record 1\n0 < " + std::string(17'000'000, 'x'));
    try {
        record::Read(file.Path());
        FAIL() << "it was read";
    } catch (const record::Error& error) {
        EXPECT_THAT(error.what(), HasSubstr(":2: the line is too long"));
    }
    EXPECT_THROW(record::Read("/dev/zero"), record::Error);
}

TEST(Record, A_header_stays_on_its_line_and_changes_no_terminal) {
    const TemporaryFile file;
    record::Writer(file.Path(), {"example", "/dev/a\n# driver: b\x1b", "", ""});
    EXPECT_THAT(file.Text(), HasSubstr("# port: /dev/a\\n# driver: b\\x1b\n"));
    EXPECT_EQ(record::Read(file.Path()).header.driver, "example");
}

TEST(Record, A_file_that_holds_something_is_not_overwritten) {
    const TemporaryFile file;
    file.Write("the only copy\n");
    try {
        record::Writer(file.Path(), {});
        ADD_FAILURE() << "overwritten";
    } catch (const record::Error& error) {
        EXPECT_EQ(error.what(), file.Path() +
                                    ": the file is there already; choose another name, or remove "
                                    "it");
    }
    EXPECT_EQ(file.Text(), "the only copy\n");
}

TEST(Record, A_broken_file_is_refused_with_the_line_and_the_reason) {
    EXPECT_THAT(ReasonFor(""), HasSubstr("the file is empty"));
    EXPECT_THAT(ReasonFor("hello\n"), HasSubstr(":1: no record"));
    EXPECT_THAT(ReasonFor("# wbalance record 1\nx < S\n"), HasSubstr(":2: expected milliseconds"));
    EXPECT_THAT(ReasonFor("# wbalance record 1\n-1 < S\n"), HasSubstr(":2: expected milliseconds"));
    EXPECT_THAT(ReasonFor("# wbalance record 1\n12\n"), HasSubstr(":2: expected milliseconds"));
    EXPECT_THAT(ReasonFor("# wbalance record 1\n1 ? S\n"), HasSubstr(":2: expected one of > < ="));
    EXPECT_THAT(ReasonFor(std::string("# wbalance record 1\n1 \0 S\n", 26)),
                HasSubstr(":2: expected one of > < ="));
    EXPECT_THAT(ReasonFor("# wbalance record 1\n1 < 5.00\\\n1 < 4\n"),
                HasSubstr(":2: the line was cut off"));
    EXPECT_EQ(ReasonFor("# wbalance record 1\n1 < 5.00\\\\\n"), "") << "a backslash was sent";
    EXPECT_THAT(
        ReasonFor("# wbalance record 1\n1 /dev/ttyS0 < S\n"),
        HasSubstr(":2: this is the log of several instruments; only the log of one alone is "
                  "a record"));
    EXPECT_THAT(ReasonFor("    0.012 > \"S\\r\\n\" 2400,7E1\n"),
                HasSubstr(":1: no record: the first line is not \"# wbalance record 1\""));
    EXPECT_THAT(ReasonFor("# wbalance record 1\n1 < \\q\n"), HasSubstr(":2: a \\ must be"));
    EXPECT_THAT(ReasonFor("# wbalance record 1\n1 < \\x4\n"), HasSubstr(":2: a \\ must be"));
}

}  // namespace
