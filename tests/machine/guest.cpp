// The guest's side of the acceptance run: a host program of the library that is told over its
// standard input which driver to construct and which operation to call. It says {} when it is ready
// and answers each line with one line of JSON; "trace" is what the library printed meanwhile.
//
//   > new INSTRUMENT       < {"ms":3,"result":1,"trace":""}
//   > SetCommPort 1        < {"ms":0,"result":1,"trace":""}
//   > Weight 0             < {"decimals":3,"ms":2512,"result":1,"trace":"...","weight":12.345}
//   > delete               < {"ms":1,"result":1,"trace":""}
//
// A driver's name followed by "+line" stands for that driver WithLineReadiness.

#include <Instruments.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wbalance/wbalance.h>

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <map>
#include <memory>
#include <sstream>
#include <string>

#include "Call.h"

namespace {

using Balance = std::unique_ptr<Cwbalance>;

template <class Driver>
Balance Make() {
    return std::make_unique<Driver>();
}

/// Calls the operation that the words name; a reading stores the weight and the decimals.
template <class Driver>
int Call(Cwbalance& balance, const std::string& words, double* weight, int* decimals) {
    return answers::Call(dynamic_cast<Driver&>(balance), words, weight, decimals);
}

struct Driver {
    Balance (*make)();
    int (*call)(Cwbalance& balance, const std::string& words, double* weight, int* decimals);
};

const std::map<std::string, Driver> kDrivers = {
#define WBALANCE_DRIVER(name, Class)    \
    {name, {Make<Class>, Call<Class>}}, \
        {name "+line", {Make<WithLineReadiness<Class>>, Call<WithLineReadiness<Class>>}},
    WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DRIVER)
#undef WBALANCE_DRIVER
};

/// The balance that the host program has, and how its operations are called.
struct Constructed {
    Driver driver;
    Balance balance;
};

/// Reads its arguments from the line.
using Request = int (*)(Constructed& host, std::istream& arguments);

int Construct(Constructed& host, std::istream& arguments) {
    std::string name;
    arguments >> name;
    host.driver = kDrivers.at(name);
    host.balance = host.driver.make();
    return 1;
}

int Delete(Constructed& host, std::istream&) {
    host.balance.reset();
    return 1;
}

/// Leaves as a program does that the system kills: nothing is closed or unlocked.
int Die(Constructed&, std::istream&) {
    return std::raise(SIGKILL);
}

int ChoosePort(Constructed& host, std::istream& arguments) {
    int number = 0;
    arguments >> number;
    return host.balance->SetCommPort(number);
}

int ChooseSettings(Constructed& host, std::istream& arguments) {
    int baud = 0, parity = 0, dataBits = 0, stopBits = 0, flowControl = 0, timeout = 0;
    char kind = '\0';
    arguments >> baud >> parity >> dataBits >> stopBits >> flowControl >> timeout >> kind;
    return host.balance->SetCommConfig(baud, parity, dataBits, stopBits, flowControl, timeout,
                                       kind);
}

int ClosePort(Constructed& host, std::istream&) {
    return host.balance->CloseCommPort();
}

const std::map<std::string, Request> kRequests = {
    {"new", Construct},
    {"delete", Delete},
    {"die", Die},
    {"SetCommPort", ChoosePort},
    {"SetCommConfig", ChooseSettings},
    {"CloseCommPort", ClosePort},
};

/// What is none of these is an operation of the driver.
int Perform(const std::string& line, Constructed& host, QJsonObject& answer) {
    std::istringstream words(line);
    std::string name;
    words >> name;
    const auto request = kRequests.find(name);
    if (request != kRequests.end()) return request->second(host, words);
    double weight = -1.0;
    int decimals = -1;
    const int result = host.driver.call(*host.balance, line, &weight, &decimals);
    if (name == "Weight") {
        answer["weight"] = weight;
        answer["decimals"] = decimals;
    }
    return result;
}

/// Everything written to standard output from here on, in a file that has no name.
class TraceFile {
 public:
    TraceFile() : file_(memfd_create("trace", 0)) { dup2(file_, STDOUT_FILENO); }
    ~TraceFile() { close(file_); }
    TraceFile(const TraceFile&) = delete;
    TraceFile& operator=(const TraceFile&) = delete;

    /// What was written since the last call.
    std::string Take() {
        std::fflush(stdout);
        std::string text;
        char piece[4096];
        while (true) {
            const ssize_t count = pread(file_, piece, sizeof piece, taken_);
            if (count <= 0) return text;
            text.append(piece, static_cast<std::size_t>(count));
            taken_ += count;
        }
    }

 private:
    int file_;
    off_t taken_ = 0;
};

QJsonObject Answer(const std::string& line, Constructed& host, TraceFile& trace) {
    QJsonObject answer;
    QElapsedTimer clock;
    clock.start();
    answer["result"] = Perform(line, host, answer);
    answer["ms"] = clock.elapsed();
    answer["trace"] = QString::fromLatin1(trace.Take().c_str());
    return answer;
}

bool Say(int channel, const QJsonObject& answer) {
    const QByteArray line = QJsonDocument(answer).toJson(QJsonDocument::Compact) + '\n';
    return write(channel, line.constData(), static_cast<std::size_t>(line.size())) == line.size();
}

}  // namespace

int main() {
    const int channel = dup(STDOUT_FILENO);
    TraceFile trace;
    Constructed host{};
    bool heard = Say(channel, {});
    for (std::string line; heard && std::getline(std::cin, line);)
        heard = Say(channel, Answer(line, host, trace));
    return heard ? 0 : 1;
}
