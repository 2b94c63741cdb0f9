#include "host/runtime/samplehistory.h"

#include <QtTest>

namespace {

constexpr ObjectKey level{Korvane::ScadaObjectType::AnalogPoint, 200001};

ObjectKey point(int number)
{
    return {Korvane::ScadaObjectType::AnalogPoint, 200001 + number};
}

QString times(const std::vector<SampleHistory::Value>& values)
{
    QStringList all;
    for (const SampleHistory::Value& value : values)
        all.append(QString::number(value.timeMs));
    return all.join(QLatin1Char(' '));
}

std::size_t countOf(const SampleHistory& history, ObjectKey object)
{
    return history.read(object, 0, 1000000000, 1000000).size();
}

} // namespace

class tst_SampleHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aSpanIsReadOldestFirst_data()
    {
        QTest::addColumn<qint64>("from");
        QTest::addColumn<qint64>("to");
        QTest::addColumn<int>("most");
        QTest::addColumn<QString>("found");
        const auto row = [](const char* name, qint64 from, qint64 to, int most, const char* found) {
            QTest::newRow(name) << from << to << most << QString::fromLatin1(found);
        };
        row("all", 0, 1000, 100, "10 20 30 40 50 60 70");
        row("both ends are included", 20, 40, 100, "20 30 40");
        row("between the ends", 21, 39, 100, "30");
        row("one moment", 30, 30, 100, "30");
        row("between two values", 31, 39, 100, "");
        row("before all", 0, 9, 100, "");
        row("behind all", 71, 99, 100, "");
        row("the wrong way round", 40, 20, 100, "");
        row("as many as there are", 0, 1000, 7, "10 20 30 40 50 60 70");
        row("thinned evenly", 0, 1000, 4, "10 30 50 70");
        row("the ends stay", 0, 1000, 2, "10 70");
        row("three", 0, 1000, 3, "10 40 70");
        row("one is the newest", 0, 1000, 1, "70");
        row("none", 0, 1000, 0, "");
    }
    void aSpanIsReadOldestFirst()
    {
        QFETCH(qint64, from);
        QFETCH(qint64, to);
        QFETCH(int, most);
        QFETCH(QString, found);
        SampleHistory history;
        for (int number = 1; number <= 7; ++number)
            history.append({level, number * 10, number / 2.0, number});
        QCOMPARE(times(history.read(level, from, to, std::size_t(most))), found);
    }

    void aValueIsKeptWithItsMarks()
    {
        SampleHistory history;
        history.append({level, 10, 1.25, 4});
        history.append({level, 10, 2.5, 8}); // of the same moment: takes its place
        const auto values = history.read(level, 0, 100, 10);
        QCOMPARE(values.size(), std::size_t(1));
        QCOMPARE(values[0].value, 2.5);
        QCOMPARE(values[0].quality, 8);
        QVERIFY(history.read(point(1), 0, 100, 10).empty());
    }

    void theOldestMakesRoom()
    {
        SampleHistory history;
        const int most = int(SampleHistory::mostOfOne);
        for (int number = 0; number < most + 3; ++number)
            history.append({level, number, 0, 0});
        const auto values = history.read(level, 0, 10 * most, std::size_t(10 * most));
        QCOMPARE(values.size(), SampleHistory::mostOfOne);
        QCOMPARE(values.front().timeMs, qint64(3));
        QCOMPARE(values.back().timeMs, qint64(most + 2));
        QCOMPARE(times(history.read(level, 0, 5, 100)), QStringLiteral("3 4 5"));
        QCOMPARE(times(history.read(level, most, most + 1, 100)), QStringLiteral("%1 %2").arg(most).arg(most + 1));
        history.append({level, most + 2, 7, 0}); // the newest is replaced in a full ring, too
        QCOMPARE(history.read(level, most + 2, most + 2, 1)[0].value, 7.0);
        QCOMPARE(countOf(history, level), SampleHistory::mostOfOne);
    }

    void manyObjectsShareTheRoom()
    {
        constexpr int objects = 1000;
        constexpr std::size_t share = SampleHistory::mostValues / objects;
        SampleHistory history;
        for (int number = 0; number < int(SampleHistory::mostOfOne); ++number)
            history.append({level, number, 0, 0}); // while it is alone
        for (int other = 1; other < objects; ++other)
            history.append({point(other), 1, 0, 0});
        history.append({level, 50000, 0, 0}); // gives back what is too much
        QCOMPARE(countOf(history, level), share);
        const auto kept = history.read(level, 0, 100000, 100000);
        QCOMPARE(kept.back().timeMs, qint64(50000)); // and keeps the newest
        QCOMPARE(kept.front().timeMs, qint64(SampleHistory::mostOfOne - share + 1));
        for (int number = 2; number < 10000; ++number)
            history.append({point(1), number, 0, 0});
        QCOMPARE(countOf(history, point(1)), share);
    }

    void everyObjectHasAFew()
    {
        constexpr int objects = int(SampleHistory::mostValues / SampleHistory::fewestOfOne) * 2;
        SampleHistory history;
        for (int number = 0; number < objects; ++number)
            history.append({point(number), 1, 0, 0});
        for (int number = 2; number < 100; ++number)
            history.append({point(5), number, 0, 0});
        QCOMPARE(countOf(history, point(5)), SampleHistory::fewestOfOne);
    }

    void aClockThatGoesBackBeginsAnew()
    {
        SampleHistory history;
        for (const qint64 time : {100, 200, 300})
            history.append({level, time, 0, 0});
        history.append({level, 150, 1, 0}); // what was noted so far is still to come
        QCOMPARE(times(history.read(level, 0, 1000, 100)), QStringLiteral("150"));
        history.append({level, 250, 1, 0});
        QCOMPARE(times(history.read(level, 0, 1000, 100)), QStringLiteral("150 250"));
    }
};

QTEST_GUILESS_MAIN(tst_SampleHistory)
#include "tst_samplehistory.moc"
