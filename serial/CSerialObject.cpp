#include <wbalance/CSerialObject.h>

#include <QtCore/QByteArray>
#include <QtCore/QElapsedTimer>
#include <QtCore/QString>
#include <QtSerialPort/QSerialPort>
#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>

#include "BoundedText.h"
#include "Exchange.h"
#include "TraceText.h"
#include "marlet-small.h"

namespace {

constexpr int kPollMs = 10;
constexpr int kEmptyReadPauseMs = 20;
constexpr int kRoundPauseMs = 100;
constexpr int kRoundAttempts = 3;

constexpr unsigned kLongestTimeoutSeconds = 60;
constexpr std::int64_t kZeroTimeoutMs = 100;

// The codes that are not listed leave the port as it is, and that counts as success.

bool ApplyDataBits(QSerialPort& port, int bits) {
    switch (bits) {
        case 7:
            return port.setDataBits(QSerialPort::Data7);
        case 8:
            return port.setDataBits(QSerialPort::Data8);
        default:
            return true;
    }
}

bool ApplyParity(QSerialPort& port, int code) {
    switch (code) {
        case 0:
            return port.setParity(QSerialPort::NoParity);
        case 1:
            return port.setParity(QSerialPort::OddParity);
        case 2:
            return port.setParity(QSerialPort::EvenParity);
        case 3:
            return port.setParity(QSerialPort::MarkParity);
        case 4:
            return port.setParity(QSerialPort::SpaceParity);
        default:
            return true;
    }
}

bool ApplyStopBits(QSerialPort& port, int code) {
    switch (code) {
        case 0:
            return port.setStopBits(QSerialPort::OneStop);
        case 1:
            return port.setStopBits(QSerialPort::OneAndHalfStop);
        case 2:
            return port.setStopBits(QSerialPort::TwoStop);
        default:
            return true;
    }
}

bool ApplyFlowControl(QSerialPort& port, int code) {
    switch (code) {
        case 3:
            return port.setFlowControl(QSerialPort::HardwareControl);
        case 16:
            return port.setFlowControl(QSerialPort::SoftwareControl);
        case 0:
            return port.setFlowControl(QSerialPort::NoFlowControl);
        default:
            return true;
    }
}

}  // namespace

CSerialObject::~CSerialObject() {
    delete port;
}

int CSerialObject::OpenCommPort(int number, char kind) {
    status = 0;
    if (port != nullptr) {
        status = 1;
        exchange::Trace(*this, "COM%d alread open!", number);
        return 2;
    }
    if (kind == 'S' || kind == 'U') portKind = kind;
    if (number < 0) return 0;

    char device[20];
    bounded_text::Format(device, sizeof device, "a device name",
                         portKind == 'S' ? "/dev/ttyS%d" : "/dev/ttyUSB%d", number);
    // Left out: branches that only an exception from Qt would take.
    port = new (std::nothrow) QSerialPort(QString::fromLatin1(device));  // GCOVR_EXCL_BR_LINE
    if (port == nullptr) {
        exchange::Trace(*this, "NULL POINTER ... UNABLE OPENING COMM PORT!\n\n");
        return 0;
    }
    // A port that did not open stays held; hosts know the next open by its result 2.
    status = port->open(QIODevice::ReadWrite) ? 1 : 0;
    exchange::Trace(*this,
                    status != 0 ? "%s OPENED SUCCESSFULLY!\n\n"
                                : "INVALID COMM PORT ... UNABLE OPENING %s!\n\n",
                    device);
    return status;
}

int CSerialObject::SetCommConfig(int baud, int parity, int dataBits, int stopBits, int flowControl,
                                 int timeoutSeconds) {
    if (port == nullptr) return 0;
    // Every setting is tried, also after one was refused.
    status &= port->setBaudRate(baud) ? 1 : 0;
    status &= ApplyDataBits(*port, dataBits) ? 1 : 0;
    status &= ApplyParity(*port, parity) ? 1 : 0;
    status &= ApplyStopBits(*port, stopBits) ? 1 : 0;
    status &= ApplyFlowControl(*port, flowControl) ? 1 : 0;
    status &= PrivateSetTimeout(timeoutSeconds);
    exchange::Trace(*this,
                    "Balance Comm Port settings:\nBaud rate = %d\nParity = %d\nData bits = %d\n"
                    "Stop bits = %d\nFlow control = %d\nTimeout = %d\n===> %s\n\n",
                    baud, parity, dataBits, stopBits, flowControl, timeoutSeconds,
                    status != 0 ? "OK" : "FAIL");
    if (status != 0) return 1;
    delete port;  // GCOVR_EXCL_BR_LINE: never null here
    port = nullptr;
    return 0;
}

int CSerialObject::PrivateSetTimeout(int seconds) {
    if (status == 0) return 0;
    if (static_cast<unsigned>(seconds) > kLongestTimeoutSeconds) return 0;
    timeoutMs = seconds == 0 ? kZeroTimeoutMs : seconds * std::int64_t{1000};
    return 1;
}

