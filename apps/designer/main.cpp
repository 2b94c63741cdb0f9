#include "apps/designer/designeroptions.h"
#include "apps/designer/designerwindow.h"
#include "apps/support/program.h"
#include "host/design/designdocument.h"
#include "host/scripting/scripttrust.h"

#include <QApplication>
#include <QTranslator>

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

int takePicture(DesignerWindow& window, const QString& fileName)
{
    QCoreApplication::processEvents(); // what lays the window out
    if (window.grab().save(fileName))
        return 0;
    Program::complain(QStringLiteral("%1: can't be written").arg(fileName));
    return failed;
}

} // namespace

int main(int argc, char** argv)
{
    const bool isHeadless = !Program::hasDisplay();
    Program::prepare(isHeadless);
    QApplication app(argc, argv);
    Program::name(QStringLiteral("korvane-designer"), QStringLiteral(KORVANE_VERSION));
    QTranslator translator;
    Program::loadTranslation(translator);

    const auto options = DesignerOptions::parse(QCoreApplication::arguments());
    if (!options) {
        Program::complain(options.error());
        return wrongUsage;
    }
    const auto system = DesignSystem::open(options->project);
    if (!system) {
        Program::complain(system.error());
        return failed;
    }
    for (const QString& problem : (*system)->problems())
        Program::complain(problem);
    (*system)->scripts().setEnabled(options->areScriptsTrusted ||
                                    ScriptTrust::answerFor(options->project) == ScriptTrust::Answer::Trusted);
    if (isHeadless && options->screenshot.isEmpty()) {
        Program::complain(
            QStringLiteral("there is no display to edit on; --screenshot FILE draws the window off screen"));
        return failed;
    }
    DesignerWindow window(**system);
    const auto opened = window.openPage(options->page.isEmpty() ? (*system)->project().startPage : options->page);
    if (!opened) {
        Program::complain(opened.error());
        return failed;
    }
    if (!options->object.isEmpty()) {
        Shape* shape = window.document()->canvas().findShape(options->object);
        if (!shape)
            Program::complain(QStringLiteral("the page has no shape \"%1\"").arg(options->object));
        window.select(shape);
    }
    window.show();
    return options->screenshot.isEmpty() ? QApplication::exec() : takePicture(window, options->screenshot);
}
