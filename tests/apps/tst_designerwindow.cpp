// The designer's window on a small project, worked with mouse and keys.

#include "apps/designer/designerwindow.h"
#include "host/canvas/canvasview.h"
#include "host/design/designdocument.h"
#include "platform/ui/kvpointmimedata.h"
#include "scada/actions/korvanescriptoreditor.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/ownsettings.h"
#include "tests/support/testproject.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QDockWidget>
#include <QDragEnterEvent>
#include <QLayout>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QStatusBar>
#include <QTextBrowser>
#include <QTimer>
#include <QTreeWidget>
#include <QtTest>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// Answers the next message box with a click on one of its buttons, and keeps what it said; empty when none came.
class Answer
{
public:
    explicit Answer(QMessageBox::StandardButton button)
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this, button] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            if (!box || !box->isVisible())
                return;
            if (!box->button(button))
                return; // another's
            m_timer.stop();
            m_text = box->text();
            QTest::mouseClick(box->button(button), Qt::LeftButton);
        });
        m_timer.start(0); // looks with every turn of the event loop
    }
    QString said() const { return m_text; }

private:
    QTimer m_timer;
    QString m_text;
};

/// The window, in front and with the page "plant".
struct Designer
{
    explicit Designer(const QByteArray& page = TestProject::plantPage(), bool isTrusted = true)
    {
        project.write("pages/plant.pws", page);
        auto opened = DesignSystem::open(project.folder());
        if (!opened)
            qFatal("%s", qPrintable(opened.error()));
        system = std::move(*opened);
        system->scripts().setEnabled(isTrusted);
        window = std::make_unique<DesignerWindow>(*system);
        window->layout()->setSizeConstraint(QLayout::SetNoConstraint); // no hints to pass on to the screen
        if (const auto shown = window->openPage(text("plant")); !shown)
            qFatal("%s", qPrintable(shown.error()));
        window->show();
        window->activateWindow();
        if (!QTest::qWaitForWindowActive(window.get()))
            qFatal("the window does not come to the front");
    }

    QString title() const { return window->windowTitle(); }
    bool isModified() const { return window->isWindowModified(); }
    QByteArray file() const { return project.read("pages/plant.pws"); }
    DesignDocument& document() const { return *window->document(); }
    Shape* shape(const char* name) const { return document().canvas().findShape(text(name)); }
    CanvasView& view() const { return *window->findChild<CanvasView*>(); }
    QDockWidget& dock(const char* name) const { return *window->findChild<QDockWidget*>(text(name)); }
    QTreeWidget& tree() const { return *dock("objects").findChild<QTreeWidget*>(); }
    QLineEdit& filter() const { return *dock("objects").findChild<QLineEdit*>(); }
    QComboBox& events() const { return *dock("scripts").findChild<QComboBox*>(text("comboBox")); }
    QPlainTextEdit& editor() const { return *window->findChild<KorvaneScriptorEditor*>()->scriptEditor(); }
    QString output() const { return window->findChild<QTextBrowser*>()->toPlainText().trimmed(); }
    QFrame& trustBar() const { return *window->findChild<QFrame*>(text("trustBar")); }

