#pragma once

#include <Instruments.h>

#include "Oracle.h"

#define WBALANCE_DECLARE_CLASS(name, Class) class Class;
WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DECLARE_CLASS)
#undef WBALANCE_DECLARE_CLASS

/// What each driver must do, one table a driver: tables/.
namespace faults {

template <class Driver>
Description TableOf();

#define WBALANCE_DECLARE_TABLE(name, Class) \
    template <>                             \
    Description TableOf<Class>();
WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DECLARE_TABLE)
#undef WBALANCE_DECLARE_TABLE

/// The same, marked as endless.
Description Endless(Description description);

/// The same with WithLineReadiness.
Description WithReadinessOfTheLine(Description description);

}  // namespace faults
