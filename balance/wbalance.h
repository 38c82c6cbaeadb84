#ifndef WBALANCE_WBALANCE_H
#define WBALANCE_WBALANCE_H

/// @file
/// Everything that libwbalance offers: the drivers, the class behind which they stand, the
/// transport.

#include <wbalance/CSerialObject.h>
#include <wbalance/Cwbalance.h>
#include <wbalance/WbalanceDIC_XL1800.h>
#include <wbalance/WbalanceGibertini.h>
#include <wbalance/WbalanceKern_EW_EGN_EWB.h>
#include <wbalance/WbalanceMettlerPM.h>
#include <wbalance/WbalanceMettlerPR2003.h>
#include <wbalance/WbalanceMettlerSB32001.h>
#include <wbalance/WbalanceMettlerToledo.h>
#include <wbalance/WbalanceMettlerXS.h>
#include <wbalance/WbalanceOHAUS_SPU602.h>
#include <wbalance/WbalanceRadwag.h>
#include <wbalance/WbalanceSartorius.h>
#include <wbalance/WbalanceScaleHouseALD.h>
#include <wbalance/WbalanceSetra_EL_2000S.h>
#include <wbalance/WithLineReadiness.h>

#endif
