// Mettler XS: the commands and answers of the PR2003 at the line settings of the newer series.

#include <wbalance/WbalanceMettlerXS.h>

WbalanceMettlerXS::WbalanceMettlerXS() {
    SetCommPort(0);
    SetCommConfig(9600, ParityNone, 8, OneStopBit, NoFlowControl, 1, 'S');
    protocolCode = 0;
    modelFlagC = 1;  // the reset is due on these balances too
}

WbalanceMettlerXS::~WbalanceMettlerXS() = default;
