#include "host/shapes/curvereducer.h"
#include "host/shapes/samplering.h"

#include <QtTest>

#include <cmath>

namespace {

using Points = std::vector<QPointF>;

SampleRing ringOf(const std::vector<SampleRing::Entry>& entries)
{
    SampleRing ring(20'000);
    for (const SampleRing::Entry& entry : entries)
        ring.add(entry);
    return ring;
}

const double gap = std::nan("");

} // namespace

class tst_CurveReducer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void fewSamplesStayAsTheyAre()
    {
        CurveReducer reducer;
        reducer.reduce(ringOf({{1000, 1}, {1010, 5}, {1020, 2}}), 1000, 1020, 1);
        QCOMPARE(reducer.points(), (Points{{0, 1}, {10, 5}, {20, 2}}));
        QCOMPARE(reducer.runs().size(), std::size_t(1));
        QCOMPARE(reducer.runs()[0].first, 0);
        QCOMPARE(reducer.runs()[0].count, 3);
    }

    void ofAColumnFirstLeastGreatestAndLastStay()
    {
        CurveReducer reducer;
        reducer.reduce(ringOf({{0, 5}, {1, 4}, {2, 9}, {3, 6}, {4, 1}, {5, 7}, {10, 3}, {19, 3}}), 0, 100, 10);
        QCOMPARE(reducer.points(), (Points{{0, 5}, {2, 9}, {4, 1}, {5, 7}, {10, 3}, {19, 3}}));
    }

    void noPeakIsLost()
    {
        SampleRing ring(20'000);
        for (int i = 0; i < 20'000; ++i)
            ring.add({i, i == 12'345 ? 1000.0 : i == 7'777 ? -1000.0 : 1.0});
        CurveReducer reducer;
        reducer.reduce(ring, 0, 20'000, 100);
        QVERIFY(reducer.points().size() <= 4 * 201);
        const auto has = [&](QPointF point) {
            return std::find(reducer.points().begin(), reducer.points().end(), point) != reducer.points().end();
        };
        QVERIFY(has({12'345, 1000}));
        QVERIFY(has({7'777, -1000}));
    }

    void columnsStandStillWhileTheWindowMoves()
    {
        SampleRing ring(20'000);
        for (int i = 0; i < 1000; ++i)
            ring.add({i, double(i * 7919 % 101)});
        CurveReducer one;
        CurveReducer other;
        one.reduce(ring, 100, 900, 20);
        other.reduce(ring, 117, 900, 20);
        // From the first whole column on, which begins at 120, both keep the same samples.
        Points first;
        Points second;
        for (const QPointF& point : one.points()) {
            if (point.x() + 100 >= 120)
                first.emplace_back(point.x() + 100, point.y());
        }
        for (const QPointF& point : other.points()) {
            if (point.x() + 117 >= 120)
                second.emplace_back(point.x() + 117, point.y());
        }
        QVERIFY(!first.empty());
        QCOMPARE(first, second);
    }

    void gapsPartTheCurve()
    {
        CurveReducer reducer;
        reducer.reduce(ringOf({{0, 1}, {10, 2}, {20, gap}, {25, gap}, {30, 3}, {40, gap}, {50, 4}, {60, 5}}), 0, 100,
                       1);
        QCOMPARE(reducer.points(), (Points{{0, 1}, {10, 2}, {30, 3}, {50, 4}, {60, 5}}));
        QCOMPARE(reducer.runs().size(), std::size_t(3));
        QCOMPARE(reducer.runs()[1].first, 2);
        QCOMPARE(reducer.runs()[1].count, 1);
        QCOMPARE(reducer.runs()[2].count, 2);
    }

    void theLineComesInFromTheLeft()
    {
        CurveReducer reducer;
        reducer.reduce(ringOf({{0, 0}, {100, 10}, {200, 20}, {300, 30}}), 150, 250, 1);
        QCOMPARE(reducer.points(), (Points{{0, 15}, {50, 20}})); // nothing comes after the end
        reducer.reduce(ringOf({{0, 0}, {100, gap}, {200, 20}}), 150, 250, 1);
        QCOMPARE(reducer.points(), (Points{{50, 20}}));
    }

    void nothingGivesNothing()
    {
        CurveReducer reducer;
        reducer.reduce(ringOf({{0, 1}}), 0, 10, 1);
        reducer.reduce(ringOf({}), 0, 10, 1);
        QVERIFY(reducer.points().empty());
        QVERIFY(reducer.runs().empty());
        reducer.reduce(ringOf({{0, gap}, {1, gap}}), 0, 10, 0);
        QVERIFY(reducer.points().empty());
        QVERIFY(reducer.runs().empty());
    }
};

QTEST_GUILESS_MAIN(tst_CurveReducer)
#include "tst_curvereducer.moc"
