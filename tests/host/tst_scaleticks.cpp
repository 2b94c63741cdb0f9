#include "host/shapes/scaleticks.h"

#include <QtTest>

#include <limits>

class tst_ScaleTicks : public QObject
{
    Q_OBJECT

    static QString listed(const std::vector<ScaleTicks::Tick>& ticks)
    {
        QStringList texts;
        for (const ScaleTicks::Tick& tick : ticks)
            texts += tick.text;
        return texts.join(QLatin1Char(' '));
    }

private Q_SLOTS:
    void marksStandAtRoundNumbers_data()
    {
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        QTest::addColumn<int>("most");
        QTest::addColumn<QString>("texts");
        QTest::newRow("percent") << 0.0 << 100.0 << 5 << QStringLiteral("0 20 40 60 80 100");
        QTest::newRow("a small range") << 0.0 << 1.0 << 5 << QStringLiteral("0.0 0.2 0.4 0.6 0.8 1.0");
        QTest::newRow("through zero") << -10.0 << 10.0 << 4 << QStringLiteral("-10 -5 0 5 10");
        QTest::newRow("not round at its ends") << 3.0 << 47.0 << 5 << QStringLiteral("10 20 30 40");
        QTest::newRow("upside down") << 2.0 << 0.0 << 4 << QStringLiteral("2.0 1.5 1.0 0.5 0.0");
        QTest::newRow("large") << 0.0 << 4e7 << 4 << QStringLiteral("0 1e+07 2e+07 3e+07 4e+07");
        QTest::newRow("no range") << 5.0 << 5.0 << 4 << QString();
        QTest::newRow("beyond what a double holds") << -1.7e308 << 1.7e308 << 4 << QString();
    }
    void marksStandAtRoundNumbers()
    {
        QFETCH(double, low);
        QFETCH(double, high);
        QFETCH(int, most);
        QFETCH(QString, texts);
        ScaleTicks ticks;
        QCOMPARE(listed(ticks.between(low, high, most)), texts);
        QCOMPARE(listed(ticks.shown()), texts);
        QCOMPARE(listed(ticks.between(low, high, most)), texts); // those it kept
    }

    void keptMarksGoWithTheRange()
    {
        ScaleTicks ticks;
        ticks.between(0, 100, 5);
        QCOMPARE(listed(ticks.between(0, 10, 5)), QStringLiteral("0 2 4 6 8 10"));
        QCOMPARE(listed(ticks.between(0, 10, 2)), QStringLiteral("0 5 10"));
    }

    void rangesWidenToMarks_data()
    {
        QTest::addColumn<double>("low");
        QTest::addColumn<double>("high");
        QTest::addColumn<double>("wideLow");
        QTest::addColumn<double>("wideHigh");
        QTest::newRow("not round") << 3.0 << 97.0 << 0.0 << 100.0;
        QTest::newRow("round already") << 20.0 << 80.0 << 20.0 << 80.0;
        QTest::newRow("a single value") << 100.0 << 100.0 << 90.0 << 110.0;
        QTest::newRow("zero alone") << 0.0 << 0.0 << -1.0 << 1.0;
    }
    void rangesWidenToMarks()
    {
        QFETCH(double, low);
        QFETCH(double, high);
        QFETCH(double, wideLow);
        QFETCH(double, wideHigh);
        ScaleTicks::widen(low, high, 5);
        QCOMPARE(low, wideLow);
        QCOMPARE(high, wideHigh);
    }

    void wideningStaysFinite()
    {
        double low = -std::numeric_limits<double>::max();
        double high = std::numeric_limits<double>::max();
        ScaleTicks::widen(low, high, 5);
        QVERIFY(std::isfinite(low) && std::isfinite(high) && low < high);
    }
};

QTEST_GUILESS_MAIN(tst_ScaleTicks)
#include "tst_scaleticks.moc"
