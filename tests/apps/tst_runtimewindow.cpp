// The runtime's window on the demo project, worked with mouse and keys.

#include "apps/runtime/runtimewindow.h"
#include "host/canvas/canvasview.h"
#include "host/inspection/shapeexplanation.h"
#include "host/runtime/livesystem.h"
#include "tests/support/ownsettings.h"

#include <QAction>
#include <QClipboard>
#include <QDockWidget>
#include <QLayout>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTableView>
#include <QtTest>

namespace {

/// The window of the demo project on a machine whose clock the test turns, in front and with the page "overview".
struct Runtime
{
    Runtime()
    {
        LiveSystem::Options systemOptions;
        systemOptions.folder = QStringLiteral(KORVANE_SOURCE_DIR "/demo/water-loop");
        systemOptions.machineClock = [this] { return machineMs; };
        systemOptions.isStored = false;
        auto opened = LiveSystem::open(systemOptions);
        Q_ASSERT(opened);
        system = std::move(*opened);
        const auto page = system->openPage(QStringLiteral("overview"));
        Q_ASSERT(page);
        overview = *page;
        options.isSilent = true;
        window = std::make_unique<RuntimeWindow>(*system, options);
        window->layout()->setSizeConstraint(QLayout::SetNoConstraint); // no hints to pass on to the screen
        window->showPage(*overview);
        window->show();
        system->start();
        system->dataService().stop(); // the test ticks
        run(1000);
    }

    void run(int ms)
    {
        for (int passed = 0; passed < ms; passed += 50) {
            machineMs += 50;
            system->dataService().tick();
        }
    }

    QTabWidget& tabs() const { return *window->findChild<QTabWidget*>(QStringLiteral("pages")); }
    CanvasView& view() const { return *qobject_cast<CanvasView*>(tabs().currentWidget()); }
    QDockWidget& dock(const char* name) const { return *window->findChild<QDockWidget*>(QString::fromLatin1(name)); }
    QPlainTextEdit& explanation() const { return *dock("explanation").findChild<QPlainTextEdit*>(); }
    QTableView& table() const { return *dock("tags").findChild<QTableView*>(); }
    int rows() const { return table().model()->rowCount(); }
    QMenu& menu(const QString& title) const
    {
        for (QMenu* menu : window->findChildren<QMenu*>()) {
            if (menu->title().remove(QLatin1Char('&')) == title)
                return *menu;
        }
        qFatal("no menu %s", qPrintable(title));
    }
    QAction& action(const QString& menuTitle, const QString& text) const
    {
        for (QAction* action : menu(menuTitle).actions()) {
            if (action->text().remove(QLatin1Char('&')) == text)
                return *action;
        }
        qFatal("no entry %s", qPrintable(text));
    }
    QStringList entries(const QString& menuTitle) const
    {
        QStringList texts;
        for (const QAction* action : menu(menuTitle).actions())
            texts.append(action->text().remove(QLatin1Char('&')));
        return texts;
    }
    QString problemText() const
    {
        for (const QLabel* label : window->statusBar()->findChildren<QLabel*>()) {
            if (label->textInteractionFlags() & Qt::TextSelectableByMouse)
                return label->text();
        }
        return {};
    }

    void click(const QPointF& pagePosition) const
    {
        QTest::mouseClick(view().viewport(), Qt::LeftButton, {},
                          view().renderer().transform().map(pagePosition).toPoint());
    }
    void clickShape(const QString& name) const
    {
        const Shape* shape = view().canvas().findShape(name);
        click(shape->place().center());
    }
    void openExplanation() const
    {
        action(QStringLiteral("View"), QStringLiteral("Why does this shape look like this")).trigger();
    }
    void closeTab(int place) const
    {
        QWidget* button = tabs().tabBar()->tabButton(place, QTabBar::RightSide);
        QTest::mouseClick(button, Qt::LeftButton);
    }

    qint64 machineMs = 1'772'500'000'000;
    RuntimeOptions options;
    std::unique_ptr<LiveSystem> system;
    Page* overview = nullptr;
    std::unique_ptr<RuntimeWindow> window;
};

} // namespace

