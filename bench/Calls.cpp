#include "Calls.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "marlet-small.h"

namespace bench {
namespace {

using Call = std::function<bool(QSerialPort&)>;

template <class Value>
Call Set(bool (QSerialPort::*setter)(Value), Value value) {
    return [setter, value](QSerialPort& port) { return (port.*setter)(value); };
}

const std::map<std::string, Call>& PlainCalls() {
    static const std::map<std::string, Call> calls = {
        {"setDataBits 7", Set(&QSerialPort::setDataBits, QSerialPort::Data7)},
        {"setDataBits 8", Set(&QSerialPort::setDataBits, QSerialPort::Data8)},
        {"setParity none", Set(&QSerialPort::setParity, QSerialPort::NoParity)},
        {"setParity odd", Set(&QSerialPort::setParity, QSerialPort::OddParity)},
        {"setParity even", Set(&QSerialPort::setParity, QSerialPort::EvenParity)},
        {"setStopBits 1", Set(&QSerialPort::setStopBits, QSerialPort::OneStop)},
        {"setStopBits 2", Set(&QSerialPort::setStopBits, QSerialPort::TwoStop)},
        {"setFlowControl none", Set(&QSerialPort::setFlowControl, QSerialPort::NoFlowControl)},
        {"clear input", [](QSerialPort& port) { return port.clear(QSerialPort::Input); }}};
    return calls;
}

Call CallWith(const std::string& name, const std::string& argument) {
    const int number = std::atoi(argument.c_str());
    if (name == "setBaudRate")
        return [number](QSerialPort& port) { return port.setBaudRate(number); };
    if (name == "wait") {
        const bool data = argument.find(": data") != std::string::npos;
        return [number, data](QSerialPort& port) { return port.waitForReadyRead(number) == data; };
    }
    if (name == "read") return [](QSerialPort& port) { return !port.readAll().isNull(); };
    if (name == "write") {
        const QByteArray bytes = QByteArray::fromHex(QByteArray::fromStdString(argument));
        return [bytes](QSerialPort& port) { return port.write(bytes) == bytes.size(); };
    }
    if (name == "Sleep") {
        return [number](QSerialPort& /*port*/) {
            Sleep(number);
            return true;
        };
    }
    std::fprintf(stderr, "no call is known by hand for \"%s\"\n", name.c_str());
    std::abort();
}

}  // namespace

Calls::Calls(const QJsonArray& texts) {
    for (const auto& value : texts) {
        const std::string text = value.toString().toStdString();
        const auto plain = PlainCalls().find(text);
        const auto blank = std::min(text.find(' '), text.size() - 1);
        calls_.push_back(plain != PlainCalls().end()
                             ? plain->second
                             : CallWith(text.substr(0, blank), text.substr(blank + 1)));
    }
}

bool Calls::MakeOn(QSerialPort& port) const {
    bool asExpected = true;
    for (const auto& call : calls_)
        asExpected &= call(port);
    return asExpected;
}

}  // namespace bench
