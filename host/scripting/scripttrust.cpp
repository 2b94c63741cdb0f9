#include "host/scripting/scripttrust.h"

#include <QFileInfo>
#include <QSettings>
#include <QUrl>

namespace {

constexpr const char* group = "ScriptFolders";

// A path in one piece: slashes would make groups of it.
QString keyOf(const QString& folder)
{
    const QString path = QFileInfo(folder).canonicalFilePath();
    return path.isEmpty() ? QString() : QString::fromLatin1(QUrl::toPercentEncoding(path));
}

} // namespace

ScriptTrust::Answer ScriptTrust::answerFor(const QString& folder)
{
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Korvane"), QStringLiteral("trust"));
    settings.beginGroup(QLatin1String(group));
    const QString key = keyOf(folder);
    if (key.isEmpty() || !settings.contains(key))
        return Answer::NotAsked;
    // A damaged answer is no yes, which QVariant would make of any text.
    return settings.value(key).toString() == QLatin1String("true") ? Answer::Trusted : Answer::Refused;
}

bool ScriptTrust::setAnswer(const QString& folder, Answer answer)
{
    QSettings settings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("Korvane"), QStringLiteral("trust"));
    settings.beginGroup(QLatin1String(group));
    const QString key = keyOf(folder);
    if (key.isEmpty())
        return false;
    if (answer == Answer::NotAsked)
        settings.remove(key);
    else
        settings.setValue(key, answer == Answer::Trusted);
    settings.sync();
    return settings.status() == QSettings::NoError;
}
