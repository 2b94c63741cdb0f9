#include "host/alarms/alarmmanager.h"
#include "host/alarms/korvanescadaalarmprocessor.h"
#include "host/runtime/runtimedatabase.h"

#include "platform/data/valuemarks.h"

#include <QtTest>

#include <cmath>
#include <utility>
#include <vector>

using Cause = ScadaAlarm::Cause;
using Kind = AlarmTransition::Kind;
using Korvane::ScadaObjectType;
using State = ScadaAlarm::State;

namespace {

constexpr qint64 start = Q_INT64_C(1714557600000); // 2024-05-01T10:00:00Z
constexpr ObjectKey flowKey{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey pumpKey{ScadaObjectType::DigitalPoint, 100001};
constexpr ObjectKey unitKey{ScadaObjectType::RtuObject, 7};
constexpr ObjectKey lineKey{ScadaObjectType::ChannelObject, 8};

constexpr const char* causeNames[] = {"lowlow", "low", "high", "highhigh", "state", "rate", "quality", "comm"};

void setSeverity(RuntimeDatabase::Object& object, Cause cause, int severity)
{
    object.alarm.severities[AlarmSetting::placeOf(cause)] = static_cast<qint8>(severity);
}

/// An analog point with four limits and no alarm.
RuntimeDatabase::Object flow()
{
    RuntimeDatabase::Object object{flowKey.type, flowKey.id, QStringLiteral("FLOW")};
    object.description = QStringLiteral("Flow behind the pump");
    object.area = QStringLiteral("East");
    object.lowLow = 10;
    object.low = 20;
    object.high = 80;
    object.highHigh = 90;
    object.hysteresis = 2;
    return object;
}

RuntimeDatabase::Object flowWith(std::initializer_list<Cause> causes, int onDelayMs = 0, int offDelayMs = 0)
{
    RuntimeDatabase::Object object = flow();
    for (const Cause cause : causes)
        setSeverity(object, cause, 5);
    object.alarm.onDelay = std::chrono::milliseconds(onDelayMs);
    object.alarm.offDelay = std::chrono::milliseconds(offDelayMs);
    return object;
}

RuntimeDatabase::Object stateObject(ObjectKey key, const char* name)
{
    RuntimeDatabase::Object object{key.type, key.id, QString::fromLatin1(name)};
    object.states = QStringList{QStringLiteral("off"), QStringLiteral("on"), {}, QStringLiteral("tripped")};
    object.abnormalState = 3;
    setSeverity(object, Cause::StateChange, 8);
    setSeverity(object, Cause::Communication, 2);
    return object;
}

/// Objects that are watched, and what their alarms did: "cause raised at, cause returned at", in milliseconds.
struct Plant
{
    explicit Plant(const std::vector<RuntimeDatabase::Object>& objects)
    {
        database.setTimeZone(QTimeZone::utc());
        database.setClock([this] { return now; });
        for (const RuntimeDatabase::Object& object : objects) {
            if (const auto added = database.add(object); !added)
                qFatal("%s", qPrintable(added.error()));
        }
        QObject::connect(&manager, &AlarmManager::transitioned, &manager, [this](const AlarmTransition& line) {
            story.append(QStringLiteral("%1 %2 %3")
                             .arg(QLatin1String(causeNames[int(line.alarm.cause)]),
                                  line.kind == Kind::Raised ? QStringLiteral("raised") : QStringLiteral("returned"))
                             .arg(line.time.toMSecsSinceEpoch() - start));
        });
    }
    void watch() { processor.watchAll(); }
    void take(ObjectKey key, qint64 ms, double value, qint32 quality = 0)
    {
        if (!database.takeSample({key, start + ms, value, quality}))
            qFatal("a sample was ignored");
    }
    void advance(qint64 ms)
    {
        now = start + ms;
        database.takeStale(now);
        processor.advance(now);
    }
    ScadaAlarm standing(ObjectKey key, Cause cause) const { return manager.alarm(manager.standing(key, cause)); }
    QString told() const { return story.join(QStringLiteral(", ")); }

    qint64 now = start;
    QStringList story;
    RuntimeDatabase database;
    AlarmManager manager{[this] { return QDateTime::fromMSecsSinceEpoch(now, Qt::UTC); }};
    KorvaneScadaAlarmProcessor processor{database, manager};
};

struct Step
{
    int ms;
    double value;
    qint32 quality = 0;
};

} // namespace

Q_DECLARE_METATYPE(RuntimeDatabase::Object)
Q_DECLARE_METATYPE(std::vector<Step>)

class tst_AlarmProcessor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCauseOfAnAnalogPoint_data()
    {
        QTest::addColumn<int>("cause");
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("quality");
        QTest::addColumn<QVariant>("limit");
        QTest::addColumn<QString>("message");
        const auto row = [](const char* name, Cause cause, double value, int quality, const QVariant& limit,
                            const char* message) {
            QTest::newRow(name) << int(cause) << value << quality << limit << QString::fromLatin1(message);
        };
        row("very low", Cause::LowLow, 9, 0, 10.0, "Flow behind the pump very low");
        row("low", Cause::Low, 19, 0, 20.0, "Flow behind the pump low");
        row("high", Cause::High, 81, 0, 80.0, "Flow behind the pump high");
        row("very high", Cause::HighHigh, 90.5, 0, 90.0, "Flow behind the pump very high");
        row("too fast", Cause::RateOfChange, 61, 0, 10.0, "Flow behind the pump changes too fast");
        row("invalid", Cause::Quality, 50, ValueMark::Invalid, {}, "Flow behind the pump no usable value");
        row("out of range", Cause::Quality, 50, ValueMark::OutOfRange, {}, "Flow behind the pump no usable value");
        row("oscillating", Cause::Quality, 50, ValueMark::Oscillating, {}, "Flow behind the pump no usable value");
        row("stale", Cause::Quality, 50, ValueMark::Stale, {}, "Flow behind the pump no usable value");
        row("not reached", Cause::Communication, 50, ValueMark::CommunicationFailed, {},
            "Flow behind the pump communication failed");
    }
    void everyCauseOfAnAnalogPoint()
    {
        QFETCH(int, cause);
        QFETCH(double, value);
        QFETCH(int, quality);
        QFETCH(QVariant, limit);
        QFETCH(QString, message);
        RuntimeDatabase::Object object = flow();
        object.alarm.rateLimit = 10;
        setSeverity(object, Cause(cause), 0);
        Plant plant({object});
        plant.watch();
        QCOMPARE(plant.processor.conditionCount(), std::size_t(1));
        plant.take(flowKey, 0, 50);
        QCOMPARE(plant.told(), QString());
        plant.take(flowKey, 1000, value, quality);
        const QString name = QLatin1String(causeNames[cause]);
        QCOMPARE(plant.told(), name + QStringLiteral(" raised 1000"));
        const ScadaAlarm alarm = plant.standing(flowKey, Cause(cause));
        QCOMPARE(alarm.tag, QStringLiteral("FLOW"));
        QCOMPARE(alarm.area, QStringLiteral("East"));
        QCOMPARE(alarm.severity, 0);
        QCOMPARE(alarm.value, QVariant(value));
        QCOMPARE(alarm.limit, limit);
        QCOMPARE(alarm.message, message);
        QCOMPARE(alarm.raised, QDateTime::fromMSecsSinceEpoch(start + 1000, Qt::UTC));
        plant.take(flowKey, 21000, 50);
        QCOMPARE(plant.told(), name + QStringLiteral(" raised 1000, ") + name + QStringLiteral(" returned 21000"));
    }

