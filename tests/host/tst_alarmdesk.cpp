#include "host/alarms/alarmdesk.h"
#include "host/alarms/alarmmanager.h"

#include "tests/support/testhub.h"
#include "tests/support/testservices.h"

#include <QtTest>

using Cause = ScadaAlarm::Cause;
using Korvane::ScadaObjectType;
using State = ScadaAlarm::State;

namespace {

constexpr uint flowId = 200001;
constexpr uint levelId = 200002;
constexpr uint pumpId = 100001;
constexpr ObjectKey flow{ScadaObjectType::AnalogPoint, flowId};
constexpr ObjectKey level{ScadaObjectType::AnalogPoint, levelId};
constexpr ObjectKey pump{ScadaObjectType::DigitalPoint, pumpId};
constexpr ObjectKey unit{ScadaObjectType::RtuObject, 7};

/// A runtime manager that someone is logged in to.
class Runtime : public TestScadaRuntimManager
{
public:
    using TestScadaRuntimManager::TestScadaRuntimManager;

    QString currentUser() const override { return QStringLiteral("ann"); }
};

/// A page that shows some objects.
class ShownPage : public TestCanvasScadaActionManager
{
public:
    using TestCanvasScadaActionManager::TestCanvasScadaActionManager;

    QList<ObjectKey> boundObjects() const override { return bound; }

    QList<ObjectKey> bound;
};

/// A desk in front of five alarms, and a record of what it told, as "one 200001", "several 200001 200002" or
/// "objects 200001 7".
struct Desk
{
    explicit Desk(bool hasRuntime = true)
    {
        if (hasRuntime)
            hub.setRuntimeManager(&runtime);
        high = raise(flow, "East");
        highHigh = raise(flow, "East", Cause::HighHigh);
        low = raise(level, "West");
        tripped = raise(pump, "");
        silent = raise(unit, "East");
        QObject::connect(&runtime, &KorvaneScadaRuntimManagerInterface::alarmAcked, &desk,
                         [this](uint id) { told.append(QStringLiteral("one %1").arg(id)); });
        QObject::connect(&runtime, &KorvaneScadaRuntimManagerInterface::alarmSequenceAcked, &desk,
                         [this](const QList<uint>& ids) {
                             QString line = QStringLiteral("several");
                             for (const uint id : ids)
                                 line += QStringLiteral(" %1").arg(id);
                             told.append(line);
                         });
        QObject::connect(&desk, &AlarmDesk::acknowledged, &desk, [this](const QList<ObjectKey>& objects) {
            QString line = QStringLiteral("objects");
            for (const ObjectKey object : objects)
                line += QStringLiteral(" %1").arg(object.id);
            told.append(line);
        });
    }
    quint64 raise(ObjectKey object, const char* area, Cause cause = Cause::High)
    {
        ScadaAlarm alarm;
        alarm.objectType = object.type;
        alarm.objectId = object.id;
        alarm.area = QString::fromLatin1(area);
        alarm.cause = cause;
        alarm.raised = QDateTime::fromMSecsSinceEpoch(++raised, Qt::UTC);
        return manager.raiseAlarm(alarm);
    }
    QList<quint64> waiting() const
    {
        QList<quint64> ids;
        for (const quint64 id : {high, highHigh, low, tripped, silent}) {
            if (manager.alarm(id).isUnacknowledged())
                ids.append(id);
        }
        return ids;
    }
    QString takeTold()
    {
        const QString lines = told.join(QStringLiteral(", "));
        told.clear();
        return lines;
    }

    TestHub hub;
    Runtime runtime{nullptr};
    AlarmManager manager{[] { return QDateTime::fromMSecsSinceEpoch(1000, Qt::UTC); }};
    AlarmDesk desk{manager, hub};
    quint64 high = 0, highHigh = 0, low = 0, tripped = 0, silent = 0;
    qint64 raised = 0;
    QStringList told;
};

} // namespace

