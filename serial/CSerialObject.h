#pragma once

#include <cstddef>
#include <cstdint>

#include "wbalance_export.h"

class QByteArray;
class QSerialPort;

/// The one transport of the library: opens, configures, clears and closes a serial line, carries
/// one command and its answer at a time, and writes the trace.
///
/// A driver's base class, Cwbalance, creates one for each driver object and owns it; hosts meet it
/// in a driver of their own (through `Cwbalance::serialObject`) or use it alone.
///
/// Results are 1 for success and 0 for failure unless a member says otherwise. Nothing is thrown,
/// except what Qt and the C++ library throw when they find no memory. The only reports are the
/// results and the trace on standard output. Numbers in it are those of the "C" locale.
///
/// One object is used by one thread at a time; nothing is locked. All waiting blocks the caller. No
/// QCoreApplication is needed. In a thread without Qt's event dispatcher (one that Qt did not
/// start, and that of main() without a QCoreApplication) Qt prints "QSocketNotifier: Can only be
/// used with threads started with QThread" on standard error; the line works all the same.
///
/// A text that does not fit the buffer that a member names ends the process with SIGABRT: standard
/// output is flushed and one line printed on standard error before.
///
/// Pointers must not be null unless a member says what null does.
///
/// The fields and their order are part of the binary interface.
class WBALANCE_EXPORT CSerialObject {
 public:
    /// No port, status 0, a time-out of 500 ms, port kind 'S'.
    CSerialObject() = default;
    /// Deletes a port object that is still held.
    ~CSerialObject();
    CSerialObject(const CSerialObject&) = delete;
    CSerialObject& operator=(const CSerialObject&) = delete;

    /// Opens the serial device with the number `port` for reading and writing.
    ///
    /// `kind` 'S' selects "/dev/ttyS<port>" and 'U' "/dev/ttyUSB<port>"; any other value keeps the
    /// kind of the last open. The name must fit 20 bytes (a 'U' port has at most 8 digits).
    ///
    /// @return 1 when the device was opened; 2 when a port object is held already, in which case
    ///   nothing is looked at or changed, neither number nor kind; 0 when `port` is negative
    ///   (without a trace) or the device can't be opened.
    ///
    /// A port object whose open failed stays held: the next open reports 2 for it, and only
    /// CloseCommPort() or a failing SetCommConfig() removes it.
    int OpenCommPort(int port, char kind);

    /// Applies the line settings to the held port object and traces them.
    ///
    /// @param baud bits per second, handed to the port as it is, for both directions
    /// @param parity 0 none, 1 odd, 2 even, 3 mark, 4 space; other codes leave the port's own
    /// @param dataBits 7 or 8; other values leave the port's own
    /// @param stopBits 0 one, 1 one and a half, 2 two; other codes leave the port's own
    /// @param flowControl 0 none, 3 hardware (RTS/CTS), 16 software (XON/XOFF); other codes leave
    ///   the port's own
    /// @param timeoutSeconds see PrivateSetTimeout()
    /// @return 1 when the open before succeeded (1 or 2) and every setting was taken; otherwise 0,
    ///   and the port object is deleted. Without a port object 0, and nothing is traced.
    int SetCommConfig(int baud, int parity, int dataBits, int stopBits, int flowControl,
                      int timeoutSeconds);

    /// Sets the time that one wait for data may last: `seconds` from 1 to 60, or 0 for 100 ms.
    /// @return 1; or 0, and nothing changes, when `seconds` is negative or more than 60, before the
    ///   first open, after closing, and when the last open or configuration failed.
    int PrivateSetTimeout(int seconds);

    /// Closes and deletes the port object, if one is held. Traces the closing in every case.
    /// @return always 1
    int CloseCommPort();

    /// Discards what was received and not yet read. The port's error state and bytes not yet sent
    /// stay as they are.
    /// @return 1, or 0 when no port is open or it refuses.
    int ClearErrorsAndBuffers();

    /// Hands `command` to the port, all of it as it stands: the text carries its own line end. It
    /// is only read. The drivers pass copies of their own, so that a host's transport in the place
    /// of this one may write into what it is given.
    ///
    /// Nothing is flushed or waited for: the bytes leave while the next answer is waited for. In a
    /// thread with a Qt event loop they also leave when the thread comes back to that loop. Without
    /// one, a command that no wait follows never leaves. The trace of the command must fit 1024
    /// bytes.
    /// @return 1 when the port took every byte, else 0, also when no port object is held.
    int SendCommand(char* command);

