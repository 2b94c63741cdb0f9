#include "apps/runtime/headlessrun.h"
#include "apps/runtime/runtimeoptions.h"
#include "apps/runtime/runtimewindow.h"
#include "apps/support/program.h"
#include "host/runtime/livesystem.h"
#include "host/runtime/sourcerecorder.h"
#include "host/scripting/scripttrust.h"

#include <QApplication>
#include <QTextStream>
#include <QTimer>
#include <QTranslator>

namespace {

using Program::complain;

constexpr int failed = 1;
constexpr int wrongUsage = 2;

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

// What scripts print goes where a program's own prints go.
void printScripts(ScriptEngine& scripts)
{
    QObject::connect(&scripts, &ScriptEngine::stdOut, [](const QString& text) { QTextStream(stdout) << text; });
    QObject::connect(&scripts, &ScriptEngine::logged, [](ScriptEngine::Severity severity, const QString& text) {
        if (severity != ScriptEngine::Severity::Error) // errors are told as problems
            QTextStream(stdout) << text << '\n';
    });
}

int runHeadless(LiveSystem& system, const RuntimeOptions& options, const QString& pageName)
{
    if (!options.isBenchmark) {
        QTextStream(stdout) << QStringLiteral("no display: the page is drawn off screen\n");
        printScripts(system.scripts()); // before the page opens, which runs scripts already
    }
    const auto page = system.openPage(pageName);
    if (!page)
        return failed; // told already
    if (options.isBenchmark)
        return HeadlessRun(system, options).runBenchmark(**page);
    if (system.hasUntrustedScripts())
        complain(
            QStringLiteral("the page's scripts don't run: %1 is not trusted (--trust)").arg(system.project().folder));
    return HeadlessRun(system, options).run(**page);
}

// The window is there before the page opens: what the page's scripts print then is shown, and what they ask for done.
int runWindow(LiveSystem& system, const RuntimeOptions& options, const QString& pageName)
{
    RuntimeWindow window(system, options);
    if (system.project().isSecured) {
        window.show();
        system.start();
        QTimer::singleShot(0, &window, [&window, pageName] { window.beginSession(pageName); });
        return QApplication::exec();
    }
    const auto page = system.openPage(pageName);
    if (!page)
        return failed; // told already
    window.showPage(**page);
    window.show();
    system.start();
    return QApplication::exec();
}

} // namespace

int main(int argc, char** argv)
{
    const bool isHeadless = !Program::hasDisplay();
    Program::prepare(isHeadless);
    QApplication app(argc, argv);
    Program::name(QStringLiteral("korvane-runtime"), QStringLiteral(KORVANE_VERSION));
    QTranslator translator;
    Program::loadTranslation(translator);

    const auto options = RuntimeOptions::parse(QCoreApplication::arguments());
    if (!options) {
        complain(options.error());
        return wrongUsage;
    }
    LiveSystem::Options systemOptions;
    systemOptions.folder = options->project;
    systemOptions.source = options->source;
    systemOptions.isStored = options->isStored;
    systemOptions.areScriptsTrusted =
        options->areScriptsTrusted || ScriptTrust::answerFor(options->project) == ScriptTrust::Answer::Trusted;
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

    const QString pageName = options->page.isEmpty() ? live.project().startPage : options->page;
    return isHeadless || options->isBenchmark ? runHeadless(live, *options, pageName)
                                              : runWindow(live, *options, pageName);
}
