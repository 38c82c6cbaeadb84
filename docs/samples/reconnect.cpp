// Weighs once a second until it is ended. The adapter may be pulled out and plugged in again, and
// may come back under another number:
//
//     reconnect /dev/serial/by-id/usb-FTDI_A1B2-if00-port0

#include <unistd.h>
#include <wbalance/wbalance.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>

using Balance = WithLineReadiness<WbalanceSartorius>;

// The number of the port to which a stable name leads now: 0 for /dev/ttyUSB0, -1 while the adapter
// is out.
static int PortNumber(const char* stableName) {
    std::error_code missing;
    const std::string device = std::filesystem::read_symlink(stableName, missing).filename();
    int number = -1;
    std::sscanf(device.c_str(), "ttyUSB%d", &number);
    return number;
}

// A new driver with an open port; null while the adapter is out.
static std::unique_ptr<Balance> Connect(const char* stableName) {
    auto balance = std::make_unique<Balance>();
    if (balance->SetCommPort(PortNumber(stableName)) == 0) return nullptr;
    balance->SetCommConfig(1200, Balance::ParityOdd, 7, Balance::OneStopBit, Balance::NoFlowControl,
                           1, 'U');
    if (balance->IsReady() == 0) return nullptr;
    return balance;
}

// Call it when a reading has failed. A port that works takes its settings once more. A port whose
// adapter was pulled out refuses them, and this driver object cannot be used any more.
static bool IsLost(Balance& balance) {
    return balance.OpenAndSetDefCommConfig() == 0;
}

int main(int count, char** words) {
    if (count != 2) return 2;
    setenv("QT_LOGGING_RULES", "default.warning=false", 0);  // see Threads
    std::unique_ptr<Balance> balance;
    for (;; sleep(1)) {
        if (balance == nullptr) balance = Connect(words[1]);
        double grams = 0.0;
        if (balance == nullptr) {
            std::fprintf(stderr, "away\n");
        } else if (balance->Weight(2, &grams, nullptr) != 0) {
            std::fprintf(stderr, "%.2f g\n", grams);
        } else if (IsLost(*balance)) {
            std::fprintf(stderr, "lost\n");
            balance.reset();
        } else {
            std::fprintf(stderr, "silent\n");
        }
    }
}
