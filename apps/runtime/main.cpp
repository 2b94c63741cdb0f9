#include "apps/runtime/headlessrun.h"
#include "apps/runtime/runtimeoptions.h"
#include "apps/runtime/runtimewindow.h"
#include "host/runtime/livesystem.h"
#include "host/runtime/sourcerecorder.h"

#include <QApplication>
#include <QDir>
#include <QLocale>
#include <QTextStream>
#include <QTranslator>

#include <cstring>

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

void complain(const QString& text)
{
    QTextStream(stderr) << QStringLiteral("korvane-runtime: %1\n").arg(text);
}

// Without a display the runtime draws off screen, instead of failing as Qt would.
bool hasDisplay()
{
#ifdef Q_OS_UNIX
    return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
           !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
#else
    return true;
#endif
}

// Beside an installed program, or in the folder that it was built in.
void loadTranslation(QTranslator& translator)
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

int record(const LiveSystem::Options& systemOptions, const RuntimeOptions& options)
{
    const auto rows = recordSource(systemOptions, options.record, *options.after);
    if (!rows) {
        complain(rows.error());
        return failed;
    }
    QTextStream(stdout) << QStringLiteral("%1: %2 samples recorded\n").arg(options.record).arg(*rows);
    return 0;
}

int runWindow(LiveSystem& system, const RuntimeOptions& options, Page& page)
{
    RuntimeWindow window(system, options);
    window.showPage(page);
    window.show();
    system.start();
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    const bool isHeadless = !hasDisplay();
    if (isHeadless)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QGuiApplication::setHighDpiScaleFactorRoundingPolicy(Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
    QApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("korvane-runtime"));
    QCoreApplication::setOrganizationName(QStringLiteral("Korvane"));
    QCoreApplication::setApplicationVersion(QStringLiteral(KORVANE_VERSION));

    QTranslator translator;
    loadTranslation(translator);

    const auto options = RuntimeOptions::parse(QCoreApplication::arguments());
    if (!options) {
        complain(options.error());
        return wrongUsage;
    }
    LiveSystem::Options systemOptions;
    systemOptions.folder = options->project;
    systemOptions.source = options->source;
    systemOptions.isStored = options->isStored;
    if (!options->record.isEmpty())
        return record(systemOptions, *options);
    const auto system = LiveSystem::open(systemOptions);
    if (!system) {
        complain(system.error());
        return failed;
    }
    LiveSystem& live = **system;
    for (const QString& problem : live.problems())
        complain(problem);
    QObject::connect(&live, &LiveSystem::problemFound, &complain);

    const auto page = live.openPage(options->page.isEmpty() ? live.project().startPage : options->page);
    if (!page)
        return failed; // told already
    if (options->isBenchmark)
        return HeadlessRun(live, *options).runBenchmark(**page);
    if (!isHeadless)
        return runWindow(live, *options, **page);
    QTextStream(stdout) << QStringLiteral("no display: the page is drawn off screen\n");
    return HeadlessRun(live, *options).run(**page);
}