class tst_RuntimeWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPageIsATab()
    {
        const Runtime runtime;
        QCOMPARE(runtime.window->windowTitle(), QStringLiteral("Water loop - recording loop.csv"));
        QCOMPARE(runtime.tabs().count(), 1);
        QCOMPARE(runtime.tabs().tabText(0), QStringLiteral("Overview"));
        QVERIFY(runtime.overview->actions->isShown());
        QVERIFY(runtime.overview->canvas->findShape(QStringLiteral("flow"))
                    ->namedProperty(QStringLiteral("Value"))
                    .toDouble() > 100);
        QVERIFY(!runtime.dock("explanation").isVisible());
        QVERIFY(!runtime.dock("tags").isVisible());
    }

    void pagesAreOpenedByTheMenu()
    {
        const Runtime runtime;
        QCOMPARE(runtime.entries(QStringLiteral("Page")),
                 QStringList({QStringLiteral("alarms"), QStringLiteral("operating"), QStringLiteral("overview"),
                              QStringLiteral("statistics"), QString(), QStringLiteral("Run this project's scripts..."),
                              QStringLiteral("Close"), QStringLiteral("Quit")}));
        runtime.action(QStringLiteral("Page"), QStringLiteral("statistics")).trigger();
        QCOMPARE(runtime.tabs().count(), 2);
        QCOMPARE(runtime.tabs().currentIndex(), 1);
        QCOMPARE(runtime.tabs().tabText(1), QStringLiteral("Statistics"));
        QVERIFY(!runtime.overview->actions->isShown()); // only the page in front takes values
        Page* statistics = runtime.system->pages().pages().back().get();
        QVERIFY(statistics->actions->isShown());
        QCOMPARE(runtime.system->pages().currentCanvas(), statistics->canvas.get());
        runtime.action(QStringLiteral("Page"), QStringLiteral("overview")).trigger();
        QCOMPARE(runtime.tabs().count(), 2);
        QCOMPARE(runtime.tabs().currentIndex(), 0);
        QVERIFY(runtime.overview->actions->isShown());
        QVERIFY(!statistics->actions->isShown());
        QCOMPARE(runtime.system->pages().currentCanvas(), runtime.overview->canvas.get());
        QTest::mouseClick(runtime.tabs().tabBar(), Qt::LeftButton, {}, runtime.tabs().tabBar()->tabRect(1).center());
        QCOMPARE(runtime.system->pages().currentCanvas(), statistics->canvas.get());
    }

    void tabsAreClosed()
    {
        const Runtime runtime;
        runtime.action(QStringLiteral("Page"), QStringLiteral("statistics")).trigger();
        runtime.closeTab(0);
        QCOMPARE(runtime.tabs().count(), 1);
        QCOMPARE(runtime.tabs().tabText(0), QStringLiteral("Statistics"));
        QCOMPARE(runtime.system->pages().pages().size(), std::size_t(1));
        QCOMPARE(runtime.system->pages().currentCanvas()->canvasName(), QStringLiteral("statistics"));
        runtime.action(QStringLiteral("Page"), QStringLiteral("Close")).trigger();
        QCOMPARE(runtime.tabs().count(), 0);
        QVERIFY(runtime.system->pages().pages().empty());
        QVERIFY(!runtime.system->pages().currentCanvas());
        QCOMPARE(runtime.entries(QStringLiteral("Layers")), QStringList());
        runtime.action(QStringLiteral("Page"), QStringLiteral("Close")).trigger(); // nothing is left to close
        runtime.action(QStringLiteral("View"), QStringLiteral("Own size")).trigger();
        runtime.action(QStringLiteral("View"), QStringLiteral("Zoom to fit")).trigger();
        runtime.action(QStringLiteral("Page"), QStringLiteral("overview")).trigger();
        QCOMPARE(runtime.tabs().count(), 1);
    }

    void aTabThatIsClosedLeavesTheOneInFrontAlone()
    {
        const Runtime runtime;
        runtime.action(QStringLiteral("Page"), QStringLiteral("statistics")).trigger();
        runtime.action(QStringLiteral("Page"), QStringLiteral("overview")).trigger();
        runtime.clickShape(QStringLiteral("flow"));
        runtime.closeTab(1);
        QCOMPARE(runtime.tabs().count(), 1);
        QVERIFY(runtime.overview->actions->isShown());
        QCOMPARE(runtime.entries(QStringLiteral("Layers")).size(), 3);
    }

    void layersAreSwitchedByTheMenu()
    {
        const Runtime runtime;
        QCOMPARE(runtime.entries(QStringLiteral("Layers")),
                 QStringList({QStringLiteral("Background"), QStringLiteral("Process"), QStringLiteral("Values")}));
        QAction& values = runtime.action(QStringLiteral("Layers"), QStringLiteral("Values"));
        QVERIFY(values.isCheckable() && values.isChecked());
        values.trigger();
        QVERIFY(!runtime.overview->canvas->layers()[2]->isVisible());
        QVERIFY(runtime.overview->canvas->layers()[1]->isVisible());
        runtime.action(QStringLiteral("Page"), QStringLiteral("statistics")).trigger();
        QVERIFY(runtime.action(QStringLiteral("Layers"), QStringLiteral("Values")).isChecked()); // another page's
        runtime.action(QStringLiteral("Page"), QStringLiteral("overview")).trigger();
        QVERIFY(!runtime.action(QStringLiteral("Layers"), QStringLiteral("Values")).isChecked());
        runtime.action(QStringLiteral("Layers"), QStringLiteral("Values")).trigger();
        QVERIFY(runtime.overview->canvas->layers()[2]->isVisible());
    }

    void aClickExplainsAShapeWhileThatIsAskedFor()
    {
        Runtime runtime;
        const QImage plain = runtime.view().viewport()->grab().toImage();
        runtime.clickShape(QStringLiteral("flow")); // is for the plant
        QVERIFY(!runtime.dock("explanation").isVisible());
        QCOMPARE(runtime.view().viewport()->grab().toImage(), plain);
        runtime.openExplanation();
        QCOMPARE(runtime.explanation().toPlainText(), QString());
        runtime.clickShape(QStringLiteral("flow"));
        const Shape* flow = runtime.overview->canvas->findShape(QStringLiteral("flow"));
        const QString text = runtime.explanation().toPlainText();
        QCOMPARE(text, explainShape(*runtime.overview, *flow, runtime.system->database()));
        QVERIFY2(text.startsWith(QStringLiteral("ReadOut \"flow\" on page \"overview\"\nlayer \"Values\"\n"
                                                "binding 1: Number\n    tag P101.FLOW (id 200001) = ")),
                 qPrintable(text));
        runtime.clickShape(QStringLiteral("pump"));
        QVERIFY(runtime.explanation().toPlainText().startsWith(QStringLiteral("Pump \"pump\" on page")));
        runtime.click({5, 5}); // the page's background
        QCOMPARE(runtime.explanation().toPlainText(), QString());
        QVERIFY(runtime.dock("explanation").isVisible());
    }

    void theExplanationFollowsTheValues()
    {
        Runtime runtime;
        runtime.openExplanation();
        runtime.clickShape(QStringLiteral("flow"));
        const QString before = runtime.explanation().toPlainText();
        runtime.run(2000);
        QTRY_VERIFY(runtime.explanation().toPlainText() != before);
        const Shape* flow = runtime.overview->canvas->findShape(QStringLiteral("flow"));
        QCOMPARE(runtime.explanation().toPlainText(),
                 explainShape(*runtime.overview, *flow, runtime.system->database()));
    }

    void theExplanationIsCopiedAsAWhole()
    {
        const Runtime runtime;
        runtime.openExplanation();
        runtime.clickShape(QStringLiteral("flow"));
        QTest::mouseClick(runtime.dock("explanation").findChild<QPushButton*>(), Qt::LeftButton);
        QVERIFY(!runtime.explanation().toPlainText().isEmpty());
        QCOMPARE(QGuiApplication::clipboard()->text(), runtime.explanation().toPlainText());
        QVERIFY(!runtime.explanation().textCursor().hasSelection());
    }

    void anotherPageForgetsTheExplanation()
    {
        const Runtime runtime;
        runtime.openExplanation();
        runtime.clickShape(QStringLiteral("flow"));
        QVERIFY(!runtime.explanation().toPlainText().isEmpty());
        runtime.action(QStringLiteral("Page"), QStringLiteral("statistics")).trigger();
        QCOMPARE(runtime.explanation().toPlainText(), QString());
    }

    void aClosedPageForgetsTheExplanation()
    {
        Runtime runtime;
        runtime.openExplanation();
        runtime.clickShape(QStringLiteral("flow"));
        QVERIFY(!runtime.explanation().toPlainText().isEmpty());
        runtime.closeTab(0);
        QCOMPARE(runtime.explanation().toPlainText(), QString());
        runtime.run(200); // nobody asks the shape that went
    }

    void tagsAreFiltered()
    {
        const Runtime runtime;
        runtime.action(QStringLiteral("View"), QStringLiteral("Tags of the page")).trigger();
        QVERIFY(runtime.dock("tags").isVisible());
        const int all = runtime.rows();
        QVERIFY(all > 30);
        auto* filter = runtime.dock("tags").findChild<QLineEdit*>();
        QTest::keyClicks(filter, QStringLiteral("p101.flow"));
        const int some = runtime.rows();
        QVERIFY(some > 1 && some < all);
        for (int row = 0; row < some; ++row) {
            QString cells;
            for (int column = 0; column < runtime.table().model()->columnCount(); ++column)
                cells += runtime.table().model()->index(row, column).data().toString() + QLatin1Char('|');
            QVERIFY2(cells.contains(QStringLiteral("P101.FLOW"), Qt::CaseInsensitive), qPrintable(cells));
        }
        filter->selectAll();
        QTest::keyClicks(filter, QStringLiteral("trend_vibration")); // the shape's name is a column
        QCOMPARE(runtime.rows(), 2);
        filter->selectAll();
        QTest::keyClicks(filter, QStringLiteral("[.*")); // a text, no pattern
        QCOMPARE(runtime.rows(), 0);
        filter->selectAll();
        QTest::keyClick(filter, Qt::Key_Delete);
        QCOMPARE(runtime.rows(), all);
        runtime.action(QStringLiteral("Page"), QStringLiteral("statistics")).trigger();
        QVERIFY(runtime.rows() > 0 && runtime.rows() != all);
        runtime.closeTab(1);
        QCOMPARE(runtime.rows(), all);
        runtime.closeTab(0);
        QCOMPARE(runtime.rows(), 0);
    }

    void tagsAreCopiedByRows()
    {
        const Runtime runtime;
        runtime.action(QStringLiteral("View"), QStringLiteral("Tags of the page")).trigger();
        QTest::keyClicks(runtime.dock("tags").findChild<QLineEdit*>(), QStringLiteral("trend_vibration"));
        QTableView& table = runtime.table();
        table.selectAll();
        table.actions().constFirst()->trigger();
        const QStringList lines = QGuiApplication::clipboard()->text().split(QLatin1Char('\n'));
        QCOMPARE(lines.size(), 3); // the last one ends, too
        QCOMPARE(lines.last(), QString());
        const QStringList cells = lines.first().split(QLatin1Char('\t'));
        QCOMPARE(cells.size(), 8);
        QCOMPARE(cells[0], QStringLiteral("P101.VIBRATION_1"));
        QCOMPARE(cells[4], QStringLiteral("good"));
        QCOMPARE(cells[6], QStringLiteral("trend_vibration"));
        QCOMPARE(cells[7], QStringLiteral("Trend"));
    }

    void theZoomIsChanged()
    {
        const Runtime runtime;
        QVERIFY(runtime.view().isFitted());
        const auto choose = [&runtime](const char* text) {
            runtime.action(QStringLiteral("View"), QString::fromLatin1(text)).trigger();
        };
        choose("Own size");
        QCOMPARE(runtime.view().zoom(), 1.0);
        choose("Zoom in");
        QCOMPARE(runtime.view().zoom(), 1.25);
        choose("Zoom out");
        QCOMPARE(runtime.view().zoom(), 1.0);
        choose("Zoom to fit");
        QVERIFY(runtime.view().isFitted());
    }

    void theScreenIsFilled()
    {
        const Runtime runtime;
        QAction& fullScreen = runtime.action(QStringLiteral("View"), QStringLiteral("Full screen"));
        fullScreen.trigger();
        QVERIFY(runtime.window->isFullScreen());
        QVERIFY(!runtime.window->menuBar()->isVisible());
        QVERIFY(!runtime.window->statusBar()->isVisible());
        QVERIFY(!runtime.tabs().tabBar()->isVisible());
        QVERIFY(runtime.window->actions().contains(&fullScreen)); // its key works without the menu
        fullScreen.trigger();
        QVERIFY(!runtime.window->isFullScreen());
        QVERIFY(runtime.window->menuBar()->isVisible());
        QVERIFY(runtime.window->statusBar()->isVisible());
        QVERIFY(runtime.tabs().tabBar()->isVisible());
    }

    void aMaximisedWindowIsMaximisedAgain()
    {
        const Runtime runtime;
        runtime.window->showMaximized();
        QAction& fullScreen = runtime.action(QStringLiteral("View"), QStringLiteral("Full screen"));
        fullScreen.trigger();
        fullScreen.trigger();
        QVERIFY(runtime.window->isMaximized());
    }

    void keysDoWhatTheMenusDo()
    {
        const Runtime runtime;
        runtime.window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(runtime.window.get()));
        QTest::keyClick(runtime.window.get(), Qt::Key_F2);
        QVERIFY(runtime.dock("explanation").isVisible());
        QTest::keyClick(runtime.window.get(), Qt::Key_F3);
        QVERIFY(runtime.dock("tags").isVisible());
        QTest::keyClick(runtime.window.get(), Qt::Key_F4);
        QVERIFY(runtime.dock("scripts").isVisible());
        QTest::keyClick(runtime.window.get(), Qt::Key_F11);
        QVERIFY(runtime.window->isFullScreen());
        QTest::keyClick(runtime.window.get(), Qt::Key_F11);
        QVERIFY(!runtime.window->isFullScreen());
        QTest::keyClick(runtime.window.get(), Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(runtime.view().zoom(), 1.0);
        QTest::keyClick(runtime.window.get(), Qt::Key_0, Qt::ControlModifier);
        QVERIFY(runtime.view().isFitted());
    }

    void figuresAppear()
    {
        Runtime runtime;
        runtime.run(1000);
        const auto text = [&runtime] {
            QString all;
            for (const QLabel* label : runtime.window->statusBar()->findChildren<QLabel*>())
                all += label->text();
            return all;
        };
        QTRY_VERIFY2(text().contains(QStringLiteral(" values/s   ")), qPrintable(text()));
        QVERIFY2(text().contains(QStringLiteral(" paints/s   lag ")), qPrintable(text()));
        QVERIFY2(text().endsWith(QStringLiteral("   0 points failed")), qPrintable(text()));
    }

    void problemsAreCounted()
    {
        const Runtime runtime;
        QCOMPARE(runtime.problemText(), QString());
        Q_EMIT runtime.system->dataService().problemFound(QStringLiteral("the first"));
        QCOMPARE(runtime.problemText(), QStringLiteral("1 problem(s), the newest: the first"));
        for (int number = 2; number <= 25; ++number)
            Q_EMIT runtime.system->dataService().problemFound(QStringLiteral("problem %1").arg(number));
        QCOMPARE(runtime.problemText(), QStringLiteral("25 problem(s), the newest: problem 25"));
        for (const QLabel* label : runtime.window->statusBar()->findChildren<QLabel*>()) {
            if (!label->toolTip().isEmpty()) {
                const QStringList lines = label->toolTip().split(QLatin1Char('\n'));
                QCOMPARE(lines.size(), 20);
                QCOMPARE(lines.first(), QStringLiteral("problem 6"));
            }
        }
        const RuntimeWindow later(*runtime.system, runtime.options);
        bool isTold = false;
        for (const QLabel* label : later.statusBar()->findChildren<QLabel*>())
            isTold |= label->text() == QStringLiteral("25 problem(s), the newest: problem 25");
        QVERIFY(isTold);
    }

    void aProblemTakesOneLineAndIsNoMarkup()
    {
        const Runtime runtime;
        Q_EMIT runtime.system->dataService().problemFound(QStringLiteral("<b>line</b> 1\nthe way\nthere"));
        QCOMPARE(runtime.problemText(), QStringLiteral("1 problem(s), the newest: <b>line</b> 1"));
        for (const QLabel* label : runtime.window->statusBar()->findChildren<QLabel*>()) {
            if (label->text() == runtime.problemText())
                QCOMPARE(label->textFormat(), Qt::PlainText);
        }
    }

    void theWindowGoesBeforeItsPages()
    {
        Runtime runtime;
        runtime.action(QStringLiteral("Page"), QStringLiteral("statistics")).trigger();
        runtime.action(QStringLiteral("View"), QStringLiteral("Tags of the page")).trigger();
        runtime.window.reset();
        runtime.run(500);
        QCOMPARE(runtime.system->pages().pages().size(), std::size_t(2));
    }

private:
    OwnSettings m_settings;
};

QTEST_MAIN(tst_RuntimeWindow)
#include "tst_runtimewindow.moc"
