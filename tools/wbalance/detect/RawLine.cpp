#include "RawLine.h"

#include <wbalance/CSerialObject.h>
#include <wbalance/Cwbalance.h>

namespace tool {
namespace {

class Line : public Cwbalance {
 public:
    Line() {
        SetCommPort(0);
        SetCommConfig(9600, ParityNone, 8, OneStopBit, NoFlowControl, 1, 'S');
    }

    int IsReady() override { return OpenAndClear(); }
    int Tare() override { return 0; }

    int Ask(std::string command) {
        if (IsReady() == 0) return 0;
        if (!command.empty() && serialObject->SendCommand(command.data()) == 0) return 0;
        char answer[512];
        return serialObject->ReceiveAnswer(answer, sizeof answer, 1, "\n");
    }
};

}  // namespace

const DriverInfo& RawLine() {
    static const DriverInfo line = [] {
        DriverInfo info;
        info.name = "line";
        info.construct = [] { return std::make_unique<Line>(); };
        info.operations[Operation::Display].call = [](Cwbalance& balance, const Request& request) {
            return static_cast<Line&>(balance).Ask(request.text);
        };
        return info;
    }();
    return line;
}

}  // namespace tool
