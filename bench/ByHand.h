#pragma once

#include <QtSerialPort/QSerialPort>

namespace bench {

/// The settings that an operation makes each time, with the clearing: what the Mettler Toledo
/// needs.
inline bool Configure(QSerialPort& port) {
    return port.setBaudRate(2400) && port.setDataBits(QSerialPort::Data7) &&
           port.setParity(QSerialPort::EvenParity) && port.setStopBits(QSerialPort::OneStop) &&
           port.setFlowControl(QSerialPort::NoFlowControl) && port.clear(QSerialPort::Input);
}

}  // namespace bench
