// Operating in the runtime's window: who may see and do what, confirmations, and what becomes of commands given by
// buttons, fields, lists, keys and scripts.

#include "apps/runtime/runtimeoptions.h"
#include "apps/runtime/runtimewindow.h"
#include "host/accountview/accountsdialog.h"
#include "host/core/machineuser.h"
#include "host/operating/operatorinputdialog.h"
#include "host/operating/pointtips.h"
#include "host/shapes/choice.h"
#include "host/shapes/inputfield.h"
#include "scada/widgets/controlconfirm.h"
#include "scada/widgets/userconfirmdialog.h"
#include "tests/support/indialog.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/operatedproject.h"
#include "tests/support/ownsettings.h"

#include <QAbstractItemView>
#include <QAction>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDockWidget>
#include <QDoubleSpinBox>
#include <QInputDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTabWidget>
#include <QTableWidget>

#include <algorithm>
#include <functional>

Q_DECLARE_METATYPE(Page*)

namespace {

using Outcome = ScadaOperationMessage::Outcome;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// The runtime's window over the demo project.
class Station
{
public:
    /// \param adjust changes the project's files before they are read
    explicit Station(bool isSecured = true, const std::function<void(const OperatedProject&)>& adjust = {})
        : project(isSecured)
    {
        if (adjust)
            adjust(project);
        system = project.open();
        options.project = project.folder();
        options.isSilent = true;
        window = std::make_unique<RuntimeWindow>(*system, options);
        window->resize(1200, 800);
        window->show();
        system->start();
        QObject::connect(&manager(), &RuntimeManager::remoteControlFinished,
                         [this](const ScadaOperationMessage& message) { ended.append(message); });
    }

    RuntimeManager& manager() const { return system->control().manager(); }
    void logOn(const char* user) const
    {
        const auto done = system->control().users().logOn(text(user), OperatedProject::password(text(user)));
        QVERIFY2(done, done ? "" : qPrintable(done.error()));
    }
    /// Opens the page of the commands where nobody has to log on.
    void openPage() const
    {
        const auto page = system->openPage(text("operating"));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        window->showPage(**page);
    }
    QTabWidget& tabs() const { return *window->findChild<QTabWidget*>(text("pages")); }
    CanvasView& view() const { return *qobject_cast<CanvasView*>(tabs().currentWidget()); }
    void click(const char* shape) const
    {
        QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, OperatedProject::middleOf(view(), shape));
    }
    /// How the newest request ended, and which values they had.
    Outcome outcome() const { return ended.isEmpty() ? Outcome::Requested : ended.constLast().outcome; }

    OperatedProject project;
    std::unique_ptr<LiveSystem> system;
    RuntimeOptions options;
    std::unique_ptr<RuntimeWindow> window;
    QList<ScadaOperationMessage> ended;
};

bool isSummaryShown()
{
    const auto windows = QApplication::topLevelWidgets();
    return std::any_of(windows.begin(), windows.end(), [](const QWidget* window) {
        return window->isVisible() && window->windowTitle() == text("Scada Summary");
    });
}

void pressOk(QDialog& dialog)
{
    dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok)->click();
}

template <typename Dialog>
void confirmWith(const QString& password)
{
    inDialog<Dialog>([password](Dialog& dialog) {
        dialog.template findChild<QLineEdit*>(text("password"))->setText(password);
        pressOk(dialog);
    });
}

} // namespace

