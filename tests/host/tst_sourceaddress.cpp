#include "host/sources/sourceaddress.h"

#include <QtTest>

using Kind = SourceAddress::Kind;
using Times = SourceAddress::Times;

Q_DECLARE_METATYPE(SourceAddress)

class tst_SourceAddress : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsWhatIsGiven_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<SourceAddress>("expected");
        const auto row = [](const char* name, const QString& text, const SourceAddress& expected) {
            QTest::newRow(name) << text << expected;
        };
        const auto recording = [](const QString& file) { return SourceAddress{Kind::Recording, 1, file}; };
        row("a simulation", QStringLiteral("simulation"), {Kind::Simulation});
        row("a simulation's seed", QStringLiteral("simulation?seed=4294967295"), {Kind::Simulation, 4294967295U});
        row("a recording", QStringLiteral("recording:normal.csv"), recording(QStringLiteral("normal.csv")));
        row("all of a recording's parameters",
            QStringLiteral("recording:/data/day 1.csv?speed=0.5&loop=1&map=/data/columns.csv&times=arrival"),
            {Kind::Recording, 1, QStringLiteral("/data/day 1.csv"), QStringLiteral("/data/columns.csv"), 0.5, true,
             Times::Arrival});
        row("parameters in another order", QStringLiteral("recording:a?loop=0&times=row&speed=1e4"),
            {Kind::Recording, 1, QStringLiteral("a"), {}, 10000, false, Times::Row});
        row("no parameters behind their mark", QStringLiteral("recording:a?"), recording(QStringLiteral("a")));
        row("parameters begin behind the last mark", QStringLiteral("recording:what?.csv?loop=1"),
            {Kind::Recording, 1, QStringLiteral("what?.csv"), {}, 1, true});
        row("a name with a mark needs one more", QStringLiteral("recording:what?.csv?"),
            recording(QStringLiteral("what?.csv")));
        row("a colon in a name", QStringLiteral("recording:C:/data/a.csv"), recording(QStringLiteral("C:/data/a.csv")));
        row("a value with an equals sign", QStringLiteral("recording:a?map=b=c.csv"),
            {Kind::Recording, 1, QStringLiteral("a"), QStringLiteral("b=c.csv")});
        row("standard input", QStringLiteral("recording:-"),
            {Kind::StandardInput, 1, {}, {}, 1, false, Times::Arrival});
        row("standard input with the rows' times", QStringLiteral("recording:-?times=row&map=m"),
            {Kind::StandardInput, 1, {}, QStringLiteral("m"), 1, false, Times::Row});
        row("a file that is called like standard input", QStringLiteral("recording:./-"),
            recording(QStringLiteral("./-")));
    }

    void readsWhatIsGiven()
    {
        QFETCH(QString, text);
        QFETCH(SourceAddress, expected);
        const auto address = SourceAddress::parse(text);
        QVERIFY2(address, address ? "" : qPrintable(address.error()));
        QCOMPARE(address->kind, expected.kind);
        QCOMPARE(address->seed, expected.seed);
        QCOMPARE(address->file, expected.file);
        QCOMPARE(address->map, expected.map);
        QCOMPARE(address->speed, expected.speed);
        QCOMPARE(address->isLooped, expected.isLooped);
        QCOMPARE(address->times, expected.times);
    }

    void saysWhatIsWrong_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("expected");
        const auto row = [](const char* text, const char* expected) {
            QTest::newRow(text)
                << QString::fromLatin1(text)
                << QStringLiteral("source \"%1\": %2").arg(QString::fromLatin1(text), QString::fromLatin1(expected));
        };
        row("", "unknown kind; known are simulation, recording:FILE and recording:- (standard input)");
        row("Simulation", "unknown kind; known are simulation, recording:FILE and recording:- (standard input)");
        row("modbus:1.2.3.4", "unknown kind; known are simulation, recording:FILE and recording:- (standard input)");
        row("recording:", "the file's name is missing");
        row("recording:?loop=1", "the file's name is missing");
        row("simulation?speed=2", "it has no parameter \"speed\", only seed");
        row("simulation?seed=-1", "seed must be a whole number from 0 to 4294967295");
        row("simulation?seed=4294967296", "seed must be a whole number from 0 to 4294967295");
        row("simulation?seed", "seed must be a whole number from 0 to 4294967295");
        row("simulation?seed=1&seed=1", "the parameter seed comes twice");
        row("recording:a?seed=1", "it has no parameter \"seed\", only speed, loop, map, times");
        row("recording:a?speed=2&", "it has no parameter \"\", only speed, loop, map, times");
        row("recording:a?b.csv", "it has no parameter \"b.csv\", only speed, loop, map, times");
        row("recording:a?speed=0", "speed must be a number from 0.01 to 10000");
        row("recording:a?speed=0.009", "speed must be a number from 0.01 to 10000");
        row("recording:a?speed=10001", "speed must be a number from 0.01 to 10000");
        row("recording:a?speed=nan", "speed must be a number from 0.01 to 10000");
        row("recording:a?speed=fast", "speed must be a number from 0.01 to 10000");
        row("recording:a?loop=yes", "loop must be 0 or 1");
        row("recording:a?map=", "map must be the name of a file");
        row("recording:a?times=rows", "times must be row or arrival");
        row("recording:-?speed=2", "it has no parameter \"speed\", only map, times");
        row("recording:-?loop=1", "it has no parameter \"loop\", only map, times");
    }

    void saysWhatIsWrong()
    {
        QFETCH(QString, text);
        QFETCH(QString, expected);
        const auto address = SourceAddress::parse(text);
        QVERIFY(!address);
        QCOMPARE(address.error(), expected);
    }
};

QTEST_APPLESS_MAIN(tst_SourceAddress)
#include "tst_sourceaddress.moc"
