#pragma once

#include "Answers.h"
#include "Operations.h"
#include "drivers/Factory.h"
#include "readings/SignedReading.h"

/// What the instruments have in common that put a stability mark in front of the number.
namespace tool {

template <class Driver>
DriverInfo SignedReading(const char* maker, const char* models, const char* request) {
    // The driver's own check wants a stable weight, also before one that may be moving.
    DriverInfo driver{maker, models, ReadSignedReading, LineReady<Driver>};
    driver.readyFirst = true;
    driver.modes = "stable and auto: five requests for a stable weight; now: also while moving";
    driver.operations = {{Operation::Tare, Weighed(Tare)}};
    driver.recognition.asked = {{request, IsWeight<ReadSignedReading>}};
    return driver;
}

}  // namespace tool
