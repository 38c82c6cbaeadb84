#pragma once

#include <wbalance/CSerialObject.h>

#include <cstddef>
#include <functional>

/// The steps of which the drivers' operations are made: trace, send, receive, look for a mark.
namespace exchange {

/// Formats a line as printf does, in a buffer of 1024 bytes, and traces it.
__attribute__((format(printf, 2, 3))) void Trace(CSerialObject& serial, const char* format, ...);

/// Traces a text as it stands. It needs no serial object, because a missing serial object is one of
/// the failures.
void Trace(const char* text);

/// Sends a fixed command of at most 9 characters without tracing it first. The transport gets a
/// copy that it may write into.
int Send(CSerialObject& serial, const char* command);

/// Traces `format` with the display name in any case, and sends the command.
int Send(CSerialObject& serial, const char* format, const char* displayName, const char* command);

/// Makes attempts until one is true, with a pause of `pauseMs` after each false one. The last
/// attempt is the first one that ends `limitMs` or more after the start; the pause after it is
/// made, too.
/// @return whether an attempt was true
bool TryFor(unsigned int limitMs, int pauseMs, const std::function<bool()>& attempt);

/// The search of `Answer`, for any size.
bool Holds(const char* text, std::size_t within, const char* mark);

/// An instrument's answer of at most `Size` characters.
///
/// An answer that fills its buffer arrives without a terminating zero. Here a zero always follows
/// it, so that the text can be searched and parsed.
template <long Size>
class Answer {
 public:
    /// Receives an answer, at most `size` characters of it. Nothing of an earlier one stays.
    int Receive(CSerialObject& serial, int attempts, const char* terminator, long size = Size) {
        text_[size] = '\0';
        return serial.ReceiveAnswer(text_, size, attempts, terminator);
    }

    /// Whether `mark` stands anywhere in the first `within` characters.
    bool Holds(const char* mark, std::size_t within = Size) const {
        return exchange::Holds(text_, within, mark);
    }

    char* Text() { return text_; }

 private:
    char text_[Size + 1] = {};
};

/// What an instrument sends in lines, collected over as many reads as necessary.
///
/// Holds as much as one line of the trace can show (CSerialObject::ReceiveAllAnswer()).
class CollectedAnswer {
 public:
    /// Reads up to the next line feed and appends what came.
    int ReceiveMore(CSerialObject& serial) {
        return serial.ReceiveAllAnswerWithin(text_, sizeof text_, kRoundSize, '\n');
    }

    /// Whether `mark` stands anywhere in the text.
    bool Holds(const char* mark) const { return exchange::Holds(text_, sizeof text_, mark); }

    char* Text() { return text_; }

 private:
    static constexpr long kRoundSize = 64;
    char text_[1006] = {};
};

}  // namespace exchange
