// The form of the setting, and the handler functions that it inserts.

#include "platform/ui/hidpi.h"
#include "scada/actions/scripthandlernames.h"
#include "tests/scada/editedsetting.h"
#include "tests/support/markingtranslator.h"
#include "tests/support/narrowstyle.h"
#include "tests/support/offscreenwarnings.h"

#include <QFile>
#include <QGroupBox>
#include <QLabel>
#include <QRegularExpression>
#include <QScrollBar>
#include <QVBoxLayout>

// The names are constants before any code runs.
static_assert(ScriptHandlerNames::onLogout.size() == 8 && ScriptHandlerNames::onLogout.data()[0] == 'o');

namespace {

/// Keeps why a widget got the focus, each time.
class FocusReasons : public QObject
{
public:
    explicit FocusReasons(QWidget& widget) { widget.installEventFilter(this); }

    QList<Qt::FocusReason> reasons;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::FocusIn)
            reasons.append(static_cast<QFocusEvent*>(event)->reason());
        return false;
    }
};

} // namespace

class tst_ScriptOperationSettingForm : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        dropOffscreenWarnings();
        QApplication::setStyle(new NarrowStyle);
    }

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
        const QSizePolicy fixedHeight(QSizePolicy::Preferred, QSizePolicy::Fixed); // its control type is the form's too
        auto* row = setting.widget.findChild<QHBoxLayout*>(text("horizontalLayout_2"));
        QCOMPARE(row->spacing(), 6);
        QCOMPARE(row->count(), 5);
        auto* label = qobject_cast<QLabel*>(row->itemAt(0)->widget());
        QVERIFY(label);
        QCOMPARE(label->objectName(), text("label"));
        QCOMPARE(label->text(), text("Event Type :"));
        QCOMPARE(row->itemAt(1)->widget(), &setting.eventTypes());
        QCOMPARE(setting.eventTypes().sizePolicy(), fixedHeight);
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
        QCOMPARE(handlerLabel->sizePolicy(), QSizePolicy(QSizePolicy::Preferred, QSizePolicy::Minimum));
        QCOMPARE(handlerRow->itemAt(1)->widget(), &setting.handlers());
        QCOMPARE(setting.handlers().sizePolicy(), fixedHeight);
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
        const FocusReasons focus(setting.textArea());
        QTest::mouseClick(&setting.addButton(), Qt::LeftButton);
        QVERIFY(setting.editor().script().endsWith(text("line\ndef onReturnPressed(obj):\n\treturn\n")));
        QCOMPARE(QApplication::focusWidget(), &setting.textArea());
        QCOMPARE(focus.reasons, QList<Qt::FocusReason>{Qt::OtherFocusReason});
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
};

QTEST_MAIN(tst_ScriptOperationSettingForm)
#include "tst_scriptoperationsettingform.moc"
