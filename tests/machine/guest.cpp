// The guest's side of the acceptance run: a host program of the library that is told over its
// standard input which driver to construct and which operation to call. It says {} when it is ready
// and answers each line with one line of JSON; "trace" is what the library printed meanwhile.
//
//   > new radwag           < {"ms":3,"result":1,"trace":""}
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

namespace {

using Balance = std::unique_ptr<Cwbalance>;

template <class Driver>
Balance Make() {
    return std::make_unique<Driver>();
}

const std::map<std::string, Balance (*)()> kDrivers = {
#define WBALANCE_DRIVER(name, Class) \
    {name, Make<Class>}, {name "+line", Make<WithLineReadiness<Class>>},
    WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_DRIVER)
#undef WBALANCE_DRIVER
};

/// Reads its arguments from the line; what it has beyond the result goes into the answer.
using Operation = int (*)(Balance& balance, std::istream& arguments, QJsonObject& answer);

int Construct(Balance& balance, std::istream& arguments, QJsonObject&) {
    std::string driver;
    arguments >> driver;
    balance = kDrivers.at(driver)();
    return 1;
}

int Delete(Balance& balance, std::istream&, QJsonObject&) {
    balance.reset();
    return 1;
}

/// Leaves as a program does that the system kills: nothing is closed or unlocked.
int Die(Balance&, std::istream&, QJsonObject&) {
    return std::raise(SIGKILL);
}

int ChoosePort(Balance& balance, std::istream& arguments, QJsonObject&) {
    int number = 0;
    arguments >> number;
    return balance->SetCommPort(number);
}

int ChooseSettings(Balance& balance, std::istream& arguments, QJsonObject&) {
    int baud = 0, parity = 0, dataBits = 0, stopBits = 0, flowControl = 0, timeout = 0;
    char kind = '\0';
    arguments >> baud >> parity >> dataBits >> stopBits >> flowControl >> timeout >> kind;
    return balance->SetCommConfig(baud, parity, dataBits, stopBits, flowControl, timeout, kind);
}

int ReadWeight(Balance& balance, std::istream& arguments, QJsonObject& answer) {
    long mode = 0;
    arguments >> mode;
    double weight = -1.0;
    int decimals = -1;
    const int result = balance->Weight(mode, &weight, &decimals);
    answer["weight"] = weight;
    answer["decimals"] = decimals;
    return result;
}

int PresetTare(Balance& balance, std::istream& arguments, QJsonObject&) {
    double grams = 0.0;
    arguments >> grams;
    return balance->TareSet(grams);
}

/// An operation without arguments, of the base class or of one driver.
template <class Driver, int (Driver::*operation)()>
int Call(Balance& balance, std::istream&, QJsonObject&) {
    return (dynamic_cast<Driver&>(*balance).*operation)();
}

int ShowText(Balance& balance, std::istream& arguments, QJsonObject&) {
    std::string text;
    arguments >> text;
    if (auto* const withSwitch = dynamic_cast<WbalanceMettlerPR2003*>(balance.get()))
        return withSwitch->DisplayMessage(text.data());
    return dynamic_cast<WbalanceMettlerSB32001&>(*balance).DisplayMessage(text.data());
}

const std::map<std::string, Operation> kOperations = {
    {"new", Construct},
    {"delete", Delete},
    {"die", Die},
    {"SetCommPort", ChoosePort},
    {"SetCommConfig", ChooseSettings},
    {"CloseCommPort", Call<Cwbalance, &Cwbalance::CloseCommPort>},
    {"IsReady", Call<Cwbalance, &Cwbalance::IsReady>},
    {"Tare", Call<Cwbalance, &Cwbalance::Tare>},
    {"Weight", ReadWeight},
    {"TareSet", PresetTare},
    {"RestoreFactorySettings", Call<Cwbalance, &Cwbalance::RestoreFactorySettings>},
    {"DisplayMessage", ShowText},
    {"TurnItOff", Call<WbalanceMettlerPR2003, &WbalanceMettlerPR2003::TurnItOff>},
    {"TurnItOn", Call<WbalanceMettlerPR2003, &WbalanceMettlerPR2003::TurnItOn>},
    {"Zero", Call<WbalanceRadwag, &WbalanceRadwag::Zero>},
};

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

QJsonObject Answer(const std::string& line, Balance& balance, TraceFile& trace) {
    std::istringstream words(line);
    std::string name;
    words >> name;
    QJsonObject answer;
    QElapsedTimer clock;
    clock.start();
    answer["result"] = kOperations.at(name)(balance, words, answer);
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
    const int answers = dup(STDOUT_FILENO);
    TraceFile trace;
    Balance balance;
    bool heard = Say(answers, {});
    for (std::string line; heard && std::getline(std::cin, line);)
        heard = Say(answers, Answer(line, balance, trace));
    return heard ? 0 : 1;
}
