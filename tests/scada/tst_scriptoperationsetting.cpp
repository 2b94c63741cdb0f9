#include "platform/ui/hidpi.h"
#include "scada/actions/korvanescriptoreditor.h"
#include "scada/actions/scripthandlernames.h"
#include "scada/actions/scriptoperationsetting.h"
#include "tests/support/dragoff.h"
#include "tests/support/markingtranslator.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/testcore.h"
#include "tests/support/testscriptinterface.h"

#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBrowser>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtTest>

using Operation = TestScriptInterface::Operation;
using Call = TestScriptInterface::Call;
using Korvane::TriggerType;

// The names are constants before any code runs.
static_assert(ScriptHandlerNames::onLogout.size() == 8 && ScriptHandlerNames::onLogout.data()[0] == 'o');

namespace {

QString text(const char* latin)
{
    return QString::fromLatin1(latin);
}

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

/// A widget with the event types 8, 1, 5 and 3, in this order, with nothing loaded.
struct Setting
{
    Setting() { widget.init({{8, text("Press")}, {1, text("Release")}, {5, text("Key")}, {3, text("Hover")}}); }

    QComboBox& eventTypes() const { return *widget.findChild<QComboBox*>(text("comboBox")); }
    QComboBox& handlers() const { return *widget.findChild<QComboBox*>(text("eventHandlerCombo")); }
    QPushButton& clearButton() const { return *widget.findChild<QPushButton*>(text("clearBtn")); }
    QToolButton& addButton() const { return *widget.findChild<QToolButton*>(text("addHandlerBtn")); }
    KorvaneScriptorEditor& editor() const { return *widget.findChild<KorvaneScriptorEditor*>(text("widget")); }
    QPlainTextEdit& textArea() const { return *editor().scriptEditor(); }
    void write(const char* script) const { textArea().setPlainText(text(script)); }
    bool showInFront()
    {
        widget.show();
        return QTest::qWaitForWindowActive(&widget);
    }

    TestCanvas canvas;
    TestScriptInterface scripts;
    ScriptOperationSetting widget{&canvas, &scripts, nullptr};
    QSignalSpy dirtyed{&widget, &ScriptOperationSetting::dirtyed};
};

} // namespace