    void clickView(const QPointF& page) const
    {
        QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, view().renderer().transform().map(page).toPoint());
    }
    QTreeWidgetItem* item(const char* name) const
    {
        const auto found = tree().findItems(text(name), Qt::MatchExactly | Qt::MatchRecursive);
        return found.isEmpty() ? nullptr : found.first();
    }
    void clickItem(const char* name) const
    {
        QTest::mouseClick(tree().viewport(), Qt::LeftButton, {}, tree().visualItemRect(item(name)).center());
    }
    /// What the tree shows, by their names.
    QStringList shownItems() const
    {
        QStringList names;
        for (QTreeWidgetItemIterator each(&tree(), QTreeWidgetItemIterator::NotHidden); *each; ++each) {
            if (!(*each)->parent() || !(*each)->parent()->isHidden())
                names.append((*each)->text(0));
        }
        return names;
    }
    /// Chooses an event with the keys.
    void choose(const char* event) const
    {
        events().setFocus();
        QTest::keyClick(&events(), Qt::Key_Home);
        for (int step = 1; step < events().count() && events().currentText() != text(event); ++step)
            QTest::keyClick(&events(), Qt::Key_Down);
        QCoreApplication::processEvents(); // the window heeds a switch when it is over
        if (events().currentText() != text(event))
            qFatal("no event %s", event);
    }
    QStringList offeredEvents() const
    {
        QStringList names;
        for (int place = 0; place < events().count(); ++place)
            names.append(events().itemText(place));
        return names;
    }
    void type(const char* script) const
    {
        editor().setFocus();
        QTest::keyClicks(&editor(), text(script));
    }
    /// Writes over all of the text.
    void retype(const char* script) const
    {
        editor().setFocus();
        editor().selectAll();
        QTest::keyClick(&editor(), Qt::Key_Delete);
        QTest::keyClicks(&editor(), text(script));
    }
    void save() const
    {
        window->activateWindow(); // a message box may have been in front
        if (!QTest::qWaitForWindowActive(window.get()))
            qFatal("the window does not come to the front");
        QTest::keyClick(window.get(), Qt::Key_S, Qt::ControlModifier);
    }
    void tryScript() const { QTest::keyClick(&editor(), Qt::Key_F5); }
    QAction* action(const char* menuTitle, const char* entry) const
    {
        for (const QMenu* menu : window->findChildren<QMenu*>()) {
            for (QAction* each : menu->actions()) {
                if (menu->title().remove(QLatin1Char('&')) == text(menuTitle) &&
                    each->text().remove(QLatin1Char('&')) == text(entry))
                    return each;
            }
        }
        qFatal("no entry %s", entry);
    }
    void trigger(const char* menuTitle, const char* entry) const { action(menuTitle, entry)->trigger(); }
    /// Drops a point of the list on the page, as a drag from the tree of points does.
    void dropPoint(const char* name, const QPointF& page) const
    {
        const bool isAnalog = text(name) == text("FLOW");
        const KVPointMimeData data(
            {isAnalog ? Korvane::ScadaObjectType::AnalogPoint : Korvane::ScadaObjectType::DigitalPoint,
             isAnalog ? 200001 : 100001,
             text(name),
             text(name),
             {},
             {}});
        const QPoint place = view().renderer().transform().map(page).toPoint();
        QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(view().viewport(), &enter);
        QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, {});
        QCoreApplication::sendEvent(view().viewport(), &drop);
    }
    /// Where the selected shape's first tag stands; null without one.
    QLineEdit* pointLine() const
    {
        for (QLineEdit* line : dock("binding").findChildren<QLineEdit*>(text("pointNameEdit"))) {
            if (line->isVisible())
                return line;
        }
        return nullptr;
    }
    QString tagOf(const char* name) const
    {
        const std::vector<ShapeBinding> bindings = document().bindings(*shape(name));
        return bindings.empty() ? QString() : bindings.front().tag;
    }
    QString scriptsOf(const Shape* shape) const
    {
        QStringList texts;
        QList<ScadaScriptAction> all = document().scripts(shape);
        for (ScadaScriptAction& script : all)
            texts.append(text("%1: %2").arg(static_cast<int>(script.triggetType())).arg(script.script()));
        return texts.join(text(" | "));
    }

    TestProject project;
    std::unique_ptr<DesignSystem> system;
    std::unique_ptr<DesignerWindow> window;
};

constexpr QPointF onBox{70, 50};
constexpr QPointF onText{250, 50};
constexpr QPointF onBackground{350, 150};

QByteArray withEvents(const QByteArray& events)
{
    return TestProject::plantPage().replace("\"group\": 7", "\"events\": " + events);
}

} // namespace

