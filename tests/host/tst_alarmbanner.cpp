#include "host/alarmview/alarmbanner.h"
#include "tests/support/alarmplant.h"
#include "tests/support/offscreenwarnings.h"

#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

using State = ScadaAlarm::State;

namespace {

class Desk : public AlarmPlant
{
public:
    Desk()
    {
        banner.resize(1200, 40);
        banner.show();
    }

    QLabel* label(const char* name) const { return banner.findChild<QLabel*>(QString::fromLatin1(name)); }
    QPushButton* button(const char* name) const { return banner.findChild<QPushButton*>(QString::fromLatin1(name)); }

    AlarmBanner banner{manager(), system.desk()};
};

} // namespace

class tst_AlarmBanner : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void saysThatNothingWaits()
    {
        Desk desk;
        QCOMPARE(desk.label("bannerAlarm")->text(), QStringLiteral("No alarm waits."));
        QVERIFY(!desk.button("bannerAcknowledge")->isEnabled());
    }

    void saysWhatIsMostUrgent()
    {
        Desk desk;
        AlarmDataInfo presentation;
        presentation.setTextColor(9, Qt::red);
        desk.banner.setPresentation(presentation);
        desk.raise(9, QStringLiteral("old"));
        desk.passSeconds(1);
        const quint64 newer = desk.raise(9, QStringLiteral("newer"));
        desk.passSeconds(1);
        desk.raise(3, QStringLiteral("newest"));
        QTRY_COMPARE(desk.label("bannerAlarm")->text(), QStringLiteral("2026-03-01 08:00:01.000 P2 newer"));
        QCOMPARE(desk.label("bannerAlarm")->palette().color(QPalette::WindowText), QColor(Qt::red));
        QCOMPARE(desk.label("bannerCounts")->text(), QStringLiteral("S9: 2, S3: 1"));
        QTest::mouseClick(desk.button("bannerAcknowledge"), Qt::LeftButton);
        QCOMPARE(desk.stateOf(newer), State::Acknowledged);
        QCOMPARE(desk.manager().alarm(newer).acknowledgedBy, QStringLiteral("kim"));
        QCOMPARE(desk.label("bannerAlarm")->text(), QStringLiteral("2026-03-01 08:00:00.000 P1 old")); // at once
        QCOMPARE(desk.label("bannerCounts")->text(), QStringLiteral("S9: 2, S3: 1"));                  // it stands on
    }

    void whatEndsIsSaidNoMore()
    {
        Desk desk;
        const quint64 id = desk.raise(9, QStringLiteral("a"));
        QTRY_VERIFY(desk.button("bannerAcknowledge")->isEnabled());
        desk.manager().shelve(id, desk.now.addSecs(9), {}, QStringLiteral("why"));
        QTRY_COMPARE(desk.label("bannerAlarm")->text(), QStringLiteral("No alarm waits."));
        QCOMPARE(desk.label("bannerCounts")->text(), QString());
        desk.passSeconds(10);
        desk.manager().advance(desk.now);
        QTRY_VERIFY(desk.button("bannerAcknowledge")->isEnabled());
    }

    void whatStandsAlreadyIsSaid()
    {
        Desk desk;
        ScadaAlarm alarm = desk.alarmOf(4, QStringLiteral("a"));
        alarm.id = 7;
        desk.manager().restore(alarm, {});
        desk.banner.reload();
        QCOMPARE(desk.label("bannerAlarm")->text(), QStringLiteral("2026-03-01 08:00:00.000 P1 a"));
        const AlarmBanner another(desk.manager(), desk.system.desk());
        QCOMPARE(another.findChild<QLabel*>(QStringLiteral("bannerCounts"))->accessibleName(), QStringLiteral("S4: 1"));
    }

    void buttonsAsk()
    {
        Desk desk;
        QSignalSpy silence(&desk.banner, &AlarmBanner::silenceRequested);
        QSignalSpy list(&desk.banner, &AlarmBanner::listRequested);
        QTest::mouseClick(desk.button("bannerSilence"), Qt::LeftButton);
        QCOMPARE(silence.size(), 1);
        QCOMPARE(list.size(), 0);
        desk.button("bannerList")->setFocus();
        QTest::keyClick(desk.button("bannerList"), Qt::Key_Space);
        QCOMPARE(list.size(), 1);
    }

    void aNoticeIsShownUntilItIsTakenBack()
    {
        Desk desk;
        QVERIFY(!desk.label("bannerNotice")->isVisible());
        desk.banner.setNotice(QStringLiteral("no sound device"));
        QVERIFY(desk.label("bannerNotice")->isVisible());
        QTRY_COMPARE(desk.label("bannerNotice")->text(), QStringLiteral("no sound device"));
        desk.banner.setNotice({});
        QVERIFY(!desk.label("bannerNotice")->isVisible());
    }

    void aLongMessageEndsInDotsAndIsNoMarkup()
    {
        Desk desk;
        const QString message = QStringLiteral("<b>full</b> ").repeated(60);
        desk.raise(9, message);
        QTRY_VERIFY(desk.label("bannerAlarm")->text().endsWith(QChar(0x2026)));
        QVERIFY(desk.banner.width() <= 1200);
        for (const QLabel* label : desk.banner.findChildren<QLabel*>())
            QCOMPARE(label->textFormat(), Qt::PlainText);
        desk.banner.setNotice(QStringLiteral("no sound device"));
        QTRY_COMPARE(desk.label("bannerNotice")->text(), QStringLiteral("no sound device"));
        QVERIFY(desk.label("bannerAlarm")->toolTip().contains(QStringLiteral("&lt;b&gt;full")));
        QVERIFY(desk.label("bannerAlarm")->accessibleName().endsWith(QStringLiteral("<b>full</b>")));
    }
};

int main(int argc, char** argv)
{
    qputenv("TZ", "UTC");
    QTEST_SET_MAIN_SOURCE_PATH
    QApplication application(argc, argv);
    tst_AlarmBanner test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_alarmbanner.moc"
