#include "host/shapes/samplering.h"

#include <QtTest>

#include <cmath>
#include <limits>

class tst_SampleRing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void forgetsTheOldestWhenFull()
    {
        SampleRing ring(3);
        QVERIFY(ring.isEmpty());
        for (int i = 0; i < 8; ++i) {
            QVERIFY(ring.add({i * 10, double(i)}));
            QCOMPARE(ring.size(), std::min(i + 1, 3));
            QCOMPARE(ring.newest().timeMs, qint64(i * 10));
            for (int k = 0; k < ring.size(); ++k)
                QCOMPARE(ring.at(k).timeMs, qint64(std::max(i - 2, 0) + k) * 10);
        }
        ring.clear();
        QVERIFY(ring.isEmpty());
        QVERIFY(ring.add({5, 1}));
        QCOMPARE(ring.at(0).timeMs, qint64(5));
    }

    void keepsTheOrderOfTime()
    {
        SampleRing ring(10);
        QVERIFY(ring.add({100, 1}));
        QVERIFY(!ring.add({99, 2}));
        QVERIFY(ring.add({100, 3})); // a step
        QCOMPARE(ring.size(), 2);
        QCOMPARE(ring.newest().value, 3.0);
    }

    void whatIsNoNumberIsAGap()
    {
        SampleRing ring(10);
        QVERIFY(ring.add({1, std::numeric_limits<double>::infinity()}));
        QVERIFY(std::isnan(ring.newest().value));
    }

    void findsTimes()
    {
        SampleRing ring(4);
        QCOMPARE(ring.firstFrom(0), 0);
        for (const qint64 time : {0, 10, 20, 20, 30, 40}) // the ring begins at the first 20
            QVERIFY(ring.add({time, double(time)}));
        QCOMPARE(ring.firstFrom(-1), 0);
        QCOMPARE(ring.firstFrom(20), 0);
        QCOMPARE(ring.firstFrom(21), 2);
        QCOMPARE(ring.firstFrom(30), 2);
        QCOMPARE(ring.firstFrom(40), 3);
        QCOMPARE(ring.firstFrom(41), 4);
    }

    void interpolatesBetweenNeighbours()
    {
        SampleRing ring(10);
        QVERIFY(std::isnan(ring.interpolated(0)));
        ring.add({0, 10});
        ring.add({100, 30});
        ring.add({200, std::nan("")});
        ring.add({300, 5});
        QVERIFY(std::isnan(ring.interpolated(-1)));
        QCOMPARE(ring.interpolated(0), 10.0);
        QCOMPARE(ring.interpolated(25), 15.0);
        QCOMPARE(ring.interpolated(100), 30.0);
        QVERIFY(std::isnan(ring.interpolated(101)));
        QVERIFY(std::isnan(ring.interpolated(200)));
        QVERIFY(std::isnan(ring.interpolated(299)));
        QCOMPARE(ring.interpolated(300), 5.0);
        QVERIFY(std::isnan(ring.interpolated(301)));
    }
};

QTEST_GUILESS_MAIN(tst_SampleRing)
#include "tst_samplering.moc"
