#include "Playback.h"

#include <algorithm>

using record::Entry;

namespace {

/// A record says when the library had read an answer, at the end of a pause perhaps; on the line it
/// was before. With this lead a host that pauses as the recorded one did finds it again.
constexpr std::chrono::milliseconds lead{200};

/// A host that sends without a line end departs from the record at this length.
constexpr std::size_t longestSent = 256;

std::string quoted(const std::string& bytes) {
    return "\"" + record::Escaped(bytes) + "\"";
}

bool endsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

Playback::Playback(record::Record record, std::string file, Complaint complain)
    : record_(std::move(record)), file_(std::move(file)), complain_(std::move(complain)) {}

void Playback::open(const Answer& answer) {
    if (hasOpened_) return;
    hasOpened_ = true;
    answerUpToNextCommand(std::chrono::milliseconds(0), answer);
}

void Playback::take(char byte, const Answer& answer) {
    open(answer);
    received_ += byte;
    if (hasMore() && endsWith(received_, expected().bytes)) {
        depart(received_.substr(0, received_.size() - expected().bytes.size()));
        received_.clear();
        const auto since = expected().time;
        ++next_;
        answerUpToNextCommand(since, answer);
        return;
    }
    const bool isOnTheWay =
        hasMore() && expected().bytes.compare(0, received_.size(), received_) == 0;
    if (isOnTheWay || (byte != '\n' && received_.size() < longestSent)) return;
    depart(received_);
    received_.clear();
}

void Playback::answerUpToNextCommand(std::chrono::milliseconds since, const Answer& answer) {
    const auto isCommand = [](const Entry& entry) {
        return entry.kind == Entry::Kind::FromHost && !entry.bytes.empty();
    };
    for (; hasMore() && !isCommand(expected()); ++next_)
        if (expected().kind == Entry::Kind::FromInstrument)
            answer(std::max(expected().time - since - lead, std::chrono::milliseconds(0)),
                   expected().bytes);
}

void Playback::takeDamaged() {
    complain(
        "the host's characters arrive damaged: its line settings are not those of the record, " +
        record_.header.line);
}

bool Playback::conclude() {
    open([](simulator::Time, const std::string&) {});
    depart(received_);
    if (hasMore()) complain("the host has ended without sending " + quoted(expected().bytes));
    return !departed_;
}

void Playback::depart(const std::string& sent) {
    if (sent.empty()) return;
    if (hasMore())
        complain("the host departs from the record: it sends " + quoted(sent) +
                 ", the record has " + quoted(expected().bytes));
    else
        complain("the host goes on behind the end of the record: it sends " + quoted(sent));
}

/// Once for each line of the record, so that a host that repeats itself does not fill the screen.
void Playback::complain(const std::string& sentence) {
    departed_ = true;
    if (complainedAt_ == next_) return;
    complainedAt_ = next_;
    const auto& entries = record_.entries;
    const int lastLine = entries.empty() ? 1 : entries.back().line;
    complain_(file_ + ":" + std::to_string(hasMore() ? expected().line : lastLine) + ": " +
              sentence);
}
