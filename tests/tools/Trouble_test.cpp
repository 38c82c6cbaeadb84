// docs/troubleshooting.md quotes every sentence that the program has for a trouble, and no other.

#include "Trouble.h"

#include <gmock/gmock.h>

#include <fstream>
#include <regex>

using tool::ExitCode;
using tool::Trouble;

namespace {

/// A row of one of the page's tables.
struct PageRow {
    std::vector<std::string> quotations;  ///< of its first cell
    std::string secondCell;
};

std::vector<std::string> QuotationsIn(const std::string& cell) {
    static const std::regex kQuotation("`([^`]+)`");
    std::vector<std::string> quotations;
    for (std::sregex_iterator each(cell.begin(), cell.end(), kQuotation), end; each != end; ++each)
        quotations.push_back((*each)[1]);
    return quotations;
}

/// The rows whose first cell is a quotation, of the tables of what doctor says.
std::vector<PageRow> PageRows() {
    static const std::regex kRow(R"(\| (`[^|]*`) \| ([^|]*) \|.*)");
    std::ifstream page(TROUBLESHOOTING);
    std::vector<PageRow> rows;
    std::smatch cells;
    for (std::string line; std::getline(page, line);) {
        if (std::regex_match(line, cells, kRow)) rows.push_back({QuotationsIn(cells[1]), cells[2]});
    }
    return rows;
}

/// As the page writes it: what differs from case to case is a word in capital letters.
std::string AsQuoted(const std::string& says) {
    return std::regex_replace(says, std::regex("[{}]"), "");
}

/// Of everything that is wrong; the last row of the table is for the case that nothing is.
std::vector<std::string> SentencesOfTheProgram() {
    std::vector<std::string> sentences;
    for (const auto& row : tool::Troubles()) {
        if (row.trouble != Trouble::None) sentences.push_back(AsQuoted(row.says));
    }
    return sentences;
}

TEST(Troubleshooting, Quotes_every_sentence_of_the_program_once_and_no_other) {
    std::vector<std::string> quoted;
    for (const auto& row : PageRows())
        quoted.insert(quoted.end(), row.quotations.begin(), row.quotations.end());
    EXPECT_THAT(quoted, testing::UnorderedElementsAreArray(SentencesOfTheProgram()));
}

TEST(Troubleshooting, Gives_the_exit_code_of_each_sentence_where_it_gives_one) {
    int compared = 0;
    for (const auto& row : PageRows()) {
        if (!std::regex_match(row.secondCell, std::regex("[0-9]+"))) continue;
        for (const auto& trouble : tool::Troubles()) {
            if (AsQuoted(trouble.says) != row.quotations.at(0)) continue;
            EXPECT_EQ(static_cast<int>(trouble.code), std::stoi(row.secondCell)) << trouble.says;
            ++compared;
        }
    }
    EXPECT_GE(compared, 9);
}

TEST(Troubles, Stand_in_the_order_of_the_enumeration) {
    const auto& troubles = tool::Troubles();
    ASSERT_EQ(troubles.size(), static_cast<std::size_t>(Trouble::None) + 1);
    for (std::size_t row = 0; row < troubles.size(); ++row)
        EXPECT_EQ(troubles[row].trouble, static_cast<Trouble>(row)) << troubles[row].says;
}

TEST(Troubles, Are_told_with_what_is_to_be_done_and_a_remark_between) {
    EXPECT_EQ(tool::SentenceFor({Trouble::UnknownText, {{"DRIVER", "example"}}, "no unit"}),
              "text comes back that the driver example does not know (no unit); `wbalance detect` "
              "finds the instrument");
    EXPECT_EQ(tool::SentenceFor({Trouble::NotStable}),
              "no stable weight; wait until the pan is at rest, or read with --mode now");
}

TEST(Troubles, Take_a_word_from_outside_as_it_is) {
    EXPECT_EQ(tool::SentenceFor({Trouble::LeftLock, {{"FILE", "/tmp/{FILE}"}}}),
              "the lock file of a program that has ended keeps the port closed: sudo rm "
              "/tmp/{FILE}");
}

TEST(Troubles, End_with_their_exit_code_and_name_what_they_are_about) {
    const auto diagnosis = tool::Diagnose("/dev/ttyS0", {Trouble::NoPortBehindNode});
    EXPECT_EQ(diagnosis.code, ExitCode::PortFailed);
    EXPECT_EQ(diagnosis.sentence,
              "/dev/ttyS0: no serial port is behind it; `wbalance ports` lists those that are "
              "there");
}

}  // namespace