    void marksThatAreNoCause_data()
    {
        QTest::addColumn<int>("quality");
        QTest::newRow("substituted") << int(ValueMark::Substituted);
        QTest::newRow("estimated") << int(ValueMark::Estimated);
        QTest::newRow("test") << int(ValueMark::Test);
    }
    void marksThatAreNoCause()
    {
        QFETCH(int, quality);
        Plant plant({flowWith({Cause::Quality, Cause::Communication, Cause::High})});
        plant.watch();
        plant.take(flowKey, 0, 50, quality);
        QCOMPARE(plant.told(), QString());
    }

    void abnormalStates_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("tag");
        QTest::newRow("a digital point") << int(pumpKey.type) << pumpKey.id << QStringLiteral("NAME");
        QTest::newRow("a unit") << int(unitKey.type) << unitKey.id << QStringLiteral("@R::NAME");
        QTest::newRow("a line") << int(lineKey.type) << lineKey.id << QStringLiteral("@C::NAME");
    }
    void abnormalStates()
    {
        QFETCH(int, type);
        QFETCH(int, id);
        QFETCH(QString, tag);
        const ObjectKey key{ScadaObjectType(type), id};
        Plant plant({stateObject(key, "NAME")});
        plant.watch();
        plant.take(key, 0, 2);
        plant.take(key, 10, 3);
        const ScadaAlarm alarm = plant.standing(key, Cause::StateChange);
        QCOMPARE(alarm.value, QVariant(3));
        QCOMPARE(alarm.value.type(), QVariant::Int);
        QVERIFY(!alarm.limit.isValid());
        QCOMPARE(alarm.tag, tag);
        QCOMPARE(alarm.message, QStringLiteral("NAME tripped"));
        plant.take(key, 20, 1);
        QVERIFY(plant.database.setCommunicationFailed(key, true, start + 30));
        QCOMPARE(plant.told(), QStringLiteral("state raised 10, state returned 20, comm raised 30"));
    }

    void anObjectsOwnMessageIsTold()
    {
        RuntimeDatabase::Object object = flowWith({Cause::High});
        object.displayName = QStringLiteral("Flow");
        Plant plain({object});
        plain.watch();
        plain.take(flowKey, 0, 81);
        QCOMPARE(plain.standing(flowKey, Cause::High).message, QStringLiteral("Flow high"));
        object.alarm.message = QStringLiteral("Close valve 3");
        Plant plant({object});
        plant.watch();
        plant.take(flowKey, 0, 81);
        QCOMPARE(plant.standing(flowKey, Cause::High).message, QStringLiteral("Close valve 3"));
    }

    void aStateWithoutANameIsAbnormal()
    {
        RuntimeDatabase::Object object = stateObject(pumpKey, "PUMP");
        object.abnormalState = 2;
        Plant plant({object});
        plant.watch();
        plant.take(pumpKey, 0, 2);
        QCOMPARE(plant.standing(pumpKey, Cause::StateChange).message, QStringLiteral("PUMP abnormal state"));
    }

    void delays_data()
    {
        QTest::addColumn<int>("onDelay");
        QTest::addColumn<int>("offDelay");
        QTest::addColumn<std::vector<Step>>("steps");
        QTest::addColumn<QString>("story");
        using Steps = std::vector<Step>;
        const auto row = [](const char* name, int on, int off, const Steps& steps, const char* story) {
            QTest::newRow(name) << on << off << steps << QString::fromLatin1(story);
        };
        row("none", 0, 0, {{0, 50}, {100, 81}, {200, 50}}, "high raised 100, high returned 200");
        row("gone just before the on delay's end", 5000, 0, {{0, 81}, {4999, 50}}, "");
        row("gone at the on delay's end", 5000, 0, {{0, 81}, {5000, 50}}, "high raised 5000, high returned 5000");
        row("raised in between two samples", 5000, 0, {{0, 81}, {7000, 85}}, "high raised 5000");
        row("raised without another sample", 5000, 0, {{0, 81}}, "high raised 5000");
        row("gone and come within the on delay", 5000, 0, {{0, 81}, {3000, 50}, {4000, 81}}, "high raised 9000");
        row("gone and come several times", 5000, 0,
            {{0, 81}, {3000, 50}, {4000, 81}, {6000, 50}, {6001, 81}, {11000, 50}}, "");
        row("back just before the off delay's end", 0, 5000, {{0, 81}, {1000, 50}, {5999, 81}}, "high raised 0");
        row("back at the off delay's end", 0, 5000, {{0, 81}, {1000, 50}, {6000, 81}},
            "high raised 0, high returned 6000, high raised 6000");
        row("returned without another sample", 0, 5000, {{0, 81}, {1000, 50}}, "high raised 0, high returned 6000");
        row("both delays", 3000, 5000, {{0, 81}, {3000, 50}, {8000, 81}, {10999, 50}},
            "high raised 3000, high returned 8000");
        row("both delays, raised twice", 3000, 5000, {{0, 81}, {4000, 50}, {9500, 81}},
            "high raised 3000, high returned 9000, high raised 12500");
        row("a longer off delay began before", 1000, 9000, {{0, 81}, {2000, 50}, {3000, 81}, {4000, 50}},
            "high raised 1000, high returned 13000");
        row("an invalid sample in the on delay", 5000, 0, {{0, 81}, {2000, 50, ValueMark::Invalid}},
            "high raised 5000");
        row("an invalid sample behind the on delay", 5000, 0, {{0, 81}, {7000, 50, ValueMark::Invalid}, {8000, 50}},
            "high raised 5000, high returned 8000");
    }
    void delays()
    {
        QFETCH(int, onDelay);
        QFETCH(int, offDelay);
        QFETCH(std::vector<Step>, steps);
        QFETCH(QString, story);
        constexpr int end = 30000;
        Plant batched({flowWith({Cause::High}, onDelay, offDelay)});
        batched.watch();
        for (const Step& step : steps)
            batched.take(flowKey, step.ms, step.value, step.quality);
        batched.advance(end);
        QCOMPARE(batched.told(), story);

        Plant ticked({flowWith({Cause::High}, onDelay, offDelay)});
        ticked.watch();
        auto next = steps.cbegin();
        for (int ms = 0; ms <= end; ms += 100) {
            for (; next != steps.cend() && next->ms <= ms; ++next)
                ticked.take(flowKey, next->ms, next->value, next->quality);
            ticked.advance(ms);
        }
        QCOMPARE(ticked.told(), story);
    }

    void aDelayEndsWithTheTickOfItsTime()
    {
        Plant plant({flowWith({Cause::High}, 5000)});
        plant.watch();
        plant.take(flowKey, 0, 81);
        plant.advance(4999);
        QCOMPARE(plant.told(), QString());
        plant.advance(5000);
        QCOMPARE(plant.told(), QStringLiteral("high raised 5000"));
        QCOMPARE(plant.standing(flowKey, Cause::High).value, QVariant(81.0)); // with which it came
    }

    void delaysOfManyObjectsEndEachAtItsTime()
    {
        std::vector<RuntimeDatabase::Object> objects;
        for (int i = 0; i < 50; ++i) {
            objects.push_back(flowWith({Cause::High}, 100 + 37 * (i % 11), 200));
            objects.back().id += i;
            objects.back().name += QString::number(i);
        }
        Plant plant(objects);
        plant.watch();
        for (int i = 0; i < 50; ++i)
            plant.take({flowKey.type, flowKey.id + i}, 10 * i, 81);
        for (int ms = 490; ms <= 1500; ++ms) {
            plant.advance(ms);
            for (int i = 0; i < 50; ++i) {
                const bool stands = plant.manager.standing({flowKey.type, flowKey.id + i}, Cause::High) != 0;
                QCOMPARE(stands, ms >= 10 * i + 100 + 37 * (i % 11));
            }
        }
    }

    void theHysteresisIsADeadBand()
    {
        Plant plant({flowWith({Cause::High, Cause::Low})});
        plant.watch();
        const double values[] = {80, 80.1, 79, 78.1, 78, 80, 20, 19.9, 21, 21.9, 22, 20};
        int ms = 0;
        for (const double value : values)
            plant.take(flowKey, ms++, value);
        QCOMPARE(plant.told(), QStringLiteral("high raised 1, high returned 4, low raised 7, low returned 10"));
    }

    void twoLimitsAreTwoAlarms()
    {
        Plant plant({flowWith({Cause::High, Cause::HighHigh})});
        plant.watch();
        plant.take(flowKey, 0, 95);
        QCOMPARE(plant.told(), QStringLiteral("high raised 0, highhigh raised 0"));
        plant.take(flowKey, 1, 85);
        plant.take(flowKey, 2, 50);
        QCOMPARE(plant.told(),
                 QStringLiteral("high raised 0, highhigh raised 0, highhigh returned 1, high returned 2"));
        QCOMPARE(plant.processor.conditionCount(), std::size_t(2));
    }

    void anInvalidSampleChangesNothing()
    {
        Plant plant({flowWith({Cause::High})});
        plant.watch();
        plant.take(flowKey, 0, 95, ValueMark::Invalid);
        plant.take(flowKey, 1, std::nan(""));
        QCOMPARE(plant.told(), QString());
        plant.take(flowKey, 2, 95);
        plant.take(flowKey, 3, 50, ValueMark::Invalid);
        plant.take(flowKey, 4, std::nan(""));
        QCOMPARE(plant.told(), QStringLiteral("high raised 2"));
        plant.take(flowKey, 5, 50);
        QCOMPARE(plant.told(), QStringLiteral("high raised 2, high returned 5"));
    }

    void theRateOfChange_data()
    {
        QTest::addColumn<std::vector<Step>>("steps");
        QTest::addColumn<QString>("story");
        using Steps = std::vector<Step>;
        const auto row = [](const char* name, const Steps& steps, const char* story) {
            QTest::newRow(name) << steps << QString::fromLatin1(story);
        };
        row("at the limit", {{0, 50}, {1000, 60}}, "");
        row("above the limit", {{0, 50}, {1000, 60.5}}, "rate raised 1000");
        row("downwards", {{0, 50}, {1000, 39.5}}, "rate raised 1000");
        row("a small step in a short time", {{0, 50}, {10, 50.5}}, "rate raised 10");
        row("a large step in a long time", {{0, 30}, {4000, 70}}, "");
        row("slower again", {{0, 50}, {1000, 70}, {2000, 71}}, "rate raised 1000, rate returned 2000");
        row("no value before", {{0, 1000}}, "");
        row("another value of the same time", {{0, 50}, {0, 75}}, "");
        row("of the same time, while it was too fast", {{0, 50}, {1000, 70}, {1000, 50}}, "rate raised 1000");
        row("across an invalid sample", {{0, 50}, {1000, 50, ValueMark::Invalid}, {1100, 75}}, "");
        row("an invalid sample that jumps", {{0, 50}, {1000, 75, ValueMark::Invalid}}, "");
        row("an invalid sample keeps what was", {{0, 50}, {1000, 70}, {2000, 70, ValueMark::Invalid}},
            "rate raised 1000");
        row("behind an invalid sample it is over", {{0, 50}, {1000, 70}, {2000, 0, ValueMark::Invalid}, {2001, 70}},
            "rate raised 1000, rate returned 2001");
    }
    void theRateOfChange()
    {
        QFETCH(std::vector<Step>, steps);
        QFETCH(QString, story);
        RuntimeDatabase::Object object = flowWith({Cause::RateOfChange});
        object.alarm.rateLimit = 10; // a second
        Plant plant({object});
        plant.watch();
        for (const Step& step : steps)
            plant.take(flowKey, step.ms, step.value, step.quality);
        QCOMPARE(plant.told(), story);
    }

    void communicationIsWatchedByItself()
    {
        Plant plant({flowWith({Cause::Communication}, 1000, 500)});
        plant.watch();
        plant.take(flowKey, 0, 50);
        QVERIFY(plant.database.setCommunicationFailed(flowKey, true, start + 100));
        plant.advance(1099);
        QCOMPARE(plant.told(), QString());
        plant.advance(1100);
        QVERIFY(plant.database.setCommunicationFailed(flowKey, false, start + 2000));
        plant.advance(2500);
        QCOMPARE(plant.told(), QStringLiteral("comm raised 1100, comm returned 2500"));
        QVERIFY(plant.database.setCommunicationFailed(flowKey, true, start + 3000));
        plant.take(flowKey, 3500, 50); // reached again
        plant.advance(9000);
        QCOMPARE(plant.told(), QStringLiteral("comm raised 1100, comm returned 2500"));
    }

    void aValueThatGoesStaleIsUseless()
    {
        RuntimeDatabase::Object object = flowWith({Cause::Quality});
        object.staleAfter = std::chrono::seconds(10);
        Plant plant({object});
        plant.watch();
        plant.take(flowKey, 0, 50);
        plant.advance(9999);
        QCOMPARE(plant.told(), QString());
        plant.advance(12000);
        QCOMPARE(plant.told(), QStringLiteral("quality raised 10000")); // not when it was looked at
        plant.take(flowKey, 15000, 50);
        QCOMPARE(plant.told(), QStringLiteral("quality raised 10000, quality returned 15000"));
    }

    void objectsWithoutAlarmsAreNeverLookedAt()
    {
        RuntimeDatabase::Object silent = flow(); // its limits only mark the value
        silent.id = 200002;
        silent.name = QStringLiteral("SILENT");
        Plant plant({flowWith({Cause::High}), silent, stateObject(pumpKey, "PUMP")});
        plant.watch();
        QCOMPARE(plant.processor.conditionCount(), std::size_t(3));
        for (int i = 0; i < 100; ++i)
            plant.take({flowKey.type, 200002}, i, i % 2 == 0 ? 95 : 5);
        QCOMPARE(plant.processor.evaluationCount(), quint64(0));
        for (int i = 0; i < 100; ++i)
            plant.take(flowKey, i, 50 + i % 10);
        QCOMPARE(plant.processor.evaluationCount(), quint64(1)); // the first sample
        plant.take(flowKey, 200, 81);
        plant.take(flowKey, 201, 82);
        QCOMPARE(plant.processor.evaluationCount(), quint64(2));
        QCOMPARE(plant.told(), QStringLiteral("high raised 200"));
    }

    void anAlarmRaisedAgainKeepsItsNumber()
    {
        Plant plant({flowWith({Cause::High})});
        plant.watch();
        plant.take(flowKey, 0, 81);
        plant.take(flowKey, 1, 50);
        plant.take(flowKey, 2, 81);
        QCOMPARE(plant.standing(flowKey, Cause::High).id, quint64(1));
        QCOMPARE(plant.standing(flowKey, Cause::High).state, State::Unacknowledged);
    }

    void afterARestart_data()
    {
        QTest::addColumn<bool>("isRestored"); // whether the database has its value back
        QTest::addColumn<std::vector<Step>>("steps");
        QTest::addColumn<QString>("story");
        using Steps = std::vector<Step>;
        for (const bool isRestored : {true, false}) {
            const auto row = [isRestored](const char* name, const Steps& steps, const char* story) {
                const QByteArray full = QByteArray(name) + (isRestored ? "" : ", the value before is lost");
                QTest::newRow(full.constData()) << isRestored << steps << QString::fromLatin1(story);
            };
            row("nothing is known yet", {}, "");
            row("gone with the first good sample", {{100000, 50}}, "high returned 100000");
            row("still there", {{100000, 95}, {100001, 96}}, "");
            row("still there, then gone", {{100000, 95}, {100001, 50}}, "high returned 100001");
            row("invalid at first, then gone", {{100000, 50, ValueMark::Invalid}, {100001, 50}},
                "high returned 100001");
            row("invalid at first, then still there", {{100000, 50, ValueMark::Invalid}, {100001, 95}}, "");
        }
    }
    void afterARestart()
    {
        QFETCH(bool, isRestored);
        QFETCH(std::vector<Step>, steps);
        QFETCH(QString, story);
        Plant before({flowWith({Cause::High})});
        before.watch();
        before.take(flowKey, 0, 85);
        const ScadaAlarm stood = before.standing(flowKey, Cause::High);

        Plant after({flowWith({Cause::High})});
        if (isRestored) {
            QVERIFY(after.database.restore(flowKey, before.database.state(flowKey)));
            after.database.interrupt(flowKey, start + 1000);
        }
        after.manager.restore(stood, {});
        after.watch();
        for (const Step& step : steps)
            after.take(flowKey, step.ms, step.value, step.quality);
        after.advance(200000);
        QCOMPARE(after.told(), story);
        QCOMPARE(after.standing(flowKey, Cause::High).id, stood.id);
    }

    void aSourceThatFailsAtTheStartEndsNoAlarm()
    {
        Plant before({flowWith({Cause::High})});
        before.watch();
        before.take(flowKey, 0, 85);
        Plant after({flowWith({Cause::High, Cause::Communication})});
        after.manager.restore(before.standing(flowKey, Cause::High), {});
        after.watch();
        QVERIFY(after.database.setCommunicationFailed(flowKey, true, start + 5000));
        QCOMPARE(after.told(), QStringLiteral("comm raised 5000"));
        QVERIFY(after.database.setCommunicationFailed(flowKey, false, start + 6000));
        after.take(flowKey, 7000, 50);
        QCOMPARE(after.told(), QStringLiteral("comm raised 5000, comm returned 6000, high returned 7000"));
    }

    void anAlarmThatReturnedBeforeTheRestartIsRaisedAgain()
    {
        Plant before({flowWith({Cause::High})});
        before.watch();
        before.take(flowKey, 0, 85);
        before.take(flowKey, 1, 50);
        Plant after({flowWith({Cause::High})});
        after.manager.restore(before.standing(flowKey, Cause::High), {});
        after.watch();
        after.take(flowKey, 100000, 50);
        QCOMPARE(after.told(), QString());
        after.take(flowKey, 100001, 85);
        QCOMPARE(after.told(), QStringLiteral("high raised 100001"));
        QCOMPARE(after.standing(flowKey, Cause::High).id, quint64(1));
    }

    void anAlarmThatIsNewInThePointListIsRaised()
    {
        Plant before({flow()});
        before.watch();
        before.take(flowKey, 0, 85);
        Plant after({flowWith({Cause::High})});
        QVERIFY(after.database.restore(flowKey, before.database.state(flowKey)));
        after.database.interrupt(flowKey, start);
        after.watch();
        QCOMPARE(after.told(), QString()); // nobody knows yet whether it still lies there
        after.take(flowKey, 100000, 85);
        QCOMPARE(after.told(), QStringLiteral("high raised 100000"));
    }

    void anAlarmTakesWhatThePointListSaysNow()
    {
        Plant before({flowWith({Cause::High})});
        before.watch();
        before.take(flowKey, 0, 85);
        RuntimeDatabase::Object changed = flowWith({Cause::High});
        changed.area = QStringLiteral("South");
        changed.alarm.severities[AlarmSetting::placeOf(Cause::High)] = 9;
        Plant after({changed});
        after.manager.restore(before.standing(flowKey, Cause::High), {});
        after.watch();
        QCOMPARE(after.told(), QString());
        QCOMPARE(after.standing(flowKey, Cause::High).severity, 9);
        QCOMPARE(after.standing(flowKey, Cause::High).area, QStringLiteral("South"));
        QCOMPARE(after.manager.waitingCount(9), 1);
        QCOMPARE(after.manager.highestUnacknowledgedSeverity(), 9);
        QCOMPARE(after.manager.unacknowledgedCount(QStringLiteral("South")), 1);
        QCOMPARE(after.manager.visibleCount(before.standing(flowKey, Cause::High).severity), 0);
    }

    void anAlarmOfAnotherPointOfThatIdReturns()
    {
        Plant before({flowWith({Cause::High})});
        before.watch();
        before.take(flowKey, 0, 85);
        RuntimeDatabase::Object other = flowWith({Cause::High});
        other.name = QStringLiteral("LEVEL");
        Plant after({other});
        after.manager.restore(before.standing(flowKey, Cause::High), {});
        after.now = start + 100000;
        after.watch();
        QCOMPARE(after.told(), QStringLiteral("high returned 100000"));
        after.take(flowKey, 200000, 85);
        QCOMPARE(after.standing(flowKey, Cause::High).tag, QStringLiteral("LEVEL"));
    }

    void anAlarmOfAPointWithoutAValueHasNone()
    {
        Plant plant({flowWith({Cause::Communication})});
        plant.watch();
        QVERIFY(plant.database.setCommunicationFailed(flowKey, true, start + 1));
        QVERIFY(!plant.standing(flowKey, Cause::Communication).value.isValid());
    }

    void anAlarmThatIsNoLongerInThePointListReturns()
    {
        Plant before({flowWith({Cause::High}), stateObject(pumpKey, "PUMP")});
        before.watch();
        before.take(flowKey, 0, 85);
        before.take(pumpKey, 0, 3);
        Plant after({flowWith({Cause::HighHigh})});
        for (const auto& [key, cause] : {std::pair(flowKey, Cause::High), std::pair(pumpKey, Cause::StateChange)}) {
            const quint64 id = before.manager.standing(key, cause);
            QVERIFY(before.manager.acknowledge(id, {}));
            after.manager.restore(before.manager.alarm(id), {});
        }
        after.now = start + 100000;
        after.watch();
        QCOMPARE(after.manager.count(), std::size_t(0));
        after.story.sort();
        QCOMPARE(after.told(), QStringLiteral("high returned 100000, state returned 100000"));
    }

    void aProcessorThatIsGoneHearsNothing()
    {
        Plant plant({flowWith({Cause::High})});
        {
            KorvaneScadaAlarmProcessor gone(plant.database, plant.manager);
            gone.watchAll();
        }
        plant.take(flowKey, 0, 85);
        QCOMPARE(plant.told(), QString());
    }
};

QTEST_GUILESS_MAIN(tst_AlarmProcessor)
#include "tst_alarmprocessor.moc"
