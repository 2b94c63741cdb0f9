// The runtime's window on pages with scripts: whether they run, what they do to the window, and where they print.

#include "apps/runtime/runtimewindow.h"
#include "host/canvas/canvasview.h"
#include "host/runtime/livesystem.h"
#include "host/scripting/scripttrust.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/ownsettings.h"
#include "tests/support/testproject.h"

#include <QAction>
#include <QDockWidget>
#include <QLayout>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTabBar>
#include <QTabWidget>
#include <QtTest>

using ScriptTrust::Answer;

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

QByteArray stored(int trigger, const QByteArray& script)
{
    return "{\"trigger\":" + QByteArray::number(trigger) + ",\"type\":1001,\"script\":\"" + script + "\"}";
}

/// A page of 400 by 200 with a script that runs when it opens, and a rectangle on its left half whose script defines
/// what a click does.
QByteArray page(const QByteArray& load, const QByteArray& click, const QByteArray& more = {})
{
    return "{\"format\":\"korvane-page\",\"version\":1,\"size\":[400,200],\"events\":[" + stored(6, load) +
           "],\"layers\":[{\"name\":\"a\",\"shapes\":[{\"class\":\"Rectangle\",\"name\":\"box\",\"place\":[0,0,200,200]"
           ","
           "\"properties\":{},\"events\":[" +
           stored(13, "def onClick():\\n\\t" + click) + more + "]}]}]}";
}

/// The window of a project with the page "main", in front.
struct Plant
{
    explicit Plant(const QByteArray& main, bool trusted = true) : isTrusted(trusted)
    {
        project.write("pages/main.pws", main);
        project.write("pages/other.pws", page("print('other opened')", "pages.close()"));
    }
    void start()
    {
        LiveSystem::Options systemOptions;
        systemOptions.folder = project.folder();
        systemOptions.areScriptsTrusted = isTrusted;
        systemOptions.isStored = false;
        auto opened = LiveSystem::open(systemOptions);
        if (!opened)
            qFatal("%s", qPrintable(opened.error()));
        system = std::move(*opened);
        options.isSilent = true;
        window = std::make_unique<RuntimeWindow>(*system, options);
        window->layout()->setSizeConstraint(QLayout::SetNoConstraint); // no hints to pass on to the screen
        openPage("main");
        window->show();
        window->activateWindow();
        if (!QTest::qWaitForWindowActive(window.get()))
            qFatal("the window does not come to the front");
    }
    void openPage(const char* name) const
    {
        const auto opened = system->openPage(text(name));
        if (!opened)
            qFatal("%s", qPrintable(opened.error()));
        window->showPage(**opened);
    }

    QTabWidget& tabs() const { return *window->findChild<QTabWidget*>(QStringLiteral("pages")); }
    QStringList openPages() const
    {
        QStringList names;
        for (int place = 0; place < tabs().count(); ++place)
            names.append(tabs().tabText(place));
        return names;
    }
    CanvasView& view() const { return *qobject_cast<CanvasView*>(tabs().currentWidget()); }
    QDockWidget& dock() const { return *window->findChild<QDockWidget*>(text("scripts")); }
    QPlainTextEdit& outputArea() const { return *dock().findChild<QPlainTextEdit*>(text("output")); }
    QString output() const { return outputArea().toPlainText(); }
    QFrame& trustBar() const { return *window->findChild<QFrame*>(text("trustBar")); }
    void answer(const char* button) const
    {
        QTest::mouseClick(trustBar().findChild<QPushButton*>(text(button)), Qt::LeftButton);
    }
    QAction& trustEntry() const
    {
        for (QAction* action : window->findChildren<QAction*>()) {
            if (action->text().remove(QLatin1Char('&')) == text("Run this project's scripts..."))
                return *action;
        }
        qFatal("no entry for trust");
    }
    void click(const QPointF& position) const
    {
        QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, view().renderer().transform().map(position).toPoint());
    }
    void clickBox() const { click({100, 100}); }
    /// Lets happen what scripts asked for.
    static void settle()
    {
        for (int turn = 0; turn < 3; ++turn)
            QCoreApplication::processEvents();
    }

    TestProject project;
    RuntimeOptions options;
    bool isTrusted;
    std::unique_ptr<LiveSystem> system;
    std::unique_ptr<RuntimeWindow> window;
};

} // namespace