class tst_ScriptOperationSetting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void handlerNamesStandInTheirOrder()
    {
        QFile header(QStringLiteral(KORVANE_SOURCE_DIR "/scada/actions/scripthandlernames.h"));
        QVERIFY(header.open(QIODevice::ReadOnly));
        static const QRegularExpression constant(
            QStringLiteral("^inline constexpr QLatin1String (\\w+) = text\\(\\x22([^\\x22]*)\\x22\\);$"),
            QRegularExpression::MultilineOption);
        QStringList names;
        QStringList texts;
        for (auto found = constant.globalMatch(QString::fromUtf8(header.readAll())); found.hasNext();) {
            const QRegularExpressionMatch match = found.next();
            names.append(match.captured(1));
            texts.append(match.captured(2));
        }
        const QStringList expected = {
            text("onLoad"),
            text("onClick"),
            text("onDoubleClick"),
            text("onMouseEnter"),
            text("onMouseLeave"),
            text("onReturnPressed"),
            text("onTextChanged"),
            text("onXIndexSelected"),
            text("onZoomLevelChanged"),
            text("onCurrentIndexChanged"),
            text("onRowDataRequest"),
            text("onItemClicked"),
            text("onItemDoubleClicked"),
            text("onGraphClicked"),
            text("onDataLoaded"),
            text("onDateChanged"),
            text("onPointValueChanged"),
            text("onLogon"),
            text("onLogout"),
        };
        QCOMPARE(texts, QStringList(text("#FFFFFE")) + expected);
        QCOMPARE(names.mid(1), expected);
        QCOMPARE(QString(ScriptHandlerNames::onGraphClicked), text("onGraphClicked"));
    }

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

    void theFormIsNamedTitledAndSized()
    {
        QWidget parent;
        TestScriptInterface scripts;
        const ScriptOperationSetting widget(nullptr, &scripts, &parent);
        QCOMPARE(widget.parentWidget(), &parent);
        QCOMPARE(widget.objectName(), text("CanvasOperationSetting"));
        QCOMPARE(widget.windowTitle(), text("CanvasOperationSetting"));
        QCOMPARE(widget.size(), QSize(572, 404));
    }

    void theFormsLayoutsNestAsDesigned()
    {
        const Setting setting;
        auto* top = qobject_cast<QVBoxLayout*>(setting.widget.layout());
        QVERIFY(top);
        QCOMPARE(top->objectName(), text("verticalLayout_2"));
        QCOMPARE(top->spacing(), 6);
        QCOMPARE(top->contentsMargins(), QMargins(11, 11, 11, 11));
        QCOMPARE(top->count(), 1);
        auto* group = qobject_cast<QGroupBox*>(top->itemAt(0)->widget());
        QVERIFY(group);
        QCOMPARE(group->objectName(), text("groupBox"));
        QCOMPARE(group->title(), text("Script"));

        auto* inGroup = qobject_cast<QVBoxLayout*>(group->layout());
        QVERIFY(inGroup);
        QCOMPARE(inGroup->objectName(), text("verticalLayout"));
        QCOMPARE(inGroup->spacing(), 6);
        QCOMPARE(inGroup->contentsMargins(), QMargins(11, 11, 11, 11));
        QCOMPARE(inGroup->count(), 2);
        QCOMPARE(inGroup->itemAt(1)->widget(), &setting.editor());
        QCOMPARE(setting.editor().sizePolicy(), QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Expanding));
        QVERIFY(qobject_cast<QHBoxLayout*>(inGroup->itemAt(0)->layout()));
        QCOMPARE(inGroup->itemAt(0)->layout()->objectName(), text("horizontalLayout_2"));
    }

    void theRowReadsFromLeftToRight()
    {
        const Setting setting;
        auto* row = setting.widget.findChild<QHBoxLayout*>(text("horizontalLayout_2"));
        QCOMPARE(row->spacing(), 6);
        QCOMPARE(row->count(), 5);
        auto* label = qobject_cast<QLabel*>(row->itemAt(0)->widget());
        QVERIFY(label);
        QCOMPARE(label->objectName(), text("label"));
        QCOMPARE(label->text(), text("Event Type :"));
        QCOMPARE(row->itemAt(1)->widget(), &setting.eventTypes());
        QCOMPARE(setting.eventTypes().sizePolicy(), fixedHeight(setting.eventTypes()));
        QCOMPARE(row->itemAt(2)->widget(), &setting.clearButton());
        QCOMPARE(setting.clearButton().text(), text("Clear"));
        const QSpacerItem* spacer = row->itemAt(3)->spacerItem();
        QVERIFY(spacer);
        QCOMPARE(spacer->sizeHint(), QSize(40, 20));
        QCOMPARE(spacer->sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum));

        auto* handlerRow = qobject_cast<QHBoxLayout*>(row->itemAt(4)->layout());
        QVERIFY(handlerRow);
        QCOMPARE(handlerRow->objectName(), text("horizontalLayout"));
        QCOMPARE(handlerRow->spacing(), 6);
        QCOMPARE(handlerRow->count(), 3);
        auto* handlerLabel = qobject_cast<QLabel*>(handlerRow->itemAt(0)->widget());
        QVERIFY(handlerLabel);
        QCOMPARE(handlerLabel->objectName(), text("label_2"));
        QCOMPARE(handlerLabel->text(), text("Event Handler :"));
        QCOMPARE(handlerLabel->sizePolicy().horizontalPolicy(), QSizePolicy::Preferred);
        QCOMPARE(handlerLabel->sizePolicy().verticalPolicy(), QSizePolicy::Minimum);
        QCOMPARE(handlerRow->itemAt(1)->widget(), &setting.handlers());
        QCOMPARE(setting.handlers().sizePolicy(), fixedHeight(setting.handlers()));
        QCOMPARE(setting.handlers().font().family(), text("Consolas"));
        QCOMPARE(setting.handlers().font().pointSize(), 10);
        QCOMPARE(handlerRow->itemAt(2)->widget(), &setting.addButton());
        QCOMPARE(setting.addButton().text(), text("..."));
    }

    void theAddButtonShowsAPlus()
    {
        const Setting setting;
        const QPixmap plus = HiDPI::dpiScaledPixmap(text(":/KVC/image/plus"), nullptr);
        QVERIFY(!plus.isNull());
        QCOMPARE(setting.addButton().icon().availableSizes(), QIcon(plus).availableSizes()); // made for the screen
        QCOMPARE(setting.addButton().icon().pixmap(plus.size() / plus.devicePixelRatio()).toImage(), plus.toImage());
    }

    void membersAreMadeInTheirOrder()
    {
        const Setting setting;
        QStringList names;
        for (const QObject* child : setting.widget.findChild<QGroupBox*>()->children()) {
            if (child->isWidgetType())
                names.append(child->objectName());
        }
        QCOMPARE(names, QStringList({text("label"), text("comboBox"), text("clearBtn"), text("label_2"),
                                     text("eventHandlerCombo"), text("addHandlerBtn"), text("widget")}));
    }

    void theTabKeyGoesAlongTheRow()
    {
        Setting setting;
        QVERIFY(setting.showInFront());
        setting.eventTypes().setFocus();
        const QList<QWidget*> expected = {&setting.clearButton(), &setting.handlers(), &setting.addButton()};
        for (QWidget* widget : expected) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QCOMPARE(QApplication::focusWidget(), widget);
        }
        for (int tools = 0; tools < 4; ++tools) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QVERIFY(qobject_cast<QToolButton*>(QApplication::focusWidget()));
        }
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), &setting.textArea());
    }

    void textsAreTranslatedAsTheForms()
    {
        const MarkingTranslator translator;
        const Setting setting;
        const QString context = text("CanvasOperationSetting::");
        QCOMPARE(setting.widget.windowTitle(), context + text("CanvasOperationSetting"));
        QCOMPARE(setting.widget.findChild<QGroupBox*>()->title(), context + text("Script"));
        QCOMPARE(setting.widget.findChild<QLabel*>(text("label"))->text(), context + text("Event Type :"));
        QCOMPARE(setting.widget.findChild<QLabel*>(text("label_2"))->text(), context + text("Event Handler :"));
        QCOMPARE(setting.clearButton().text(), context + text("Clear"));
        QCOMPARE(setting.addButton().text(), context + text("..."));
        QCOMPARE(setting.handlers().itemText(0), text("onCurrentIndexChanged")); // names in scripts, no texts
        QCOMPARE(setting.eventTypes().itemText(0), text("Press"));               // the host's
    }

    void theEditorWorksOnTheCanvasGiven()
    {
        Setting setting;
        QCOMPARE(setting.scripts.calls,
                 (QList<Call>{{Operation::CreateEditor, &setting.canvas, nullptr, {}, {}, &setting.textArea()}}));
    }

    void nineHandlersAreOffered()
    {
        const Setting setting;
        QStringList names;
        for (int i = 0; i < setting.handlers().count(); ++i)
            names.append(setting.handlers().itemText(i));
        QCOMPARE(names, QStringList({text("onCurrentIndexChanged"), text("onItemClicked"), text("onGraphClicked"),
                                     text("onReturnPressed"), text("onTextChanged"), text("onZoomLevelChanged"),
                                     text("onDataLoaded"), text("onPointValueChanged"), text("onRowDataRequest")}));
        QCOMPARE(setting.handlers().currentIndex(), 0);
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

    void handlerStubs_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("arguments");
        const std::pair<const char*, const char*> rows[] = {
            {"onCurrentIndexChanged", "obj,index"},
            {"onItemClicked", "obj,treeItem,column"},
            {"onGraphClicked", "obj,xIndex,xPosition,yPosition"},
            {"onReturnPressed", "obj"},
            {"onTextChanged", "obj,text"},
            {"onZoomLevelChanged", "canvasObject,zoomLevel"},
            {"onDataLoaded", "obj"},
            {"onDateChanged", "obj,year,month,day"},
            {"onPointValueChanged", "name,value"},
            {"onRowDataRequest", "obj,row,values"},
            {"onLoad", ""},
            {"onClick", ""},
            {"onDoubleClick", ""},
            {"onMouseEnter", ""},
            {"onMouseLeave", ""},
            {"onXIndexSelected", ""},
            {"onItemDoubleClicked", ""},
            {"onLogon", ""},
            {"onLogout", ""},
            {"ondataloaded", ""},
            {"onDataLoaded ", ""},
            {"", ""},
        };
        for (const auto& [name, arguments] : rows)
            QTest::addRow("\"%s\"", name) << text(name) << text(arguments);
    }
    void handlerStubs()
    {
        QFETCH(QString, name);
        QFETCH(QString, arguments);
        Setting setting;
        setting.handlers().addItem(name);
        setting.handlers().setCurrentIndex(setting.handlers().count() - 1);
        setting.widget.addHandler();
        QCOMPARE(setting.editor().script(), text("def ") + name + text("(") + arguments + text("):\n\treturn\n"));
        QCOMPARE(setting.dirtyed.count(), 0);
    }

    void theAddButtonInsertsTheChosenHandlerAndGoesThere()
    {
        Setting setting;
        QVERIFY(setting.showInFront());
        setting.write(qPrintable(text("line\n").repeated(300)));
        setting.textArea().moveCursor(QTextCursor::End);
        setting.textArea().verticalScrollBar()->setValue(0);
        setting.handlers().setFocus();
        for (int i = 0; i < 3; ++i)
            QTest::keyClick(&setting.handlers(), Qt::Key_Down);
        QTest::mouseClick(&setting.addButton(), Qt::LeftButton);
        QVERIFY(setting.editor().script().endsWith(text("line\ndef onReturnPressed(obj):\n\treturn\n")));
        QCOMPARE(QApplication::focusWidget(), &setting.textArea());
        QVERIFY(setting.textArea().viewport()->rect().contains(setting.textArea().cursorRect().center()));
        QVERIFY(setting.textArea().textCursor().atEnd());
    }

    void aStubReplacesTheSelectionInTheMiddleOfALine()
    {
        Setting setting;
        setting.write("a = old + 1");
        QVERIFY(setting.textArea().find(text("old")));
        setting.widget.addHandler();
        QCOMPARE(setting.editor().script(), text("a = def onCurrentIndexChanged(obj,index):\n\treturn\n + 1"));
        QVERIFY(!setting.textArea().textCursor().hasSelection());
    }

    void aHandlerIsInsertedAgainAndTakenBackInOneStep()
    {
        Setting setting;
        const QString stub = text("def onCurrentIndexChanged(obj,index):\n\treturn\n");
        setting.widget.addHandler();
        setting.widget.addHandler();
        QCOMPARE(setting.editor().script(), stub + stub);
        setting.textArea().undo();
        QCOMPARE(setting.editor().script(), stub);
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

    void withoutAScriptInterfaceNoScriptIsHeld()
    {
        TestCanvas canvas;
        ScriptOperationSetting widget(&canvas, nullptr, nullptr);
        QSignalSpy dirtyed(&widget, &ScriptOperationSetting::dirtyed);
        widget.init({{8, text("Press")}, {1, text("Release")}});
        widget.setScript({action(1, "x")}, &canvas);
        widget.findChild<QComboBox*>(text("comboBox"))->setCurrentIndex(0);
        widget.slotClear();
        widget.addHandler();
        QVERIFY(widget.scriptActions().isEmpty());
        QCOMPARE(dirtyed.count(), 0);
    }

private:
    static QSizePolicy fixedHeight(const QComboBox& combo)
    {
        QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Fixed, combo.sizePolicy().controlType());
        return policy;
    }
};

QTEST_MAIN(tst_ScriptOperationSetting)
#include "tst_scriptoperationsetting.moc"
