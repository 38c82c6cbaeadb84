#include "BalanceOptions.h"

namespace tool {

void BalanceOptions::AddTo(arguments::Command command) {
    command.AddOption("-d,--driver", driver, "the balance's driver; `wbalance drivers` lists them")
        .TypeName("NAME")
        .Required();
    command
        .AddOption("-p,--port", port,
                   "port number (/dev/ttyS<number>), or a device or stable name such as "
                   "/dev/ttyUSB0 or /dev/serial/by-id/...; resolved at every open")
        .TypeName("PORT")
        .ShowDefault();
    command.AddFlag("-u,--usb", usb,
                    "the port number is that of a USB adapter (/dev/ttyUSB<number>)");
    command
        .AddOption("-l,--line", line,
                   "line settings, if they differ from the driver's: baud rate, data bits (7 8), "
                   "parity (N O E M S, - keeps the port's), stop bits (1 1.5 2), flow control "
                   "(rtscts xonxoff): 9600 or 2400,7E1 or 9600,8N1,xonxoff")
        .TypeName("LINE");
    AddSharedTo(command);
    command.AddOption("--record", recordPath, "write what goes over the line to a file for replay")
        .TypeName("FILE");
}

void BalanceOptions::AddSharedTo(arguments::Command command) {
    command
        .AddOption("-t,--timeout", timeoutSeconds,
                   "seconds that one wait for data may last, 1 to 60; 0 means 100 ms. Most "
                   "operations wait several times")
        .TypeName("SECONDS")
        .Range(0, 60)
        .ShowDefault();
    command.AddFlag("--trace", trace, "show the library's trace on standard error");
}

Connection BalanceOptions::Connect() const {
    const DriverInfo& info = FindDriver(driver);
    const LineSettings settings = line.empty() ? info.line : LineSettings::Parse(line, info.line);
    return {&info, Port().Resolve(), settings, timeoutSeconds};
}

}  // namespace tool
