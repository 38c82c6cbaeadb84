// What the prescribed schedule of each operation is: the same dialogue on a virtual clock, where
// nothing but pauses and waits takes time, and the calls on the port that it consists of. One JSON
// object a line.

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <cstdio>

#include "Line.h"
#include "Operations.h"

namespace {

bool StartsWith(const std::string& text, const char* start) {
    return text.rfind(start, 0) == 0;
}

/// The calls on an open port as the transcript has them, but what is written as hexadecimal bytes.
QJsonArray CallsOf(const scripted::Line& line) {
    const std::vector<std::string> sent = line.Sent();
    auto command = sent.begin();
    QJsonArray calls;
    for (const std::string& call : line.Transcript()) {
        if (StartsWith(call, "write ")) {
            calls.append("write " +
                         QString::fromLatin1(QByteArray::fromStdString(*command++).toHex()));
        } else if (!StartsWith(call, "trace ") && !StartsWith(call, "open ")) {
            calls.append(QString::fromStdString(call));
        }
    }
    return calls;
}

}  // namespace

int main() {
    scripted::Line& line = scripted::Line::Here();
    for (const bench::Operation& operation : bench::Operations()) {
        line.Reset();
        for (const auto& answer : operation.answers) {
            line.AlwaysAnswer(answer.command, {{answer.bytes, 0}});
        }
        int result = 0;
        long begin = 0;
        long end = 0;
        QJsonArray preparation;
        QJsonArray calls;
        {
            const scripted::TraceCapture quiet;
            const auto balance = operation.make();
            operation.prepare(*balance);
            preparation = CallsOf(line);
            line.Forget();
            begin = line.Now();
            result = operation.run(*balance);
            end = line.Now();
            calls = CallsOf(line);
        }
        int silences = 0;
        for (const auto& call : calls)
            silences += call.toString().endsWith(": silence") ? 1 : 0;
        const QJsonObject schedule{{"driver", QString::fromStdString(operation.driver)},
                                   {"operation", QString::fromStdString(operation.name)},
                                   {"result", result},
                                   {"schedule_ms", static_cast<int>(end - begin)},
                                   {"commands", static_cast<int>(line.Sent().size())},
                                   {"pauses", static_cast<int>(line.Sleeps().size())},
                                   {"silences", silences},
                                   {"preparation", preparation},
                                   {"calls", calls}};
        std::puts(QJsonDocument(schedule).toJson(QJsonDocument::Compact).constData());
    }
    return 0;
}
