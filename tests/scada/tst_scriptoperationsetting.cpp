#include "tests/scada/arealessscripts.h"
#include "tests/scada/editedsetting.h"
#include "tests/support/dragoff.h"
#include "tests/support/offscreenwarnings.h"

#include <QTextBrowser>

using Operation = TestScriptInterface::Operation;
using Call = TestScriptInterface::Call;
using Korvane::TriggerType;

namespace {

ScadaScriptAction action(int trigger, const char* script)
{
    ScadaScriptAction made;
    made.setTriggerType(TriggerType(trigger));
    made.setScript(text(script));
    return made;
}

/// Triggers and scripts of actions, each as "5: x".
QStringList listed(QList<ScadaScriptAction> actions)
{
    QStringList texts;
    for (ScadaScriptAction& action : actions)
        texts.append(QStringLiteral("%1: %2").arg(static_cast<int>(action.triggetType())).arg(action.script()));
    return texts;
}

} // namespace

class tst_ScriptOperationSetting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void theMetaObjectKeepsItsOrder()
    {
        const QMetaObject& meta = ScriptOperationSetting::staticMetaObject;
        QCOMPARE(meta.superClass(), &QWidget::staticMetaObject);
        const int first = meta.methodOffset();
        QCOMPARE(meta.methodCount() - first, 4);
        QCOMPARE(meta.method(first).methodSignature(), QByteArray("dirtyed()"));
        QCOMPARE(meta.method(first).methodType(), QMetaMethod::Signal);
        QCOMPARE(meta.method(first + 1).methodSignature(), QByteArray("slotIndexChanged(int)"));
        QCOMPARE(meta.method(first + 2).methodSignature(), QByteArray("slotClear()"));
        QCOMPARE(meta.method(first + 3).methodSignature(), QByteArray("addHandler()"));
        for (int i = first + 1; i < meta.methodCount(); ++i)
            QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
    }

    void theEditorWorksOnTheCanvasGiven()
    {
        Setting setting;
        QCOMPARE(setting.scripts.calls,
                 (QList<Call>{{Operation::CreateEditor, &setting.canvas, nullptr, {}, {}, &setting.textArea()}}));
    }

    void thereAreNoEventTypesBeforeInit()
    {
        TestScriptInterface scripts;
        const ScriptOperationSetting widget(nullptr, &scripts, nullptr);
        QCOMPARE(widget.findChild<QComboBox*>(text("comboBox"))->count(), 0);
    }

    void theSecondEventTypeIsTakenForShownBeforeInit()
    {
        TestScriptInterface scripts;
        ScriptOperationSetting widget(nullptr, &scripts, nullptr);
        auto* eventTypes = widget.findChild<QComboBox*>(text("comboBox"));
        for (const int type : {4, 5, 6})
            eventTypes->addItem(QString::number(type), type);
        widget.findChild<KorvaneScriptorEditor*>()->scriptEditor()->setPlainText(text("x"));
        widget.slotIndexChanged(2);
        QCOMPARE(listed(widget.scriptActions()), QStringList({text("4: "), text("5: x"), text("6: ")}));
    }

    void initOffersTheEventTypes()
    {
        Setting setting;
        QCOMPARE(setting.eventTypes().count(), 4);
        const QList<QPair<int, QString>> expected = {
            {8, text("Press")}, {1, text("Release")}, {5, text("Key")}, {3, text("Hover")}};
        for (int i = 0; i < expected.size(); ++i) {
            QCOMPARE(setting.eventTypes().itemData(i), QVariant(expected.at(i).first));
            QCOMPARE(setting.eventTypes().itemData(i).userType(), int(QMetaType::Int));
            QCOMPARE(setting.eventTypes().itemText(i), expected.at(i).second);
        }
        QCOMPARE(setting.eventTypes().currentIndex(), 0);
        QCOMPARE(setting.dirtyed.count(), 0);
        setting.write("x");
        setting.eventTypes().setCurrentIndex(1); // the first one was shown
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("1: "), text("8: x")}));
    }

    void initTwiceOffersAndHearsTwice()
    {
        Setting setting;
        setting.widget.init({{6, text("Load")}});
        QCOMPARE(setting.eventTypes().count(), 5);
        setting.eventTypes().setCurrentIndex(4);
        QCOMPARE(setting.dirtyed.count(), 2);
    }

    void withNothingLoadedThereIsOneEmptyAction()
    {
        Setting setting;
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList(text("8: ")));
        ScriptOperationSetting withoutTypes(&setting.canvas, &setting.scripts, nullptr);
        withoutTypes.init({});
        QCOMPARE(listed(withoutTypes.scriptActions()), QStringList(text("0: ")));
    }

    void loadingNothingEmptiesAll()
    {
        Setting setting;
        setting.widget.setScript({action(5, "x"), action(3, "y")}, &setting.canvas);
        setting.editor().consoleMessage(text("old"));
        setting.widget.setScript({}, &setting.canvas);
        QCOMPARE(setting.eventTypes().currentIndex(), 0);
        QVERIFY(setting.editor().script().isEmpty());
        QVERIFY(setting.editor().findChild<QTextBrowser*>()->toPlainText().isEmpty());
        QCOMPARE(setting.dirtyed.count(), 0);
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList(text("8: ")));
    }

    // Kept: only a script that is shown moves the last index along.
    void loadingNothingKeepsTheLastIndex()
    {
        Setting setting;
        setting.widget.setScript({action(5, "x")}, &setting.canvas);
        setting.widget.setScript({action(3, "")}, &setting.canvas);
        QCOMPARE(setting.eventTypes().currentIndex(), 0);
        setting.write("late");
        setting.eventTypes().setCurrentIndex(1);
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("1: "), text("3: "), text("5: late")}));
    }

    void theFirstActionWithAScriptIsShown()
    {
        Setting setting;
        setting.widget.setScript({action(3, ""), action(5, "x"), action(1, "y")}, &setting.canvas);
        QCOMPARE(setting.eventTypes().currentData().toInt(), 5);
        QCOMPARE(setting.editor().script(), text("x"));
        QCOMPARE(setting.dirtyed.count(), 0);
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("1: y"), text("3: "), text("5: x")}));
    }

    void loadingChangesTheCanvasBeforeTheScriptIsShown()
    {
        Setting setting;
        TestCanvas other;
        setting.write("old");
        setting.scripts.calls.clear();
        setting.widget.setScript({action(5, "x")}, &other);
        QCOMPARE(setting.scripts.calls,
                 (QList<Call>{{Operation::Refresh, &other, nullptr, QString(), {}, &setting.textArea()}}));
    }

    void loadingNoScriptChangesTheCanvasAlone_data()
    {
        QTest::addColumn<int>("emptyActions");
        QTest::newRow("no actions") << 0;
        QTest::newRow("actions that are all empty") << 2;
    }
    void loadingNoScriptChangesTheCanvasAlone()
    {
        QFETCH(int, emptyActions);
        Setting setting;
        TestCanvas other;
        setting.scripts.calls.clear();
        const QList<ScadaScriptAction> actions = {action(5, ""), action(3, "")};
        setting.widget.setScript(actions.mid(0, emptyActions), &other);
        QCOMPARE(setting.scripts.calls, QList<Call>()); // not refreshed: there is nothing to show
        setting.write("go()");
        setting.editor().compile();
        QCOMPARE(setting.scripts.calls.value(0), (Call{Operation::RunForCanvas, &other, nullptr, text("go()")}));
    }

    void theComboSpeaksAgainAfterLoading()
    {
        Setting setting;
        setting.widget.setScript({action(5, "x")}, &setting.canvas);
        QVERIFY(!setting.eventTypes().signalsBlocked());
        setting.eventTypes().setCurrentIndex(0);
        QCOMPARE(setting.dirtyed.count(), 1);
    }

    void ofActionsWithOneTriggerTheFirstIsShownAndTheLastKept()
    {
        Setting setting;
        setting.widget.setScript({action(5, ""), action(5, "first"), action(5, "last")}, &setting.canvas);
        QCOMPARE(setting.editor().script(), text("first"));
        setting.textArea().clear();
        setting.eventTypes().setCurrentIndex(0); // the empty text leaves what is kept
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("5: last"), text("8: ")}));

        setting.widget.setScript({action(5, "first"), action(5, "last")}, &setting.canvas);
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList(text("5: first"))); // the editor's text is
    }

    void ofItemsWithOneTypeTheFirstIsChosen()
    {
        TestScriptInterface scripts;
        ScriptOperationSetting widget(nullptr, &scripts, nullptr);
        widget.init({{1, text("a")}, {5, text("b")}, {5, text("c")}});
        widget.setScript({action(5, "x")}, nullptr);
        QCOMPARE(widget.findChild<QComboBox*>(text("comboBox"))->currentIndex(), 1);
    }

    void aTriggerThatIsNotOfferedIsFiledUnderZero()
    {
        Setting setting;
        setting.widget.setScript({action(99, "x"), action(5, "y")}, &setting.canvas);
        QCOMPARE(setting.eventTypes().currentIndex(), -1);
        QCOMPARE(setting.editor().script(), text("x"));
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("0: x"), text("5: y"), text("99: x")}));
        setting.write("changed");
        setting.eventTypes().setCurrentIndex(2);
        QCOMPARE(setting.editor().script(), text("y"));
        QCOMPARE(listed(setting.widget.scriptActions()),
                 QStringList({text("0: changed"), text("5: y"), text("99: x")}));
    }

    void actionsAreReadBackInTheOrderOfTheirTriggers()
    {
        Setting setting;
        setting.widget.setScript({action(13, "m"), action(-4, "n"), action(8, "p"), action(0, "z")}, &setting.canvas);
        QCOMPARE(listed(setting.widget.scriptActions()),
                 QStringList({text("-4: n"), text("0: m"), text("8: p"), text("13: m")}));
    }

    void theShownTextIsReadBackEmptyToo()
    {
        Setting setting;
        setting.widget.setScript({action(5, "x")}, &setting.canvas);
        setting.textArea().clear();
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList(text("5: ")));
    }

    void whatIsReadBackCanBeLoadedAgain()
    {
        Setting setting;
        setting.widget.setScript({action(5, "x\n\ty\n"), action(3, "")}, &setting.canvas);
        setting.widget.setScript(setting.widget.scriptActions(), &setting.canvas);
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("3: "), text("5: x\n\ty\n")}));
    }

    void switchingKeepsOneScriptAndShowsTheOther()
    {
        Setting setting;
        QVERIFY(setting.showInFront());
        setting.widget.setScript({action(8, "x"), action(1, "y")}, &setting.canvas);
        setting.write("changed");
        setting.scripts.calls.clear();
        setting.eventTypes().setFocus();
        QTest::keyClick(&setting.eventTypes(), Qt::Key_Down);
        QCOMPARE(setting.eventTypes().currentIndex(), 1);
        QCOMPARE(setting.dirtyed.count(), 1);
        QCOMPARE(setting.editor().script(), text("y"));
        QCOMPARE(setting.scripts.calls.size(), 1);
        QCOMPARE(setting.scripts.calls.first().operation, Operation::Refresh);
        QTest::keyClick(&setting.eventTypes(), Qt::Key_Down);
        QCOMPARE(setting.dirtyed.count(), 2);
        QVERIFY(setting.editor().script().isEmpty()); // nothing stored for it yet
        QTest::keyClicks(&setting.textArea(), text("z"));
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("1: y"), text("5: z"), text("8: changed")}));
        QCOMPARE(setting.dirtyed.count(), 2); // typing is not told
    }

    void theSignalComesBeforeAnythingChanges()
    {
        Setting setting;
        setting.widget.setScript({action(8, "x"), action(1, "y")}, &setting.canvas);
        QString shown;
        connect(&setting.widget, &ScriptOperationSetting::dirtyed, this, [&] { shown = setting.editor().script(); });
        setting.eventTypes().setCurrentIndex(1);
        QCOMPARE(shown, text("x"));
    }

    void aTextChangedDuringTheSignalIsKept()
    {
        Setting setting;
        setting.widget.setScript({action(8, "x"), action(1, "y")}, &setting.canvas);
        connect(&setting.widget, &ScriptOperationSetting::dirtyed, this, [&] { setting.write("late"); });
        setting.eventTypes().setCurrentIndex(1);
        QCOMPARE(setting.editor().script(), text("y"));
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("1: y"), text("8: late")}));
    }

    void withNoTypeChosenThereIsAnActionUnderZero()
    {
        Setting setting;
        setting.widget.setScript({action(8, "x"), action(1, "y")}, &setting.canvas);
        setting.eventTypes().setCurrentIndex(-1);
        QVERIFY(setting.editor().script().isEmpty());
        setting.eventTypes().setCurrentIndex(1);
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("0: "), text("1: y"), text("8: x")}));

        setting.eventTypes().setCurrentIndex(-1);
        setting.write("z");
        setting.eventTypes().setCurrentIndex(0); // the text was that of no type
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("0: z"), text("1: y"), text("8: x")}));
    }

    void choosingTheShownTypeAgainIsNoChange()
    {
        Setting setting;
        setting.eventTypes().setCurrentIndex(0);
        QCOMPARE(setting.dirtyed.count(), 0);
    }

    void aTextDeletedByHandComesBack()
    {
        Setting setting;
        setting.widget.setScript({action(8, "x")}, &setting.canvas);
        setting.textArea().selectAll();
        QTest::keyClick(&setting.textArea(), Qt::Key_Delete);
        QVERIFY(setting.editor().script().isEmpty());
        setting.eventTypes().setCurrentIndex(1);
        setting.eventTypes().setCurrentIndex(0);
        QCOMPARE(setting.editor().script(), text("x"));
    }

    void aClearedScriptIsGone()
    {
        Setting setting;
        QVERIFY(setting.showInFront());
        setting.widget.setScript({action(8, "x"), action(1, "y")}, &setting.canvas);
        setting.editor().consoleMessage(text("old"));
        QTest::mouseClick(&setting.clearButton(), Qt::LeftButton);
        QVERIFY(setting.editor().script().isEmpty());
        QVERIFY(setting.editor().findChild<QTextBrowser*>()->toPlainText().isEmpty());
        QCOMPARE(setting.dirtyed.count(), 0);
        setting.eventTypes().setCurrentIndex(1);
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList(text("1: y"))); // not even an empty one
        setting.eventTypes().setCurrentIndex(0);
        QVERIFY(setting.editor().script().isEmpty());
    }

    void clearingKeepsTheChosenTypeAndTheNextSwitchWorks()
    {
        Setting setting;
        setting.widget.setScript({action(5, "x"), action(3, "y")}, &setting.canvas);
        setting.widget.slotClear();
        QCOMPARE(setting.eventTypes().currentIndex(), 2);
        QCOMPARE(setting.dirtyed.count(), 0);
        setting.write("new");
        setting.eventTypes().setCurrentIndex(3);
        QCOMPARE(setting.dirtyed.count(), 1);
        QCOMPARE(setting.editor().script(), text("y"));
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("3: y"), text("5: new")}));
    }

    void clearingDropsWhatIsChosenEvenIfAnotherWasShown()
    {
        Setting setting;
        setting.widget.setScript({action(5, "x")}, &setting.canvas);
        setting.widget.setScript({action(8, ""), action(5, "")}, &setting.canvas); // 8 is chosen, 5 was shown last
        setting.widget.slotClear();
        setting.write("y"); // goes to what was shown last
        setting.eventTypes().setCurrentIndex(3);
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("3: "), text("5: y")}));
    }

    void clearingWithNoTypeChosenDropsWhatIsUnderZero()
    {
        Setting setting;
        setting.widget.setScript({action(99, "x"), action(0, "zero")}, &setting.canvas);
        setting.widget.slotClear();
        setting.eventTypes().setCurrentIndex(2);
        QCOMPARE(listed(setting.widget.scriptActions()), QStringList({text("5: "), text("99: x")}));
    }

    void buttonsWorkWhenTheyComeUpClickedOrNot()
    {
        Setting setting;
        QVERIFY(setting.showInFront());
        QTest::mousePress(&setting.addButton(), Qt::LeftButton);
        QVERIFY(setting.editor().script().isEmpty());
        dragOff(setting.addButton());
        QVERIFY(!setting.editor().script().isEmpty());
        QTest::mousePress(&setting.clearButton(), Qt::LeftButton);
        QVERIFY(!setting.editor().script().isEmpty());
        dragOff(setting.clearButton());
        QVERIFY(setting.editor().script().isEmpty());
    }

    void withoutATextAreaNoScriptIsHeld_data()
    {
        QTest::addColumn<bool>("hasInterface");
        QTest::addColumn<bool>("hasWidget");
        QTest::newRow("no script interface") << false << false;
        QTest::newRow("a script interface that makes no widget") << true << false;
        QTest::newRow("a script interface that makes another widget") << true << true;
    }
    void withoutATextAreaNoScriptIsHeld()
    {
        QFETCH(bool, hasInterface);
        QFETCH(bool, hasWidget);
        TestCanvas canvas;
        AreaLessScripts scripts(hasWidget ? new QWidget : nullptr);
        ScriptOperationSetting widget(&canvas, hasInterface ? &scripts : nullptr, nullptr);
        QSignalSpy dirtyed(&widget, &ScriptOperationSetting::dirtyed);
        widget.init({{8, text("Press")}, {1, text("Release")}});
        widget.setScript({action(1, "x")}, &canvas);
        widget.findChild<QComboBox*>(text("comboBox"))->setCurrentIndex(0);
        widget.slotClear();
        widget.addHandler();
        QVERIFY(widget.scriptActions().isEmpty());
        QCOMPARE(dirtyed.count(), 0);
        QCOMPARE(scripts.calls, QList<Call>());
    }
};

QTEST_MAIN(tst_ScriptOperationSetting)
#include "tst_scriptoperationsetting.moc"
