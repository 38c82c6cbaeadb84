#include "Playback.h"

#include <algorithm>

using record::Entry;

namespace {

/// A record says when the library had read an answer, at the end of a pause perhaps; on the line it
/// was before. With this lead a host that pauses as the recorded one did finds it again.
constexpr std::chrono::milliseconds kLead{200};

/// A host that sends without a line end departs from the record at this length.
constexpr std::size_t kLongestSent = 256;

std::string Quoted(const std::string& bytes) {
    return "\"" + record::Escaped(bytes) + "\"";
}

bool EndsWith(const std::string& text, const std::string& end) {
    return text.size() >= end.size() &&
           text.compare(text.size() - end.size(), end.size(), end) == 0;
}

}  // namespace

Playback::Playback(record::Record record, std::string file, Complaint complain)
    : record_(std::move(record)), file_(std::move(file)), complain_(std::move(complain)) {}

void Playback::Open(const Answer& answer) {
    if (hasOpened_) return;
    hasOpened_ = true;
    AnswerUpToNextCommand(std::chrono::milliseconds(0), answer);
}

void Playback::Take(char byte, const Answer& answer) {
    Open(answer);
    received_ += byte;
    if (HasMore() && EndsWith(received_, Expected().bytes)) {
        Depart(received_.substr(0, received_.size() - Expected().bytes.size()));
        received_.clear();
        const auto since = Expected().time;
        ++next_;
        AnswerUpToNextCommand(since, answer);
        return;
    }
    const bool isOnTheWay =
        HasMore() && Expected().bytes.compare(0, received_.size(), received_) == 0;
    if (isOnTheWay || (byte != '\n' && received_.size() < kLongestSent)) return;
    Depart(received_);
    received_.clear();
}

void Playback::AnswerUpToNextCommand(std::chrono::milliseconds since, const Answer& answer) {
    const auto isCommand = [](const Entry& entry) {
        return entry.kind == Entry::Kind::FromHost && !entry.bytes.empty();
    };
    for (; HasMore() && !isCommand(Expected()); ++next_) {
        if (Expected().kind == Entry::Kind::FromInstrument)
            answer(std::max(Expected().time - since - kLead, std::chrono::milliseconds(0)),
                   Expected().bytes);
        if (Expected().kind == Entry::Kind::Event)
            complain_(Place() + "not replayed: " + record::Escaped(Expected().bytes));
    }
}

void Playback::TakeDamaged() {
    Complain(
        "the host's characters arrive damaged: its line settings are not those of the record, " +
        record_.header.line);
}

bool Playback::Conclude() {
    Open([](simulator::Time, const std::string&) {});
    Depart(received_);
    if (HasMore()) Complain("the host has ended without sending " + Quoted(Expected().bytes));
    return !departed_;
}

void Playback::Depart(const std::string& sent) {
    if (sent.empty()) return;
    if (HasMore())
        Complain("the host departs from the record: it sends " + Quoted(sent) +
                 ", the record has " + Quoted(Expected().bytes));
    else
        Complain("the host goes on behind the end of the record: it sends " + Quoted(sent));
}

/// Once for each line of the record, so that a host that repeats itself does not fill the screen.
void Playback::Complain(const std::string& sentence) {
    departed_ = true;
    if (complainedAt_ == next_) return;
    complainedAt_ = next_;
    complain_(Place() + sentence);
}

/// "file:line: ", of what is expected next.
std::string Playback::Place() const {
    const auto& entries = record_.entries;
    const int lastLine = entries.empty() ? 1 : entries.back().line;
    return file_ + ":" + std::to_string(HasMore() ? Expected().line : lastLine) + ": ";
}
