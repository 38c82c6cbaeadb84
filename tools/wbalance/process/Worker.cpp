#include "Worker.h"

#include <sys/socket.h>
#include <wbalance/Cwbalance.h>

#include "drivers/Factory.h"

namespace tool {
namespace {

// A request as it crosses from one process to the other, both of this same program.
struct Packet {
    Operation operation;
    long mode;
    double grams;
    char text[256];
};

}  // namespace

bool SendRequest(int requests, const Request& request) {
    Packet packet{request.operation, request.mode, request.grams, {}};
    request.text.copy(packet.text, sizeof packet.text - 1);
    return send(requests, &packet, sizeof packet, MSG_NOSIGNAL) == sizeof packet;
}

Worker::Worker(const Connection& connection, int requests)
    : connection_(connection), requests_(requests), balance_(connection.driver->construct()) {
    const LineSettings& line = connection.line;
    balance_->SetCommPort(connection.port.number);
    balance_->SetCommConfig(line.baudRate, line.parity, line.dataBits, line.stopBits,
                            line.flowControl, connection.timeoutSeconds, connection.port.kind);
}

Worker::~Worker() = default;

void Worker::Run() {
    Packet packet;
    while (recv(requests_, &packet, sizeof packet, 0) == sizeof packet) {
        const Outcome outcome =
            Perform({packet.operation, packet.mode, packet.grams, std::string(packet.text)});
        if (send(requests_, &outcome, sizeof outcome, MSG_NOSIGNAL) != sizeof outcome) return;
    }
}

Outcome Worker::Perform(const Request& request) {
    if (request.operation == Operation::Ask) return AskForASignOfLife();
    Outcome outcome;
    if (connection_.driver->readyFirst && balance_->IsReady() == 0) return outcome;
    if (request.operation == Operation::Weigh) {
        int decimals = 0;
        outcome.result = balance_->Weight(request.mode, &outcome.weight, &decimals);
    } else {
        outcome.result =
            connection_.driver->operations.at(request.operation).call(*balance_, request);
    }
    return outcome;
}

Outcome Worker::AskForASignOfLife() {
    Outcome outcome;
    for (const auto& command : connection_.driver->question) {
        if (dynamic_cast<Askable&>(*balance_).Ask(command) != 0) outcome.result = 1;
    }
    return outcome;
}

}  // namespace tool
