#include "monitor/LogFile.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <cstdio>

#include "TemporaryFile.h"
#include "ToolError.h"

using tool::LogFile;

namespace {

TEST(LogFile, An_empty_file_gets_the_header_and_one_with_lines_does_not) {
    const TemporaryFile file;
    LogFile(file.Path(), "a,b", "").Write("1,2");
    LogFile(file.Path(), "a,b", "").Write("3,4");
    EXPECT_EQ(file.Text(), "a,b\n1,2\n3,4\n");
}

TEST(LogFile, A_line_that_was_cut_off_is_ended_first) {
    const TemporaryFile file;
    file.Write("a,b\n1,");
    LogFile(file.Path(), "a,b", "").Write("3,4");
    EXPECT_EQ(file.Text(), "a,b\n1,\n3,4\n");
}

TEST(LogFile, Goes_on_in_a_file_of_its_own_kind_only) {
    const TemporaryFile lines;
    LogFile(lines.Path(), "a,b", "").Write("1,2");
    EXPECT_THROW(LogFile(lines.Path(), "", "{"), tool::ToolError);
    EXPECT_THROW(LogFile(lines.Path(), "a,b,c", ""), tool::ToolError);
    EXPECT_THROW(LogFile(lines.Path(), "a", ""), tool::ToolError);
    EXPECT_EQ(lines.Text(), "a,b\n1,2\n");

    const TemporaryFile objects;
    LogFile(objects.Path(), "", "{").Write("{}");
    LogFile(objects.Path(), "", "{").Write("{}");
    EXPECT_THROW(LogFile(objects.Path(), "a,b", ""), tool::ToolError);
    EXPECT_EQ(objects.Text(), "{}\n{}\n");
}

TEST(LogFile, A_file_that_holds_something_else_is_left_as_it_is) {
    const TemporaryFile letter;
    letter.Write("Dear Sirs");
    EXPECT_THROW(LogFile(letter.Path(), "", "{"), tool::ToolError);
    EXPECT_THROW(LogFile(letter.Path(), "a,b", ""), tool::ToolError);
    EXPECT_EQ(letter.Text(), "Dear Sirs");
}

TEST(LogFile, Goes_on_in_a_new_file_when_the_old_one_was_moved_or_deleted) {
    const TemporaryFile file;
    const TemporaryFile moved;
    LogFile log(file.Path(), "a,b", "");
    log.Write("1,2");
    ASSERT_EQ(std::rename(file.Path().c_str(), moved.Path().c_str()), 0);
    log.Write("3,4");
    EXPECT_EQ(moved.Text(), "a,b\n1,2\n");
    EXPECT_EQ(file.Text(), "a,b\n3,4\n");
    unlink(file.Path().c_str());
    log.Write("5,6");
    EXPECT_EQ(file.Text(), "a,b\n5,6\n");
}

TEST(LogFile, A_file_that_rotation_has_emptied_begins_with_the_header_again) {
    const TemporaryFile file;
    LogFile log(file.Path(), "a,b", "");
    log.Write("1,2");
    file.Write("");
    log.Write("3,4");
    EXPECT_EQ(file.Text(), "a,b\n3,4\n");
}

TEST(LogFile, A_file_that_others_have_begun_in_its_place_is_left_as_it_is) {
    const TemporaryFile file;
    const TemporaryFile moved;
    LogFile log(file.Path(), "a,b", "");
    ASSERT_EQ(std::rename(file.Path().c_str(), moved.Path().c_str()), 0);
    file.Write("Dear Sirs");
    EXPECT_THROW(log.Write("1,2"), tool::ToolError);
    EXPECT_EQ(file.Text(), "Dear Sirs");
}

TEST(LogFile, Begins_the_new_file_at_once_when_it_is_told_to) {
    const TemporaryFile file;
    LogFile log(file.Path(), "a,b", "");
    unlink(file.Path().c_str());
    log.FollowRotation();
    EXPECT_EQ(file.Text(), "a,b\n");
}

TEST(LogFile, A_full_disk_is_an_error) {
    LogFile log("/dev/full", "", "{");
    EXPECT_THROW(log.Write("1,2"), tool::ToolError);
}

TEST(LogFile, A_folder_that_is_not_there_is_an_error) {
    EXPECT_THROW(LogFile("/nowhere/log", "", "{"), tool::ToolError);
}

}  // namespace
