#include "MeasurementFormat.h"

#include <QtCore/QDateTime>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include "Record.h"

namespace tool {
namespace {

std::string WeightText(const Reading& reading) {
    std::string text = reading.digits;
    if (!reading.unit.empty()) text += " " + reading.unit;
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

std::string Json(const LabelledMeasurement& labelled) {
    const Reading& reading = labelled.measurement.reading;
    QJsonObject object;
    object["time"] = QString::fromStdString(TimeText(labelled.measurement.time));
    object["driver"] = QString::fromStdString(labelled.driver);
    object["port"] = QString::fromStdString(labelled.port);
    object["status"] = QString::fromStdString(StatusOf(labelled));
    object["value"] = reading.IsWeight() ? QJsonValue(reading.Value()) : QJsonValue();
    object["digits"] = QString::fromLatin1(reading.digits.c_str());
    object["unit"] = QString::fromLatin1(reading.unit.c_str());
    object["stability"] = QString::fromStdString(WordFor(reading.stability));
    object["answer"] = QString::fromLatin1(labelled.measurement.answer.c_str());
    object["message"] = QString::fromStdString(MessageOf(labelled));
    return QJsonDocument(object).toJson(QJsonDocument::Compact).toStdString();
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char character : text) {
        if (character == '"') quoted += '"';
        quoted += character;
    }
    return quoted + "\"";
}

std::string Csv(const LabelledMeasurement& labelled) {
    const Reading& reading = labelled.measurement.reading;
    return TimeText(labelled.measurement.time) + "," + labelled.driver + "," +
           Quoted(labelled.port) + "," + StatusOf(labelled) + "," +
           (reading.IsWeight() ? reading.digits : "") + "," + Quoted(reading.unit) + "," +
           WordFor(reading.stability) + "," + Quoted(record::Escaped(labelled.measurement.answer));
}

}  // namespace

std::string Formatted(const LabelledMeasurement& measurement, Format format) {
    const Reading& reading = measurement.measurement.reading;
    if (format == Format::Json) return Json(measurement);
    if (format == Format::Csv) return Csv(measurement);
    if (!measurement.notice.empty()) return measurement.notice + ": " + measurement.message;
    return reading.IsWeight() ? WeightText(reading) : SentenceFor(reading);
}

std::string CsvHeader() {
    return "time,driver,port,status,value,unit,stability,answer";
}

std::string TimeText(WallTime time) {
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(milliseconds);
    return local.toOffsetFromUtc(local.offsetFromUtc()).toString(Qt::ISODateWithMs).toStdString();
}

}  // namespace tool
