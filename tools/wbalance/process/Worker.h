#pragma once

#include "Request.h"
#include "drivers/DriverTable.h"
#include "line/PortName.h"

namespace tool {

/// How a balance is reached.
struct Connection {
    const DriverInfo* driver = nullptr;
    PortNumber port;
    LineSettings line;
    int timeoutSeconds = 1;
};

/// The library's side of a BalanceProcess: constructs the driver and performs what is asked.
///
/// Runs in a process of its own: the library traces on standard output, so two balances in one
/// process would mix their traces, and it ends its process when a text does not fit a buffer.
class Worker {
 public:
    /// @param requests a packet socket: requests come in, outcomes go out
    Worker(const Connection& connection, int requests);
    ~Worker();

    /// Performs requests until the other side has gone.
    void Run();

 private:
    Outcome Perform(const Request& request);
    Outcome AskForASignOfLife();

    const Connection& connection_;
    const int requests_;
    const std::unique_ptr<Cwbalance> balance_;
};

/// Hands a request to a Worker. Returns false when it has gone.
bool SendRequest(int requests, const Request& request);

}  // namespace tool
