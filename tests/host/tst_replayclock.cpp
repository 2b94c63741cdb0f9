#include "host/core/replayclock.h"

#include <QtTest>

class tst_ReplayClock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void runsTimesAsFast_data()
    {
        QTest::addColumn<double>("speed");
        QTest::addColumn<qint64>("baseMs");
        QTest::addColumn<qint64>("expected");
        QTest::newRow("real time") << 1.0 << qint64(1500) << qint64(11500);
        QTest::newRow("a hundred times") << 100.0 << qint64(1500) << qint64(160000);
        QTest::newRow("slowly, whole milliseconds that passed") << 0.25 << qint64(1503) << qint64(10375);
        QTest::newRow("no time has passed") << 10.0 << qint64(0) << qint64(10000);
        QTest::newRow("a year") << 1.0 << qint64(31536000000) << qint64(31536010000);
    }

    void runsTimesAsFast()
    {
        QFETCH(double, speed);
        QFETCH(qint64, baseMs);
        QFETCH(qint64, expected);
        m_baseMs = 777;
        const ReplayClock clock(10000, speed, [this] { return m_baseMs; });
        m_baseMs += baseMs;
        QCOMPARE(clock.nowMs(), expected);
    }

    void anotherSpeedCountsFromThenOn()
    {
        m_baseMs = 0;
        ReplayClock clock(0, 0.5, [this] { return m_baseMs; });
        for (int i = 0; i < 10; ++i) {
            m_baseMs += 1;
            clock.setSpeed(0.5);
        }
        QCOMPARE(clock.nowMs(), qint64(5)); // halves of a millisecond are not lost
        clock.setSpeed(10);
        QCOMPARE(clock.speed(), 10.0);
        QCOMPARE(clock.nowMs(), qint64(5));
        m_baseMs += 100;
        QCOMPARE(clock.nowMs(), qint64(1005));
    }

    void standsStillWhilePaused()
    {
        m_baseMs = 0;
        ReplayClock clock(1000, 2, [this] { return m_baseMs; });
        m_baseMs = 100;
        clock.pause();
        QVERIFY(clock.isPaused());
        m_baseMs = 200;
        clock.pause();
        QCOMPARE(clock.nowMs(), qint64(1200));
        clock.setSpeed(3);
        m_baseMs = 300;
        QCOMPARE(clock.nowMs(), qint64(1200));
        clock.resume();
        QVERIFY(!clock.isPaused());
        QCOMPARE(clock.nowMs(), qint64(1200));
        m_baseMs = 400;
        clock.resume();
        QCOMPARE(clock.nowMs(), qint64(1500));
    }

    void showsTheTimeThatItIsSetTo()
    {
        m_baseMs = 0;
        ReplayClock clock(1000, 0.5, [this] { return m_baseMs; });
        m_baseMs = 1001;
        clock.setSpeed(0.5); // half a millisecond is left over, which belongs to the time before
        clock.seek(500000);
        QCOMPARE(clock.nowMs(), qint64(500000));
        m_baseMs += 1;
        QCOMPARE(clock.nowMs(), qint64(500000));
        m_baseMs += 99;
        QCOMPARE(clock.nowMs(), qint64(500050));
        clock.seek(200); // back, behind its start
        QCOMPARE(clock.nowMs(), qint64(200));
        QCOMPARE(clock.speed(), 0.5);

        m_baseMs += 100;
        clock.pause();
        m_baseMs += 100;
        clock.seek(7000);
        QVERIFY(clock.isPaused());
        m_baseMs += 100;
        QCOMPARE(clock.nowMs(), qint64(7000));
        clock.resume();
        m_baseMs += 100;
        QCOMPARE(clock.nowMs(), qint64(7050));
    }

    void runsBySystemsClockUnlessGivenAnother()
    {
        const ReplayClock clock(0, 10000);
        QTRY_VERIFY(clock.nowMs() >= 10000);
    }

private:
    qint64 m_baseMs = 0;
};

QTEST_GUILESS_MAIN(tst_ReplayClock)
#include "tst_replayclock.moc"
