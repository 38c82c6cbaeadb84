#include "Json.h"

#include <QtCore/QJsonDocument>
#include <cstdio>

#include "OutsideText.h"

namespace tool {
namespace {

QString EscapeFor(const QString& character) {
    QString escapes;
    for (const QChar unit : character) {
        char escape[8];
        std::snprintf(escape, sizeof escape, "\\u%04x", unit.unicode());
        escapes += escape;
    }
    return escapes;
}

}  // namespace

QString JsonText(const std::string& text) {
    return QString::fromStdString(outside::Printable(text));
}

QString JsonBytes(const std::string& bytes) {
    return QString::fromLatin1(bytes.data(), static_cast<int>(bytes.size()));
}

std::string JsonLine(const QJsonObject& object) {
    QString line;
    const auto document = QJsonDocument(object).toJson(QJsonDocument::Compact);
    for (const uint code : QString::fromUtf8(document).toUcs4()) {
        const QString character = QString::fromUcs4(&code, 1);
        line += outside::IsPrintable(code) ? character : EscapeFor(character);
    }
    return line.toStdString();
}

}  // namespace tool