int CSerialObject::CloseCommPort() {
    status = 0;
    if (port != nullptr) {
        port->close();
        delete port;  // GCOVR_EXCL_BR_LINE: never null here
        port = nullptr;
    }
    exchange::Trace(*this, "\nSCALE COM PORT HAS BEEN CLOSED.\n");
    return 1;
}

// Some drivers' operations leave the opening to an earlier readiness check. Without a port they
// find nothing to clear, nothing is sent and nothing comes, and they fail.

int CSerialObject::ClearErrorsAndBuffers() {
    return port != nullptr && port->clear(QSerialPort::Input) ? 1 : 0;
}

int CSerialObject::SendCommand(char* command) {
    const auto length = static_cast<qint64>(std::strlen(command));
    const int sent = port != nullptr && port->write(command, length) == length ? 1 : 0;
    exchange::Trace(*this, "<== %s ... %s\n\n", command, sent != 0 ? "OK" : "FAIL");
    return sent;
}

int CSerialObject::ReceiveAnswer(char* buffer, long size, int attempts, const char* terminator) {
    if (buffer == nullptr) return 0;
    const std::size_t room = size > 0 ? static_cast<std::size_t>(size) : 0;
    std::memset(buffer, 0, room);
    QByteArray answer;
    const unsigned int start = GetTickCount();
    for (int attempt = 1;; ++attempt) {
        const Attempt outcome = ReceiveOnce(answer, terminator);
        if (outcome == Attempt::Finished) break;
        if (outcome == Attempt::TimedOut) {
            exchange::Trace(*this, "Timeout elapsed in scale read (attempt n. %d)\n", attempt);
        }
        if (attempt >= attempts) break;
    }
    exchange::Trace(*this, "Read from scale: %s (time elapsed: %d ms)\n", answer.constData(),
                    static_cast<int>(GetTickCount() - start));
    if (answer.isEmpty()) return 0;
    // An answer that fills the buffer is left without a terminating zero: callers count on every
    // byte.
    std::memcpy(buffer, answer.constData(), strnlen(answer.constData(), room));
    return 1;
}

CSerialObject::Attempt CSerialObject::ReceiveOnce(QByteArray& answer, const char* terminator) {
    if (port == nullptr || !port->waitForReadyRead(static_cast<int>(timeoutMs)))
        return Attempt::TimedOut;
    const QByteArray chunk = port->readAll();
    answer.append(chunk);
    if (terminator == nullptr) {
        // More may follow, so data does not end the read: hosts are tuned to the waits that remain.
        return chunk.isEmpty() && !answer.isEmpty() ? Attempt::Finished : Attempt::Next;
    }
    if (!chunk.isEmpty() && chunk.endsWith(terminator)) return Attempt::Finished;
    return PollForTerminator(answer, terminator);
}

CSerialObject::Attempt CSerialObject::PollForTerminator(QByteArray& answer,
                                                        const char* terminator) {
    QElapsedTimer timer;
    timer.start();
    do {
        if (!port->waitForReadyRead(kPollMs)) continue;
        const QByteArray chunk = port->readAll();
        if (chunk.isEmpty()) {
            Sleep(kEmptyReadPauseMs);
        } else {
            answer.append(chunk);
        }
    } while (timer.elapsed() < timeoutMs && !answer.endsWith(terminator));
    return answer.endsWith(terminator) ? Attempt::Finished : Attempt::TimedOut;
}

int CSerialObject::ReceiveAllAnswer(char* buffer, long size, char endChar) {
    return GatherAnswer(buffer, SIZE_MAX, size, endChar);
}

int CSerialObject::ReceiveAllAnswerWithin(char* buffer, long room, long size, char endChar) {
    if (room <= 0) return 0;
    return GatherAnswer(buffer, static_cast<std::size_t>(room) - 1, size, endChar);
}

int CSerialObject::GatherAnswer(char* buffer, std::size_t most, long size, char endChar) {
    if (buffer == nullptr || size <= 0) return 0;
    const auto roundSize = static_cast<std::size_t>(size);
    const std::unique_ptr<char[]> chunk(new (std::nothrow) char[roundSize]);
    if (chunk == nullptr) return 0;
    std::size_t length = strnlen(buffer, most);
    while (ReceiveAnswer(chunk.get(), size, kRoundAttempts, nullptr) != 0 && chunk[0] != '\0') {
        const std::size_t came = strnlen(chunk.get(), roundSize);
        const std::size_t taken = std::min(came, most - length);
        std::memcpy(buffer + length, chunk.get(), taken);
        length += taken;
        buffer[length] = '\0';
        if (taken < came) break;
        if (endChar != '\0' && buffer[length - 1] == endChar) break;
        Sleep(kRoundPauseMs);
    }
    if (length == 0) {
        exchange::Trace(*this, "Null answer received from scale\n");
        return 0;
    }
    exchange::Trace(*this, "Read from scale: %s\n", buffer);
    return 1;
}

void CSerialObject::TavinTrace(int /*level*/, const char* text) {
    if (std::strchr(text, '%') == nullptr) {
        std::fputs(text, stdout);
    } else {
        std::fputs(trace_text::Interpret(text).c_str(), stdout);
    }
}
