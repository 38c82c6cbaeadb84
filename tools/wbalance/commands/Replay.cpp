#include "Replay.h"

#include <QtCore/QDateTime>
#include <memory>

#include "Record.h"
#include "ToolError.h"
#include "output/MeasurementFormat.h"
#include "output/Stream.h"
#include "process/Recorder.h"

namespace tool {
namespace {

constexpr char kExamples[] =
    "Examples:\n"
    "  wbalance weigh -d radwag -p 3 --usb --record trouble.record\n"
    "  wbalance replay trouble.record\n"
    "  wbalance replay trouble.record --json\n"
    "\n"
    "Reads the recorded answers again and says what each weighing means. No port is opened. The\n"
    "exit code is that of the last weighing.\n";

struct Options {
    std::string path;
    bool json = false;
    bool csv = false;
};

WallTime StartOf(const record::Record& record) {
    const QDateTime date =
        QDateTime::fromString(QString::fromStdString(record.header.date), Qt::ISODateWithMs);
    return WallTime{std::chrono::milliseconds(date.isValid() ? date.toMSecsSinceEpoch() : 0)};
}

ExitCode Run(const Options& options) {
    const record::Record record = record::Read(options.path);
    const DriverInfo& driver = FindDriver(record.header.driver);
    const auto weighings = WeighingsIn(record);
    if (weighings.empty())
        throw ToolError(ExitCode::Usage, options.path + ": no weighing is in this record");
    const Format format = options.json ? Format::Json : options.csv ? Format::Csv : Format::Text;
    if (format == Format::Csv) PrintLine(CsvHeader());
    ExitCode code = ExitCode::Done;
    for (const auto& weighing : weighings) {
        LabelledMeasurement labelled{driver.name, record.header.port, "", "",
                                     Measure(driver, weighing)};
        labelled.measurement.time += StartOf(record).time_since_epoch();
        PrintLine(Formatted(labelled, format));
        code = CodeFor(labelled.measurement.reading.meaning);
    }
    return code;
}

}  // namespace

void AddReplay(arguments::Command application, ExitCode& exitCode) {
    const auto command = application.AddSubcommand("replay", "Read the answers of a record again");
    command.Footer(kExamples);
    const auto options = std::make_shared<Options>();
    command.AddOption("FILE", options->path, "what --record has written").TypeName("").Required();
    const auto json = command.AddFlag("--json", options->json, "one JSON object a line");
    command.AddFlag("--csv", options->csv, "comma-separated values with a header line")
        .Excludes(json);
    command.Callback([options, &exitCode] { exitCode = Run(*options); });
}

}  // namespace tool
