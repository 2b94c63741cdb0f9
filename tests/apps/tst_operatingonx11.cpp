// The runtime under a window manager: a user logs on, operates the pump and confirms, all by the real pointer and real
// keys. Runs in tests/support/run-on-x11.

#include "apps/runtime/runtimeoptions.h"
#include "apps/runtime/runtimewindow.h"
#include "host/accountview/logondialog.h"
#include "scada/widgets/controlconfirm.h"
#include "tests/support/activewindow.h"
#include "tests/support/indialog.h"
#include "tests/support/operatedproject.h"
#include "tests/support/ownsettings.h"

#include <QLineEdit>
#include <QLoggingCategory>
#include <QMessageBox>
#include <QProcess>
#include <QTabWidget>

namespace {

using Outcome = ScadaOperationMessage::Outcome;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// Has the X server act as if the user did, without waiting for its end: what he does is worked on meanwhile.
void act(const QStringList& arguments)
{
    QProcess::startDetached(text("xdotool"), arguments);
}

void typeInto(QLineEdit* edit, const QString& typed, const char* lastKey)
{
    edit->setFocus();
    act({text("type"), typed});
    auto* wait = new QTimer(edit);
    QObject::connect(wait, &QTimer::timeout, wait, [wait, edit, typed, lastKey] {
        if (edit->text() != typed)
            return;
        wait->stop();
        act({text("key"), text(lastKey)});
    });
    wait->start(5);
}

} // namespace

class tst_OperatingOnX11 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        // A dialog that is gone may still be asked for where it lies, which Qt's plugin says in passing.
        QLoggingCategory::setFilterRules(text("qt.qpa.xcb.warning=false"));
        QCOMPARE(QGuiApplication::platformName(), text("xcb"));
    }

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
        QVERIFY(becomesActive(window));
        system->start();

        logOn();
        window.beginSession(text("operating"));
        auto* tabs = window.findChild<QTabWidget*>(text("pages"));
        QTRY_COMPARE(tabs->count(), 1);
        auto* view = qobject_cast<CanvasView*>(tabs->currentWidget());
        QTRY_VERIFY(system->control().manager().value({Korvane::ScadaObjectType::DigitalPoint, 100001}).isValid());

        click(*view, "select_pump");
        QTRY_COMPARE(ended.size(), 1);
        QCOMPARE(ended.constLast().outcome, Outcome::Done);
        confirm();
        click(*view, "stop_pump");
        QTRY_COMPARE_WITH_TIMEOUT(ended.size(), 2, 30000);
        QCOMPARE(ended.constLast().outcome, Outcome::Done);
        QCOMPARE(ended.constLast().user, text("otto"));
        QCOMPARE(system->control().manager().value({Korvane::ScadaObjectType::DigitalPoint, 100001}), QVariant(0));
        QVERIFY(m_isWarned);
        QVERIFY(m_hasFocus);
    }

private:
    static void click(const CanvasView& view, const char* shape)
    {
        const QPoint place = view.viewport()->mapToGlobal(OperatedProject::middleOf(view, shape));
        act({text("mousemove"), QString::number(place.x()), QString::number(place.y()), text("click"), text("1")});
    }

    // The dialogs turn event loops of their own, from which they are worked with.
    static void logOn()
    {
        inDialog<LogOnDialog>([](LogOnDialog& dialog) {
            auto* password = dialog.findChild<QLineEdit*>(text("passwordEdit"));
            auto* wait = new QTimer(&dialog);
            connect(wait, &QTimer::timeout, wait, [wait, password] {
                if (!password->hasFocus())
                    return;
                wait->stop();
                typeInto(password, OperatedProject::password(text("otto")), "Return");
            });
            wait->start(5);
            typeInto(dialog.findChild<QLineEdit*>(text("userEdit")), text("otto"), "Tab");
        });
    }

    /// With a wrong password first, which is said in a box.
    void confirm()
    {
        inDialog<ControlConfirm>([this](ControlConfirm& dialog) {
            auto* password = dialog.findChild<QLineEdit*>(text("password"));
            m_hasFocus = password->hasFocus();
            inDialog<QMessageBox>([this, password](QMessageBox& box) {
                m_isWarned = box.text() == text("Invaild Password");
                act({text("key"), text("Return")});
                inDialog<ControlConfirm>([password](ControlConfirm&) {
                    password->clear();
                    typeInto(password, OperatedProject::password(text("otto")), "Return");
                });
            });
            typeInto(password, text("wrong"), "Return");
        });
    }

    OwnSettings m_settings;
    bool m_isWarned = false;
    bool m_hasFocus = false; ///< the password's field, when the dialog came up
};

QTEST_MAIN(tst_OperatingOnX11)
#include "tst_operatingonx11.moc"
