#include "Conversation.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>

namespace {

constexpr std::size_t kLongestRequest = 65'536;
constexpr std::chrono::seconds kLongestConversation{5};

bool IsForLater(ssize_t result) {
    return result < 0 && (errno == EAGAIN || errno == EINTR);
}

}  // namespace

Conversation::Conversation(Socket client, const Answering& answer)
    : client_(std::move(client)),
      answering_(answer),
      end_(Clock::now() + kLongestConversation),
      isOver_(!client_.IsOfThisUser()) {}

short Conversation::Awaited() const {
    return isAnswering_ ? POLLOUT : POLLIN;
}

void Conversation::GoOn() {
    if (!isAnswering_) Listen();
    if (isAnswering_) Speak();
}

/// The request ends where the client ends its direction.
void Conversation::Listen() {
    std::array<char, 4096> buffer;
    const ssize_t count = ::recv(Descriptor(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (IsForLater(count)) return;
    if (count > 0) request_.append(buffer.data(), static_cast<std::size_t>(count));
    isOver_ = count < 0 || request_.size() > kLongestRequest;
    if (isOver_ || count > 0) return;
    answer_ = answering_(request_);
    isAnswering_ = true;
}

void Conversation::Speak() {
    const ssize_t count =
        ::send(Descriptor(), answer_.data(), answer_.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (IsForLater(count)) return;
    if (count > 0) answer_.erase(0, static_cast<std::size_t>(count));
    isOver_ = count < 0 || answer_.empty();
}
