// Answers received under any pattern of arrivals, against a second telling of the rules.

#include <wbalance/CSerialObject.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "Harness.h"
#include "Oracle.h"

using scripted::Line;

namespace {

struct Reception {
    int kind;
    long room;  // of the buffer
    long size;  // of what one reception or round takes
    int attempts;
    const char* terminator;
    char endCharacter;
    std::string already;
};

struct Sighting {
    int result = 0;
    std::string text;
    bool processEnd = false;
    std::vector<std::string> transcript;
    long now = 0;
};

const faults::Description kPlain = {"", {0, 2400, 0, 8, 0, 0, 1, 'S'}, {}};

void Script(fuzz::Input input) {
    Line& line = Line::Here();
    line.Reset();
    long at = 0;
    while (!input.Empty()) {
        const int kind = input.Byte();
        at += kind % 4 == 0 ? input.Byte() * 16 : kind % 4;
        if (kind >= 0xf0) {
            line.SignalWithoutData(at);
        } else if (kind >= 0xe8) {
            line.FailCall(8 + kind % 8, static_cast<scripted::PortFault>(input.Below(5)));
        } else {
            line.Arrive(at, input.Text(static_cast<std::size_t>(1 + kind / 4)));
        }
    }
}

Sighting ByTheRules(const Reception& reception, const fuzz::Input& input) {
    Script(input);
    Sighting sighting;
    {
        faults::Balance balance(kPlain, Line::Here());
        balance.OpenAndClear();
        try {
            if (reception.kind == 0) {
                sighting.result = balance.Receive(sighting.text, reception.size, reception.attempts,
                                                  reception.terminator)
                                      ? 1
                                      : 0;
            } else {
                sighting.text = reception.already;
                sighting.result =
                    balance.ReceiveAll(sighting.text, static_cast<std::size_t>(reception.room) - 1,
                                       reception.size, reception.endCharacter)
                        ? 1
                        : 0;
            }
        } catch (const faults::ProcessEnd&) {
            sighting.processEnd = true;
        }
        sighting.now = Line::Here().Now();
    }
    sighting.transcript = Line::Here().Transcript();
    return sighting;
}

Sighting ByTheLibrary(const Reception& reception, const fuzz::Input& input) {
    constexpr std::size_t kGuard = 32;
    constexpr char kMark = 'Z';
    Script(input);
    Sighting sighting;
    const auto size = static_cast<std::size_t>(reception.room);
    std::vector<char> buffer(size + kGuard, kMark);
    {
        const scripted::TraceCapture capture;
        CSerialObject serial;
        const auto act = [&] {
            serial.OpenCommPort(0, 'S');
            serial.SetCommConfig(2400, 0, 8, 0, 0, 1);
            if (serial.ClearErrorsAndBuffers() == 0) {
                serial.CloseCommPort();
                return;
            }
            if (reception.kind == 0) {
                sighting.result = serial.ReceiveAnswer(buffer.data(), reception.size,
                                                       reception.attempts, reception.terminator);
            } else {
                std::memset(buffer.data(), 0, size);
                std::memcpy(buffer.data(), reception.already.data(), reception.already.size());
                sighting.result = serial.ReceiveAllAnswerWithin(
                    buffer.data(), reception.room, reception.size, reception.endCharacter);
            }
        };
        sighting.processEnd = fuzz::LineOfProcessEnd(act).has_value();
        sighting.now = Line::Here().Now();
    }
    sighting.transcript = Line::Here().Transcript();
    sighting.text = std::string(buffer.data(), strnlen(buffer.data(), size));
    fuzz::Require(std::string(buffer.data() + size, kGuard) == std::string(kGuard, kMark),
                  "the bytes behind the buffer stay");
    return sighting;
}

bool HasDirective(const std::vector<std::string>& transcript) {
    for (const std::string& text : transcript)
        if (text.find('%') != std::string::npos) return true;
    return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const char* const kTerminators[] = {nullptr, "\r\n", "\n", "", "AB"};
    if (size > 600) return 0;
    fuzz::Input input(data, size);
    Reception reception{};
    reception.kind = input.Below(2);
    reception.room = 2 + input.Below(100);
    reception.size = reception.room;
    reception.attempts = input.Below(6) - 1;
    reception.terminator = kTerminators[input.Below(5)];
    reception.endCharacter = input.Coin() ? '\n' : 'A';
    reception.already = std::string(static_cast<std::size_t>(input.Below(4) % reception.room), 'x');
    if (reception.kind == 0) reception.already.clear();
    if (reception.kind == 1) reception.size = 1 + input.Below(80);

    const Sighting rules = ByTheRules(reception, input);
    const Sighting library = ByTheLibrary(reception, input);
    fuzz::Require(rules.processEnd == library.processEnd, "the process ends where it has to");
    fuzz::Require(rules.now == library.now, "it takes the time that it has to");
    if (!HasDirective(rules.transcript))
        fuzz::Require(rules.transcript == library.transcript, "the same calls and traces");
    if (rules.processEnd) return 0;
    fuzz::Require(rules.result == library.result, "the same result");
    if (library.result != 0) fuzz::Require(rules.text == library.text, "the same answer");
    const long most = std::max(1, reception.attempts) * 2030L;
    if (reception.kind == 0) fuzz::Require(library.now <= most, "within two time-outs an attempt");
    return 0;
}
