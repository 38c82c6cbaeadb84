#pragma once

#include <functional>
#include <string>

#include "Record.h"
#include "simulator/Time.h"

/// A record that is replayed to a host: what the host should send next, which answer it gets, and
/// where it sends something else. Other events of the record are not repeated. A message says so
/// for each of them, and the host may continue.
class Playback {
 public:
    using Complaint = std::function<void(const std::string& sentence)>;
    /// An answer, and how long after the host's present character it is sent.
    using Answer = std::function<void(simulator::Time delay, const std::string& bytes)>;

    /// `file` is the record's name in complaints.
    Playback(record::Record record, std::string file, Complaint complain);

    /// The host has opened its port. Returns what the instrument sends without a request.
    void Open(const Answer& answer);
    /// The host has sent a character. If it completes a recorded command, returns the answers.
    void Take(char byte, const Answer& answer);
    /// The host sends at other line settings than the instrument.
    void TakeDamaged();
    /// The host has ended. Returns whether it did everything that the record says.
    bool Conclude();

    const record::Record& Record() const { return record_; }

 private:
    bool HasMore() const { return next_ < record_.entries.size(); }
    const record::Entry& Expected() const { return record_.entries[next_]; }
    void AnswerUpToNextCommand(std::chrono::milliseconds since, const Answer& answer);
    void Depart(const std::string& sent);
    void Complain(const std::string& sentence);
    std::string Place() const;

    const record::Record record_;
    const std::string file_;
    const Complaint complain_;
    std::size_t next_ = 0;  // the host's command that is expected next
    std::string received_;  // of the host since the last complete command
    bool hasOpened_ = false;
    bool departed_ = false;
    std::size_t complainedAt_ = std::string::npos;  // once for each command that is expected
};
