#include "monitor/LogFile.h"

#include <gmock/gmock.h>

#include "TemporaryFile.h"
#include "ToolError.h"

using tool::LogFile;

namespace {

TEST(LogFile, An_empty_file_gets_the_header_and_one_with_lines_does_not) {
    const TemporaryFile file;
    LogFile(file.Path(), "a,b").Write("1,2");
    LogFile(file.Path(), "a,b").Write("3,4");
    EXPECT_EQ(file.Text(), "a,b\n1,2\n3,4\n");
}

TEST(LogFile, A_line_that_was_cut_off_is_ended_first) {
    const TemporaryFile file;
    file.Write("a,b\n1,");
    LogFile(file.Path(), "a,b").Write("3,4");
    EXPECT_EQ(file.Text(), "a,b\n1,\n3,4\n");
}

TEST(LogFile, A_full_disk_is_an_error) {
    LogFile log("/dev/full", "");
    EXPECT_THROW(log.Write("1,2"), tool::ToolError);
}

TEST(LogFile, A_folder_that_is_not_there_is_an_error) {
    EXPECT_THROW(LogFile("/nowhere/log", ""), tool::ToolError);
}

}  // namespace
