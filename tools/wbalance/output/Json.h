#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QString>
#include <string>

namespace tool {

/// A text from outside as the value of a member: what can't be shown is in it as Printable() writes
/// it, so that any text has a value.
QString JsonText(const std::string& text);

/// Bytes as the value of a member: one character for each byte, U+0000 to U+00FF.
QString JsonBytes(const std::string& bytes);

/// The object on one line, without its line end: UTF-8 in which JSON's own escapes (\u009b) stand
/// for every character that can't be shown.
std::string JsonLine(const QJsonObject& object);

}  // namespace tool
