#include "platform/utility/settingpath.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

QString Korvane::getSettingPath(const QString& fileName, bool perUser, bool makeFolder)
{
    const QDir folder(perUser ? QStandardPaths::writableLocation(QStandardPaths::AppConfigLocation)
                              : QCoreApplication::applicationDirPath());
    if (makeFolder)
        folder.mkpath(QStringLiteral("."));
    return folder.filePath(fileName.isEmpty() ? QCoreApplication::applicationName() + QLatin1String(".ini") : fileName);
}
