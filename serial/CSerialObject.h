#pragma once

#include <cstddef>
#include <cstdint>

#include "wbalance_export.h"

class QByteArray;
class QSerialPort;

/// The one transport of the library: opens, configures, clears and closes a serial line, carries
/// one command and its answer at a time, and writes the trace.
///
/// Cwbalance, the base class of the drivers, creates one for each driver object and owns it. A host
/// uses it in a driver of its own (through `Cwbalance::serialObject`), or alone.
///
/// Results are 1 for success and 0 for failure unless a member says otherwise. The library throws
/// nothing. Qt and the C++ library throw when memory runs out. The only reports are the results and
/// the trace on standard output. Numbers in the trace have the form of the "C" locale.
///
/// Use an object in one thread at a time; nothing is locked. All waiting blocks the caller. No
/// QCoreApplication is needed. In a thread without Qt's event dispatcher (one that Qt did not
/// start, and that of main() without a QCoreApplication) Qt prints "QSocketNotifier: Can only be
/// used with threads started with QThread" on standard error. The line works nevertheless.
///
/// If a text does not fit the buffer that a member names, standard output is flushed, one line is
/// printed on standard error, and the process ends with SIGABRT.
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
    /// @return 1 when the device was opened; 2 when a port object is already held (the arguments
    ///   are then ignored); 0 when `port` is negative (without a trace) or the device can't be
    ///   opened.
    ///
    /// If the open failed, the port object stays held: the next open returns 2, and only
    /// CloseCommPort() or a failing SetCommConfig() removes the object.
    int OpenCommPort(int port, char kind);

    /// Applies the line settings to the held port object and traces them.
    ///
    /// @param baud bits per second for both directions, passed to the port unchanged
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
    /// @return 1; or 0, and nothing changes, if `seconds` is negative or more than 60, if no port
    ///   was opened yet or it was closed, or if the last open or configuration failed.
    int PrivateSetTimeout(int seconds);

    /// Closes and deletes the port object, if one is held. Traces the closing in every case.
    /// @return always 1
    int CloseCommPort();

    /// Discards what was received and not yet read. The port's error state and bytes not yet sent
    /// stay as they are.
    /// @return 1, or 0 when no port is open or it refuses.
    int ClearErrorsAndBuffers();

    /// Hands `command` to the port, unchanged: the text must contain its line end. The text is only
    /// read. The drivers pass copies, so that a host's own transport may write into the text.
    ///
    /// It does not flush or wait: the bytes are transmitted while the next answer is read. In a
    /// thread with a Qt event loop they are also transmitted when the thread returns to that loop.
    /// Without an event loop, a command is transmitted only if a read follows it. The trace of the
    /// command must fit 1024 bytes.
    /// @return 1 when the port took every byte, else 0. Without a port object 0.
    int SendCommand(char* command);

    /// Receives an answer of the instrument.
    ///
    /// @param buffer receives the answer, owned by the caller; it is filled with zeros first. An
    ///   answer of `size` bytes or more fills it to the last byte, without a terminating zero. If
    ///   the answer contains a zero byte, the bytes after it are not copied. Null returns 0 at
    ///   once.
    /// @param size the size of `buffer` in bytes
    /// @param attempts how many times to wait for data, each for the time-out; at least one wait is
    ///   made
    /// @param terminator the text that ends an answer, or null. Without it all attempts are made:
    ///   three attempts take two full time-outs after an answer that came at once. With it, an
    ///   attempt continues after its first data until the terminator has come, at most for the
    ///   time-out.
    /// @return 1 when anything was received, else 0.
    ///
    /// Blocks for at most `attempts` times two time-outs and 30 ms, and not at all when no port
    /// object is held. The trace of the answer must fit 1024 bytes: about 980 characters.
    int ReceiveAnswer(char* buffer, long size, int attempts, const char* terminator);

    /// Gathers an answer from rounds of ReceiveAnswer() with three attempts each, 100 ms apart.
    ///
    /// @param buffer the answer is appended to the text in it. Pass a buffer of zeros that is large
    ///   enough for everything that may come: its end is not checked. Null returns 0.
    /// @param size how much one round can take, in bytes; 0 or less, or more than can be
    ///   allocated, returns 0 before anything is read
    /// @param endChar the character that ends the answer, or 0 for none. It is noticed at the end
    ///   of the round in which it comes. Without it, the reading ends with the first round in which
    ///   nothing comes.
    /// @return 1 when `buffer` holds anything at the end, even without the end character, else 0.
    ///
    /// Blocks for at least three time-outs if the end character does not come, and for as long as
    /// the instrument sends. The trace of the answer must fit 1024 bytes.
    int ReceiveAllAnswer(char* buffer, long size, char endChar);

    /// ReceiveAllAnswer() for a `buffer` of `room` bytes, whose end is checked: what does not fit
    /// is dropped, and the call ends with the full buffer as its answer. The buffer always keeps
    /// its terminating zero. A `room` of 0 or less returns 0.
    ///
    /// It makes at most `room` rounds, however long the instrument sends. A buffer of 1006 bytes
    /// holds the longest text that can be traced.
    int ReceiveAllAnswerWithin(char* buffer, long room, long size, char endChar);

    /// Writes `text` to standard output; `level` is ignored (the library passes 1015). Not flushed.
    ///
    /// The text is a printf format without arguments: "%%" prints "%", a directive is interpreted,
    /// and everything else is printed as it stands. Many trace texts contain an instrument's
    /// answer, so a directive can be line noise or malice. Each directive is interpreted as if the
    /// missing argument were zero or empty. None reads or writes memory, whatever its form. Numbers
    /// print 0 in their format, %p prints "(nil)", and %s, %c, %n, %m and a directive that the end
    /// of the text cuts off print nothing; `*` counts as 0, flags, width and precision hold as in
    /// printf up to 1023, and an unknown directive is printed as it stands. One call writes the
    /// whole text to the stream at once.
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
