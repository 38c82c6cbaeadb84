#include <wbalance/CSerialObject.h>
#include <wbalance/Cwbalance.h>

#include <cstring>
#include <new>

#include "BoundedText.h"
#include "CLocale.h"

namespace {

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

// Where the number begins: at the first digit, without one at the end of the text; or at the '-'
// directly before that.
char* FindNumber(char* text) {
    char* digit = text;
    while (*digit != '\0' && !IsDigit(*digit))
        ++digit;
    return digit != text && digit[-1] == '-' ? digit - 1 : digit;
}

}  // namespace

// The settings are left to the drivers, each of which writes all of them.
// cppcheck-suppress uninitMemberVar
Cwbalance::Cwbalance() : serialObject(new (std::nothrow) CSerialObject) {}

Cwbalance::~Cwbalance() {
    delete serialObject;
}

int Cwbalance::Weight(long /*mode*/, double* weight, int* /*decimals*/) {
    *weight = 0.0;
    return 0;
}

int Cwbalance::TareSet(double /*preset*/) {
    return 1;
}

int Cwbalance::RestoreFactorySettings() {
    return 1;
}

int Cwbalance::SetCommPort(int port) {
    if (port < 0) return 0;
    portNumber = port;
    return 1;
}

int Cwbalance::SetCommConfig(int baud, int parity, int bits, int stopBits, int flowControl,
                             int timeout, char kind) {
    // Each value is stored before the next one is checked: a refused call leaves a partly updated
    // record, and hosts rely on it.
    if (baud < 1) return 0;
    baudRate = baud;
    if (parity < 0) return 0;
    parityCode = parity;
    if (bits < 0) return 0;
    dataBits = bits;
    if (stopBits < 0) return 0;
    stopBitsCode = stopBits;
    if (flowControl < 0) return 0;
    flowControlCode = flowControl;
    if (timeout < 0) return 0;
    timeoutSeconds = timeout;
    if (kind != 'S' && kind != 'U') return 0;
    portKind = kind;
    return 1;
}

int Cwbalance::OpenAndSetDefCommConfig() {
    if (serialObject == nullptr) return 0;
    if (serialObject->OpenCommPort(portNumber, portKind) == 0) return 0;
    const int configured = serialObject->SetCommConfig(baudRate, parityCode, dataBits, stopBitsCode,
                                                       flowControlCode, timeoutSeconds);
    if (configured != 0) return configured;
    // For good: a driver object whose settings were refused never opens a port again.
    delete serialObject;  // GCOVR_EXCL_BR_LINE: never null here
    serialObject = nullptr;
    return 0;
}

int Cwbalance::CloseCommPort() {
    if (serialObject == nullptr) return 0;
    serialObject->CloseCommPort();
    return 1;
}

int Cwbalance::OpenAndClear() {
    if (portNumber < 0 || serialObject == nullptr) return 0;
    if (OpenAndSetDefCommConfig() == 0) return 0;
    if (serialObject->ClearErrorsAndBuffers() == 0) {
        serialObject->CloseCommPort();
        return 0;
    }
    return 1;
}

double Cwbalance::ParseWeight(char* answer, int* decimals) {
    char text[100];
    bounded_text::Copy(text, answer, "a weight answer");
    // The number alone, so that neither an exponent nor a hexadecimal prefix is taken along.
    char* number = FindNumber(text);
    char* end = number;
    while (IsDigit(*end) || *end == '-' || *end == '.')
        ++end;
    *end = '\0';
    const char* point = std::strchr(number, '.');
    if (decimals != nullptr && point != nullptr) *decimals = static_cast<int>(end - point - 1);
    return c_locale::NumberIn(number);
}
