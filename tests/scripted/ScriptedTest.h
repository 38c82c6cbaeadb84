#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <wbalance/wbalance.h>

#include <iostream>
#include <vector>

#include "Line.h"

namespace scripted {

/// Prints the failures of a test again at its end. What was printed during the test has become part
/// of the trace.
class FailureReport {
 public:
    FailureReport() = default;
    FailureReport(const FailureReport&) = delete;
    FailureReport& operator=(const FailureReport&) = delete;
    ~FailureReport() {
        const testing::TestResult& result =
            *testing::UnitTest::GetInstance()->current_test_info()->result();
        for (int i = 0; i < result.total_part_count(); ++i) {
            const testing::TestPartResult& part = result.GetTestPartResult(i);
            if (part.failed()) std::cout << part << std::endl;
        }
    }
};

/// A test with the scripted line: a new line and clock, and the trace in order with the calls.
class ScriptedTest : public testing::Test {
 protected:
    ScriptedTest() { line.Reset(); }

    Line& line = Line::Here();

 private:
    FailureReport report_;  // ahead of the capture, so that it goes after it
    TraceCapture capture_;
};

/// `Driver` with its protected fields public, and with its own IsReady().
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
    using Driver::OpenAndClear;
    using Driver::parityCode;
    using Driver::portKind;
    using Driver::portNumber;
    using Driver::protocolCode;
    using Driver::serialObject;
    using Driver::stopBitsCode;
    using Driver::timeoutSeconds;
};

/// Joins two lists, for example of steps of a transcript.
template <class Row>
std::vector<Row> operator+(std::vector<Row> first, const std::vector<Row>& then) {
    first.insert(first.end(), then.begin(), then.end());
    return first;
}

}  // namespace scripted