class tst_AlarmDesk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void onePoint()
    {
        Desk desk;
        QVERIFY(desk.desk.acknowledgePoint(flowId)); // both of its alarms
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 200001, one 200001"));
        QCOMPARE(desk.waiting(), (QList<quint64>{desk.low, desk.tripped, desk.silent}));
        QCOMPARE(desk.manager.alarm(desk.high).acknowledgedBy, QStringLiteral("ann"));
        QVERIFY(!desk.desk.acknowledgePoint(flowId));
        QVERIFY(!desk.desk.acknowledgePoint(299999));
        QVERIFY(!desk.desk.acknowledgePoint(uint(unit.id))); // no point
        QVERIFY(!desk.desk.acknowledgePoint(0));
        QCOMPARE(desk.takeTold(), QString());
        QVERIFY(desk.desk.acknowledgePoint(pumpId));
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 100001, one 100001"));
    }

    void severalPoints()
    {
        Desk desk;
        QVERIFY(desk.manager.acknowledge(desk.high, {}));
        QCOMPARE(desk.desk.acknowledgePoints({pumpId, flowId, 299999, flowId}), 2);
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 100001 200001, several 100001 200001"));
        QCOMPARE(desk.waiting(), (QList<quint64>{desk.low, desk.silent}));
        QCOMPARE(desk.desk.acknowledgePoints({pumpId, flowId}), 0);
        QCOMPARE(desk.desk.acknowledgePoints({}), 0);
        QCOMPARE(desk.takeTold(), QString());
        QCOMPARE(desk.desk.acknowledgePoints({levelId}), 1); // a list, even of one
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 200002, several 200002"));
    }

    void someOccurrences()
    {
        Desk desk;
        QCOMPARE(desk.desk.acknowledge({desk.highHigh, desk.silent, 999, desk.highHigh}), 2);
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 200001 7, several 200001"));
        QCOMPARE(desk.manager.alarm(desk.high).state, State::Unacknowledged);
        QCOMPARE(desk.desk.acknowledge({999}), 0);
        QCOMPARE(desk.takeTold(), QString());
    }

    void unitsAreNoPoints()
    {
        Desk desk;
        QCOMPARE(desk.desk.acknowledge({desk.silent}), 1);
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 7"));
    }

    void anObjectOfNoKindIsNoPoint()
    {
        Desk desk;
        const quint64 id = desk.raise({ScadaObjectType::NoObject, 5}, "");
        QVERIFY(desk.desk.acknowledgePoint(5));
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 5"));
        QCOMPARE(desk.manager.alarm(id).state, State::Acknowledged);
    }

    void aPage()
    {
        Desk desk;
        ShownPage page(nullptr);
        QCOMPARE(desk.desk.acknowledgePage(page), 0);
        QCOMPARE(desk.takeTold(), QString());
        page.bound = {unit, flow, {ScadaObjectType::AnalogPoint, 299999}, flow};
        QCOMPARE(desk.desk.acknowledgePage(page), 3);
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 7 200001, several 200001"));
        QCOMPARE(desk.waiting(), (QList<quint64>{desk.low, desk.tripped}));
    }

    void anArea()
    {
        Desk desk;
        QCOMPARE(desk.desk.acknowledgeArea(QStringLiteral("North")), 0);
        QCOMPARE(desk.desk.acknowledgeArea(QStringLiteral("east")), 0);
        QCOMPARE(desk.takeTold(), QString());
        QCOMPARE(desk.desk.acknowledgeArea(QStringLiteral("East")), 3);
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 200001 7, several 200001"));
        QCOMPARE(desk.waiting(), (QList<quint64>{desk.low, desk.tripped}));
    }

    void everyArea()
    {
        Desk desk;
        QVERIFY(desk.manager.shelve(desk.low, QDateTime::fromMSecsSinceEpoch(9000, Qt::UTC), {}, {}));
        QVERIFY(desk.manager.returnAlarm(desk.high, {}));
        QCOMPARE(desk.desk.acknowledgeArea({}), 4);
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 200001 100001 7, several 200001 100001"));
        QCOMPARE(desk.manager.alarm(desk.high).id, quint64(0));
        QCOMPARE(desk.manager.alarm(desk.low).state, State::Shelved);
        QCOMPARE(desk.desk.acknowledgeArea({}), 0);
    }

    void withoutARuntimeManagerTheMachinesUserDidIt()
    {
        qputenv("USER", "robin");
        Desk desk(false);
        QCOMPARE(desk.desk.user(), QStringLiteral("robin"));
        QVERIFY(desk.desk.acknowledgePoint(flowId));
        QCOMPARE(desk.manager.alarm(desk.high).acknowledgedBy, QStringLiteral("robin"));
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 200001"));
        qunsetenv("USER");
        qputenv("USERNAME", "sam");
        QCOMPARE(desk.desk.user(), QStringLiteral("sam"));
        desk.hub.setRuntimeManager(&desk.runtime);
        QCOMPARE(desk.desk.user(), QStringLiteral("ann"));
    }

    void whatIsNotPermittedIsLeftAsIfItWereNotThere()
    {
        Desk desk;
        using Act = AlarmDesk::Act;
        QStringList asked;
        desk.desk.setPermission([&asked](Act act, ObjectKey object) {
            asked.append(QStringLiteral("%1:%2").arg(static_cast<int>(act)).arg(object.id));
            return act == Act::Acknowledge && object == flow;
        });
        QVERIFY(!desk.desk.acknowledgePoint(levelId));
        QCOMPARE(desk.desk.acknowledgePoints({levelId, pumpId}), 0);
        QCOMPARE(desk.desk.acknowledge({desk.low, desk.silent}), 0);
        QCOMPARE(desk.desk.acknowledgeArea(QStringLiteral("West")), 0);
        QCOMPARE(desk.takeTold(), QString()); // nobody hears of it
        asked.clear();
        QVERIFY(!desk.desk.shelve(desk.low, QDateTime::fromMSecsSinceEpoch(9000, Qt::UTC), {}));
        QVERIFY(desk.manager.shelve(desk.low, QDateTime::fromMSecsSinceEpoch(9000, Qt::UTC), {}, {}));
        QVERIFY(!desk.desk.unshelve(desk.low));
        QVERIFY(!desk.desk.setOutOfService(pump, true, {}));
        QVERIFY(!desk.desk.setSuppressed(pump, true, {}));
        QCOMPARE(asked.join(QLatin1Char(' ')), QStringLiteral("1:200002 1:200002 2:100001 2:100001"));
        QVERIFY(!desk.manager.exclusion(pump).isOutOfService);
        QCOMPARE(desk.manager.alarm(desk.low).state, State::Shelved);
        QCOMPARE(desk.desk.acknowledgeArea({}), 2); // of flow alone
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 200001, several 200001"));
        desk.desk.setPermission({});
        QVERIFY(desk.desk.setOutOfService(pump, true, {}));
        QVERIFY(desk.desk.unshelve(desk.low));
    }

    void theLogSaysWhoSuppressed()
    {
        Desk desk;
        QStringList lines;
        connect(&desk.manager, &AlarmManager::transitioned, this, [&lines](const AlarmTransition& line) {
            if (line.alarm.id == 0)
                lines.append(line.user + QLatin1Char(':') + line.reason);
        });
        QVERIFY(desk.desk.permits(AlarmDesk::Act::TakeOutOfService, pump));
        QVERIFY(desk.desk.setSuppressed(pump, true, QStringLiteral("pump off")));
        QVERIFY(!desk.desk.setSuppressed(pump, true, {}));
        QVERIFY(desk.desk.setSuppressed(pump, false, {}));
        QCOMPARE(lines, (QStringList{QStringLiteral("ann:pump off"), QStringLiteral("ann:")}));
    }

    void onAPageTheSameRightsCount()
    {
        Desk desk;
        ShownPage page(nullptr);
        page.bound = {flow, level};
        desk.desk.setPermission([](AlarmDesk::Act, ObjectKey object) { return object == level; });
        QCOMPARE(desk.desk.acknowledgePage(page), 1);
        QCOMPARE(desk.takeTold(), QStringLiteral("objects 200002, several 200002"));
    }

    void whatAnotherHasAcknowledgedMeanwhileIsNotCounted()
    {
        Desk desk;
        connect(&desk.manager, &AlarmManager::transitioned, this, [&](const AlarmTransition& line) {
            if (line.alarm.id == desk.high)
                desk.manager.acknowledge(desk.highHigh, QStringLiteral("robot"));
        });
        QCOMPARE(desk.desk.acknowledge({desk.high, desk.highHigh}), 1);
        QCOMPARE(desk.manager.alarm(desk.highHigh).acknowledgedBy, QStringLiteral("robot"));
    }
};

QTEST_GUILESS_MAIN(tst_AlarmDesk)
#include "tst_alarmdesk.moc"
