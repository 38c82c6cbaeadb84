// What the prescribed schedule of each operation is: the same dialogue on a virtual clock, where
// nothing but pauses and waits takes time. One JSON object a line.

#include <algorithm>
#include <cstdio>

#include "Line.h"
#include "Operations.h"

int main() {
    scripted::Line& line = scripted::Line::Here();
    for (const bench::Operation& operation : bench::Operations()) {
        line.Reset();
        for (const auto& answer : operation.answers) {
            line.AlwaysAnswer(answer.command, {{answer.bytes, 0}});
        }
        int result = 0;
        long begin = 0;
        {
            const scripted::TraceCapture quiet;
            const auto balance = operation.make();
            operation.prepare(*balance);
            line.Forget();
            begin = line.Now();
            result = operation.run(*balance);
        }
        const auto transcript = line.Transcript();
        const auto count = [&transcript](const char* mark) {
            return std::count_if(
                transcript.begin(), transcript.end(),
                [mark](const std::string& call) { return call.find(mark) != std::string::npos; });
        };
        std::printf(
            "{\"driver\":\"%s\",\"operation\":\"%s\",\"result\":%d,\"schedule_ms\":%ld,"
            "\"commands\":%zu,\"pauses\":%zu,\"silences\":%ld,\"settings\":%ld}\n",
            operation.driver.c_str(), operation.name.c_str(), result, line.Now() - begin,
            line.Sent().size(), line.Sleeps().size(), static_cast<long>(count(": silence")),
            static_cast<long>(count("setBaudRate")));
    }
    return 0;
}
