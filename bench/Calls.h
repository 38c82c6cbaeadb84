#pragma once

#include <QtCore/QJsonArray>
#include <QtSerialPort/QSerialPort>
#include <functional>
#include <string>
#include <vector>

namespace bench {

/// The calls that one operation makes on its port, and its pauses, to be made again by hand.
class Calls {
 public:
    /// @param texts the calls as the virtual clock's transcript has them ("setBaudRate 2400",
    ///              "wait 100: silence", "Sleep 500"), but "write" with its bytes in hexadecimal;
    ///              anything else ends the process
    explicit Calls(const QJsonArray& texts);

    /// Makes them. False when one was refused, or when a wait ended otherwise than in the
    /// transcript.
    bool MakeOn(QSerialPort& port) const;

 private:
    std::vector<std::function<bool(QSerialPort&)>> calls_;
};

}  // namespace bench
