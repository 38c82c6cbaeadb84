#include "simulator/line/VirtualLine.h"

#include <gtest/gtest.h>
#include <QtSerialPort/QSerialPort>

#include "Examples.h"
#include "simulator/VirtualBench.h"

using examples::kBalance;
using simulator::Options;
using simulator::UartSettings;
using simulator::VirtualBench;

namespace {

/// One setting as QSerialPort names it and as the far end is to see it.
struct Case {
    const char* name;
    int baudRate;
    QSerialPort::DataBits dataBits;
    QSerialPort::Parity parity;
    QSerialPort::StopBits stopBits;
    QSerialPort::FlowControl flowControl;
    const char* seen;
};

void PrintTo(const Case& each, std::ostream* out) {
    *out << each.seen;
}

class LineSettingsOfAHost : public testing::TestWithParam<Case> {};

std::string Ask(QSerialPort& port, const char* command) {
    port.write(command);
    QByteArray answer;
    while (!answer.endsWith('\n') && port.waitForReadyRead(2000))
        answer += port.readAll();
    return answer.toStdString();
}

}  // namespace

TEST_P(LineSettingsOfAHost, Are_kept_seen_at_the_far_end_and_carry_a_command_and_its_answer) {
    const Case& wanted = GetParam();
    VirtualBench bench;
    auto& balance = bench.Place(kBalance, Options().WithLoad(12.34).At(wanted.seen));
    QSerialPort port("/dev/ttyS0");
    ASSERT_TRUE(port.open(QIODevice::ReadWrite)) << port.errorString().toStdString();
    EXPECT_TRUE(port.setBaudRate(wanted.baudRate));
    EXPECT_TRUE(port.setDataBits(wanted.dataBits));
    EXPECT_TRUE(port.setParity(wanted.parity));
    EXPECT_TRUE(port.setStopBits(wanted.stopBits));
    EXPECT_TRUE(port.setFlowControl(wanted.flowControl));
    EXPECT_EQ(balance.HostSettings().Text(), wanted.seen);
    EXPECT_EQ(Ask(port, "S\r\n"), "S S      12.34 g\r\n");
    EXPECT_EQ(balance.SentByHost(), "S\r\n");
}

INSTANTIATE_TEST_SUITE_P(
    Each, LineSettingsOfAHost,
    testing::Values(Case{"D600_7E1", 600, QSerialPort::Data7, QSerialPort::EvenParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "600,7E1"},
                    Case{"D1200_7O1", 1200, QSerialPort::Data7, QSerialPort::OddParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "1200,7O1"},
                    Case{"D1200_8N2", 1200, QSerialPort::Data8, QSerialPort::NoParity,
                         QSerialPort::TwoStop, QSerialPort::NoFlowControl, "1200,8N2"},
                    Case{"D2400_7E1", 2400, QSerialPort::Data7, QSerialPort::EvenParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "2400,7E1"},
                    Case{"D2400_7N1", 2400, QSerialPort::Data7, QSerialPort::NoParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "2400,7N1"},
                    Case{"D2400_8N1", 2400, QSerialPort::Data8, QSerialPort::NoParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "2400,8N1"},
                    Case{"D4800_8O2", 4800, QSerialPort::Data8, QSerialPort::OddParity,
                         QSerialPort::TwoStop, QSerialPort::NoFlowControl, "4800,8O2"},
                    Case{"D9600_7E1", 9600, QSerialPort::Data7, QSerialPort::EvenParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "9600,7E1"},
                    Case{"D9600_8N1", 9600, QSerialPort::Data8, QSerialPort::NoParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "9600,8N1"},
                    Case{"D9600_8E1", 9600, QSerialPort::Data8, QSerialPort::EvenParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "9600,8E1"},
                    Case{"D9600_7M1", 9600, QSerialPort::Data7, QSerialPort::MarkParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "9600,7M1"},
                    Case{"D9600_7S1", 9600, QSerialPort::Data7, QSerialPort::SpaceParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "9600,7S1"},
                    Case{"D9600_8M2", 9600, QSerialPort::Data8, QSerialPort::MarkParity,
                         QSerialPort::TwoStop, QSerialPort::NoFlowControl, "9600,8M2"},
                    Case{"D19200_8N1_hardware", 19200, QSerialPort::Data8, QSerialPort::NoParity,
                         QSerialPort::OneStop, QSerialPort::HardwareControl, "19200,8N1,rtscts"},
                    Case{"D19200_7E1_software", 19200, QSerialPort::Data7, QSerialPort::EvenParity,
                         QSerialPort::OneStop, QSerialPort::SoftwareControl, "19200,7E1,xonxoff"},
                    Case{"D38400_8N1", 38400, QSerialPort::Data8, QSerialPort::NoParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "38400,8N1"},
                    Case{"D57600_8N1", 57600, QSerialPort::Data8, QSerialPort::NoParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "57600,8N1"},
                    Case{"D230400_8N1", 230400, QSerialPort::Data8, QSerialPort::NoParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "230400,8N1"},
                    Case{"D115200_8N1", 115200, QSerialPort::Data8, QSerialPort::NoParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "115200,8N1"},
                    Case{"D12345_8N1_no_standard_rate", 12345, QSerialPort::Data8,
                         QSerialPort::NoParity, QSerialPort::OneStop, QSerialPort::NoFlowControl,
                         "12345,8N1"},
                    Case{"D31250_7O2_no_standard_rate", 31250, QSerialPort::Data7,
                         QSerialPort::OddParity, QSerialPort::TwoStop, QSerialPort::NoFlowControl,
                         "31250,7O2"},
                    Case{"D300_8N1", 300, QSerialPort::Data8, QSerialPort::NoParity,
                         QSerialPort::OneStop, QSerialPort::NoFlowControl, "300,8N1"}),
    [](const auto& each) { return each.param.name; });

TEST(VirtualLine, A_host_at_8N1_meets_a_balance_at_7E1) {
    VirtualBench bench;
    bench.Place(kBalance, Options().WithLoad(12.34));
    QSerialPort port("/dev/ttyS0");
    ASSERT_TRUE(port.open(QIODevice::ReadWrite));
    ASSERT_TRUE(port.setBaudRate(2400));
    // 'S' has four ones, 'I' three: wrong parity, so the balance answers ET CR LF. 'E', 'T' and CR
    // have three ones, LF two: the parity bit of the first three is read as bit 7.
    port.write("SI\r\n");
    QByteArray answer;
    while (port.waitForReadyRead(300))
        answer += port.readAll();
    EXPECT_EQ(answer.toStdString(), "\xC5\xD4\x8D\n");
}
