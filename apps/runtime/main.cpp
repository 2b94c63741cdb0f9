#include "apps/runtime/headlessrun.h"
#include "apps/runtime/runtimeoptions.h"
#include "apps/runtime/runtimewindow.h"
#include "apps/support/program.h"
#include "host/runtime/livesystem.h"
#include "host/runtime/sourcerecorder.h"
#include "host/scripting/scripttrust.h"

#include <QApplication>
#include <QTextStream>
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

int runWindow(LiveSystem& system, const RuntimeOptions& options, const QString& pageName)
{
    RuntimeWindow window(system, options); // it hears what the page's scripts ask for when it is opened
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
    if (!isHeadless && !options->isBenchmark)
        return runWindow(live, *options, pageName);
    printScripts(live.scripts());
    const auto page = live.openPage(pageName);
    if (!page)
        return failed; // told already
    if (options->isBenchmark)
        return HeadlessRun(live, *options).runBenchmark(**page);
    QTextStream(stdout) << QStringLiteral("no display: the page is drawn off screen\n");
    if (live.hasUntrustedScripts()) {
        complain(
            QStringLiteral("the page's scripts don't run: %1 is not trusted (--trust)").arg(live.project().folder));
    }
    return HeadlessRun(live, *options).run(**page);
}
