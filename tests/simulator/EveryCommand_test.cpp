// The page of each instrument in docs/instruments lists the commands of the simulated instrument:
// all of them and no others, whatever is chosen with switches.

#include <gtest/gtest.h>

#include <fstream>
#include <regex>
#include <set>
#include <sstream>

#include "simulator/Instrument.h"

using simulator::Catalog;
using simulator::CatalogEntry;
using simulator::Instrument;
using namespace std::chrono_literals;

namespace {

using Texts = std::set<std::string>;

std::string ReadPage(const std::string& name) {
    std::ifstream file(std::string(WBALANCE_PAGES) + "/" + name);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

/// The section on the commands, and the pages to which it sends its reader.
std::string CommandSection(const std::string& name) {
    const std::string page = ReadPage(name + ".md");
    const std::size_t begin = page.find("\n## Commands that the simulated instrument answers\n");
    if (begin == std::string::npos) return "";
    const std::size_t end = page.find("\n## ", begin + 1);
    std::string section = page.substr(begin, end == std::string::npos ? end : end - begin);
    const std::regex link("\\(([a-z0-9-]+\\.md)");
    std::smatch found;
    for (std::string rest = section; std::regex_search(rest, found, link); rest = found.suffix())
        section += ReadPage(found[1]);
    return section;
}

std::vector<std::string> Cells(const std::string& line) {
    std::vector<std::string> cells;
    std::istringstream row(line.substr(1));
    for (std::string cell; std::getline(row, cell, '|');)
        cells.push_back(std::regex_replace(cell, std::regex("^ +| +$"), ""));
    return cells;
}

/// Adds what stands between back quotes.
void AddCode(const std::string& cell, Texts& all) {
    const std::regex code("`([^`]+)`");
    for (std::sregex_iterator each(cell.begin(), cell.end(), code), end; each != end; ++each)
        all.insert((*each)[1]);
}

/// The commands as the page writes them: the columns "Command" of its tables.
Texts WrittenCommands(const std::string& name) {
    Texts all;
    std::size_t column = std::string::npos;
    std::istringstream section(CommandSection(name));
    for (std::string line; std::getline(section, line);) {
        if (line.empty() || line[0] != '|') {
            column = std::string::npos;
            continue;
        }
        const auto cells = Cells(line);
        for (std::size_t at = 0; at < cells.size(); ++at)
            if (cells[at] == "Command" || cells[at] == "Commands") column = at;
        if (column < cells.size()) AddCode(cells[column], all);
    }
    return all;
}

/// The command in "UT 12.5", "ESC x1_" or "ESC tTEXT_". A number in front may be any: "0P" is "xP".
std::string NameIn(const std::string& written) {
    std::string name = std::regex_replace(written, std::regex("^ESC "), "");
    name = std::regex_replace(name, std::regex("^[0-9]+(?=[A-Z])"), "x");
    return std::regex_replace(name, std::regex(" .*|TEXT|_$|_TEXT_$"), "");
}

/// The values of all switches that offer a choice.
std::vector<std::string> Choices(const CatalogEntry& entry) {
    std::vector<std::string> all;
    for (const auto& each : entry.switches)
        for (const std::string& value : each.allowed)
            all.push_back(each.name + "=" + value);
    return all;
}

void AddNames(const CatalogEntry& entry, const std::vector<std::string>& settings, Texts& all) {
    for (const std::string& name : Instrument(entry, settings).CommandNames())
        all.insert(std::regex_replace(name, std::regex("^\x1b|_$"), ""));
}

/// The commands of the instrument with any two choices.
Texts KnownCommands(const CatalogEntry& entry) {
    const auto choices = Choices(entry);
    Texts all;
    AddNames(entry, {}, all);
    for (auto one = choices.begin(); one != choices.end(); ++one)
        for (auto other = one; other != choices.end(); ++other)
            AddNames(entry, {*one, *other}, all);
    return all;
}

}  // namespace

TEST(EveryCommand, Stands_on_the_page_of_its_instrument_and_the_page_lists_no_others) {
    for (const CatalogEntry& entry : Catalog()) {
        Texts listed;
        for (const std::string& written : WrittenCommands(entry.name))
            listed.insert(NameIn(written));
        EXPECT_EQ(listed, KnownCommands(entry)) << entry.name;
    }
}

namespace {

/// What a host sends for a command of the page.
std::string Wire(const std::string& written) {
    std::string bytes = std::regex_replace(written, std::regex("^ESC "), "\x1b");
    bytes = std::regex_replace(bytes, std::regex("^x(?=[A-Z])"), "1");
    return bytes + "\r\n";
}

std::unique_ptr<Instrument> HaveAtRest(const CatalogEntry& entry, const std::string& setting) {
    std::vector<std::string> settings;
    if (!setting.empty()) settings.push_back(setting);
    auto instrument = std::make_unique<Instrument>(entry, settings);
    instrument->Balance().StartWithLoad(1);
    return instrument;
}

bool SpeaksUnasked(const CatalogEntry& entry, const std::string& setting) {
    const auto instrument = HaveAtRest(entry, setting);
    instrument->Advance(5s);
    return !instrument->TakeOutput().empty();
}

/// Whether the command is answered; an answer begins within 50 ms.
bool IsAnswered(const CatalogEntry& entry, const std::string& setting, const std::string& written) {
    const auto instrument = HaveAtRest(entry, setting);
    instrument->Receive(Wire(written), 0ms);
    instrument->Advance(50ms);
    const bool isAnswered = !instrument->TakeOutput().empty();
    instrument->Advance(5s);
    if (isAnswered) return true;
    EXPECT_EQ(instrument->TakeOutput(), "") << entry.name << " " << setting << ": " << written;
    return false;
}

}  // namespace

TEST(EveryCommand, Is_answered_within_50_ms_of_its_time_when_the_pan_is_at_rest) {
    for (const CatalogEntry& entry : Catalog()) {
        auto settings = Choices(entry);
        settings.emplace_back();
        const Texts commands = WrittenCommands(entry.name);
        std::size_t answered = 0;
        for (const std::string& setting : settings) {
            if (SpeaksUnasked(entry, setting)) continue;
            for (const std::string& written : commands)
                answered += IsAnswered(entry, setting, written);
        }
        EXPECT_GE(answered, settings.size()) << entry.name;
    }
}
