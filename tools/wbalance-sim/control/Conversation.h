#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "Socket.h"

/// The exchange between the server and one client. No function waits.
class Conversation {
 public:
    using Clock = std::chrono::steady_clock;
    /// Returns the answer to a request.
    using Answering = std::function<std::string(const std::string& request)>;

    /// A request of more than 64 KiB is refused. A conversation ends after 5 s at the latest.
    Conversation(Socket client, const Answering& answer);

    int Descriptor() const { return client_.Descriptor(); }
    short Awaited() const;  ///< of poll
    Clock::time_point End() const { return end_; }
    bool IsOver() const { return isOver_ || Clock::now() >= end_; }

    /// Receives and sends as much as is possible now.
    void GoOn();

 private:
    void Listen();
    void Speak();

    const Socket client_;
    const Answering answering_;
    const Clock::time_point end_;
    std::string request_;
    std::string answer_;
    bool isAnswering_ = false;
    bool isOver_ = false;
};