class tst_RuntimeScripts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }
    void cleanup() { QDir(m_settings.path(text("Korvane"))).removeRecursively(); }

    void whatIsTrustedRuns()
    {
        Plant plant(page("print('opened')", "print('clicked', shape.name)"));
        plant.start();
        QVERIFY(!plant.trustBar().isVisible());
        QVERIFY(!plant.trustEntry().isVisible());
        QCOMPARE(plant.output(), text("opened\n"));
        plant.clickBox();
        QCOMPARE(plant.output(), text("opened\nclicked box\n"));
        QCOMPARE(plant.system->problems(), QStringList());
    }

    void whatIsNotTrustedDoesNotRunUntilTheUserSaysSo()
    {
        Plant plant(page("print('opened')", "print('clicked')",
                         "," + stored(8, "print('pressed')") + "," + stored(3, "print('hovered')") + "," +
                             stored(5, "print('typed')")),
                    false);
        plant.start();
        QVERIFY(plant.trustBar().isVisible());
        QVERIFY(plant.trustEntry().isVisible());
        plant.clickBox();
        QTest::mouseMove(plant.view().viewport(), plant.view().viewport()->rect().center());
        QTest::keyClick(&plant.view(), Qt::Key_A);
        QCOMPARE(plant.output(), QString());
        QCOMPARE(plant.system->problems(), QStringList());
        QVERIFY(ScriptTrust::answerFor(plant.project.folder()) == Answer::NotAsked);
        plant.answer("runScripts");
        QVERIFY(!plant.trustBar().isVisible());
        QVERIFY(!plant.trustEntry().isVisible());
        QVERIFY(ScriptTrust::answerFor(plant.project.folder()) == Answer::Trusted);
        QCOMPARE(plant.output(), text("opened\n"));
        plant.clickBox();
        QCOMPARE(plant.output(), text("opened\npressed\nclicked\n"));
        plant.openPage("other");
        QVERIFY(!plant.trustBar().isVisible());
        QVERIFY(plant.output().endsWith(text("other opened\n")));
    }

    void whoeverRefusesIsNotAskedAgain()
    {
        Plant plant(page("print('opened')", "print('clicked')"), false);
        plant.start();
        plant.answer("refuseScripts");
        QVERIFY(!plant.trustBar().isVisible());
        plant.clickBox();
        plant.openPage("other");
        QVERIFY(!plant.trustBar().isVisible());
        QCOMPARE(plant.output(), QString());
        plant.window.reset();
        plant.system.reset();
        plant.start(); // another run of the program
        QVERIFY(!plant.trustBar().isVisible());
        plant.trustEntry().trigger(); // by the menu
        QVERIFY(plant.trustBar().isVisible());
        QCOMPARE(plant.output(), QString());
        plant.answer("runScripts");
        QCOMPARE(plant.output(), text("opened\n"));
        QVERIFY(ScriptTrust::answerFor(plant.project.folder()) == Answer::Trusted);
    }

    void aRefusalThatCantBeKeptCountsForNow()
    {
        Plant plant(page("print('opened')", "print('clicked')"), false);
        QVERIFY(QDir().mkpath(m_settings.path(text("Korvane/trust.ini")))); // a folder in its place
        plant.start();
        QVERIFY(plant.trustBar().isVisible());
        plant.answer("refuseScripts");
        plant.openPage("other");
        QVERIFY(!plant.trustBar().isVisible());
    }

    void pagesWithoutScriptsAskForNothing()
    {
        Plant plant(TestProject::json("{'format':'korvane-page','version':1,'layers':[]}"), false);
        plant.start();
        QVERIFY(!plant.trustBar().isVisible());
        plant.openPage("other");
        QVERIFY(plant.trustBar().isVisible());
    }

    void scriptsOpenPages()
    {
        Plant plant(page("pass", "pages.open('other')\\n\\tprint(pages.current(), pages.is_open('other'))"));
        plant.start();
        plant.clickBox();
        QCOMPARE(plant.openPages(), QStringList(text("main"))); // once the event is over
        Plant::settle();
        QCOMPARE(plant.openPages(), QStringList({text("main"), text("other")}));
        QCOMPARE(plant.tabs().currentIndex(), 1);
        QCOMPARE(plant.output(), text("main False\nother opened\n"));
        plant.tabs().setCurrentIndex(0);
        plant.clickBox();
        Plant::settle();
        QCOMPARE(plant.openPages().size(), 2); // it is open already
        QCOMPARE(plant.tabs().currentIndex(), 1);
        QVERIFY(plant.output().endsWith(text("main True\n"))); // and is not loaded again
    }

    void aPageMayOpenAnotherWhenItOpens()
    {
        Plant plant(page("pages.open('other')", "pass"));
        plant.start();
        Plant::settle();
        QCOMPARE(plant.openPages(), QStringList({text("main"), text("other")}));
        QCOMPARE(plant.system->problems(), QStringList());
    }

    void scriptsClosePages()
    {
        Plant plant(page("pass", "pages.close('other')"));
        plant.start();
        plant.openPage("other");
        plant.tabs().setCurrentIndex(0);
        plant.clickBox();
        Plant::settle();
        QCOMPARE(plant.openPages(), QStringList(text("main")));
        QCOMPARE(plant.system->pages().pages().size(), std::size_t(1));
        QCOMPARE(plant.system->pages().currentCanvas()->canvasName(), text("main"));
        plant.clickBox();
        QVERIFY2(plant.system->problems().value(0).contains(text("LookupError: page \"other\" is not open")),
                 qPrintable(plant.system->problems().value(0)));
    }

    void aPageMayCloseItself()
    {
        Plant plant(page("pass", "pages.close()\\n\\tpages.close()\\n\\tprint('still', canvas.name)",
                         "," + stored(5, "pages.close()")));
        plant.start();
        plant.openPage("other");
        plant.clickBox(); // of the other page
        Plant::settle();
        QCOMPARE(plant.openPages(), QStringList(text("main")));
        plant.clickBox();
        QVERIFY(plant.output().endsWith(text("still main\n")));
        Plant::settle();
        QCOMPARE(plant.openPages(), QStringList());
        QVERIFY(plant.system->pages().pages().empty());
        QCOMPARE(plant.system->problems(), QStringList());
        plant.openPage("main"); // and may be opened again
        plant.clickBox();
        Plant::settle();
        QCOMPARE(plant.openPages(), QStringList());
    }

    void aPageMayCloseItselfWhenItOpensOrOnAKey()
    {
        Plant plant(page("pass", "pass", "," + stored(5, "pages.close()")));
        plant.project.write("pages/other.pws", page("pages.close()", "pass"));
        plant.start();
        plant.openPage("other");
        QCOMPARE(plant.openPages().size(), 2);
        Plant::settle();
        QCOMPARE(plant.openPages(), QStringList(text("main")));
        plant.clickBox();
        QTest::keyClick(&plant.view(), Qt::Key_Escape);
        Plant::settle();
        QCOMPARE(plant.openPages(), QStringList());
        QCOMPARE(plant.system->problems(), QStringList());
    }

    void aPageThatIsClosedRunsItsLastScript()
    {
        QByteArray main = page("pass", "pass");
        main.replace("\"events\":[{\"trigger\":6", "\"events\":[" +
                                                       stored(7, "print('closed', canvas.name)\\npages.open('main')") +
                                                       ",{\"trigger\":6");
        Plant plant(main);
        plant.start();
        QTest::mouseClick(plant.tabs().tabBar()->tabButton(0, QTabBar::RightSide), Qt::LeftButton);
        QCOMPARE(plant.output(), text("closed main\n"));
        QCOMPARE(plant.openPages(), QStringList());
        Plant::settle();
        QCOMPARE(plant.openPages(), QStringList(text("main"))); // what it asked for
        plant.window.reset();
        plant.system.reset(); // what it prints then nobody sees, and no window opens a page
    }

    void scriptsZoom()
    {
        Plant plant(page("def onZoomLevelChanged(page, zoom): print('zoom', zoom)",
                         "pages.zoom(2.5)\\n\\tpages.zoom(99, 'other')"));
        plant.start();
        plant.openPage("other");
        auto* other = &plant.view();
        plant.tabs().setCurrentIndex(0);
        plant.clickBox();
        Plant::settle();
        QCOMPARE(plant.view().zoom(), 2.5);
        QVERIFY(plant.output().endsWith(text("zoom 2.5\n")));
        QCOMPARE(other->zoom(), CanvasView::largestZoom);
        QCOMPARE(plant.tabs().currentIndex(), 0); // it does not come to the front
    }

    void scriptsFitThePage()
    {
        Plant plant(page("pass", "pages.zoom_to_fit()"));
        plant.start();
        plant.view().setZoom(1);
        plant.clickBox();
        Plant::settle();
        QVERIFY(plant.view().isFitted());
    }

    void whatScriptsSayIsShownInADock()
    {
        Plant plant(page("pass",
                         "print('one', end='')\\n\\tlog.info('two')\\n\\tlog.warning('three')\\n\\tprint('four')\\n\\t"
                         "log.error('five')\\n\\t1 / 0"));
        plant.start();
        QVERIFY(!plant.dock().isVisible());
        plant.clickBox();
        QTest::keyClick(plant.window.get(), Qt::Key_F4);
        QVERIFY(plant.dock().isVisible());
        QCOMPARE(
            plant.output(),
            text("one\ntwo\nthree\nfour\nfive\n"
                 "page \"main\", shape \"box\", handler \"onClick\", line 7: ZeroDivisionError: division by zero\n"));
        QCOMPARE(plant.system->problems().size(), 2); // the error and the failure
        QCOMPARE(plant.system->problems()[0], text("five"));
        QTest::mouseClick(plant.dock().findChild<QPushButton*>(), Qt::LeftButton);
        QCOMPARE(plant.output(), QString());
        plant.clickBox();
        QVERIFY(plant.output().startsWith(text("one\ntwo\n")));
    }

    void theDockFollowsTheNewestUnlessTheUserReads()
    {
        Plant plant(page("pass", "print(*range(6000), sep=chr(10))"));
        plant.start();
        QTest::keyClick(plant.window.get(), Qt::Key_F4);
        plant.clickBox();
        QScrollBar* bar = plant.outputArea().verticalScrollBar();
        QVERIFY(plant.output().endsWith(text("\n5999\n")));
        QVERIFY(plant.output().startsWith(text("1001\n"))); // the newest 5000 lines with the one to come
        QCOMPARE(bar->value(), bar->maximum());
        bar->setValue(10);
        plant.system->scripts().run(text("print('more')"));
        QVERIFY(bar->value() < 20);
        bar->setValue(bar->maximum());
        plant.system->scripts().run(text("print('more')\nprint('and more')"));
        QCOMPARE(bar->value(), bar->maximum());
    }

    void endlessLinesAreBroken()
    {
        Plant plant(page("pass", "for n in range(2500): print('.', end='')\\n\\tprint('\\ud83d\\udca7' * 1000)"
                                 "\\n\\tprint('x' * 1000)\\n\\tprint('y' * 3000000)"));
        plant.start();
        plant.clickBox();
        QCOMPARE(plant.system->problems(), QStringList());
        const QStringList lines = plant.output().split(QLatin1Char('\n'));
        QCOMPARE(lines[0], QString(1000, QLatin1Char('.')));
        QCOMPARE(lines[2].left(501), QString(500, QLatin1Char('.')) + QChar(0xd83d));
        QVERIFY(!lines[3].at(0).isLowSurrogate()); // a pair stays together
        const int after = lines.indexOf(QString(1000, QLatin1Char('x')));
        QVERIFY(after > 0);
        QCOMPARE(lines.size(), after + 1 + 3000 + 1);
        QCOMPARE(lines[after + 3000], QString(1000, QLatin1Char('y')));
        QCOMPARE(lines.last(), QString());
    }

    void theDemosPumpOpensTheStatistics()
    {
        LiveSystem::Options systemOptions;
        systemOptions.folder = QStringLiteral(KORVANE_SOURCE_DIR "/demo/water-loop");
        systemOptions.areScriptsTrusted = true;
        systemOptions.isStored = false;
        const auto system = LiveSystem::open(systemOptions);
        QVERIFY2(system, system ? "" : qPrintable(system.error()));
        RuntimeOptions options;
        options.isSilent = true;
        RuntimeWindow window(**system, options);
        window.layout()->setSizeConstraint(QLayout::SetNoConstraint);
        const auto overview = (*system)->openPage(text("overview"));
        window.showPage(**overview);
        window.show();
        auto& tabs = *window.findChild<QTabWidget*>(QStringLiteral("pages"));
        auto& view = *qobject_cast<CanvasView*>(tabs.currentWidget());
        const Shape* pump = view.canvas().findShape(text("pump"));
        QTest::mouseClick(view.viewport(), Qt::LeftButton, {}, view.viewportRect(*pump).center());
        QTRY_COMPARE(tabs.count(), 2);
        QCOMPARE(tabs.tabText(tabs.currentIndex()), text("Statistics"));
        QCOMPARE((*system)->problems(), QStringList());
    }

private:
    OwnSettings m_settings;
};

QTEST_MAIN(tst_RuntimeScripts)
#include "tst_runtimescripts.moc"
