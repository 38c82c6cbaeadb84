#include "Replay.h"

#include <QtCore/QDateTime>
#include <memory>

#include "ExampleInstruments.h"
#include "FormatOptions.h"
#include "Record.h"
#include "ToolError.h"
#include "output/Stream.h"
#include "process/Recorder.h"

namespace tool {
namespace {

constexpr char kExamples[] = R"(Examples:
  wbalance weigh -d {other} -p 3 --usb --record trouble.record
  wbalance replay trouble.record
  wbalance replay trouble.record --json

Reads the recorded answers again and says what each weighing means. No port is opened. The
exit code is that of the last weighing.
)";

struct Options {
    std::string path;
    FormatOptions format;
};

// The years of which a clock of nanoseconds can hold every moment, and a record's hundred years
// more.
constexpr int kFirstYear = 1970;
constexpr int kLastYear = 2150;

WallTime StartOf(const record::Record& record) {
    const std::string& text = record.header.date;
    if (text.empty()) return {};
    const QDateTime date = QDateTime::fromString(QString::fromStdString(text), Qt::ISODateWithMs);
    if (!date.isValid() || date.date().year() < kFirstYear || date.date().year() > kLastYear) {
        throw ToolError(ExitCode::Usage, "the record's date \"" + text +
                                             "\" is none from 1970 to 2150 such as " +
                                             "2026-11-21T03:12:00.000+01:00");
    }
    return WallTime{std::chrono::milliseconds(date.toMSecsSinceEpoch())};
}

ExitCode Run(const Options& options) {
    const record::Record record = record::Read(options.path);
    const DriverInfo& driver = FindDriver(record.header.driver);
    const WallTime start = StartOf(record);
    const auto weighings = WeighingsIn(record);
    if (weighings.empty())
        throw ToolError(ExitCode::Usage, options.path + ": no weighing is in this record");
    const Format& format = options.format.Chosen();
    if (!format.header.empty()) PrintLine(format.header);
    ExitCode code = ExitCode::Done;
    for (const auto& weighing : weighings) {
        LabelledMeasurement labelled{driver.name, record.header.port, "", "",
                                     Measure(driver, weighing)};
        labelled.measurement.time += start.time_since_epoch();
        PrintLine(format.line(labelled));
        code = CodeFor(labelled.measurement.reading.meaning);
    }
    return code;
}

}  // namespace

void AddReplay(arguments::Command application, ExitCode& exitCode) {
    const auto command = application.AddSubcommand("replay", "Read the answers of a record again");
    command.Footer(texts::WithExamples(kExamples));
    const auto options = std::make_shared<Options>();
    command.AddOption("FILE", options->path, "what --record has written").TypeName("").Required();
    options->format.AddTo(command, "");
    command.Callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace tool
