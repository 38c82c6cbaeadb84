#ifndef WBALANCE_TESTS_SCRIPTED_SCRIPTEDTEST_H
#define WBALANCE_TESTS_SCRIPTED_SCRIPTEDTEST_H

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wbalance/wbalance.h>

#include "Line.h"

namespace scripted {

/// A test over the script: a fresh line and clock, and the trace kept in order with the calls.
class ScriptedTest : public testing::Test {
 protected:
    ScriptedTest() { line.Reset(); }

    Line& line = Line::Here();

 private:
    TraceCapture capture_;
};

/// `Driver` with its protected fields within a test's reach, and with IsReady() as it is.
template <class Driver>
class Open : public Driver {
 public:
    using Driver::baudRate;
    using Driver::dataBits;
    using Driver::Driver;
    using Driver::flowControlCode;
    using Driver::modelFlagA;
    using Driver::modelFlagB;
    using Driver::modelFlagC;
    using Driver::parityCode;
    using Driver::portKind;
    using Driver::portNumber;
    using Driver::protocolCode;
    using Driver::serialObject;
    using Driver::stopBitsCode;
    using Driver::timeoutSeconds;
};

}  // namespace scripted

#endif
