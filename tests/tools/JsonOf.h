#pragma once

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <string>

/// The object that a line holds; an empty one where it holds none.
inline QJsonObject JsonOf(const std::string& line) {
    return QJsonDocument::fromJson(QByteArray::fromStdString(line)).object();
}

/// A member that is a text.
inline std::string TextIn(const std::string& line, const char* member) {
    return JsonOf(line)[member].toString().toStdString();
}
