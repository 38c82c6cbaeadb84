#include "MeasurementFormat.h"

#include <QtCore/QDateTime>
#include <algorithm>
#include <stdexcept>

#include "Csv.h"
#include "Json.h"
#include "OutsideText.h"
#include "Record.h"

namespace tool {
namespace {

std::string WeightText(const Reading& reading) {
    std::string text = reading.digits;
    if (!reading.unit.empty()) text += " " + outside::Printable(reading.unit);
    if (reading.stability == Stability::Dynamic) text += "  dynamic";
    return text;
}

std::string StatusOf(const LabelledMeasurement& labelled) {
    return labelled.notice.empty() ? WordFor(labelled.measurement.reading.meaning)
                                   : labelled.notice;
}

std::string MessageOf(const LabelledMeasurement& labelled) {
    const Reading& reading = labelled.measurement.reading;
    if (!labelled.notice.empty()) return labelled.message;
    return reading.IsWeight() ? reading.remark : SentenceFor(reading);
}

std::string Text(const LabelledMeasurement& labelled) {
    const Reading& reading = labelled.measurement.reading;
    if (!labelled.notice.empty())
        return labelled.notice + ": " + outside::Printable(labelled.message);
    return reading.IsWeight() ? WeightText(reading) : SentenceFor(reading);
}

std::string Json(const LabelledMeasurement& labelled) {
    const Reading& reading = labelled.measurement.reading;
    QJsonObject object;
    object["time"] = QString::fromStdString(TimeText(labelled.measurement.time));
    object["driver"] = JsonText(labelled.driver);
    object["port"] = JsonText(labelled.port);
    object["status"] = QString::fromStdString(StatusOf(labelled));
    object["value"] = reading.IsWeight() ? QJsonValue(reading.Value()) : QJsonValue();
    object["digits"] = JsonBytes(reading.digits);
    object["unit"] = JsonBytes(reading.unit);
    object["stability"] = QString::fromStdString(WordFor(reading.stability));
    object["answer"] = JsonBytes(labelled.measurement.answer);
    object["message"] = JsonText(MessageOf(labelled));
    return JsonLine(object);
}

std::string Csv(const LabelledMeasurement& labelled) {
    const Reading& reading = labelled.measurement.reading;
    return TimeText(labelled.measurement.time) + "," + labelled.driver + "," +
           CsvField(labelled.port) + "," + StatusOf(labelled) + "," +
           (reading.IsWeight() ? reading.digits : "") + "," + CsvField(reading.unit) + "," +
           WordFor(reading.stability) + "," +
           CsvField(record::Escaped(labelled.measurement.answer));
}

}  // namespace

const std::vector<Format>& Formats() {
    static const std::vector<Format> formats = {
        {"text", "text", "", Text, "", ""},
        {"json", "JSON", "one JSON object per line", Json, "", "{", true},
        {"csv", "CSV", "comma-separated values with a header line", Csv,
         "time,driver,port,status,value,unit,stability,answer", ""}};
    return formats;
}

const Format& FormatNamed(const std::string& name) {
    const auto& formats = Formats();
    const auto format = std::find_if(formats.begin(), formats.end(),
                                     [&](const Format& one) { return one.name == name; });
    if (format == formats.end()) throw std::out_of_range("no output format \"" + name + "\"");
    return *format;
}

const Format& LogFormatFor(const Format& shown) {
    return shown.IsForPeople() ? FormatNamed("csv") : shown;
}

std::string TimeText(WallTime time) {
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(milliseconds);
    return local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODateWithMs).toStdString();
}

}  // namespace tool
