#include "host/shapes/timeticks.h"

#include <QDateTime>
#include <QtTest>

class tst_TimeTicks : public QObject
{
    Q_OBJECT

    static QString listed(const std::vector<TimeTicks::Tick>& ticks)
    {
        QStringList texts;
        for (const TimeTicks::Tick& tick : ticks)
            texts += tick.text;
        return texts.join(QLatin1Char(' '));
    }
    static qint64 utc(const char* text)
    {
        return QDateTime::fromString(QString::fromLatin1(text), Qt::ISODate).toMSecsSinceEpoch();
    }

private Q_SLOTS:
    void marksStandAtRoundTimesOfTheZone_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<qint64>("begin");
        QTest::addColumn<qint64>("end");
        QTest::addColumn<int>("most");
        QTest::addColumn<QString>("texts");
        QTest::newRow("ten minutes") << QByteArray("UTC") << utc("2024-03-01T12:00:00Z") << utc("2024-03-01T12:10:00Z")
                                     << 2 << QStringLiteral("12:00 12:05 12:10");
        QTest::newRow("a minute") << QByteArray("UTC") << utc("2024-03-01T12:00:10Z") << utc("2024-03-01T12:01:10Z")
                                  << 4 << QStringLiteral("12:00:15 12:00:30 12:00:45 12:01:00");
        QTest::newRow("a day in Seoul") << QByteArray("Asia/Seoul") << utc("2024-03-01T00:00:00Z")
                                        << utc("2024-03-02T00:00:00Z") << 4
                                        << QStringLiteral("12:00 18:00 00:00 06:00"); // 9 hours ahead
        QTest::newRow("half an hour beside")
            << QByteArray("Asia/Kolkata") << utc("2024-03-01T00:00:00Z") << utc("2024-03-01T04:00:00Z") << 6
            << QStringLiteral("06:00 07:00 08:00 09:00"); // 5 hours and a half ahead
        QTest::newRow("nothing") << QByteArray("UTC") << utc("2024-03-01T12:00:00Z") << utc("2024-03-01T12:00:00Z") << 4
                                 << QString();
    }
    void marksStandAtRoundTimesOfTheZone()
    {
        QFETCH(QByteArray, zone);
        QFETCH(qint64, begin);
        QFETCH(qint64, end);
        QFETCH(int, most);
        QFETCH(QString, texts);
        const std::vector<TimeTicks::Tick> ticks = TimeTicks::between(begin, end, most, QTimeZone(zone));
        QCOMPARE(listed(ticks), texts);
        for (const TimeTicks::Tick& tick : ticks)
            QVERIFY(tick.timeMs >= begin && tick.timeMs <= end);
    }

    // The clocks went from 2:00 to 3:00 on 31 March 2024 in Berlin.
    void textsSayTheTimeThatItWas()
    {
        const std::vector<TimeTicks::Tick> ticks = TimeTicks::between(
            utc("2024-03-30T20:00:00Z"), utc("2024-03-31T20:00:00Z"), 4, QTimeZone(QByteArray("Europe/Berlin")));
        QVERIFY(ticks.size() >= 3);
        for (const TimeTicks::Tick& tick : ticks) {
            const int offset = tick.timeMs < utc("2024-03-31T01:00:00Z") ? 1 : 2;
            const QDateTime local = QDateTime::fromMSecsSinceEpoch(tick.timeMs, Qt::UTC).addSecs(offset * 3600);
            QCOMPARE(tick.text, local.toString(QStringLiteral("HH:mm")));
        }
    }
};

QTEST_GUILESS_MAIN(tst_TimeTicks)
#include "tst_timeticks.moc"