class tst_OperatorStation : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        dropOffscreenWarnings();
        qRegisterMetaType<Page*>();
    }

    void nobodySeesAPageBeforeHeLoggedOn()
    {
        const Station station;
        QVERIFY(!station.system->openPage(text("operating")));
        QCOMPARE(station.system->pages().pages().size(), std::size_t(0));
        QCOMPARE(station.tabs().count(), 0);
        station.logOn("vera");
        QCOMPARE(station.tabs().count(), 1);
        QCOMPARE(station.window->findChild<QLabel*>(text("user"))->text(), text("vera (viewer)"));
        station.manager().endSession();
        QCOMPARE(station.tabs().count(), 0);
        QCOMPARE(station.system->pages().pages().size(), std::size_t(0));
    }

    void aProtectedPageOpensForItsUsersAlone()
    {
        const Station station;
        QByteArray page = station.project.read("pages/operating.pws");
        page.replace("\"version\": 1,\n \"title\"",
                     "\"version\": 1,\n \"access\": {\"protected\": true, \"users\": [3]},\n \"title\"");
        QVERIFY(page.contains("access"));
        station.project.write("pages/operating.pws", page);
        QSignalSpy opened(&station.system->pages(), &CanvasManager::opened);
        station.logOn("sue");
        QCOMPARE(station.tabs().count(), 0);
        QCOMPARE(opened.count(), 0);
        QVERIFY(station.system->problems().constLast().contains(text("sue may not open this page")));
        station.logOn("otto");
        QCOMPARE(station.tabs().count(), 1);
        station.logOn("sue"); // in his place
        QCOMPARE(station.tabs().count(), 0);
    }

    void commandsNeedTheirRole()
    {
        Station station;
        station.logOn("vera");
        station.click("raise_inlet_valve");
        QTRY_COMPARE(station.outcome(), Outcome::NotPermitted);
        QCOMPARE(station.ended.constLast().user, text("vera"));
    }

    void aButtonLeadsToTheProcessAndBack()
    {
        Station station(false);
        station.openPage();
        QTRY_VERIFY(station.manager().value({Korvane::ScadaObjectType::AnalogPoint, 200010}).isValid());
        station.click("lower_inlet_valve");
        QTRY_COMPARE_WITH_TIMEOUT(station.outcome(), Outcome::Done, 20000);
        QCOMPARE(station.ended.constLast().tag, text("V101.POSITION"));
        const double asked = station.ended.constLast().value.toDouble();
        QVERIFY(asked > 80 && asked < 98);
        const auto checked = station.system->control().audit().verify();
        QVERIFY2(checked, checked ? "" : qPrintable(checked.error()));
        QCOMPARE(*checked, qint64(2)); // sent, done
    }

    void theOperatorConfirmsByHisPassword()
    {
        Station station;
        station.logOn("otto");
        QTRY_VERIFY(station.manager().value({Korvane::ScadaObjectType::DigitalPoint, 100001}).isValid());
        station.click("stop_pump");
        QTRY_COMPARE(station.outcome(), Outcome::NotSelected);
        station.click("select_pump");
        QTRY_COMPARE(station.outcome(), Outcome::Done);
        QString command;
        inDialog<ControlConfirm>([&command](ControlConfirm& dialog) {
            command = dialog.findChild<QLabel*>(text("value"))->text();
            dialog.findChild<QLineEdit*>(text("password"))->setText(OperatedProject::password(text("otto")));
            pressOk(dialog);
        });
        station.click("stop_pump");
        QTRY_COMPARE_WITH_TIMEOUT(station.ended.size(), 3, 20000);
        QCOMPARE(station.ended.constLast().text, QString());
        QCOMPARE(station.outcome(), Outcome::Done);
        QCOMPARE(command, text("Pump (P101.RUNNING): Operate Stopped"));
        QCOMPARE(station.manager().value({Korvane::ScadaObjectType::DigitalPoint, 100001}), QVariant(0));
    }

    void aConfirmationCanNotBeSkipped_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("accepted from outside") << 0;
        QTest::newRow("done(Accepted) by a posted call") << 1;
        QTest::newRow("Return without a password") << 2;
    }
    void aConfirmationCanNotBeSkipped()
    {
        QFETCH(const int, way);
        Station station;
        station.logOn("otto");
        QTRY_VERIFY(station.manager().value({Korvane::ScadaObjectType::DigitalPoint, 100001}).isValid());
        station.click("select_pump");
        QTRY_COMPARE(station.outcome(), Outcome::Done);
        inDialog<ControlConfirm>([way](ControlConfirm& dialog) {
            if (way == 0) {
                dialog.accept();
            } else if (way == 1) {
                QMetaObject::invokeMethod(&dialog, "done", Qt::QueuedConnection, Q_ARG(int, QDialog::Accepted));
            } else {
                inDialog<QMessageBox>([](QMessageBox& box) {
                    box.accept();
                    inDialog<ControlConfirm>([](ControlConfirm& asking) { asking.reject(); });
                });
                QCoreApplication::postEvent(&dialog, new QKeyEvent(QEvent::KeyPress, Qt::Key_Return, {}));
            }
        });
        station.click("stop_pump");
        QTRY_COMPARE(station.outcome(), Outcome::NotConfirmed);
        QCOMPARE(station.manager().value({Korvane::ScadaObjectType::DigitalPoint, 100001}), QVariant(1));
    }

    void aSecondPersonConfirmsBesides()
    {
        Station station;
        QByteArray points = station.project.read("points.csv");
        points.replace(",select,user,", ",direct,second,");
        station.project.write("points.csv", points);
        station.window.reset();
        station.system = station.project.open();
        station.window = std::make_unique<RuntimeWindow>(*station.system, station.options);
        station.window->resize(1200, 800);
        station.window->show();
        station.system->start();
        connect(&station.manager(), &RuntimeManager::remoteControlFinished, this,
                [&station](const ScadaOperationMessage& message) { station.ended.append(message); });
        station.logOn("otto");
        QTRY_VERIFY(station.manager().value({Korvane::ScadaObjectType::DigitalPoint, 100001}).isValid());
        confirmWith<ControlConfirm>(OperatedProject::password(text("otto")));
        QStringList offered;
        inDialog<QInputDialog>([&offered](QInputDialog& dialog) {
            offered = dialog.comboBoxItems();
            dialog.setTextValue(text("sue"));
            confirmWith<UserConfirmDialog>(OperatedProject::password(text("sue")));
            dialog.accept();
        });
        station.click("stop_pump");
        QTRY_COMPARE_WITH_TIMEOUT(station.outcome(), Outcome::Done, 20000);
        QCOMPARE(station.ended.constLast().secondUser, text("sue"));
        QCOMPARE(offered, QStringList({text("ada"), text("sue")}));
    }

    void aReasonIsAskedForWhereOneIsNeeded()
    {
        Station station;
        station.logOn("otto");
        QTRY_VERIFY(station.manager().value({Korvane::ScadaObjectType::DigitalPoint, 100004}).isValid());
        bool isRefusedWithout = false;
        inDialog<OperatorInputDialog>([&isRefusedWithout](OperatorInputDialog& dialog) {
            QPushButton* ok = dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
            dialog.findChild<QLineEdit*>(text("reason"))->setText(text("  "));
            isRefusedWithout = !ok->isEnabled();
            dialog.findChild<QLineEdit*>(text("reason"))->setText(text("maintenance"));
            confirmWith<ControlConfirm>(OperatedProject::password(text("otto")));
            ok->click();
        });
        station.click("open_breaker");
        QTRY_COMPARE_WITH_TIMEOUT(station.outcome(), Outcome::Done, 20000);
        QVERIFY(isRefusedWithout);
        QCOMPARE(station.ended.constLast().reason, text("maintenance"));
    }

    void aValueIsEnteredByHand()
    {
        Station station(false);
        station.openPage();
        inDialog<OperatorInputDialog>([](OperatorInputDialog& dialog) {
            auto* number = dialog.findChild<QDoubleSpinBox*>(text("number"));
            QCOMPARE(number->minimum(), 0.0);
            QCOMPARE(number->maximum(), 14.0);
            QCOMPARE(number->decimals(), 2);
            QCOMPARE(number->singleStep(), 0.1);
            number->setValue(7.25);
            pressOk(dialog);
        });
        station.click("enter_ph");
        QTRY_COMPARE(station.outcome(), Outcome::Done);
        QCOMPARE(station.manager().value({Korvane::ScadaObjectType::AnalogPoint, 200012}), QVariant(7.25));
    }

    void fieldsAndListsSendWhatWasEntered()
    {
        Station station(false);
        station.openPage();
        QTRY_VERIFY(station.manager().value({Korvane::ScadaObjectType::AnalogPoint, 200010}).isValid());
        auto* field = dynamic_cast<InputField*>(station.view().canvas().findShape(text("inlet_valve_setpoint")));
        const auto enter = [field](const QString& typed) {
            field->beginEditing();
            field->write(typed);
            field->enter(typed);
        };
        enter(text("101"));
        QCOMPARE(station.manager().pendingRequests().size(), 0); // beyond the field's own limits
        enter(text("97"));
        QTRY_COMPARE_WITH_TIMEOUT(station.ended.size(), 1, 20000);
        QCOMPARE(station.ended.constLast().operation, ScadaOperationMessage::Operation::SetPoint);
        QCOMPARE(station.ended.constLast().value, QVariant(97.0));
        QCOMPARE(station.outcome(), Outcome::Done);
        auto* list = dynamic_cast<Choice*>(station.view().canvas().findShape(text("outlet_valve_preset")));
        list->choose(1);
        QCOMPARE(station.manager().pendingRequests().size(), 1);
        QCOMPARE(station.manager().pendingRequests().constFirst().value, QVariant(50.0));
    }

    void keysDoWhatButtonsDo()
    {
        Station station(false);
        station.openPage();
        QVERIFY(QTest::qWaitForWindowActive(station.window.get()));
        station.view().setFocus();
        QTest::keyClick(&station.view(), Qt::Key_T, Qt::ControlModifier);
        QTRY_COMPARE(station.outcome(), Outcome::NotSelected);
        QCOMPARE(station.ended.constLast().tag, text("P101.RUNNING"));
    }

    void scriptsAskOnBehalfOfWhoIsLoggedOn()
    {
        Station station;
        station.system->trustScripts();
        station.logOn("vera");
        station.system->scripts().run(text("print(control.operate('V101.OPEN', 0))"));
        QTRY_COMPARE(station.outcome(), Outcome::NotPermitted);
        QCOMPARE(station.ended.constLast().user, text("vera"));
        station.system->scripts().run(text("control.operate('NO.SUCH', 0)"));
        QVERIFY(station.system->scripts().lastError().contains(text("LookupError")));
        QCOMPARE(station.ended.size(), 1);
    }

    void aTipNamesThePointsBehindAShape()
    {
        Station station(false);
        station.openPage();
        const auto* tips = station.view().findChild<PointTips*>();
        QVERIFY(tips);
        const QList<QPair<QString, QString>> expected = {{text("V101.OPEN"), text("Inlet valve")}};
        QCOMPARE(tips->pointsOf(*station.view().canvas().findShape(text("inlet_valve"))), expected);
        const QPoint place = OperatedProject::middleOf(station.view(), "inlet_valve");
        QHelpEvent help(QEvent::ToolTip, place, station.view().viewport()->mapToGlobal(place));
        QCoreApplication::sendEvent(station.view().viewport(), &help);
        const auto tip = station.view().viewport()->findChild<QLabel*>(text("qtooltip_label"));
        QVERIFY(tip && tip->isVisible());
        QCOMPARE(tip->text(), text("Name: V101.OPEN\nDiscription: Inlet valve"));
        QTest::mouseMove(station.view().viewport(), {5, 5});
        QTRY_VERIFY(!station.view().viewport()->findChild<QLabel*>(text("qtooltip_label")));
    }

    void aKeyOfTheWindowIsReportedAndStaysTheWindows()
    {
        const Station station(false, [](const OperatedProject& project) {
            QByteArray page = project.read("pages/operating.pws");
            page.replace("\"key\": \"Ctrl+T\"", "\"key\": \"F8\"");
            page.replace("\"key\": \"Ctrl+R\"", "\"key\": \"Alt+P\"");
            project.write("pages/operating.pws", page);
        });
        station.openPage();
        const QStringList problems = station.system->problems().filter(text("its key does nothing"));
        QCOMPARE(problems.size(), 2);
        QVERIFY(problems.filter(text("F8 is a key of the window"))
                    .constFirst()
                    .contains(text("pages/operating.pws: \"stop_pump\"")));
        QVERIFY(problems.filter(text("Alt+P is a key of the window")).constFirst().contains(text("\"run_pump\"")));
        QVERIFY(QTest::qWaitForWindowActive(station.window.get()));
        station.view().setFocus();
        QTest::keyClick(&station.view(), Qt::Key_F8);
        QVERIFY(isSummaryShown());
    }

    void whileNobodyIsLoggedOnThePlantIsOutOfReach()
    {
        Station station;
        station.system->trustScripts();
        station.logOn("otto");
        QVERIFY(QTest::qWaitForWindowActive(station.window.get()));
        station.system->scripts().runForCanvas(&station.view().canvas(),
                                               text("def onZoomLevelChanged(canvas, zoom):\n    print('zoomed')"));
        for (const Qt::Key key : {Qt::Key_F2, Qt::Key_F3, Qt::Key_F4, Qt::Key_F8, Qt::Key_F12})
            QTest::keyClick(station.window.get(), key);
        QVERIFY(isSummaryShown());
        const auto docks = station.window->findChildren<QDockWidget*>();
        const auto isShown = [&docks](const char* name) {
            return std::any_of(docks.begin(), docks.end(), [name](const QDockWidget* dock) {
                return dock->objectName() == text(name) && dock->isVisible();
            });
        };
        QVERIFY(isShown("scripts"));
        QVERIFY(isShown("operations"));

        const QPoint place = OperatedProject::middleOf(station.view(), "inlet_valve");
        QSignalSpy printed(&station.system->scripts(), &ScriptEngine::stdOut);
        station.manager().endSession();
        printed.clear();
        QCOMPARE(station.tabs().count(), 0);
        QVERIFY(!isSummaryShown());
        for (const Qt::Key key : {Qt::Key_F4, Qt::Key_F8, Qt::Key_F12, Qt::Key_F5})
            QTest::keyClick(station.window.get(), key);
        QTest::keyClick(station.window.get(), Qt::Key_T, Qt::ControlModifier); // the pump's
        QTest::keyClick(station.window.get(), Qt::Key_Plus, Qt::ControlModifier);
        QTest::mouseClick(station.window->centralWidget(), Qt::LeftButton, {}, place);
        QCoreApplication::processEvents();
        QVERIFY(!isSummaryShown());
        for (const char* name : {"scripts", "operations", "alarms"})
            QVERIFY2(!isShown(name), name);
        QCOMPARE(printed.count(), 0);
        QCOMPARE(station.ended.size(), 0);
        QVERIFY(!station.window->findChild<PointTips*>());
        for (const QAbstractItemView* list : station.window->findChildren<QAbstractItemView*>())
            QVERIFY2(!list->isVisible() || !list->model() || list->model()->rowCount() == 0,
                     list->metaObject()->className());
        for (const QPlainTextEdit* explanation : station.window->findChildren<QPlainTextEdit*>())
            QVERIFY(!explanation->isVisible() || explanation->toPlainText().isEmpty());
        QVERIFY(!station.system->openPage(text("operating")));
    }

    void norIsItBeforeTheFirstHasLoggedOn()
    {
        const Station station;
        QVERIFY(QTest::qWaitForWindowActive(station.window.get()));
        for (const Qt::Key key : {Qt::Key_F4, Qt::Key_F5, Qt::Key_F8, Qt::Key_F12})
            QTest::keyClick(station.window.get(), key);
        QVERIFY(!isSummaryShown());
        for (const QDockWidget* dock : station.window->findChildren<QDockWidget*>())
            QVERIFY2(!dock->isVisible(), qPrintable(dock->objectName()));
    }

    void withoutTheirFileNoCommandsAreSent()
    {
        const QByteArray foreign("no database, but something of somebody's");
        Station station(false, [foreign](const OperatedProject& project) { project.write("operating.db", foreign); });
        const QStringList problems = station.system->problems().filter(text("no commands are sent"));
        QCOMPARE(problems.size(), 1);
        QVERIFY(problems.constFirst().contains(text("operating.db")));
        station.openPage();
        QTRY_VERIFY(station.manager().value({Korvane::ScadaObjectType::AnalogPoint, 200010}).isValid());
        station.click("lower_inlet_valve");
        QTRY_COMPARE(station.outcome(), Outcome::Refused);
        QCOMPARE(station.ended.constLast().text, text("the audit log can't be written"));
        QCOMPARE(station.project.read("operating.db"), foreign);
    }

    void theSecondQuestionWaitsForTheFirst()
    {
        Station station(true, [](const OperatedProject& project) {
            QByteArray points = project.read("points.csv");
            points.replace(",select,user,", ",direct,user,");
            project.write("points.csv", points);
        });
        station.system->trustScripts();
        station.logOn("otto");
        QTRY_VERIFY(station.manager().value({Korvane::ScadaObjectType::DigitalPoint, 100001}).isValid());
        const auto question = [](const ControlConfirm& dialog) {
            return dialog.findChild<QLabel*>(text("value"))->text();
        };
        QStringList questions;
        inDialog<ControlConfirm>([&](ControlConfirm& dialog) {
            station.system->scripts().run(text("control.operate('P101.RUNNING', 1)"));
            QTRY_COMPARE(station.manager().pendingRequests().size(), 2);
            QCoreApplication::processEvents();
            questions.append(question(dialog));
            QCOMPARE(station.window->findChildren<ControlConfirm*>().size(), 1);
            inDialog<ControlConfirm>([&](ControlConfirm& second) {
                questions.append(question(second));
                second.reject();
            });
            dialog.findChild<QLineEdit*>(text("password"))->setText(OperatedProject::password(text("otto")));
            pressOk(dialog);
        });
        station.click("stop_pump");
        QTRY_COMPARE_WITH_TIMEOUT(station.ended.size(), 2, 20000);
        QCOMPARE(questions, (QStringList{text("Pump (P101.RUNNING): Operate Stopped"),
                                         text("Pump (P101.RUNNING): Operate Running")}));
        for (const ScadaOperationMessage& end : qAsConst(station.ended))
            QCOMPARE(end.outcome, end.value == QVariant(0.0) ? Outcome::Done : Outcome::NotConfirmed);
    }

    void scriptsActOnAlarmsWithTheRightsOfWhoIsLoggedOn()
    {
        const Station station;
        station.system->trustScripts();
        const QString script = text("print(alarms.suppress('V101.OPEN', reason='cleaning'))");
        const auto isSuppressed = [&station] {
            const ObjectKey valve{Korvane::ScadaObjectType::DigitalPoint, 100002};
            return station.system->alarms().manager().exclusion(valve).isSuppressed;
        };
        for (const char* user : {"", "vera", "otto"}) {
            if (*user)
                station.logOn(user);
            station.system->scripts().run(script);
            QVERIFY2(station.system->scripts().lastError().contains(text("PermissionError")), user);
            QVERIFY(!isSuppressed());
        }
        station.logOn("sue");
        station.system->scripts().run(script);
        QCOMPARE(station.system->scripts().lastError(), QString());
        QVERIFY(isSuppressed());
    }

    void theSummaryAndTheOperationsAreWindowsOfTheMenu()
    {
        Station station(false);
        station.openPage();
        station.click("raise_inlet_valve");
        QTRY_VERIFY(!station.ended.isEmpty());
        auto* operations = station.window->findChild<QTableWidget*>();
        QVERIFY(operations);
        QCOMPARE(operations->item(0, 2)->text().left(25), text("Position of the inlet val"));
        for (QAction* action : station.window->actions()) {
            if (action->shortcut() == QKeySequence(Qt::Key_F8))
                action->trigger();
        }
        QVERIFY(isSummaryShown());
    }

    void sessionsAndAccountsAreInTheAuditLog()
    {
        QStringList told;
        {
            Station station;
            AccountDatabase& accounts = station.system->control().accounts();
            QVERIFY(!station.system->control().users().logOn(text("otto"), text("wrong")));
            station.logOn("otto");
            station.manager().endSession();
            station.logOn("ada");
            QVERIFY(accounts.setLocked(text("vera"), true));
            EUserAccount added;
            added.name = text("nora");
            added.role = accountRoleName(AccountRole::Viewer);
            QVERIFY(accounts.add(added, text("nora-password")));
            const auto lines = station.system->control().audit().newest(100);
            QVERIFY(lines);
            for (const AuditLine& line : *lines) {
                told.prepend(QStringLiteral("%1 %2 %3 %4").arg(line.user, line.operation, line.subject, line.outcome));
                QCOMPARE(line.workplace, station.manager().workplace());
            }
            QCOMPARE(station.system->control().audit().verify().value_or(-1), qint64(lines->size()));
        }
        QCOMPARE(told.join(QLatin1Char('\n')),
                 text("otto logOn otto refused\notto logOn otto done\notto logOff otto done\nada logOn ada done\n"
                      "ada lockAccount vera done\nada addAccount nora done"));
    }

    void whatIsDoneToTheFirstAccountIsTheMachinesUsers()
    {
        Station station;
        station.manager().endSession();
        QVERIFY(station.system->control().accounts().setLocked(text("vera"), true)); // as the first is added
        QCOMPARE(station.system->control().audit().newest(1)->first().user, machineUser());
    }

    void theEndOfTheProgramIsALogOff()
    {
        OperatedProject project;
        {
            const auto system = project.open();
            system->start();
            QVERIFY(system->control().users().logOn(text("otto"), OperatedProject::password(text("otto"))));
        }
        AuditLog log;
        QVERIFY(log.openReadOnly(project.folder() + text("/operating.db")));
        const auto newest = log.newest(1);
        QCOMPARE(newest->first().operation, text("logOff"));
        QCOMPARE(newest->first().user, text("otto"));
        QCOMPARE(newest->first().text, text("the program ended"));
    }

    void whileARecordingPlaysAccountsAreAccountedForAllTheSame()
    {
        OperatedProject project;
        QByteArray settings = project.read("project.json");
        settings.replace("\"simulation\"", "\"recording:old.csv?loop=1\"");
        project.write("project.json", settings);
        project.write("old.csv", "time,TK101.LEVEL\n2001-01-01T00:00:00Z,1\n2001-01-01T00:00:10Z,2\n");
        const auto system = project.open();
        system->start();
        QVERIFY(system->control().manager().isReplay());
        const QDateTime before = QDateTime::currentDateTimeUtc();
        QVERIFY(system->control().users().logOn(text("otto"), OperatedProject::password(text("otto"))));
        QCOMPARE(system->control().audit().verify().value_or(-1), qint64(0)); // of what is done while it plays
        AuditLog log;
        QVERIFY(log.openReadOnly(project.folder() + text("/operating.db")));
        const auto lines = log.newest(10);
        QCOMPARE(lines->size(), 1);
        QCOMPARE(lines->first().operation, text("logOn"));
        QVERIFY(lines->first().time >= before); // not the recording's
    }

    void withoutTheAuditLogOneLogsOnButChangesNoAccount()
    {
        Station station;
        {
            QSqlDatabase full = QSqlDatabase::addDatabase(text("QSQLITE"), text("full"));
            full.setDatabaseName(station.project.folder() + text("/operating.db"));
            QVERIFY(full.open());
            QVERIFY(QSqlQuery(full).exec(text("CREATE TRIGGER full BEFORE UPDATE ON audit_end BEGIN "
                                              "SELECT RAISE(ABORT, 'the disk is full'); END")));
        }
        QSqlDatabase::removeDatabase(text("full"));
        station.logOn("ada");
        QCOMPARE(station.manager().currentUser(), text("ada"));
        QVERIFY2(station.system->problems().constLast().contains(text("the disk is full")),
                 qPrintable(station.system->problems().join(QLatin1Char('\n'))));
        AccountsDialog dialog(station.system->control().accounts(), station.system->control().users());
        auto* table = dialog.findChild<QTableWidget*>();
        table->selectRow(3);
        QCOMPARE(table->item(3, 1)->text(), text("vera"));
        dialog.findChild<QPushButton*>(text("lockButton"))->click();
        const QString told = dialog.findChild<QLabel*>(text("messageLabel"))->text();
        QVERIFY2(told.contains(text("the disk is full; the account is as it was")), qPrintable(told));
        QVERIFY(!station.system->control().accounts().isLocked(text("vera")).value());
    }

private:
    OwnSettings m_settings;
};

QTEST_MAIN(tst_OperatorStation)
#include "tst_operatorstation.moc"
