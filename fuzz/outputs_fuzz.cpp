// Whatever an instrument sends, every output of the program `wbalance` is text of one line without
// controls, is understood by who reads its format, and a record of it replays to the same.

#include <sys/mman.h>
#include <unistd.h>

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QString>

#include "AnyReport.h"
#include "OutsideText.h"
#include "doctor/Explanation.h"
#include "monitor/Picture.h"
#include "output/MeasurementFormat.h"
#include "process/Recorder.h"
#include "readings/Confirmation.h"
#include "readings/Fields.h"

namespace {

constexpr int kJsonMembers = 10;
constexpr std::size_t kCsvColumns = 8;

bool IsControl(uint character) {
    return character < 0x20 || (character >= 0x7f && character <= 0x9f) || character == 0x2028 ||
           character == 0x2029 || (character >= 0x202a && character <= 0x202e) ||
           (character >= 0x2066 && character <= 0x2069);
}

void RequireALine(const std::string& line, const std::string& what) {
    const QString text = QString::fromStdString(line);
    fuzz::Require(text.toStdString() == line, what + " is UTF-8");
    for (const uint character : text.toUcs4())
        fuzz::Require(!IsControl(character), what + " has no controls");
}

void RequireJson(const std::string& line, const tool::Measurement& measurement) {
    const auto object = QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
    fuzz::Require(object.size() == kJsonMembers, "JSON has its members");
    fuzz::Require(object["answer"].toString().toLatin1().toStdString() == measurement.answer,
                  "JSON has every byte of the answer");
    fuzz::Require(object["value"].isNull() != measurement.reading.IsWeight(),
                  "JSON has a value where there is a weight");
}

/// The fields of a line as RFC 4180 has them.
std::vector<std::string> FieldsOf(const std::string& line) {
    std::vector<std::string> fields(1);
    bool quoted = false;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '"' && quoted && i + 1 < line.size() && line[i + 1] == '"') {
            fields.back() += line[i++];
        } else if (line[i] == '"') {
            quoted = !quoted;
        } else if (line[i] == ',' && !quoted) {
            fields.emplace_back();
        } else {
            fields.back() += line[i];
        }
    }
    fuzz::Require(!quoted, "CSV closes its quotation marks");
    return fields;
}

bool IsFormula(const std::string& field) {
    return !field.empty() && std::string("=+-@\t\r").find(field[0]) != std::string::npos &&
           !tool::IsNumber(field);
}

void RequireCsv(const std::string& line, const tool::Measurement& measurement) {
    const auto fields = FieldsOf(line);
    fuzz::Require(fields.size() == kCsvColumns, "CSV has its columns");
    for (const std::string& field : fields)
        fuzz::Require(!IsFormula(field), "CSV has no formula");
    const std::string& answer = fields.back();
    const bool defused = !answer.empty() && answer[0] == '\'' && measurement.answer[0] != '\'';
    fuzz::Require(record::Unescaped(answer.substr(defused ? 1 : 0)) == measurement.answer,
                  "CSV has every byte of the answer");
}

void RequireFormats(const tool::LabelledMeasurement& labelled) {
    for (const tool::Format& format : tool::Formats())
        RequireALine(format.line(labelled), format.title);
    RequireJson(tool::FormatNamed("json").line(labelled), labelled.measurement);
    RequireCsv(tool::FormatNamed("csv").line(labelled), labelled.measurement);
}

void RequirePicture(const tool::LabelledMeasurement& labelled, const std::string& lost,
                    tool::ScreenSize size) {
    tool::DisplayedBalance balance;
    balance.name = outside::Printable(labelled.port);
    balance.reading = labelled.measurement.reading;
    balance.received = true;
    balance.lost = lost;
    for (const std::string& line : PictureOf({balance}, size, balance.receivedAt))
        RequireALine(line, "the live display");
}

void RequireSentences(const tool::DriverInfo& driver, const tool::Report& report,
                      const tool::Measurement& measurement) {
    RequireALine(SentenceFor(measurement.reading), "a sentence");
    RequireALine(outside::Quoted(measurement.answer), "a quotation");
    for (const auto& [operation, info] : driver.operations)
        RequireALine(Confirm(driver, operation, report).sentence, "a confirmation");
    if (measurement.answer.empty()) return;
    RequireALine(SentenceFor(ExplainAnswer(driver, driver.line, "S\r\n", measurement)),
                 "a diagnosis");
}

void RequireTrace(const tool::Report& report) {
    for (const tool::TraceText& traced : report.trace) {
        std::string shown = outside::PrintableLines(traced.text);
        for (std::size_t at = 0; (at = shown.find("\r\n", at)) != std::string::npos;)
            shown.erase(at, 1);
        for (std::size_t start = 0, end = 0; end != std::string::npos; start = end + 1) {
            end = shown.find('\n', start);
            RequireALine(shown.substr(start, end - start), "the trace");
        }
    }
}

bool Same(const tool::Measurement& one, const tool::Measurement& other) {
    return one.answer == other.answer && one.reading.meaning == other.reading.meaning &&
           one.reading.stability == other.reading.stability &&
           one.reading.digits == other.reading.digits && one.reading.unit == other.reading.unit &&
           one.reading.remark == other.reading.remark;
}

void RequireReplay(const tool::DriverInfo& driver, const tool::Report& report,
                   const tool::Measurement& measurement) {
    const int file = memfd_create("record", 0);
    const std::string path = "/proc/self/fd/" + std::to_string(file);
    tool::Recorder(path, {&driver, {}, driver.line, 1}).Add(report.request, report);
    const record::Record record = record::Read(path);
    close(file);
    const auto weighings = tool::WeighingsIn(record);
    fuzz::Require(weighings.size() == 1, "a record has its weighing");
    fuzz::Require(Same(Measure(driver, weighings[0]), measurement), "a record replays to the same");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const tool::DriverInfo& driver = fuzz::AnyDriver(input);
    const std::string port = input.Text(static_cast<std::size_t>(input.Below(20)));
    const std::string message = input.Text(static_cast<std::size_t>(input.Below(20)));
    const tool::Report report = fuzz::AnyReport(input, driver);
    const tool::Measurement measurement = Measure(driver, report);

    RequireFormats({driver.name, port, "", "", measurement});
    RequireALine(tool::Formats().front().line({driver.name, port, "lost", message, {}}),
                 "a notice");
    for (const tool::ScreenSize screen : {tool::ScreenSize{80, 24}, tool::ScreenSize{20, 5}}) {
        RequirePicture({driver.name, port, "", "", measurement}, "", screen);
        RequirePicture({driver.name, port, "", "", measurement}, message, screen);
    }
    RequireSentences(driver, report, measurement);
    RequireTrace(report);
    RequireReplay(driver, report, measurement);
    return 0;
}
