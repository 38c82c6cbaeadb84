// A host as others write them: asks an instrument one question through QSerialPort. The tests run
// it under wbalance-sim.
//
//   SerialHost DEVICE SETTINGS COMMAND   prints the answer to COMMAND; 1 when the port does not
//   open SerialHost DEVICE after-kill         the same at 2400,7E1 and with "S", after another
//   process
//                                        that held the port open was killed
//   SerialHost DEVICE while-held         prints what a plain open says while another process holds
//                                        the port open

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QtSerialPort/QSerialPort>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <string>

namespace {

QSerialPort::Parity ParityOf(char letter) {
    switch (letter) {
        case 'O':
            return QSerialPort::OddParity;
        case 'E':
            return QSerialPort::EvenParity;
        default:
            return QSerialPort::NoParity;
    }
}

bool Apply(QSerialPort& port, const std::string& settings) {
    int baudRate = 0;
    int dataBits = 0;
    int stopBits = 0;
    char parity = 0;
    return std::sscanf(settings.c_str(), "%d,%1d%c%1d", &baudRate, &dataBits, &parity, &stopBits) ==
               4 &&
           port.setBaudRate(baudRate) &&
           port.setDataBits(static_cast<QSerialPort::DataBits>(dataBits)) &&
           port.setParity(ParityOf(parity)) &&
           port.setStopBits(static_cast<QSerialPort::StopBits>(stopBits));
}

int Ask(const char* device, const std::string& settings, const std::string& command) {
    QSerialPort port{QString(device)};
    if (!port.open(QIODevice::ReadWrite) || !Apply(port, settings)) {
        std::printf("%s\n", port.errorString().toUtf8().constData());
        return 1;
    }
    port.write((command + "\r\n").c_str());
    QByteArray answer;
    while (!answer.endsWith('\n') && port.waitForReadyRead(20000))
        answer += port.readAll();
    std::printf("%s", answer.constData());
    return 0;
}

/// Another process that holds the port open and never closes it.
class Holder {
 public:
    explicit Holder(const char* device) {
        int ready[2] = {};
        if (::pipe(ready) != 0) return;
        process_ = ::fork();
        if (process_ == 0) {
            QSerialPort port{QString(device)};
            port.open(QIODevice::ReadWrite);
            if (::write(ready[1], "!", 1) == 1) ::pause();
            ::_exit(1);
        }
        char sign = 0;
        if (::read(ready[0], &sign, 1) != 1) std::printf("the holder did not start\n");
    }
    ~Holder() {
        ::kill(process_, SIGKILL);
        ::waitpid(process_, nullptr, 0);
    }

 private:
    pid_t process_ = -1;
};

int AskAfterKill(const char* device) {
    { const Holder killed(device); }
    return Ask(device, "2400,7E1", "S");
}

int OpenWhileHeld(const char* device) {
    const Holder holder(device);
    const int descriptor = ::open(device, O_RDWR | O_NOCTTY);
    std::printf("%s\n", descriptor < 0 ? std::strerror(errno) : "opened");
    return 0;
}

}  // namespace

int main(int count, char** words) {
    const std::string what = count > 2 ? words[2] : "";
    if (what == "after-kill") return AskAfterKill(words[1]);
    if (what == "while-held") return OpenWhileHeld(words[1]);
    return count == 4 ? Ask(words[1], what, words[3]) : 2;
}
