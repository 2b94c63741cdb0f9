#pragma once

#include <QJsonObject>
#include <QString>

/// What commands print on the standard output: UTF-8, whatever the user's locale.
namespace Output {

void print(const QString& text);
void print(const QJsonObject& object);

} // namespace Output
