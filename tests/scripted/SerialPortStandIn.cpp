// Stands in for libQt5SerialPort.so.5: every call that the library makes on its port goes to the
// script. The two calls that QIODevice implements (write, readAll) and the elapsed timer are taken
// over as well; the programs over this library use no other device and no other timer of Qt.

#include <QtCore/QByteArray>
#include <QtCore/QElapsedTimer>
#include <QtSerialPort/QSerialPort>
#include <cstdlib>

#include "Line.h"

using scripted::Line;

qint64 QIODevice::write(const char* data, qint64 length) {
    return Line::Here().OnWrite(std::string(data, static_cast<std::size_t>(length)));
}

QByteArray QIODevice::readAll() {
    return QByteArray::fromStdString(Line::Here().OnRead());
}

void QElapsedTimer::start() noexcept {
    t1 = Line::Here().Now();
}

qint64 QElapsedTimer::elapsed() const noexcept {
    return Line::Here().Now() - t1;
}

const QMetaObject QSerialPort::staticMetaObject = {
    {&QIODevice::staticMetaObject, nullptr, nullptr, nullptr, nullptr, nullptr}};

const QMetaObject* QSerialPort::metaObject() const {
    return &staticMetaObject;
}

void* QSerialPort::qt_metacast(const char* name) {
    return QIODevice::qt_metacast(name);
}

int QSerialPort::qt_metacall(QMetaObject::Call call, int id, void** arguments) {
    return QIODevice::qt_metacall(call, id, arguments);
}

QSerialPort::QSerialPort(const QString& name, QObject* parent)
    : QIODevice(parent), d_dummy(nullptr) {
    Line::Here().OnConstruct(name.toStdString());
}

QSerialPort::~QSerialPort() {
    Line::Here().OnDelete();
}

bool QSerialPort::open(OpenMode mode) {
    if (mode != ReadWrite) std::abort();  // the library sends and receives
    if (!Line::Here().OnOpen()) return false;
    setOpenMode(mode);
    return true;
}

void QSerialPort::close() {
    Line::Here().OnClose();
    setOpenMode(NotOpen);
}

bool QSerialPort::setBaudRate(qint32 rate, Directions directions) {
    return Line::Here().OnSet("setBaudRate " + std::to_string(rate) +
                              (directions == AllDirections ? "" : " one direction"));
}

bool QSerialPort::setDataBits(DataBits bits) {
    return Line::Here().OnSet("setDataBits " + std::to_string(bits));
}

bool QSerialPort::setParity(Parity parity) {
    switch (parity) {
        case NoParity:
            return Line::Here().OnSet("setParity none");
        case OddParity:
            return Line::Here().OnSet("setParity odd");
        case EvenParity:
            return Line::Here().OnSet("setParity even");
        case MarkParity:
            return Line::Here().OnSet("setParity mark");
        case SpaceParity:
            return Line::Here().OnSet("setParity space");
        default:
            return Line::Here().OnSet("setParity unknown");
    }
}

bool QSerialPort::setStopBits(StopBits bits) {
    switch (bits) {
        case OneStop:
            return Line::Here().OnSet("setStopBits 1");
        case OneAndHalfStop:
            return Line::Here().OnSet("setStopBits 1.5");
        case TwoStop:
            return Line::Here().OnSet("setStopBits 2");
        default:
            return Line::Here().OnSet("setStopBits unknown");
    }
}

bool QSerialPort::setFlowControl(FlowControl control) {
    switch (control) {
        case NoFlowControl:
            return Line::Here().OnSet("setFlowControl none");
        case HardwareControl:
            return Line::Here().OnSet("setFlowControl hardware");
        case SoftwareControl:
            return Line::Here().OnSet("setFlowControl software");
        default:
            return Line::Here().OnSet("setFlowControl unknown");
    }
}

bool QSerialPort::clear(Directions directions) {
    if (directions != Input) std::abort();  // the library never discards what it has to send
    return Line::Here().OnClear();
}

bool QSerialPort::waitForReadyRead(int ms) {
    return Line::Here().OnWait(ms);
}

// The library never calls the rest of the virtual functions.

bool QSerialPort::isSequential() const {
    return true;
}

bool QSerialPort::atEnd() const {
    std::abort();
}

qint64 QSerialPort::bytesAvailable() const {
    std::abort();
}

qint64 QSerialPort::bytesToWrite() const {
    std::abort();
}

bool QSerialPort::canReadLine() const {
    std::abort();
}

bool QSerialPort::waitForBytesWritten(int /*ms*/) {
    std::abort();
}

qint64 QSerialPort::readData(char* /*data*/, qint64 /*size*/) {
    std::abort();
}

qint64 QSerialPort::readLineData(char* /*data*/, qint64 /*size*/) {
    std::abort();
}

qint64 QSerialPort::writeData(const char* /*data*/, qint64 /*size*/) {
    std::abort();
}
