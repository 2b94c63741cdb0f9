// The runtime under a window manager: a user logs on, operates the pump and confirms, all by the real pointer and real
// keys. Runs in tests/support/run-on-x11.

#include "apps/runtime/runtimeoptions.h"
#include "apps/runtime/runtimewindow.h"
#include "host/accountview/logondialog.h"
#include "scada/widgets/controlconfirm.h"
#include "tests/support/operatedproject.h"
#include "tests/support/ownsettings.h"

#include <QLineEdit>
#include <QMessageBox>
#include <QProcess>
#include <QTabWidget>

namespace {

using Outcome = ScadaOperationMessage::Outcome;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// Has the X server act as if the user did, and returns when xdotool has.
void act(const QStringList& arguments)
{
    QProcess process;
    process.start(text("xdotool"), arguments);
    QTRY_COMPARE_WITH_TIMEOUT(process.state(), QProcess::NotRunning, 20000);
    QCOMPARE(process.exitCode(), 0);
}

template <typename Window>
Window* modalWindow()
{
    return qobject_cast<Window*>(QApplication::activeModalWidget());
}

/// Types into the window in front once it is that and \p edit has the keyboard.
void type(QLineEdit* edit, const QString& typed, const char* lastKey)
{
    QTRY_VERIFY(edit->hasFocus());
    act({text("type"), typed});
    QTRY_COMPARE(edit->text(), typed);
    act({text("key"), text(lastKey)});
}

} // namespace

class tst_OperatingOnX11 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QCOMPARE(QGuiApplication::platformName(), text("xcb")); }

    void aUserLogsOnOperatesAndConfirms()
    {
        const OperatedProject project;
        const auto system = project.open();
        RuntimeOptions options;
        options.project = project.folder();
        options.isSilent = true;
        RuntimeWindow window(*system, options);
        QList<ScadaOperationMessage> ended;
        connect(&system->control().manager(), &RuntimeManager::remoteControlFinished, &window,
                [&ended](const ScadaOperationMessage& message) { ended.append(message); });
        window.resize(1200, 760);
        window.move(0, 0);
        window.show();
        window.activateWindow();
        QTRY_COMPARE(QApplication::activeWindow(), &window);
        system->start();

        // The dialogs turn event loops of their own: what works with them runs from timers.
        QTimer::singleShot(0, this, [this, &window] { logOn(window); });
        window.beginSession(text("operating"));
        auto* tabs = window.findChild<QTabWidget*>(text("pages"));
        QTRY_COMPARE(tabs->count(), 1);
        auto* view = qobject_cast<CanvasView*>(tabs->currentWidget());
        QTRY_VERIFY(system->control().manager().value({Korvane::ScadaObjectType::DigitalPoint, 100001}).isValid());

        click(*view, "select_pump");
        QTRY_COMPARE(ended.size(), 1);
        QCOMPARE(ended.constLast().outcome, Outcome::Done);
        QTimer::singleShot(0, this, [this] { confirm(); });
        click(*view, "stop_pump");
        QTRY_COMPARE_WITH_TIMEOUT(ended.size(), 2, 30000);
        QCOMPARE(ended.constLast().outcome, Outcome::Done);
        QCOMPARE(ended.constLast().user, text("otto"));
        QCOMPARE(system->control().manager().value({Korvane::ScadaObjectType::DigitalPoint, 100001}), QVariant(0));
        QVERIFY(m_isWarned);
    }

private:
    static void click(const CanvasView& view, const char* shape)
    {
        const QPoint place = view.viewport()->mapToGlobal(OperatedProject::middleOf(view, shape));
        act({text("mousemove"), QString::number(place.x()), QString::number(place.y()), text("click"), text("1")});
    }

    void logOn(const RuntimeWindow&)
    {
        QTRY_VERIFY(modalWindow<LogOnDialog>());
        LogOnDialog* dialog = modalWindow<LogOnDialog>();
        QTRY_COMPARE(QApplication::activeWindow(), dialog);
        type(dialog->findChild<QLineEdit*>(text("userEdit")), text("otto"), "Tab");
        type(dialog->findChild<QLineEdit*>(text("passwordEdit")), OperatedProject::password(text("otto")), "Return");
    }

    /// With a wrong password first, which is said in a box.
    void confirm()
    {
        QTRY_VERIFY_WITH_TIMEOUT(modalWindow<ControlConfirm>(), 20000);
        ControlConfirm* dialog = modalWindow<ControlConfirm>();
        QTRY_COMPARE(QApplication::activeWindow(), dialog);
        auto* password = dialog->findChild<QLineEdit*>(text("password"));
        password->setFocus();
        QTimer::singleShot(0, this, [this, dialog, password] {
            QTRY_VERIFY(modalWindow<QMessageBox>());
            m_isWarned = modalWindow<QMessageBox>()->text() == text("Invaild Password");
            QTRY_COMPARE(QApplication::activeWindow(), modalWindow<QMessageBox>());
            act({text("key"), text("Return")});
            QTRY_COMPARE(QApplication::activeWindow(), dialog);
            password->clear();
            type(password, OperatedProject::password(text("otto")), "Return");
        });
        type(password, text("wrong"), "Return");
    }

    OwnSettings m_settings;
    bool m_isWarned = false;
};

QTEST_MAIN(tst_OperatingOnX11)
#include "tst_operatingonx11.moc"
