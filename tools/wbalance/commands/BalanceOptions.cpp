#include "BalanceOptions.h"

#include <CLI/CLI.hpp>

namespace tool {

void BalanceOptions::AddTo(CLI::App& command) {
    command
        .add_option("-d,--driver", driver, "the balance's driver; `wbalance drivers` lists them")
        ->type_name("NAME")
        ->required();
    command
        .add_option("-p,--port", port,
                    "port number (/dev/ttyS<number>), or a device or stable name such as "
                    "/dev/ttyUSB0 or /dev/serial/by-id/...; followed at every open")
        ->type_name("PORT")
        ->capture_default_str();
    command.add_flag("-u,--usb", usb,
                     "the port number is that of a USB adapter (/dev/ttyUSB<number>)");
    command
        .add_option("-l,--line", line,
                    "line settings when they are not the driver's own: baud rate, data bits (7 8), "
                    "parity (N O E M S, - leaves the port's), stop bits (1 1.5 2), flow control "
                    "(rtscts xonxoff): 9600 or 2400,7E1 or 9600,8N1,xonxoff")
        ->type_name("LINE");
    AddSharedTo(command);
    command
        .add_option("--record", recordPath, "write what goes over the line to a file for replay")
        ->type_name("FILE");
}

void BalanceOptions::AddSharedTo(CLI::App& command) {
    command
        .add_option("-t,--timeout", timeoutSeconds,
                    "seconds that one wait for data may last, 1 to 60; 0 means 100 ms. Most "
                    "operations wait several times")
        ->type_name("SECONDS")
        ->check(CLI::Range(0, 60))
        ->capture_default_str();
    command.add_flag("--trace", trace, "show the library's trace on standard error");
}

Connection BalanceOptions::Connect() const {
    const DriverInfo& info = FindDriver(driver);
    const LineSettings settings = line.empty() ? info.line : LineSettings::Parse(line, info.line);
    return {&info, Port().Resolve(), settings, timeoutSeconds};
}

}  // namespace tool
