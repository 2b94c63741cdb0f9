#include "host/sources/manualsource.h"

#include "host/control/commandgate.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/valuemarks.h"
#include "tests/support/sourcelistener.h"

#include <QtTest>

#include <cmath>
#include <limits>

using Korvane::ScadaObjectType;
using State = ValueSource::State;

namespace {

constexpr ObjectKey density{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey mode{ScadaObjectType::DigitalPoint, 100001};
constexpr ObjectKey other{ScadaObjectType::AnalogPoint, 200002};

} // namespace

class tst_ManualSource : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_nowMs = 5000; }

    void deliversWhatIsEntered()
    {
        ManualSource source({density, mode}, [this] { return m_nowMs; });
        SourceListener heard(source);
        QCOMPARE(source.description(), QStringLiteral("manual entry"));
        QCOMPARE(source.objects(), (std::vector<ObjectKey>{density, mode}));
        QVERIFY(source.takesCommands(density) && source.takesCommands(mode));
        QVERIFY(!source.takesCommands(other) && !source.takesCommands({}));
        source.start(4000);
        QCOMPARE(source.state(), State::Running);

        CommandGate::write(source, {7, density, -0.998});
        QCOMPARE(heard.answers, QStringList(QStringLiteral("7")));
        QCOMPARE(heard.takeSamples(), QStringLiteral("5000:200001=-0.998"));
        m_nowMs = 6000;
        CommandGate::write(source, {8, mode, 2});
        QCOMPARE(heard.answers.last(), QStringLiteral("8"));
        QCOMPARE(heard.takeSamples(), QStringLiteral("6000:100001=2"));
        source.advance(1000000);
        QCOMPARE(heard.takeSamples(), QString());
        QCOMPARE(source.state(), State::Running);
        QVERIFY(!source.readAgain(density));
        QCOMPARE(source.reconnect(0).error(),
                 QStringLiteral("manual entry has no connection that could be opened again"));
    }

    void anEnteredValueHasNoMark()
    {
        RuntimeDatabase database;
        QVERIFY(database.add({density.type, density.id, QStringLiteral("DENSITY")}));
        ManualSource source({density}, [this] { return m_nowMs; });
        connect(&source, &ValueSource::delivered, this, [&database](const std::vector<Sample>& samples) {
            for (const Sample& sample : samples)
                database.takeSample(sample);
        });
        source.start(0);
        CommandGate::write(source, {1, density, 0.998});
        const QuorixData record = database.presentRecord(density);
        QCOMPARE(record.GetValue("value")->toDouble(), 0.998);
        QCOMPARE(record.GetValue("quality")->toInt32(), 0);
    }

    void refusesWhatIsNoValue_data()
    {
        QTest::addColumn<qint32>("id");
        QTest::addColumn<double>("value");
        QTest::addColumn<QString>("reason");
        QTest::newRow("another point") << other.id << 1.0 << QStringLiteral("manual entry has no such point");
        QTest::newRow("no number") << density.id << std::nan("") << QStringLiteral("nan is no number");
        QTest::newRow("a number without end")
            << density.id << std::numeric_limits<double>::infinity() << QStringLiteral("inf is no number");
        QTest::newRow("no number of a state") << mode.id << std::nan("") << QStringLiteral("nan is no number");
        QTest::newRow("half a state") << mode.id << 0.5 << QStringLiteral("0.5 is no state: a whole number from 0 on");
        QTest::newRow("a state below") << mode.id << -1.0 << QStringLiteral("-1 is no state: a whole number from 0 on");
        QTest::newRow("a state beyond 32 bits")
            << mode.id << 2147483648.0 << QStringLiteral("2.14748e+09 is no state: a whole number from 0 on");
    }

    void refusesWhatIsNoValue()
    {
        QFETCH(qint32, id);
        QFETCH(double, value);
        QFETCH(QString, reason);
        ManualSource source({density, mode}, [this] { return m_nowMs; });
        SourceListener heard(source);
        source.start(0);
        CommandGate::write(source, {9, id == mode.id ? mode : ObjectKey{density.type, id}, value});
        QCOMPARE(heard.answers, QStringList(QStringLiteral("9 ") + reason));
        QVERIFY(heard.samples.empty());
        CommandGate::write(source, {10, mode, 2147483647}); // the last state
        QCOMPARE(heard.answers.last(), QStringLiteral("10"));
        QCOMPARE(heard.samples.size(), std::size_t(1));
    }

    void takesNothingBeforeTheStart()
    {
        ManualSource source({density}, [this] { return m_nowMs; });
        SourceListener heard(source);
        QCOMPARE(source.state(), State::Stopped);
        CommandGate::write(source, {1, density, 1});
        QCOMPARE(heard.answers, QStringList(QStringLiteral("1 manual entry was not started")));
        QVERIFY(heard.samples.empty());
    }

private:
    qint64 m_nowMs = 0;
};

QTEST_GUILESS_MAIN(tst_ManualSource)
#include "tst_manualsource.moc"
