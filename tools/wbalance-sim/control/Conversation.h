#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "Socket.h"

/// What the server and one client say to each other, as far as that goes without waiting.
class Conversation {
 public:
    using Clock = std::chrono::steady_clock;
    /// Makes an answer of a request.
    using Answering = std::function<std::string(const std::string& request)>;

    /// A request of more than 64 KiB is not listened to; a conversation takes 5 s at most, however
    /// it goes on.
    Conversation(Socket client, const Answering& answer);

    int Descriptor() const { return client_.Descriptor(); }
    short Awaited() const;  ///< of poll
    Clock::time_point End() const { return end_; }
    bool IsOver() const { return isOver_ || Clock::now() >= end_; }

    /// Takes and gives what can be had now.
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
