#pragma once

#include <QJsonObject>
#include <QString>

/// What commands say.
namespace Output {

/// On the standard output, in UTF-8 whatever the user's locale.
void print(const QString& text);
void print(const QJsonObject& object);

/// Says on the standard error why a command failed; the exit code of one that did.
int failed(const QString& text);

} // namespace Output
