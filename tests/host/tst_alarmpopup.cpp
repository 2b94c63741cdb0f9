#include "host/alarmview/alarmpopup.h"
#include "tests/support/alarmplant.h"
#include "tests/support/offscreenwarnings.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QWindow>
#include <QtTest>

using State = ScadaAlarm::State;

Q_DECLARE_METATYPE(ObjectKey)

namespace {

/// A plant whose alarms of severity 9 pop up.
class Desk : public AlarmPlant
{
public:
    Desk() { popup.setPresentation(presentation()); }

    static AlarmDataInfo presentation()
    {
        AlarmDataInfo info;
        info.setUsePopup(9, 1);
        info.setTextColor(9, Qt::red);
        return info;
    }
    QString text(const char* label) const { return popup.findChild<QLabel*>(QString::fromLatin1(label))->text(); }
    void click(const char* button) const
    {
        QTest::mouseClick(popup.findChild<QPushButton*>(QString::fromLatin1(button)), Qt::LeftButton);
    }

    AlarmPopup popup{manager(), system.desk()};
};

} // namespace

class tst_AlarmPopup : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        dropOffscreenWarnings();
        qRegisterMetaType<ObjectKey>();
    }

    void saysWhatIsNewest()
    {
        Desk desk;
        desk.raise(9, QStringLiteral("pump hot"));
        desk.passSeconds(1);
        desk.raise(9, QStringLiteral("tank full"));
        QTRY_VERIFY(desk.popup.isVisible());
        QCOMPARE(desk.text("popupMessage"), QStringLiteral("tank full"));
        QCOMPARE(desk.text("popupHeadline"), QStringLiteral("Severity 9, 2026-03-01 08:00:01.000\nP2"));
        QCOMPARE(desk.text("popupMore"), QStringLiteral("and 1 more"));
        QCOMPARE(desk.popup.palette().color(QPalette::WindowText), QColor(Qt::red));
    }

    void otherSeveritiesShowNone()
    {
        Desk desk;
        desk.raise(8, QStringLiteral("pump hot"));
        QCoreApplication::processEvents();
        QVERIFY(!desk.popup.isVisible());
    }

    void popupsAreSwitchedOff()
    {
        Desk desk;
        AlarmDataInfo off = Desk::presentation();
        off.setPopupShown(false);
        desk.popup.setPresentation(off);
        desk.raise(9, QStringLiteral("pump hot"));
        QCoreApplication::processEvents();
        QVERIFY(!desk.popup.isVisible());
    }

    void takesNoKeyboard()
    {
        Desk desk;
        desk.raise(9, QStringLiteral("pump hot"));
        QTRY_VERIFY(desk.popup.isVisible());
        QVERIFY(desk.popup.testAttribute(Qt::WA_ShowWithoutActivating));
        // What the window system goes by; the one that is none gives every window the keyboard.
        QVERIFY(desk.popup.windowHandle()->property("_q_showWithoutActivating").toBool());
        QVERIFY(!desk.popup.isModal());
    }

    void acknowledgesWhatItShowsAndGoesWithTheLast()
    {
        Desk desk;
        const quint64 first = desk.raise(9, QStringLiteral("pump hot"));
        desk.passSeconds(1);
        const quint64 second = desk.raise(9, QStringLiteral("tank full"));
        QTRY_VERIFY(desk.popup.isVisible());
        desk.click("popupAcknowledge");
        QCOMPARE(desk.stateOf(second), State::Acknowledged);
        QCOMPARE(desk.stateOf(first), State::Unacknowledged);
        QTRY_COMPARE(desk.text("popupMessage"), QStringLiteral("pump hot"));
        QVERIFY(!desk.popup.findChild<QLabel*>(QStringLiteral("popupMore"))->isVisible());
        desk.manager().acknowledge(first, {}); // by whomever
        QTRY_VERIFY(!desk.popup.isVisible());
    }

    void waitsWhileAnAlarmThatReturnedWaits()
    {
        Desk desk;
        const quint64 id = desk.raise(9, QStringLiteral("pump hot"));
        QTRY_VERIFY(desk.popup.isVisible());
        desk.manager().returnAlarm(id, desk.now);
        QCoreApplication::processEvents();
        QVERIFY(desk.popup.isVisible());
        desk.manager().shelve(id, desk.now.addSecs(60), {}, QStringLiteral("why"));
        QTRY_VERIFY(!desk.popup.isVisible());
    }

    void theEndOfAShelfIsNews()
    {
        Desk desk;
        const quint64 id = desk.raise(9, QStringLiteral("pump hot"));
        desk.manager().shelve(id, desk.now.addSecs(60), {}, QStringLiteral("why"));
        QCoreApplication::processEvents();
        QVERIFY(!desk.popup.isVisible());
        desk.passSeconds(61);
        desk.manager().advance(desk.now);
        QTRY_VERIFY(desk.popup.isVisible());
    }

    void whatWasClosedStaysAway()
    {
        Desk desk;
        desk.raise(9, QStringLiteral("pump hot"));
        QTRY_VERIFY(desk.popup.isVisible());
        desk.click("popupClose");
        QVERIFY(!desk.popup.isVisible());
        desk.passSeconds(1);
        const quint64 next = desk.raise(9, QStringLiteral("tank full"));
        QTRY_VERIFY(desk.popup.isVisible());
        QVERIFY(!desk.popup.findChild<QLabel*>(QStringLiteral("popupMore"))->isVisible());
        QTest::keyClick(&desk.popup, Qt::Key_Escape);
        QVERIFY(!desk.popup.isVisible());
        QCOMPARE(desk.stateOf(next), State::Unacknowledged); // closed is not acknowledged
    }

    void goesToThePage()
    {
        Desk desk;
        const quint64 id = desk.raise(9, QStringLiteral("pump hot"));
        QTRY_VERIFY(desk.popup.isVisible());
        QSignalSpy requested(&desk.popup, &AlarmPopup::pageRequested);
        desk.click("popupGoToPage");
        QCOMPARE(requested.size(), 1);
        QVERIFY(requested[0][0].value<ObjectKey>() == desk.objectOf(id));
    }

    void namesOfThePlantAreNoMarkup()
    {
        Desk desk;
        for (const QLabel* label : desk.popup.findChildren<QLabel*>())
            QCOMPARE(label->textFormat(), Qt::PlainText);
        QCOMPARE(desk.popup.findChildren<QLabel*>().size(), 3);
    }
};

int main(int argc, char** argv)
{
    qputenv("TZ", "UTC");
    QTEST_SET_MAIN_SOURCE_PATH
    QApplication application(argc, argv);
    tst_AlarmPopup test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_alarmpopup.moc"
