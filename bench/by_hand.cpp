// What a user would write instead: thirty lines on QSerialPort that ask an MT-SICS balance for its
// weight.

#include <QtSerialPort/QSerialPort>
#include <cstdio>

int main() {
    QSerialPort port("/dev/ttyS0");
    if (!port.open(QIODevice::ReadWrite)) {
        std::fprintf(stderr, "can't open the port: %s\n", qPrintable(port.errorString()));
        return 1;
    }
    port.setBaudRate(2400);
    port.setDataBits(QSerialPort::Data7);
    port.setParity(QSerialPort::EvenParity);
    port.setStopBits(QSerialPort::OneStop);
    port.setFlowControl(QSerialPort::NoFlowControl);
    port.clear(QSerialPort::Input);
    port.write("SI\r\n");
    QByteArray answer;
    while (!answer.endsWith("\r\n")) {
        if (!port.waitForReadyRead(3000)) {
            std::fprintf(stderr, "no answer\n");
            return 1;
        }
        answer += port.readAll();
    }
    const double grams = answer.mid(4, 10).trimmed().toDouble();
    std::fprintf(stderr, "%.2f g\n", grams);
    return answer.startsWith("S S") || answer.startsWith("S D") ? 0 : 1;
}
