#pragma once

/// @file
/// Everything that libwbalance offers: the drivers, their base class and the transport.

#include "CSerialObject.h"
#include "Cwbalance.h"
#include "WbalanceDIC_XL1800.h"
#include "WbalanceGibertini.h"
#include "WbalanceKern_EW_EGN_EWB.h"
#include "WbalanceMettlerPM.h"
#include "WbalanceMettlerPR2003.h"
#include "WbalanceMettlerSB32001.h"
#include "WbalanceMettlerToledo.h"
#include "WbalanceMettlerXS.h"
#include "WbalanceOHAUS_SPU602.h"
#include "WbalanceRadwag.h"
#include "WbalanceSartorius.h"
#include "WbalanceScaleHouseALD.h"
#include "WbalanceSetra_EL_2000S.h"
#include "WithLineReadiness.h"