class tst_DesignerWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void aPageIsShownWithItsObjects()
    {
        const Designer designer;
        QCOMPARE(designer.title(), text("Plant[*] - test plant"));
        QVERIFY(!designer.isModified());
        QCOMPARE(designer.shownItems(), QStringList({text("Plant"), text("lower"), text("box"), text("(no name)"),
                                                     text("upper"), text("text")}));
        QCOMPARE(designer.item("box")->text(1), text("Rectangle"));
        QCOMPARE(designer.item("lower")->text(1), text("Layer"));
        QCOMPARE(designer.item("Plant")->text(1), text("Page"));
        QVERIFY(designer.item("text")->font(0).bold());
        QVERIFY(designer.item("Plant")->font(0).bold());
        QVERIFY(!designer.item("box")->font(0).bold());
        QCOMPARE(designer.item("text")->toolTip(0), text("1 event(s) with a script"));
        QCOMPARE(designer.item("box")->toolTip(0), QString());
    }

    void atFirstThePageItselfIsSelected()
    {
        const Designer designer;
        QVERIFY(!designer.window->selected());
        QCOMPARE(designer.tree().currentItem(), designer.item("Plant"));
        QCOMPARE(designer.dock("scripts").windowTitle(), text("Scripts of Plant"));
        QCOMPARE(designer.events().currentText(), text("Canvas Load"));
        QCOMPARE(designer.editor().toPlainText(), text("print(1)\n"));
    }

    void aClickInTheViewSelects()
    {
        const Designer designer;
        designer.clickView(onText);
        QCOMPARE(designer.window->selected(), designer.shape("text"));
        QCOMPARE(designer.tree().currentItem(), designer.item("text"));
        QCOMPARE(designer.dock("scripts").windowTitle(), text("Scripts of text"));
        QCOMPARE(designer.events().currentText(), text("Mouse Press"));
        QCOMPARE(designer.editor().toPlainText(), text("print(trigger)"));
        designer.clickView(onBox);
        QCOMPARE(designer.window->selected(), designer.shape("box"));
        QCOMPARE(designer.editor().toPlainText(), QString());
        designer.clickView({70, 150});
        QCOMPARE(designer.dock("scripts").windowTitle(), text("Scripts of (no name)"));
        designer.clickView(onBackground);
        QVERIFY(!designer.window->selected());
        QCOMPARE(designer.tree().currentItem(), designer.item("Plant"));
        QVERIFY(!designer.isModified());
    }

    void aClickInTheTreeSelects()
    {
        const Designer designer;
        designer.clickItem("text");
        QCOMPARE(designer.window->selected(), designer.shape("text"));
        QCOMPARE(designer.editor().toPlainText(), text("print(trigger)"));
        const QImage marked = designer.view().viewport()->grab().toImage();
        designer.clickItem("lower"); // a layer has no scripts
        QCOMPARE(designer.window->selected(), designer.shape("text"));
        QTest::keyClick(&designer.tree(), Qt::Key_Up);
        QTest::keyClick(&designer.tree(), Qt::Key_Up);
        designer.clickItem("Plant");
        QVERIFY(!designer.window->selected());
        QVERIFY(designer.view().viewport()->grab().toImage() != marked);
        designer.clickItem("box");
        designer.trigger("View", "Select the page");
        QVERIFY(!designer.window->selected());
        QCOMPARE(designer.tree().currentItem(), designer.item("Plant"));
    }

    void theTreeIsFiltered()
    {
        const Designer designer;
        const QStringList all = designer.shownItems();
        QTest::keyClicks(&designer.filter(), text("BO"));
        QCOMPARE(designer.shownItems(), QStringList({text("Plant"), text("lower"), text("box")}));
        designer.filter().selectAll();
        QTest::keyClicks(&designer.filter(), text("label")); // a class
        QCOMPARE(designer.shownItems(), QStringList({text("Plant"), text("upper"), text("text")}));
        designer.clickItem("text");
        QCOMPARE(designer.window->selected(), designer.shape("text"));
        designer.filter().selectAll();
        QTest::keyClicks(&designer.filter(), text("low")); // a layer with all that lies on it
        QCOMPARE(designer.shownItems(), QStringList({text("Plant"), text("lower"), text("box"), text("(no name)")}));
        QCOMPARE(designer.window->selected(), designer.shape("text"));
        designer.filter().selectAll();
        QTest::keyClicks(&designer.filter(), text("[.*")); // a text, no pattern
        QCOMPARE(designer.shownItems(), QStringList(text("Plant")));
        designer.filter().selectAll();
        QTest::keyClick(&designer.filter(), Qt::Key_Delete);
        QCOMPARE(designer.shownItems(), all);
    }

    void eventsOfAShapeAndOfAPageAreOffered()
    {
        const Designer designer;
        const QStringList mouse = {
            text("Mouse Press"), text("Mouse Release"), text("Mouse Double Click"), text("Mouse Right Button Release"),
            text("Mouse Hover"), text("Mouse Leave"),   text("Key Press")};
        QCOMPARE(designer.offeredEvents(), QStringList({text("Canvas Load"), text("Canvas Unload")}) + mouse);
        designer.clickView(onBox);
        QCOMPARE(designer.offeredEvents(), mouse + QStringList(text("On Object Loading")));
    }

    void eventsThatAreNotOfferedAreShownWhereTheyAre()
    {
        const Designer designer(withEvents("[{\"trigger\":9,\"type\":1001,\"script\":[\"nine\"]},"
                                           "{\"trigger\":6,\"type\":1001,\"script\":[\"load\"]}]"));
        designer.clickView(onBox);
        QCOMPARE(designer.offeredEvents().mid(8), QStringList({text("Canvas Load"), text("9")}));
        QCOMPARE(designer.editor().toPlainText(), text("load"));
        designer.choose("9");
        QCOMPARE(designer.editor().toPlainText(), text("nine"));
        designer.retype("changed");
        designer.clickView(onText);
        QCOMPARE(designer.scriptsOf(designer.shape("box")), text("6: load | 9: changed"));
    }

    void aScriptIsWrittenAndSaved()
    {
        const Designer designer;
        designer.clickView(onBox);
        designer.choose("Mouse Hover");
        designer.type("log.info(1)");
        QVERIFY(designer.isModified()); // what stands in the editor counts
        QCOMPARE(designer.title(), text("Plant[*] - test plant"));
        designer.save();
        QVERIFY(!designer.isModified());
        QCOMPARE(designer.window->statusBar()->currentMessage(), text("Saved."));
        QVERIFY(designer.file().contains("\"trigger\": 3"));
        QVERIFY(designer.file().contains("\"log.info(1)\""));
        QVERIFY(designer.item("box")->font(0).bold());
        QCOMPARE(designer.editor().toPlainText(), text("log.info(1)"));
        designer.type(" # more");
        QVERIFY(designer.isModified());
        designer.save();
        QVERIFY(designer.file().contains("# more"));
    }

    void scriptsStayWhereTheyWereWritten()
    {
        const Designer designer;
        designer.clickView(onBox);
        designer.type("press");
        designer.choose("Key Press");
        QCOMPARE(designer.editor().toPlainText(), QString());
        QVERIFY(designer.isModified());
        designer.type("key");
        designer.choose("Mouse Press");
        QCOMPARE(designer.editor().toPlainText(), text("press"));
        designer.clickView(onText);
        designer.retype("other");
        designer.clickItem("Plant");
        designer.clickItem("box");
        QCOMPARE(designer.editor().toPlainText(), text("key")); // the first one that is not empty
        designer.choose("Mouse Press");
        QCOMPARE(designer.editor().toPlainText(), text("press"));
        QCOMPARE(designer.scriptsOf(designer.shape("box")), text("5: key | 8: press"));
        QCOMPARE(designer.scriptsOf(designer.shape("text")), text("8: other"));
        QCOMPARE(designer.item("box")->toolTip(0), text("2 event(s) with a script"));
    }

    void aScriptThatIsEmptiedIsGone()
    {
        const Designer designer;
        designer.clickView(onText);
        designer.retype("");
        designer.clickView(onBox);
        QCOMPARE(designer.scriptsOf(designer.shape("text")), QString());
        QVERIFY(!designer.item("text")->font(0).bold());
        QVERIFY(designer.isModified());
    }

    void aScriptThatIsClearedIsGone()
    {
        const Designer designer;
        designer.clickView(onText);
        QTest::mouseClick(designer.dock("scripts").findChild<QPushButton*>(text("clearBtn")), Qt::LeftButton);
        QVERIFY(designer.isModified());
        designer.choose("Key Press");
        designer.choose("Mouse Press");
        QCOMPARE(designer.editor().toPlainText(), QString());
        designer.save();
        QVERIFY(!designer.file().contains("print(trigger)"));
    }

    void everyObjectHasAHistoryOfItsOwn()
    {
        const Designer designer;
        designer.clickView(onBox);
        designer.type("a");
        designer.clickView(onText);
        designer.type("b");
        QTest::keyClick(&designer.editor(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(designer.editor().toPlainText(), text("print(trigger)"));
        QTest::keyClick(&designer.editor(), Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(designer.editor().toPlainText(), text("print(trigger)"));
    }

    void lookingAroundChangesNothing_data()
    {
        QTest::addColumn<QByteArray>("events"); // of the shape "box"
        const auto row = [](const char* name, const char* script) {
            QTest::newRow(name) << QByteArray("[{\"trigger\":8,\"type\":1001,\"script\":") + script +
                                       "},{\"trigger\":5,\"type\":1001,\"script\":[\"key\",\"\"]}]";
        };
        row("one line", "[\"a\"]");
        row("several", "[\"if 1:\",\"\\tpass\",\"\"]");
        row("an empty one", "[\"\"]");
        row("line ends of another kind", "[\"a\\r\",\"b\\r\",\"\"]");
        row("separators of lines and paragraphs", "[\"a = '\\u2028\\u2029'\"]");
        row("a blank that does not break", "[\"a = '\\u00a0'\"]");
        row("a NUL", "[\"a\\u0000\"]");
        row("two of one event", "[\"a\"]},{\"trigger\":8,\"type\":1001,\"script\":[\"b\"]");
        row("half a pair", "0,\"data\":\"AAAAAtg9\"");
    }
    void lookingAroundChangesNothing()
    {
        QFETCH(QByteArray, events);
        const Designer designer(withEvents(events).replace("\"script\":0,", ""));
        const QByteArray before = designer.file();
        for (int round = 0; round < 2; ++round) {
            designer.clickView(onBox);
            for (const char* event : {"Key Press", "Mouse Press", "Mouse Hover", "Mouse Press"})
                designer.choose(event);
            designer.clickItem("text");
            designer.clickView(onBackground);
            designer.choose("Key Press");
        }
        QVERIFY(!designer.document().isModified());
        QVERIFY(!designer.isModified());
        const Answer answer(QMessageBox::Cancel);
        QVERIFY(designer.window->close());
        QCOMPARE(answer.said(), QString());
        QCOMPARE(designer.file(), before);
    }

    void whatIsTakenBackIsNoChange()
    {
        const Designer designer;
        designer.clickView(onText);
        designer.type("x");
        QVERIFY(designer.isModified());
        QTest::keyClick(&designer.editor(), Qt::Key_Backspace);
        designer.clickView(onBox);
        QVERIFY(!designer.isModified());
    }

    void closingAsksForWhatIsNotSaved_data()
    {
        QTest::addColumn<int>("button");
        QTest::addColumn<bool>("isClosed");
        QTest::addColumn<bool>("isSaved");
        QTest::newRow("saved") << int(QMessageBox::Save) << true << true;
        QTest::newRow("given up") << int(QMessageBox::Discard) << true << false;
        QTest::newRow("not closed after all") << int(QMessageBox::Cancel) << false << false;
    }
    void closingAsksForWhatIsNotSaved()
    {
        QFETCH(int, button);
        QFETCH(bool, isClosed);
        QFETCH(bool, isSaved);
        const Designer designer;
        designer.clickView(onText);
        designer.retype("changed");
        const Answer answer(static_cast<QMessageBox::StandardButton>(button));
        QCOMPARE(designer.window->close(), isClosed);
        QCOMPARE(answer.said(), text("Save the changes of Plant?"));
        QCOMPARE(designer.window->isVisible(), !isClosed);
        QCOMPARE(designer.file().contains("\"changed\""), isSaved);
        QCOMPARE(designer.file() == TestProject::plantPage(), !isSaved);
        QCOMPARE(designer.isModified(), !isSaved);
        if (!isClosed)
            QCOMPARE(designer.editor().toPlainText(), text("changed"));
    }

    void anotherPageAsksToo()
    {
        const Designer designer;
        designer.trigger("Open page", "empty");
        QCOMPARE(designer.title(), text("empty[*] - test plant"));
        QCOMPARE(designer.shownItems(), QStringList(text("empty")));
        designer.trigger("Open page", "plant");
        designer.clickView(onText);
        designer.retype("changed");
        {
            const Answer answer(QMessageBox::Cancel);
            designer.trigger("Open page", "empty");
            QCOMPARE(answer.said(), text("Save the changes of Plant?"));
            QCOMPARE(designer.title(), text("Plant[*] - test plant"));
            QCOMPARE(designer.editor().toPlainText(), text("changed"));
        }
        {
            const Answer answer(QMessageBox::Discard);
            designer.trigger("Open page", "plant"); // the same once more: as it was saved last
            QVERIFY(!answer.said().isEmpty());
            QVERIFY(!designer.isModified());
            designer.clickView(onText);
            QCOMPARE(designer.editor().toPlainText(), text("print(trigger)"));
        }
        designer.retype("changed");
        const Answer answer(QMessageBox::Save);
        designer.trigger("Open page", "empty");
        QVERIFY(!answer.said().isEmpty());
        QCOMPARE(designer.title(), text("empty[*] - test plant"));
        QVERIFY(designer.file().contains("\"changed\""));
    }

    void aPageThatCantBeOpenedLeavesTheOneBefore()
    {
        const Designer designer;
        designer.clickView(onText);
        designer.project.write("pages/empty.pws", "{\n");
        const Answer answer(QMessageBox::Ok);
        designer.trigger("Open page", "empty");
        QVERIFY2(answer.said().startsWith(text("The page can't be opened: ") +
                                          designer.project.path("pages/empty.pws") + text(": line 2: ")),
                 qPrintable(answer.said()));
        QCOMPARE(designer.title(), text("Plant[*] - test plant"));
        QCOMPARE(designer.window->selected(), designer.shape("text"));
        QCOMPARE(designer.editor().toPlainText(), text("print(trigger)"));
    }

    void aFileThatSomeoneElseChangedIsNotWrittenOverUnasked()
    {
        const Designer designer;
        designer.clickView(onText);
        designer.retype("mine");
        const QByteArray theirs = TestProject::plantPage().replace("print(trigger)", "theirs");
        designer.project.write("pages/plant.pws", theirs);
        {
            const Answer answer(QMessageBox::No);
            designer.save();
            QCOMPARE(answer.said(), designer.project.path("pages/plant.pws") +
                                        text(" was changed by someone else since it was opened. Save over that?"));
            QCOMPARE(designer.file(), theirs);
            QVERIFY(designer.isModified());
        }
        const Answer answer(QMessageBox::Yes);
        designer.save();
        QVERIFY(!answer.said().isEmpty());
        QVERIFY(designer.file().contains("\"mine\""));
        QVERIFY(!designer.isModified());
    }

    void whatCantBeSavedIsTold()
    {
        const Designer designer;
        designer.clickView(onText);
        designer.retype("mine");
        const QString fileName = designer.project.path("pages/plant.pws");
        QVERIFY(QFile::remove(fileName) && QDir().mkpath(fileName)); // a folder in its place
        const Answer changed(QMessageBox::Yes);
        const Answer failed(QMessageBox::Ok);
        designer.save();
        QVERIFY2(
            failed.said().startsWith(text("The page could not be saved: ") + fileName + text(": can't be written: ")),
            qPrintable(failed.said()));
        QVERIFY(designer.isModified());
        QCOMPARE(designer.editor().toPlainText(), text("mine"));
    }

    void aScriptIsTriedOnACopyOfThePage()
    {
        const Designer designer;
        designer.clickView(onText);
        designer.retype("canvas['text']['Text'] = 'tried'; print(canvas['text']['Text'])");
        const QImage before = designer.view().viewport()->grab().toImage();
        designer.tryScript();
        QTRY_COMPARE(designer.output(), text("tried"));
        QCOMPARE(designer.view().viewport()->grab().toImage(), before);
        QCOMPARE(designer.shape("text")->namedProperty(text("Text")), QVariant(text("off")));
        designer.save();
        QVERIFY(designer.file().contains("\"Text\": \"off\""));
        designer.retype("1 / 0");
        designer.tryScript();
        QTRY_VERIFY(designer.output().contains(text("page \"plant\", line 1: ZeroDivisionError")));
        QVERIFY(!designer.output().contains(text("tried"))); // the one before
    }

    void whatIsTriedLivesAsLongAsThePageIsOpen()
    {
        const Designer designer;
        designer.retype("twice = lambda x: 2 * x; print('defined')");
        designer.tryScript();
        QTRY_COMPARE(designer.output(), text("defined"));
        designer.clickView(onText);
        designer.retype("print(twice(21))");
        designer.tryScript();
        QTRY_COMPARE(designer.output(), text("42"));
    }

    void untrustedScriptsAreNotTried()
    {
        const Designer designer(TestProject::plantPage(), false);
        QVERIFY(designer.trustBar().isVisible());
        designer.retype("print('ran')");
        designer.tryScript();
        QTRY_COMPARE(designer.output(), text("not run: the project's scripts are not trusted"));
        QTest::mouseClick(designer.trustBar().findChild<QPushButton*>(text("refuseScripts")), Qt::LeftButton);
        QVERIFY(!designer.trustBar().isVisible());
        QVERIFY(!designer.system->scripts().isEnabled());
        designer.retype("print(6)"); // whatever is not trusted can be written
        designer.save();
        QVERIFY(designer.file().contains("\"print(6)\""));
    }

    void aTrustedFolderHasNoBar()
    {
        const Designer designer;
        QVERIFY(!designer.trustBar().isVisible());
    }

    void trustedNowScriptsAreTried()
    {
        const Designer designer(TestProject::plantPage(), false);
        QTest::mouseClick(designer.trustBar().findChild<QPushButton*>(text("runScripts")), Qt::LeftButton);
        QVERIFY(!designer.trustBar().isVisible());
        designer.retype("print('ran')");
        designer.tryScript();
        QTRY_COMPARE(designer.output(), text("ran"));
    }

    void anObjectThatCouldNotBeLoadedHasNoEditor()
    {
        const Designer designer(TestProject::plantPage().replace("\"Label\"", "\"Hologram\""));
        QVERIFY(designer.editor().isEnabled());
        designer.clickView(onText);
        QCOMPARE(designer.window->selected(), designer.shape("text"));
        QVERIFY(!designer.editor().isEnabled());
        QVERIFY(!designer.events().isEnabled());
        designer.clickView(onBox);
        QVERIFY(designer.editor().isEnabled());
        QVERIFY(!designer.isModified());
    }

    void problemsOfThePageAreTold()
    {
        const Designer designer(TestProject::plantPage().replace("\"Label\"", "\"Hologram\""));
        QString shown;
        for (const QLabel* label : designer.window->statusBar()->findChildren<QLabel*>())
            shown += label->text();
        QCOMPARE(shown, text("1 problem(s), the first: ") + designer.project.path("pages/plant.pws") +
                            text(":35: shape \"text\": unknown class \"Hologram\"; a placeholder stands in its place"));
    }

    void theZoomIsChanged()
    {
        const Designer designer;
        QVERIFY(designer.view().isFitted());
        designer.trigger("View", "Own size");
        QCOMPARE(designer.view().zoom(), 1.0);
        designer.trigger("View", "Zoom in");
        QCOMPARE(designer.view().zoom(), 1.25);
        designer.trigger("View", "Zoom out");
        QCOMPARE(designer.view().zoom(), 1.0);
        designer.trigger("View", "Zoom to fit");
        QVERIFY(designer.view().isFitted());
    }

    void aWindowWithoutAPageHasNothingToDo()
    {
        Designer designer;
        designer.window = std::make_unique<DesignerWindow>(*designer.system);
        QVERIFY(!designer.window->document());
        QVERIFY(!designer.window->openPage(text("nowhere")));
        for (const char* entry : {"Own size", "Zoom in", "Zoom out", "Zoom to fit", "Select the page"})
            designer.trigger("View", entry);
        designer.trigger("File", "Save");
        QCOMPARE(designer.title(), text("[*] - test plant"));
        QVERIFY(designer.window->close());
    }

    void aDroppedPointIsSelectedAndUndone()
    {
        const Designer designer;
        designer.dropPoint("FLOW", onBackground);
        const Shape* made = designer.shape("FLOW");
        QVERIFY(made);
        QCOMPARE(designer.window->selected(), made);
        QCOMPARE(designer.tree().currentItem(), designer.item("FLOW"));
        QCOMPARE(designer.item("FLOW")->text(1), text("ReadOut"));
        QVERIFY(designer.isModified());
        QTest::keyClick(designer.window.get(), Qt::Key_Z, Qt::ControlModifier);
        QVERIFY(!designer.shape("FLOW"));
        QVERIFY(!designer.item("FLOW"));
        QVERIFY(!designer.window->selected());
        QVERIFY(!designer.isModified());
        QTest::keyClick(designer.window.get(), Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(designer.item("FLOW"));
        designer.save();
        QVERIFY(designer.file().contains("\"FLOW\""));
        QVERIFY(!designer.isModified());
    }

    void scriptsOfAShapeThatIsTakenBackAreKept()
    {
        const Designer designer;
        designer.dropPoint("FLOW", onBackground);
        designer.type("log.info(2)"); // not kept by anything before
        designer.window->document()->undoStack().undo();
        QVERIFY(!designer.window->selected());
        designer.window->document()->undoStack().redo();
        QCOMPARE(designer.scriptsOf(designer.shape("FLOW")), text("8: log.info(2)"));
        QVERIFY(designer.item("FLOW")->font(0).bold());
    }

    void theBindingOfTheSelectedShapeIsEdited()
    {
        const Designer designer;
        QVERIFY(!designer.pointLine());
        designer.clickView(onText);
        QLineEdit& line = *designer.pointLine();
        line.setFocus();
        QTest::keyClicks(&line, text("FLOW"));
        designer.clickView(onBox); // whoever looks elsewhere is done
        QCOMPARE(designer.tagOf("text"), text("FLOW"));
        QVERIFY(!designer.pointLine());
        designer.clickView(onText);
        designer.pointLine()->setFocus();
        QTest::keyClicks(designer.pointLine(), text(":TodayMean"));
        designer.save(); // and whoever saves
        QVERIFY(designer.file().contains("\"FLOW:TodayMean\""));
        QVERIFY(!designer.isModified());
    }

    void aPointIsBoundByTheMenu()
    {
        const Designer designer;
        QVERIFY(!designer.action("Edit", "Bind point...")->isEnabled());
        designer.clickView(onBox);
        QVERIFY(!designer.action("Edit", "Bind point...")->isEnabled()); // a rectangle shows nothing
        designer.clickView(onText);
        QVERIFY(designer.action("Edit", "Bind point...")->isEnabled());
        QTimer::singleShot(0, [] {
            QWidget* dialog = QApplication::activeModalWidget();
            QTest::keyClicks(dialog->findChild<QLineEdit*>(text("pointNameEdit")), text("PUMP"));
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        designer.trigger("Edit", "Bind point...");
        QCOMPARE(designer.tagOf("text"), text("PUMP"));
        designer.trigger("Edit", "Undo Bind to PUMP");
        QCOMPARE(designer.tagOf("text"), QString());
    }

    void accessRightsAreEdited()
    {
        const Designer designer;
        QTimer::singleShot(0, [] {
            QWidget* dialog = QApplication::activeModalWidget();
            dialog->findChild<QCheckBox*>(text("userPagePermission"))->click();
            QTest::keyClick(dialog, Qt::Key_Return);
        });
        designer.trigger("Page", "Access rights...");
        QVERIFY(designer.document().page().access.isProtected);
        QVERIFY(designer.isModified());
        designer.trigger("Edit", "Undo Change the access rights");
        QVERIFY(!designer.isModified());
    }

    void anotherPageHasItsOwnHistory()
    {
        const Designer designer;
        designer.dropPoint("FLOW", onBackground);
        QVERIFY(designer.window->openPage(text("empty")));
        QVERIFY(!designer.action("Edit", "Undo")->isEnabled());
        QVERIFY(!designer.action("Edit", "Bind point...")->isEnabled());
        designer.dropPoint("FLOW", {50, 50});
        QVERIFY(designer.shape("FLOW"));
    }

private:
    OwnSettings m_settings;
};

QTEST_MAIN(tst_DesignerWindow)
#include "tst_designerwindow.moc"
