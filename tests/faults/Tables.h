#ifndef WBALANCE_TESTS_FAULTS_TABLES_H
#define WBALANCE_TESTS_FAULTS_TABLES_H

#include "Oracle.h"

/// What each driver must do, one table a driver: tables/.
namespace faults {

Description EL2000STable();
Description GibertiniTable();
Description KernTable();
Description MettlerPMTable();
Description MettlerPR2003Table();
Description MettlerSB32001Table();
Description MettlerToledoTable();
Description MettlerXSTable();
Description OhausTable();
Description RadwagTable();
Description SartoriusTable();
Description ScaleHouseTable();
Description XL1800Table();

/// The same with a readiness that is the line's alone (WithLineReadiness).
Description WithReadinessOfTheLine(Description description);

}  // namespace faults

#endif
