#include "apps/support/program.h"

#include <QCoreApplication>
#include <QDir>
#include <QGuiApplication>
#include <QLocale>
#include <QTextStream>
#include <QTranslator>

bool Program::hasDisplay()
{
#ifdef Q_OS_UNIX
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

void Program::prepare(bool isHeadless)
{
    if (isHeadless)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

void Program::name(const QString& name, const QString& version)
{
    QCoreApplication::setApplicationName(name);
    QCoreApplication::setOrganizationName(QStringLiteral("Korvane"));
    QCoreApplication::setApplicationVersion(version);
}

// Beside an installed program, or in the folder that it was built in.
void Program::loadTranslation(QTranslator& translator)
{
    const QDir programs(QCoreApplication::applicationDirPath());
    for (const char* folder : {"../share/korvane/translations", "../translations"}) {
        if (translator.load(QLocale(), QStringLiteral("korvanescada"), QStringLiteral("_"),
                            programs.filePath(QString::fromLatin1(folder)))) {
            QCoreApplication::installTranslator(&translator);
            return;
        }
    }
}

void Program::complain(const QString& text)
{
    QTextStream(stderr) << QStringLiteral("%1: %2\n").arg(QCoreApplication::applicationName(), text);
}
