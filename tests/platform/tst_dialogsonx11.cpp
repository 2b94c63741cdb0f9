// The dialogs among other windows, under a window manager: what is active, where keys of the user arrive, and where a
// window comes up again. Runs in tests/support/run-on-x11.

#include "platform/ui/finddialog.h"
#include "platform/ui/pointbrowserdialog.h"
#include "tests/support/activewindow.h"
#include "tests/support/ownsettings.h"
#include "tests/support/stationlist.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QProcess>
#include <QSignalSpy>
#include <QTreeView>
#include <QtTest>

#include <memory>
#include <optional>

using Korvane::BrowseTypeFlag;

namespace {

/// Has the X server act as if the user did: "key Return", "type text".
void act(const QStringList& arguments)
{
    QCOMPARE(QProcess::execute(QStringLiteral("xdotool"), arguments), 0);
}
void press(const char* key)
{
    act({QStringLiteral("key"), QString::fromLatin1(key)});
}
void type(const char* text)
{
    act({QStringLiteral("type"), QString::fromLatin1(text)});
}

/// As the widgets that own dialogs bring them up.
void bringUp(QWidget* window)
{
    window->show();
    window->raise();
    window->activateWindow();
    QVERIFY(becomesActive(*window));
}

} // namespace

class tst_DialogsOnX11 : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
        qRegisterMetaType<Qt::CaseSensitivity>();
    }

    void init()
    {
        m_desk = std::make_unique<QPlainTextEdit>();
        m_desk->resize(600, 400);
        bringUp(m_desk.get());
        QTRY_VERIFY(m_desk->hasFocus());
    }
    void cleanup() { m_desk.reset(); }

    void findingByKeysAlone()
    {
        auto* dialog = new FindDialog(m_desk.get());
        const QSignalSpy next(dialog, &FindDialog::findNext);
        const QSignalSpy previous(dialog, &FindDialog::findPrevious);
        bringUp(dialog);
        auto* field = dialog->findChild<QLineEdit*>();
        QTRY_VERIFY(field->hasFocus());

        type("onLoad");
        QTRY_COMPARE(dialog->text(), QStringLiteral("onLoad"));
        press("Return");
        QTRY_COMPARE(next.size(), 1);
        press("shift+Return");
        QTRY_COMPARE(previous.size(), 1);
        QCOMPARE(previous.first().first().toString(), QStringLiteral("onLoad"));
        QCOMPARE(next.size(), 1);
        press("alt+m");
        QTRY_VERIFY(dialog->findChild<QCheckBox*>()->isChecked());
        press("Return");
        QTRY_COMPARE(next.size(), 2);
        QCOMPARE(next.last().last().value<Qt::CaseSensitivity>(), Qt::CaseSensitive);

        press("Escape");
        QTRY_VERIFY(!dialog->isVisible());
        QVERIFY(becomesActive(*m_desk));
        bringUp(dialog);
        QTRY_VERIFY(field->hasFocus());
        type("x");
        QTRY_COMPARE(dialog->text(), QStringLiteral("x"));
        QCOMPARE(m_desk->toPlainText(), QString());
    }

    void aDialogBehindComesToTheFront()
    {
        auto* dialog = new FindDialog(m_desk.get());
        bringUp(dialog);
        bringUp(m_desk.get());
        type("a");
        QTRY_COMPARE(m_desk->toPlainText(), QStringLiteral("a"));
        bringUp(dialog);
        type("b");
        QTRY_COMPARE(dialog->text(), QStringLiteral("b"));
        QCOMPARE(m_desk->toPlainText(), QStringLiteral("a"));
    }

    void choosingByKeysAlone()
    {
        const StationList list(someStations());
        const QPointer<PointBrowserDialog> dialog =
            new PointBrowserDialog(m_desk.get(), Qt::Window, BrowseTypeFlag(7), nullptr);
        dialog->setAttribute(Qt::WA_DeleteOnClose);
        const QSignalSpy taken(dialog, &PointBrowserDialog::emitOk);
        bringUp(dialog);
        auto* filter = dialog->findChild<QLineEdit*>();
        QTRY_VERIFY(filter->hasFocus());

        type("flow");
        QTRY_COMPARE(filter->text(), QStringLiteral("flow"));
        press("Down");
        QTRY_VERIFY(dialog->findChild<QTreeView*>(QStringLiteral("objectsView"))->hasFocus());
        press("Return");
        QTRY_COMPARE(taken.size(), 1);
        QCOMPARE(dialog->getSelectedItem().tag, QStringLiteral("P1.FLOW"));
        press("Escape");
        QTRY_VERIFY(!dialog);
        QVERIFY(becomesActive(*m_desk));
    }

    void thePointBrowserComesUpWhereItWas()
    {
        const StationList list(someStations());
        QRect placed;
        for (const bool isAgain : {false, true}) {
            PointBrowserDialog dialog(m_desk.get(), Qt::Window, BrowseTypeFlag(7), nullptr);
            bringUp(&dialog);
            QVERIFY(dialog.frameGeometry().height() > dialog.height()); // the window manager's frame
            if (isAgain) {
                QTRY_COMPARE(dialog.frameGeometry(), placed);
                continue;
            }
            const QString window = QString::number(dialog.winId());
            act({QStringLiteral("windowsize"), window, QStringLiteral("700"), QStringLiteral("450")});
            QTRY_COMPARE(dialog.size(), QSize(700, 450));
            const QPoint before = dialog.pos();
            act({QStringLiteral("windowmove"), window, QStringLiteral("333"), QStringLiteral("222")});
            QTRY_VERIFY(dialog.pos() != before);
            placed = dialog.frameGeometry();
        }
    }

private:
    OwnSettings m_settings;
    std::unique_ptr<QPlainTextEdit> m_desk;
};

QTEST_MAIN(tst_DialogsOnX11)
#include "tst_dialogsonx11.moc"
