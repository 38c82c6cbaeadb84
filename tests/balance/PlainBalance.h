#pragma once

#include "ScriptedTest.h"

/// A driver with nothing of its own but the two operations that it must have.
class PlainBalance : public Cwbalance {
 public:
    PlainBalance() {
        SetCommPort(4);
        SetCommConfig(2400, ParityEven, 7, OneStopBit, NoFlowControl, 1, 'S');
    }

    int IsReady() override { return OpenAndClear(); }
    int Tare() override { return 2; }
};
