#pragma once

#include "WbalanceMettlerPR2003.h"

/// Mettler XS balances: as WbalanceMettlerPR2003, whose name the traces show, on another line.
///
/// Line settings at construction: port 0 of kind 'S', 9600 baud, no parity, 8 data bits, one stop
/// bit, no flow control, a time-out of 1 s.
class WBALANCE_EXPORT WbalanceMettlerXS : public WbalanceMettlerPR2003 {
 public:
    WbalanceMettlerXS();
    ~WbalanceMettlerXS() override;
};