    /// Collects what the instrument sends.
    ///
    /// @param buffer receives the answer, owned by the caller; it is filled with zeros first. An
    ///   answer of `size` bytes or more fills it to the last byte, without a terminating zero. What
    ///   follows a zero byte within the answer is not copied. Null returns 0 at once.
    /// @param size the size of `buffer` in bytes
    /// @param attempts how many times to wait for data, each for the time-out; at least one wait is
    ///   made
    /// @param terminator the text that ends an answer, or null. Without it every one of the
    ///   attempts is used, so that three attempts cost two full time-outs after an answer that came
    ///   at once. With it an attempt goes on for the time-out, after its first data, until the
    ///   terminator has come.
    /// @return 1 when anything was received, else 0.
    ///
    /// Blocks for at most `attempts` times two time-outs and 30 ms, and not at all when no port
    /// object is held. The trace of the answer must fit 1024 bytes: some 980 characters.
    int ReceiveAnswer(char* buffer, long size, int attempts, const char* terminator);

    /// Gathers an answer from rounds of ReceiveAnswer() with three attempts each, 100 ms apart.
    ///
    /// @param buffer the answer is appended to the text that it holds: pass it zeroed, and large
    ///   enough for all that may come, for its end is not checked. Null returns 0.
    /// @param size how much one round can take, in bytes; 0 or less, or more than can be
    ///   allocated, returns 0 before anything is read
    /// @param endChar the character that ends the answer, or 0 for none. An end that arrives within
    ///   a round is noticed when the round has ended. Without one the reading ends with the first
    ///   round in which nothing comes.
    /// @return 1 when `buffer` holds anything at the end, even without the end character, else 0.
    ///
    /// Blocks for at least three time-outs when the end character does not come, and for as long as
    /// the instrument goes on sending. The trace of the answer must fit 1024 bytes.
    int ReceiveAllAnswer(char* buffer, long size, char endChar);

    /// ReceiveAllAnswer() for a `buffer` of `room` bytes that the text never passes: what does not
    /// fit is dropped and ends the call, with the full buffer as its answer. The buffer always
    /// keeps its terminating zero. A `room` of 0 or less returns 0.
    ///
    /// However long the instrument goes on sending, at most `room` rounds are made. A buffer of
    /// 1006 bytes holds the longest text that can be traced.
    int ReceiveAllAnswerWithin(char* buffer, long room, long size, char endChar);

    /// Writes `text` to standard output; `level` is ignored (the library passes 1015). Not flushed.
    ///
    /// The text is a printf format without arguments: "%%" prints "%", a directive is interpreted
    /// and everything else comes out as it is. An instrument's answer is part of many trace texts,
    /// so a directive can be line noise or malice: each is interpreted as though the missing
    /// argument were zero or empty, and none reads or writes memory, whatever its form. Numbers
    /// print 0 in their format, %p prints "(nil)", and %s, %c, %n, %m and a directive that the end
    /// of the text cuts off print nothing; `*` counts as 0, flags, width and precision hold as in
    /// printf up to 1023, and an unknown directive is printed as it stands. One call reaches the
    /// stream in one piece.
    void TavinTrace(int level, const char* text);

 protected:
    /// 1 after an open that succeeded or found the port held, ANDed with the result of every
    /// setting; 0 after closing.
    int status = 0;
    /// How long one wait for data may last, in milliseconds.
    std::int64_t timeoutMs = 500;
    /// The port, open or not; owned.
    QSerialPort* port = nullptr;
    /// 'S' for "/dev/ttyS<n>", anything else for "/dev/ttyUSB<n>".
    char portKind = 'S';

 private:
    enum class Attempt { Finished, Next, TimedOut };
    WBALANCE_LOCAL Attempt ReceiveOnce(QByteArray& answer, const char* terminator);
    WBALANCE_LOCAL Attempt PollForTerminator(QByteArray& answer, const char* terminator);
    WBALANCE_LOCAL int GatherAnswer(char* buffer, std::size_t most, long size, char endChar);
};
