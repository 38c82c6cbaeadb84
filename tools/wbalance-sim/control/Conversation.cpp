#include "Conversation.h"

#include <poll.h>
#include <sys/socket.h>

#include <array>
#include <cerrno>

namespace {

constexpr std::size_t longestRequest = 65'536;
constexpr std::chrono::seconds longestConversation{5};

bool isForLater(ssize_t result) {
    return result < 0 && (errno == EAGAIN || errno == EINTR);
}

}  // namespace

Conversation::Conversation(Socket client, const Answering& answer)
    : client_(std::move(client)),
      answering_(answer),
      end_(Clock::now() + longestConversation),
      isOver_(!client_.isOfThisUser()) {}

short Conversation::awaited() const {
    return isAnswering_ ? POLLOUT : POLLIN;
}

void Conversation::goOn() {
    if (!isAnswering_) listen();
    if (isAnswering_) speak();
}

/// The request ends where the client ends its direction.
void Conversation::listen() {
    std::array<char, 4096> buffer;
    const ssize_t count = ::recv(descriptor(), buffer.data(), buffer.size(), MSG_DONTWAIT);
    if (isForLater(count)) return;
    if (count > 0) request_.append(buffer.data(), static_cast<std::size_t>(count));
    isOver_ = count < 0 || request_.size() > longestRequest;
    if (isOver_ || count > 0) return;
    answer_ = answering_(request_);
    isAnswering_ = true;
}

void Conversation::speak() {
    const ssize_t count =
        ::send(descriptor(), answer_.data(), answer_.size(), MSG_DONTWAIT | MSG_NOSIGNAL);
    if (isForLater(count)) return;
    if (count > 0) answer_.erase(0, static_cast<std::size_t>(count));
    isOver_ = count < 0 || answer_.empty();
}
