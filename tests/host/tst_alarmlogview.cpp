#include "tests/support/offscreenwarnings.h"
#include "tests/support/operatedalarms.h"

#include <QCheckBox>
#include <QDateTimeEdit>
#include <QElapsedTimer>
#include <QLabel>

namespace {

constexpr int logTag = 4;
constexpr int logMessage = 5;

} // namespace

/// The log as the alarm list window shows it.
class tst_AlarmLogView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void theLogShowsTheNewestLinesFirst()
    {
        OperatedAlarms desk;
        desk.system.addEvent(QStringLiteral("started"));
        desk.passSeconds(1);
        desk.raise(9, QStringLiteral("full"));
        desk.system.commit();
        desk.openLog();
        QCOMPARE(desk.logColumn(logMessage), QStringList({QStringLiteral("full"), QStringLiteral("started")}));
        QCOMPARE(desk.logColumn(1), QStringList({QStringLiteral("raised"), QStringLiteral("event")}));
        QCOMPARE(desk.logColumn(2), QStringList({QStringLiteral("9"), QString()})); // an event has none
        QCOMPARE(desk.part<QLabel>("logStatus")->text(), QStringLiteral("2 line(s)"));
    }

    void theLogIsReadAgainWhileItIsShown()
    {
        OperatedAlarms desk;
        desk.raise(9, QStringLiteral("a"));
        desk.system.commit();
        desk.openLog();
        auto* lines = desk.part<QTableView>("logTable");
        lines->selectRow(0);
        QElapsedTimer timer;
        timer.start();
        desk.raise(9, QStringLiteral("b"));
        desk.system.commit();
        QCOMPARE(desk.logColumn(logMessage), QStringList({QStringLiteral("a")})); // too soon
        QTRY_COMPARE(desk.logColumn(logMessage), QStringList({QStringLiteral("b"), QStringLiteral("a")}));
        QVERIFY(timer.elapsed() > 500);
        QCOMPARE(lines->selectionModel()->selectedRows().value(0).row(), 1);
    }

    void theLogIsFilteredByTag()
    {
        OperatedAlarms desk;
        for (int point = 0; point < 12; ++point)
            desk.raise(9, QStringLiteral("a"));
        desk.system.commit();
        desk.openLog();
        QCOMPARE(desk.logColumn(logTag).size(), 12);
        auto* tag = desk.part<QLineEdit>("logTag");
        tag->setFocus();
        QTest::keyClicks(tag, QStringLiteral("p1"));
        QTest::keyClick(tag, Qt::Key_Return);
        QCOMPARE(desk.logColumn(logTag), QStringList({QStringLiteral("P12"), QStringLiteral("P11"),
                                                      QStringLiteral("P10"), QStringLiteral("P1")}));
        tag->clear();
        QTest::keyClicks(tag, QStringLiteral("#%1").arg(Korvane::firstAnalogPointId + 2)); // an object
        QTest::keyClick(tag, Qt::Key_Return);
        QCOMPARE(desk.logColumn(logTag), QStringList({QStringLiteral("P2")}));
    }

    void theLogNamesAnObjectWithoutAnAlarm()
    {
        OperatedAlarms desk;
        desk.manager().setSuppressed({Korvane::ScadaObjectType::AnalogPoint, Korvane::firstAnalogPointId + 5}, true,
                                     {});
        desk.manager().setSuppressed({Korvane::ScadaObjectType::RtuObject, 7}, true, {});
        desk.system.addEvent(QStringLiteral("started"));
        desk.system.commit();
        desk.openLog();
        QCOMPARE(desk.logColumn(logTag), QStringList({QString(), QStringLiteral("@R::#7"),
                                                      QStringLiteral("#%1").arg(Korvane::firstAnalogPointId + 5)}));
    }

    void theLogIsLimitedInTime()
    {
        OperatedAlarms desk;
        for (const char* message : {"a", "b", "c"}) {
            desk.passSeconds(60);
            desk.now = desk.now.addMSecs(1);
            desk.raise(9, QString::fromLatin1(message));
        }
        desk.system.commit();
        desk.openLog();
        desk.part<QDateTimeEdit>("logFrom")->setDateTime(
            QDateTime(QDate(2026, 3, 1), QTime(8, 2), Qt::UTC).toLocalTime());
        QCOMPARE(desk.logColumn(logMessage), QStringList({QStringLiteral("c"), QStringLiteral("b")}));
        auto* upToNow = desk.part<QCheckBox>("logUpToNow");
        auto* to = desk.part<QDateTimeEdit>("logTo");
        QVERIFY(!to->isEnabled());
        QTest::mouseClick(upToNow, Qt::LeftButton, {}, QPoint(8, upToNow->height() / 2));
        QVERIFY(to->isEnabled());
        to->setDateTime(QDateTime(QDate(2026, 3, 1), QTime(8, 2), Qt::UTC).toLocalTime());
        QCOMPARE(desk.logColumn(logMessage), QStringList({QStringLiteral("b")})); // the whole second belongs to it
    }
};

int main(int argc, char** argv)
{
    qputenv("TZ", "UTC");
    QTEST_SET_MAIN_SOURCE_PATH
    QApplication application(argc, argv);
    tst_AlarmLogView test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_alarmlogview.moc"
