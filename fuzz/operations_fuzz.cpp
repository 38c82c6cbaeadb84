// Every operation of every driver against an instrument that answers anything at any time, on a
// line on which anything can fail, against each driver's table.

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "Harness.h"
#include "Matrix.h"
#include "Tables.h"

using faults::Call;
using scripted::Line;

namespace {

struct Driver {
    faults::Description table;
    faults::MakeSubject make;
    std::vector<const char*> operations;
};

/// A driver whose own readiness has no end is also tried with one that has.
template <class Class>
void Add(std::vector<Driver>& drivers) {
    const faults::Description table = faults::TableOf<Class>();
    drivers.push_back({table, faults::Make<Class>(), faults::OperationsOf<Class>()});
    if (!table.endless) return;
    drivers.push_back({faults::WithReadinessOfTheLine(table),
                       faults::Make<WithLineReadiness<Class>>(), faults::OperationsOf<Class>()});
}

const std::vector<Driver>& Drivers() {
    static const std::vector<Driver> drivers = [] {
        std::vector<Driver> all;
#define WBALANCE_ADD_DRIVER(name, Class) Add<Class>(all);
        WBALANCE_FOR_EACH_INSTRUMENT(WBALANCE_ADD_DRIVER)
#undef WBALANCE_ADD_DRIVER
        return all;
    }();
    return drivers;
}

const char* const kAnswers[] = {
    "S S     100.00 g\r\n",
    "S D      10.03 g\r\n",
    "S I\r\n",
    "ES\r\n",
    "I4 A \"1126493049\"\r\n",
    "Z A\r\n",
    "T S       2.50 g\r\n",
    "TA A       7.50 g\r\n",
    "TA L\r\n",
    "D A\r\n",
    "DW A\r\n",
    "PWR A\r\n",
    "S     -12.34 g\r\n",
    "SD      12.34 g\r\n",
    "SI+\r\n",
    "+   123.56 g  \r\n",
    "N     -     7.25 g  \r\n",
    "TP1   +     2.50 g  \r\nN1    +     9.75 g  \r\n",
    "       12.73 g    ?\r\n",
    "    192.21 g\r\n",
    "T A\r\nT D\r\n",
    "T D\r\n",
    "Z D\r\n",
    "S A\r\n",
    "S E\r\n",
    "S    -    12.345 g  \r\n",
    "SI ?      -0.012 g  \r\n",
    "SI I\r\n",
    "A00\r\n",
    "E01\r\n",
    "A00\r\n-  12.50 G S\r\n",
    "+   7.25 G U\r\n",
    "    123.45 g   DS\r\n",
    "   -12.345 g   TI\r\n",
    "    999.99 g   OE\r\n",
    "1+   12.34 g\r\n",
    "1-    0.05 g\r\n",
    "U-    0.50 g\r\n",
    "U+   ",
    "   123.4 g N\r\n",
    "PROJ 7\r\n 15.5 g G\r\n 2.0 g T\r\n",
    "\r\n",
    "\n",
};
const long kDelays[] = {0,    1,    8,    30,   200,  499,  500,  999,
                        1000, 1001, 1500, 2500, 3100, 5200, 9000, 21000};
const double kPresets[] = {0.0, 5.0, 9.99, 9.995, 10.0, -1.0, 123.456, 1e15, 1e300, -0.0};
const char* const kPauses[] = {nullptr, "0", "250", "-5", "abc", " 7x", "99999"};

scripted::Reply ReplyFrom(fuzz::Input& input) {
    scripted::Reply reply;
    reply.afterMs = kDelays[input.Below(16)];
    const int kind = input.Byte();
    if (kind < 192) {
        reply.bytes = kAnswers[static_cast<std::size_t>(kind) % std::size(kAnswers)];
    } else {
        reply.bytes = input.Text(static_cast<std::size_t>((kind - 191) * 2));
    }
    // Cut, or one after the other.
    const int change = input.Byte();
    if (change >= 0xe0) reply.bytes += reply.bytes;
    if (change < 0x10)
        reply.bytes.resize(static_cast<std::size_t>(change) % (reply.bytes.size() + 1));
    return reply;
}

struct Sighting {
    std::vector<int> results;
    std::vector<double> weights;
    std::vector<int> decimals;
    bool processEnd = false;
    std::vector<Line::Event> events;
};

using Perform = std::function<int(const Call&, double*, int*)>;

Call CallFrom(const Driver& driver, fuzz::Input& input) {
    Call call;
    call.operation = driver.operations[static_cast<std::size_t>(
        input.Below(static_cast<int>(driver.operations.size())))];
    call.mode = input.Below(5) - 1;
    call.preset = kPresets[input.Below(10)];
    call.text = std::string(static_cast<std::size_t>(input.Below(70)), 'x');
    return call;
}

/// Some calls, with faults and an instrument that answers as the input says.
void Play(const Driver& driver, fuzz::Input input, const Perform& perform, Sighting& sighting) {
    Line& line = Line::Here();
    const int calls = 1 + input.Below(3);
    for (int faults = input.Below(3); faults > 0; --faults) {
        const int number = 1 + input.Byte();
        line.FailCall(number, static_cast<scripted::PortFault>(input.Below(5)));
    }
    std::vector<Call> made;
    std::vector<bool> withDecimals;
    for (int i = 0; i < calls; ++i) {
        made.push_back(CallFrom(driver, input));
        withDecimals.push_back(input.Coin());
    }
    const int endAt = 1 + input.Below(80);
    line.OnCommand([&line, &input](const std::string&) {
        for (int count = input.Below(4); count > 0 && !input.Empty(); --count) {
            const scripted::Reply reply = ReplyFrom(input);
            if (!reply.bytes.empty()) line.Arrive(line.Now() + reply.afterMs, reply.bytes);
        }
    });
    for (std::size_t i = 0; i < made.size(); ++i) {
        if (driver.table.endless)
            line.FailCall(line.CallCount() + endAt, scripted::PortFault::HangUp);
        double weight = -777.25;
        int decimals = -777;
        const int result = perform(made[i], &weight, withDecimals[i] ? &decimals : nullptr);
        sighting.results.push_back(result);
        sighting.weights.push_back(weight);
        sighting.decimals.push_back(decimals);
        if (driver.table.endless) line.HangUp();
    }
}

Sighting ByTheTable(const Driver& driver, const fuzz::Input& input) {
    Line::Here().Reset();
    Sighting sighting;
    {
        faults::Balance balance(driver.table, Line::Here());
        const Perform perform = [&](const Call& call, double* weight, int* decimals) {
            return balance.Perform(call, weight, decimals);
        };
        try {
            Play(driver, input, perform, sighting);
        } catch (const faults::ProcessEnd&) {
            sighting.processEnd = true;
        }
    }
    sighting.events = Line::Here().Events();
    return sighting;
}

Sighting ByTheLibrary(const Driver& driver, const fuzz::Input& input) {
    Line::Here().Reset();
    Sighting sighting;
    {
        const scripted::TraceCapture capture;
        const std::unique_ptr<faults::Subject> subject = driver.make();
        const Perform perform = [&](const Call& call, double* weight, int* decimals) {
            return subject->Perform(call, weight, decimals);
        };
        const auto act = [&] { Play(driver, input, perform, sighting); };
        sighting.processEnd = fuzz::LineOfProcessEnd(act).has_value();
    }
    sighting.events = Line::Here().Events();
    return sighting;
}

// A not-a-number is a weight like any other.
bool SameBits(double one, double other) {
    return std::memcmp(&one, &other, sizeof one) == 0;
}

bool IsTrace(const std::string& text) {
    return text.rfind("trace ", 0) == 0;
}

void RequireSameEvents(const Sighting& table, const Sighting& library) {
    // What a directive of printf in an answer prints is not the tables' matter.
    bool directive = false;
    const std::size_t count = std::min(table.events.size(), library.events.size());
    for (std::size_t i = 0; i < count; ++i) {
        const Line::Event& wanted = table.events[i];
        const Line::Event& got = library.events[i];
        directive = directive || wanted.text.find('%') != std::string::npos;
        if (directive && IsTrace(wanted.text) && IsTrace(got.text)) continue;
        fuzz::Require(wanted.at == got.at && wanted.text == got.text,
                      "wanted " + std::to_string(wanted.at) + " " + wanted.text + "\n     got " +
                          std::to_string(got.at) + " " + got.text);
    }
    if (!directive)
        fuzz::Require(table.events.size() == library.events.size(), "the same number of events");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size > 400) return 0;
    fuzz::Input input(data, size);
    const Driver& driver =
        Drivers()[static_cast<std::size_t>(input.Below(static_cast<int>(Drivers().size())))];
    const char* pause = kPauses[input.Below(7)];
    if (pause == nullptr) {
        unsetenv("WBALANCE_SLEEP");
    } else {
        setenv("WBALANCE_SLEEP", pause, 1);
    }

    const Sighting table = ByTheTable(driver, input);
    const Sighting library = ByTheLibrary(driver, input);
    RequireSameEvents(table, library);
    fuzz::Require(table.processEnd == library.processEnd, "the process ends where it has to");
    fuzz::Require(table.results == library.results, "the same results");
    fuzz::Require(table.decimals == library.decimals, "the same decimals");
    fuzz::Require(std::equal(table.weights.begin(), table.weights.end(), library.weights.begin(),
                             library.weights.end(), SameBits),
                  "the same weights");
    for (const int result : library.results)
        fuzz::Require(0 <= result && result <= 2, "0, 1 or 2");
    return 0;
}
