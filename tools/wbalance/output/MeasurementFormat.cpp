#include "MeasurementFormat.h"

#include <QtCore/QDateTime>

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

std::string Formatted(const LabelledMeasurement& measurement, Format format) {
    const Reading& reading = measurement.measurement.reading;
    if (format == Format::Json) return Json(measurement);
    if (format == Format::Csv) return Csv(measurement);
    if (!measurement.notice.empty())
        return measurement.notice + ": " + outside::Printable(measurement.message);
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
