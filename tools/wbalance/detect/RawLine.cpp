#include "RawLine.h"

#include <wbalance/Cwbalance.h>

#include "drivers/Factory.h"

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
};

}  // namespace

const DriverInfo& RawLine() {
    static const DriverInfo line = [] {
        DriverInfo info;
        info.name = "line";
        info.construct = Plain<Line>;
        info.operations[Operation::Display].call = [](Cwbalance& balance, const Request& request) {
            return static_cast<Asking<Line>&>(balance).Ask(request.text);
        };
        return info;
    }();
    return line;
}

}  // namespace tool
