#pragma once

#include <wbalance/Cwbalance.h>

#include <string>
#include <utility>

#include "drivers/DriverTable.h"

/// How the drivers' operations are called, and what shows that an instrument has done one.
namespace tool {

inline int Tare(Cwbalance& balance, const Request& /*request*/) {
    return balance.Tare();
}

inline int PresetTare(Cwbalance& balance, const Request& request) {
    return balance.TareSet(request.grams);
}

// Which of its protocols a balance speaks is known when it has been found ready.
inline int PresetTareOnceReady(Cwbalance& balance, const Request& request) {
    return balance.IsReady() == 0 ? 0 : balance.TareSet(request.grams);
}

inline int FactoryReset(Cwbalance& balance, const Request& /*request*/) {
    return balance.RestoreFactorySettings();
}

template <class Driver>
int Zero(Cwbalance& balance, const Request& /*request*/) {
    return static_cast<Driver&>(balance).Zero();
}

template <class Driver>
int Display(Cwbalance& balance, const Request& request) {
    std::string text = request.text;
    return static_cast<Driver&>(balance).DisplayMessage(text.data());
}

template <class Driver>
int SwitchOn(Cwbalance& balance, const Request& /*request*/) {
    return static_cast<Driver&>(balance).TurnItOn();
}

template <class Driver>
int SwitchOff(Cwbalance& balance, const Request& /*request*/) {
    return static_cast<Driver&>(balance).TurnItOff();
}

inline OperationInfo Trusted(decltype(OperationInfo::call) call, const std::string& note = "") {
    return {std::move(call), "", "", false, note};
}

inline OperationInfo Answered(decltype(OperationInfo::call) call, const std::string& command,
                              const std::string& confirmation, const std::string& note = "") {
    return {std::move(call), command, confirmation, false, note};
}

inline OperationInfo Weighed(decltype(OperationInfo::call) call, const std::string& note = "") {
    return {std::move(call), "", "", true, note};
}

}  // namespace tool
