#include "host/alarms/alarmmanager.h"

#include "tests/host/plainalarms.h"

#include <QtTest>

#include <algorithm>
#include <array>
#include <random>
#include <vector>

using Cause = ScadaAlarm::Cause;
using Kind = AlarmTransition::Kind;
using Korvane::ScadaObjectType;
using State = ScadaAlarm::State;

namespace {

constexpr ObjectKey flow{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 200002};

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

/// Seconds after the beginning of the tests' time.
QDateTime at(int seconds)
{
    return QDateTime(QDate(2024, 5, 1), QTime(10, 0), Qt::UTC).addSecs(seconds);
}

ScadaAlarm alarmOf(ObjectKey object, int severity = 5, Cause cause = Cause::High, const QString& area = {})
{
    ScadaAlarm alarm;
    alarm.objectType = object.type;
    alarm.objectId = object.id;
    alarm.cause = cause;
    alarm.severity = severity;
    alarm.area = area;
    return alarm;
}

/// A manager whose clock is turned by hand, and everything that it told.
struct Alarms
{
    Alarms()
    {
        QObject::connect(&manager, &AlarmManager::transitioned, &manager,
                         [this](const AlarmTransition& transition) { told.push_back(transition); });
    }
    quint64 raise(ObjectKey object = flow, int severity = 5, Cause cause = Cause::High, const QString& area = {})
    {
        return manager.raiseAlarm(alarmOf(object, severity, cause, area));
    }
    State stateOf(quint64 id) const { return manager.alarm(id).state; }
    /// Ends every shelf until then.
    void advance(int seconds)
    {
        now = at(seconds);
        manager.advance(now);
    }
    /// How many of what was told are of alarms, not of the object that is kept from the operator.
    std::ptrdiff_t alarmsTold() const
    {
        return std::count_if(told.begin(), told.end(), [](const auto& line) { return line.alarm.id != 0; });
    }

    QDateTime now = at(0);
    AlarmManager manager{[this] { return now; }};
    std::vector<AlarmTransition> told;
};

bool perform(Alarms& alarms, Operation operation, ObjectKey object = flow, Cause cause = Cause::High, int severity = 5,
             const QString& area = {})
{
    AlarmManager& manager = alarms.manager;
    const quint64 id = manager.standing(object, cause);
    switch (operation) {
    case Operation::Raise: {
        const std::size_t before = alarms.told.size();
        return alarms.raise(object, severity, cause, area) != 0 && alarms.told.size() > before;
    }
    case Operation::Return:
        return manager.returnAlarm(id, alarms.now);
    case Operation::Acknowledge:
        return manager.acknowledge(id, text("ann"));
    case Operation::Shelve:
        return manager.shelve(id, alarms.now.addSecs(60), text("ann"), text("noise"));
    case Operation::Unshelve:
        return manager.unshelve(id, text("ann"));
    case Operation::Suppress:
    case Operation::Unsuppress:
        return manager.setSuppressed(object, operation == Operation::Suppress, text("pump off"));
    case Operation::TakeOut:
    case Operation::PutBack:
        return manager.setOutOfService(object, operation == Operation::TakeOut, text("ann"), text("repair"));
    }
    return false;
}

constexpr std::array<const char*, 9> operationNames = {
    "raised",     "returned",     "acknowledged",         "shelved", "unshelved",
    "suppressed", "unsuppressed", "taken out of service", "put back"};

/// What leads to a state, and what each operation makes of it, in the order of the operations: the letter of the state
/// it is in then, or "-" where nothing happens.
struct Row
{
    const char* name;
    std::vector<Operation> way;
    const char* latching = nullptr; ///< the same of an alarm that latches, where it is another
    const char* outcomes;
};

const std::vector<Row>& rows()
{
    using O = Operation;
    static const std::vector<Row> all{
        {"normal", {}, nullptr, "U----N-N-"},
        {"unacknowledged", {O::Raise}, nullptr, "-RAS-X-O-"},
        {"acknowledged", {O::Raise, O::Acknowledge}, "-R-S-X-O-", "-N-S-X-O-"},
        {"returned unacknowledged", {O::Raise, O::Return}, nullptr, "U-NS-N-N-"},
        {"shelved", {O::Raise, O::Shelve}, nullptr, "-S-SUX-O-"},
        {"shelved and gone", {O::Raise, O::Shelve, O::Return}, "S--SRX-O-", "S--SNX-O-"},
        {"suppressed", {O::Raise, O::Suppress}, nullptr, "-N----UO-"},
        {"suppressed before it came", {O::Suppress, O::Raise}, nullptr, "-N----UO-"},
        {"suppressed without an alarm", {O::Suppress}, nullptr, "X-----NN-"},
        {"out of service", {O::Raise, O::TakeOut}, nullptr, "-N---O--U"},
        {"out of service without an alarm", {O::TakeOut}, nullptr, "O----N--N"},
        {"suppressed and out of service", {O::Raise, O::Suppress, O::TakeOut}, nullptr, "-N----O-X"},
        {"shelved, then suppressed", {O::Raise, O::Shelve, O::Suppress}, nullptr, "-X----SO-"},
        {"shelved, then suppressed, gone", {O::Raise, O::Shelve, O::Suppress, O::Return}, nullptr, "X-----SO-"},
        {"shelved, then out of service", {O::Raise, O::Shelve, O::TakeOut}, nullptr, "-O---O--S"},
    };
    return all;
}

char letterOf(State state)
{
    return "NUARSXO"[static_cast<int>(state)];
}

} // namespace

class tst_AlarmManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyOperationInEveryState_data()
    {
        QTest::addColumn<int>("row");
        QTest::addColumn<int>("operation");
        QTest::addColumn<bool>("isLatching");
        QTest::addColumn<char>("outcome");
        for (std::size_t row = 0; row < rows().size(); ++row) {
            for (const bool isLatching : {false, true}) {
                const Row& each = rows()[row];
                const char* outcomes = isLatching && each.latching ? each.latching : each.outcomes;
                for (std::size_t place = 0; place < operations.size(); ++place) {
                    const QByteArray name = QByteArray(each.name) + (isLatching ? ", latching: " : ": ");
                    QTest::newRow((name + operationNames[place]).constData())
                        << int(row) << int(place) << isLatching << outcomes[place];
                }
            }
        }
    }
    void everyOperationInEveryState()
    {
        QFETCH(int, row);
        QFETCH(int, operation);
        QFETCH(bool, isLatching);
        QFETCH(char, outcome);
        Alarms alarms;
        alarms.manager.setLatching([isLatching](ObjectKey) { return isLatching; });
        for (const Operation step : rows()[std::size_t(row)].way)
            perform(alarms, step);
        const quint64 before = alarms.manager.standing(flow, Cause::High);
        const char letterBefore = letterOf(alarms.stateOf(before));
        alarms.told.clear();

        QCOMPARE(perform(alarms, operations[std::size_t(operation)]), outcome != '-');
        const quint64 id = alarms.manager.standing(flow, Cause::High);
        const char letter = letterOf(alarms.stateOf(id));
        QCOMPARE(letter, outcome == '-' ? letterBefore : outcome);
        QVERIFY(before == 0 || id == 0 || before == id);
        if (outcome == '-') {
            QVERIFY(alarms.told.empty());
            return;
        }
        const bool isOfObject = operations[std::size_t(operation)] >= Operation::Suppress;
        QCOMPARE(alarms.alarmsTold(), std::ptrdiff_t(!isOfObject || letter != letterBefore ? 1 : 0));
        QCOMPARE(alarms.told.size() - std::size_t(alarms.alarmsTold()), std::size_t(isOfObject ? 1 : 0));
        if (alarms.alarmsTold() > 0)
            QCOMPARE(letterOf(alarms.told.back().alarm.state), letter);
    }

    void anOccurrenceHasANumberOfItsOwn()
    {
        Alarms alarms;
        QCOMPARE(alarms.raise(), quint64(1));
        QCOMPARE(alarms.raise(), quint64(1)); // stands already
        QCOMPARE(alarms.raise(flow, 5, Cause::HighHigh), quint64(2));
        QCOMPARE(alarms.raise(level), quint64(3));
        QVERIFY(alarms.manager.returnAlarm(1, at(1)));
        QCOMPARE(alarms.raise(flow, 7), quint64(1)); // returned, but nobody acknowledged it
        QCOMPARE(alarms.manager.alarm(1).severity, 7);
        QVERIFY(!alarms.manager.alarm(1).returned.isValid());
        QVERIFY(alarms.manager.acknowledge(1, {}));
        QVERIFY(alarms.manager.returnAlarm(1, at(2)));
        QCOMPARE(alarms.raise(), quint64(4));
        QCOMPARE(alarms.manager.standingOf(flow), (std::vector<quint64>{2, 4}));
        QCOMPARE(alarms.manager.count(), std::size_t(3));
        alarms.manager.setLastId(99);
        QCOMPARE(alarms.raise(level, 5, Cause::Low), quint64(100));
    }

    void severitiesAreKeptWithinTheirBounds()
    {
        Alarms alarms;
        QCOMPARE(alarms.manager.alarm(alarms.raise(flow, 10)).severity, 9);
        QCOMPARE(alarms.manager.alarm(alarms.raise(level, -1)).severity, 0);
        QCOMPARE(alarms.manager.visibleCount(9), 1);
        QCOMPARE(alarms.manager.visibleCount(0), 1);
        QCOMPARE(alarms.manager.visibleCount(10), 0);
        QCOMPARE(alarms.manager.visibleCount(-1), 0);
    }

    void everyChangeSaysWhoWhenAndWhy()
    {
        Alarms alarms;
        ScadaAlarm alarm = alarmOf(flow);
        alarm.raised = at(-5);
        alarm.message = text("Flow high");
        const quint64 id = alarms.manager.raiseAlarm(alarm);
        const auto step = [&](int seconds) { alarms.now = at(seconds); };
        const auto expect = [&](Kind kind, const QDateTime& time, const char* user, const char* reason,
                                const QDateTime& until = {}) {
            const AlarmTransition& last = alarms.told.back();
            QCOMPARE(last.kind, kind);
            QCOMPARE(last.time, time);
            QCOMPARE(last.user, text(user));
            QCOMPARE(last.reason, text(reason));
            QCOMPARE(last.until, until);
            QCOMPARE(last.alarm.id, id);
            QCOMPARE(last.alarm.message, text("Flow high"));
            QVERIFY(last.alarm.state == State::Normal || last.alarm.isEqual(alarms.manager.alarm(id)));
        };
        expect(Kind::Raised, at(-5), "", "");
        step(1);
        QVERIFY(alarms.manager.acknowledge(id, text("ann")));
        expect(Kind::Acknowledged, at(1), "ann", "");
        QCOMPARE(alarms.manager.alarm(id).acknowledged, at(1));
        QCOMPARE(alarms.manager.alarm(id).acknowledgedBy, text("ann"));
        step(2);
        QVERIFY(alarms.manager.shelve(id, at(62), text("bob"), text("noise")));
        expect(Kind::Shelved, at(2), "bob", "noise", at(62));
        QCOMPARE(alarms.manager.shelf(id).until, at(62));
        QCOMPARE(alarms.manager.shelf(id).user, text("bob"));
        QCOMPARE(alarms.manager.shelf(id).reason, text("noise"));
        step(3);
        QVERIFY(alarms.manager.unshelve(id, text("ann")));
        expect(Kind::Unshelved, at(3), "ann", "");
        QVERIFY(!alarms.manager.shelf(id).until.isValid());
        step(4);
        QVERIFY(alarms.manager.setSuppressed(flow, true, text("pump off")));
        expect(Kind::Suppressed, at(4), "", "pump off");
        QVERIFY(alarms.manager.setOutOfService(flow, true, text("bob"), text("repair")));
        expect(Kind::TakenOutOfService, at(4), "bob", "repair");
        QCOMPARE(alarms.manager.exclusion(flow).suppressionReason, text("pump off"));
        QCOMPARE(alarms.manager.exclusion(flow).serviceReason, text("repair"));
        QCOMPARE(alarms.manager.exclusion(flow).serviceUser, text("bob"));
        QVERIFY(alarms.manager.setOutOfService(flow, false, text("ann"), text("done")));
        expect(Kind::PutBackIntoService, at(4), "ann", "done");
        QVERIFY(alarms.manager.exclusion(flow).serviceUser.isEmpty());
        QVERIFY(alarms.manager.setSuppressed(flow, false, text("pump on")));
        expect(Kind::SuppressionEnded, at(4), "", "pump on");
        QVERIFY(alarms.manager.returnAlarm(id, at(3)));
        expect(Kind::Returned, at(3), "", "");
        QCOMPARE(alarms.manager.alarm(id).returned, at(3));
        QVERIFY(alarms.manager.acknowledge(id, {}));
        expect(Kind::Acknowledged, at(4), "", "");
        QCOMPARE(alarms.told.size(), std::size_t(14)); // four of them of the object
    }

    void timesThatNobodyStatedAreTheClocks()
    {
        Alarms alarms;
        const quint64 id = alarms.raise();
        QCOMPARE(alarms.manager.alarm(id).raised, at(0));
        alarms.now = at(7);
        QVERIFY(alarms.manager.returnAlarm(id, {}));
        QCOMPARE(alarms.manager.alarm(id).returned, at(7));
    }

    /// Whoever reads "acknowledged" must not take an older acknowledgement for this one.
    void whatWaitsAgainWasNotAcknowledged_data()
    {
        using O = Operation;
        QTest::addColumn<QVector<int>>("way");
        const auto row = [](const char* name, const std::vector<O>& way) {
            QVector<int> steps;
            for (const O each : way)
                steps.append(int(each));
            QTest::newRow(name) << steps;
        };
        row("shelved and unshelved", {O::Shelve, O::Unshelve});
        row("suppressed for a while", {O::Suppress, O::Unsuppress});
        row("out of service for a while", {O::TakeOut, O::PutBack});
        row("latching, when its condition goes", {O::Return});
        row("latching, raised again", {O::Return, O::Raise});
    }
    void whatWaitsAgainWasNotAcknowledged()
    {
        QFETCH(QVector<int>, way);
        Alarms alarms;
        alarms.manager.setLatching([](ObjectKey) { return true; });
        const quint64 id = alarms.raise();
        QVERIFY(alarms.manager.acknowledge(id, text("ann")));
        for (const int step : way)
            QVERIFY(perform(alarms, Operation(step)));
        const ScadaAlarm alarm = alarms.manager.alarm(id);
        QVERIFY(alarm.isUnacknowledged());
        QVERIFY(!alarm.acknowledged.isValid());
        QVERIFY(alarm.acknowledgedBy.isEmpty());

        AlarmManager later([&] { return alarms.now; }); // after a restart
        later.restore(alarm, {});
        QCOMPARE(later.alarm(id).state, alarm.state);
    }

    void aFlappingAlarmStaysShelved()
    {
        Alarms alarms;
        const quint64 id = alarms.raise();
        QVERIFY(alarms.manager.shelve(id, at(60), {}, {}));
        for (int i = 1; i < 60; i += 2) {
            QVERIFY(alarms.manager.returnAlarm(id, at(i)));
            QCOMPARE(alarms.raise(), id);
            QCOMPARE(alarms.stateOf(id), State::Shelved);
            alarms.advance(i);
        }
        QCOMPARE(alarms.manager.highestUnacknowledgedSeverity(), -1);
        QCOMPARE(alarms.manager.visibleCount(5), 0);
        alarms.advance(60);
        QCOMPARE(alarms.stateOf(id), State::Unacknowledged);
        QCOMPARE(alarms.told.back().kind, Kind::Unshelved);
        QCOMPARE(alarms.told.back().time, at(60));
        QVERIFY(alarms.told.back().user.isEmpty());
    }

    void aShelfEndsAtItsTime_data()
    {
        QTest::addColumn<bool>("isGone");
        QTest::addColumn<bool>("isLatching");
        QTest::addColumn<int>("state");
        QTest::newRow("what stands then is announced as new") << false << false << int(State::Unacknowledged);
        QTest::newRow("what is gone then is normal") << true << false << int(State::Normal);
        QTest::newRow("what latches waits for an operator") << true << true << int(State::ReturnedUnacknowledged);
    }
    void aShelfEndsAtItsTime()
    {
        QFETCH(bool, isGone);
        QFETCH(bool, isLatching);
        QFETCH(int, state);
        Alarms alarms;
        alarms.manager.setLatching([isLatching](ObjectKey) { return isLatching; });
        const quint64 id = alarms.raise();
        QVERIFY(alarms.manager.acknowledge(id, {}));
        QVERIFY(alarms.manager.shelve(id, at(60), {}, {}));
        if (isGone)
            QVERIFY(alarms.manager.returnAlarm(id, at(30)));
        alarms.advance(59);
        QCOMPARE(alarms.stateOf(id), State::Shelved);
        alarms.told.clear();
        alarms.advance(61);
        QCOMPARE(alarms.told.size(), std::size_t(1));
        QCOMPARE(alarms.told.back().time, at(60)); // not when it was looked at
        QCOMPARE(int(alarms.told.back().alarm.state), state);
        QCOMPARE(int(alarms.stateOf(id)), state);
        alarms.advance(1000);
        QCOMPARE(alarms.told.size(), std::size_t(1));
    }

    void shelvedAnewItEndsAtTheOtherTime_data()
    {
        QTest::addColumn<int>("first");
        QTest::addColumn<int>("second");
        QTest::newRow("later") << 60 << 120;
        QTest::newRow("earlier") << 120 << 60;
        QTest::newRow("the same") << 60 << 60;
    }
    void shelvedAnewItEndsAtTheOtherTime()
    {
        QFETCH(int, first);
        QFETCH(int, second);
        Alarms alarms;
        const quint64 id = alarms.raise();
        QVERIFY(alarms.manager.shelve(id, at(first), {}, {}));
        QVERIFY(alarms.manager.shelve(id, at(second), text("ann"), {}));
        QCOMPARE(alarms.manager.shelf(id).user, text("ann"));
        alarms.advance(second - 1);
        QCOMPARE(alarms.stateOf(id), State::Shelved);
        alarms.advance(second);
        QCOMPARE(alarms.stateOf(id), State::Unacknowledged);
        alarms.advance(200);
        QCOMPARE(alarms.told.size(), std::size_t(4)); // raised, shelved twice, unshelved once
    }

    void aShelfThatWasEndedByHandDoesNotEndAgain()
    {
        Alarms alarms;
        const quint64 id = alarms.raise();
        QVERIFY(alarms.manager.shelve(id, at(60), {}, {}));
        QVERIFY(alarms.manager.unshelve(id, {}));
        QVERIFY(alarms.manager.shelve(id, at(120), {}, {}));
        alarms.advance(60);
        QCOMPARE(alarms.stateOf(id), State::Shelved);
    }

    void aShelfNeedsATimeToCome()
    {
        Alarms alarms;
        const quint64 id = alarms.raise();
        QVERIFY(!alarms.manager.shelve(id, {}, {}, {}));
        QVERIFY(!alarms.manager.shelve(id, at(0), {}, {}));
        QVERIFY(!alarms.manager.shelve(id, at(-1), {}, {}));
        QCOMPARE(alarms.told.size(), std::size_t(1));
        // Whatever zone the caller thinks in.
        QVERIFY(alarms.manager.shelve(id, at(60).toOffsetFromUtc(3600), {}, {}));
        QCOMPARE(alarms.manager.shelf(id).until.timeSpec(), Qt::UTC);
        QCOMPARE(alarms.told.back().until, at(60));
    }

    void aShelfEndsWhileItsObjectIsSuppressed()
    {
        Alarms alarms;
        const quint64 stands = alarms.raise();
        const quint64 gone = alarms.raise(flow, 5, Cause::HighHigh);
        for (const quint64 id : {stands, gone})
            QVERIFY(alarms.manager.shelve(id, at(60), {}, {}));
        QVERIFY(alarms.manager.setSuppressed(flow, true, {}));
        QVERIFY(alarms.manager.returnAlarm(gone, at(30)));
        QCOMPARE(alarms.stateOf(gone), State::Suppressed); // its shelf is still known
        alarms.advance(60);
        QCOMPARE(alarms.stateOf(stands), State::Suppressed);
        QCOMPARE(alarms.stateOf(gone), State::Normal);
        QVERIFY(alarms.manager.setSuppressed(flow, false, {}));
        QCOMPARE(alarms.stateOf(stands), State::Unacknowledged);
    }

    void suppressionAndServiceHoldAllOfAnObject()
    {
        Alarms alarms;
        const quint64 high = alarms.raise();
        const quint64 highHigh = alarms.raise(flow, 9, Cause::HighHigh);
        const quint64 other = alarms.raise(level, 3);
        int changes = 0;
        connect(&alarms.manager, &AlarmManager::exclusionChanged, this, [&] { ++changes; });
        QVERIFY(alarms.manager.setSuppressed(flow, true, {}));
        QCOMPARE(alarms.stateOf(high), State::Suppressed);
        QCOMPARE(alarms.stateOf(highHigh), State::Suppressed);
        QCOMPARE(alarms.stateOf(other), State::Unacknowledged);
        QCOMPARE(alarms.manager.highestUnacknowledgedSeverity(), 3);
        QVERIFY(alarms.manager.setOutOfService(level, true, {}, {}));
        QCOMPARE(alarms.manager.highestUnacknowledgedSeverity(), -1);
        QCOMPARE(alarms.manager.excludedObjects().size(), 2);
        QVERIFY(alarms.manager.setSuppressed(flow, false, {}));
        QCOMPARE(alarms.manager.excludedObjects(), QList<ObjectKey>{level});
        QCOMPARE(alarms.manager.highestUnacknowledgedSeverity(), 9);
        QCOMPARE(changes, 3);
        QVERIFY(!alarms.manager.setSuppressed({}, true, {}));
        QVERIFY(!alarms.manager.setOutOfService({}, true, {}, {}));
        QCOMPARE(changes, 3);
    }

    void theFirstOfAnAreaIsRemembered()
    {
        const QString east = text("East");
        const QString west = text("West");
        Alarms alarms;
        AlarmManager& manager = alarms.manager;
        QCOMPARE(manager.firstOut({}).id, quint64(0));
        const quint64 first = alarms.raise(flow, 5, Cause::High, east);
        const quint64 second = alarms.raise(level, 9, Cause::High, west);
        const quint64 third = alarms.raise(flow, 5, Cause::HighHigh, east);
        QCOMPARE(manager.firstOut(east).id, first);
        QCOMPARE(manager.firstOut(west).id, second);
        QCOMPARE(manager.firstOut({}).id, first);
        QCOMPARE(manager.firstOut(text("North")).id, quint64(0));

        QVERIFY(manager.acknowledge(first, {}));
        QCOMPARE(manager.firstOut(east).state, State::Acknowledged);
        QCOMPARE(manager.firstOut({}).state, State::Acknowledged);
        QVERIFY(manager.returnAlarm(first, at(1)));
        QCOMPARE(manager.firstOut(east).id, first); // ended, while another stands
        QCOMPARE(manager.firstOut(east).state, State::Normal);
        QVERIFY(manager.acknowledge(third, {}));
        QVERIFY(manager.returnAlarm(third, at(2)));
        QCOMPARE(manager.firstOut(east).id, quint64(0));
        QCOMPARE(manager.firstOut({}).id, first); // the other area's still stands
        QVERIFY(manager.acknowledge(second, {}));
        QVERIFY(manager.returnAlarm(second, at(3)));
        QCOMPARE(manager.firstOut({}).id, quint64(0));

        const quint64 anew = alarms.raise(flow, 5, Cause::HighHigh, east);
        alarms.raise(level, 9, Cause::High, west);
        QCOMPARE(manager.firstOut(east).id, anew);
        QCOMPARE(manager.firstOut({}).id, anew);
    }

    void theFirstOfAnAreaIsToldAsItStands()
    {
        Alarms alarms;
        const quint64 first = alarms.raise();
        alarms.raise(level);
        QVERIFY(alarms.manager.returnAlarm(first, at(1)));
        QVERIFY(alarms.manager.firstOut({}).isEqual(alarms.manager.alarm(first)));
        alarms.raise();
        QVERIFY(alarms.manager.firstOut({}).isEqual(alarms.manager.alarm(first)));
        QVERIFY(alarms.manager.shelve(first, at(60), {}, {}));
        QVERIFY(alarms.manager.firstOut({}).isEqual(alarms.manager.alarm(first)));
        QCOMPARE(alarms.manager.firstOut({}).state, State::Shelved);
    }

    void alarmsAreListedNewestFirst()
    {
        Alarms alarms;
        const auto raiseAt = [&](ObjectKey object, Cause cause, int seconds) {
            ScadaAlarm alarm = alarmOf(object, 5, cause);
            alarm.raised = at(seconds);
            return alarms.manager.raiseAlarm(alarm);
        };
        const quint64 a = raiseAt(flow, Cause::High, 10);
        const quint64 b = raiseAt(flow, Cause::Low, 20);
        const quint64 c = raiseAt(level, Cause::Low, 10);
        const auto ids = [&] {
            std::vector<quint64> all;
            for (const ScadaAlarm& alarm : alarms.manager.activeAlarms())
                all.push_back(alarm.id);
            return all;
        };
        QCOMPARE(ids(), (std::vector<quint64>{b, c, a}));
        QVERIFY(alarms.manager.returnAlarm(a, at(25)));
        QCOMPARE(raiseAt(flow, Cause::High, 30), a); // as new as its newest condition
        QCOMPARE(ids(), (std::vector<quint64>{a, b, c}));
    }

    void unknownNumbersAreRefused()
    {
        Alarms alarms;
        const quint64 id = alarms.raise();
        alarms.told.clear();
        for (const quint64 unknown : {quint64(0), id + 1, ~quint64(0)}) {
            QVERIFY(!alarms.manager.returnAlarm(unknown, at(1)));
            QVERIFY(!alarms.manager.acknowledge(unknown, {}));
            QVERIFY(!alarms.manager.shelve(unknown, at(60), {}, {}));
            QVERIFY(!alarms.manager.unshelve(unknown, {}));
            QCOMPARE(alarms.manager.alarm(unknown).id, quint64(0));
            QVERIFY(!alarms.manager.shelf(unknown).until.isValid());
        }
        QVERIFY(alarms.told.empty());
        QVERIFY(alarms.manager.standingOf(level).empty());
    }

    void whoeverHearsOfAnAlarmMayActAtOnce()
    {
        Alarms alarms;
        connect(&alarms.manager, &AlarmManager::transitioned, this, [&](const AlarmTransition& transition) {
            if (transition.alarm.isUnacknowledged())
                alarms.manager.acknowledge(transition.alarm.id, text("robot"));
        });
        const quint64 id = alarms.raise();
        QCOMPARE(alarms.stateOf(id), State::Acknowledged);
        QCOMPARE(alarms.told.size(), std::size_t(2));
        QVERIFY(alarms.manager.shelve(id, at(60), {}, {}));
        alarms.advance(60);
        QCOMPARE(alarms.stateOf(id), State::Acknowledged);
        QVERIFY(alarms.manager.returnAlarm(id, at(61)));
        QCOMPARE(alarms.manager.count(), std::size_t(0));
        QCOMPARE(alarms.manager.unacknowledgedCount({}), 0);
        QCOMPARE(alarms.manager.visibleCount(5), 0);
    }

    void whoeverHearsOfASuppressionMayEndIt()
    {
        Alarms alarms;
        const quint64 high = alarms.raise();
        const quint64 highHigh = alarms.raise(flow, 5, Cause::HighHigh);
        connect(&alarms.manager, &AlarmManager::transitioned, this, [&](const AlarmTransition& transition) {
            if (transition.kind == Kind::Suppressed && transition.alarm.id == high)
                alarms.manager.setSuppressed(flow, false, {});
        });
        QVERIFY(alarms.manager.setSuppressed(flow, true, {}));
        QCOMPARE(alarms.stateOf(high), State::Unacknowledged);
        QCOMPARE(alarms.stateOf(highHigh), State::Unacknowledged);
        QCOMPARE(alarms.manager.unacknowledgedCount({}), 2);
    }

    void alarmsOfAnEarlierRunAreTakenOver()
    {
        Alarms earlier;
        const quint64 unacknowledged = earlier.raise();
        const quint64 acknowledged = earlier.raise(flow, 5, Cause::HighHigh);
        const quint64 returned = earlier.raise(flow, 5, Cause::Low);
        const quint64 shelved = earlier.raise(flow, 5, Cause::LowLow, text("East"));
        const quint64 excluded = earlier.raise(level);
        QVERIFY(earlier.manager.acknowledge(acknowledged, text("ann")));
        QVERIFY(earlier.manager.returnAlarm(returned, at(1)));
        QVERIFY(earlier.manager.shelve(shelved, at(60), text("bob"), text("noise")));
        QVERIFY(earlier.manager.setOutOfService(level, true, text("bob"), {}));

        Alarms later;
        later.manager.restoreExclusion(level, earlier.manager.exclusion(level));
        for (const quint64 id : {unacknowledged, acknowledged, returned, shelved, excluded})
            later.manager.restore(earlier.manager.alarm(id), earlier.manager.shelf(id));
        QVERIFY(later.told.empty());
        for (const quint64 id : {unacknowledged, acknowledged, returned, shelved, excluded})
            QVERIFY(later.manager.alarm(id).isEqual(earlier.manager.alarm(id)));
        QCOMPARE(later.manager.visibleCount(5), 3);
        QCOMPARE(later.manager.unacknowledgedCount({}), 2);
        QCOMPARE(later.manager.firstOut({}).id, unacknowledged);
        QCOMPARE(later.manager.standing(flow, Cause::Low), returned);
        QCOMPARE(later.manager.shelf(shelved).user, text("bob"));
        QCOMPARE(later.raise(flow, 5, Cause::Quality), excluded + 1);
        later.advance(60);
        QCOMPARE(later.stateOf(shelved), State::Unacknowledged);
        QVERIFY(later.manager.setOutOfService(level, false, {}, {}));
        QCOMPARE(later.stateOf(excluded), State::Unacknowledged);
        later.manager.restore(earlier.manager.alarm(999), {}); // a normal one leaves nothing
        QCOMPARE(later.manager.alarm(0).id, quint64(0));
    }

    void countsAreThoseOfAPlainList_data()
    {
        QTest::addColumn<unsigned>("seed");
        QTest::addColumn<bool>("isLatching");
        for (unsigned seed = 1; seed <= 8; ++seed)
            QTest::addRow("random operations %u", seed) << seed << (seed % 2 == 0);
    }
    void countsAreThoseOfAPlainList();
};

void tst_AlarmManager::countsAreThoseOfAPlainList()
{
    QFETCH(unsigned, seed);
    QFETCH(bool, isLatching);
    std::mt19937 random(seed);
    Alarms alarms;
    alarms.manager.setLatching([isLatching](ObjectKey) { return isLatching; });
    PlainList plain;
    plain.isLatching = isLatching;
    const QStringList areas{{}, text("East"), text("West")};
    std::vector<PlainFirst> firsts(std::size_t(areas.size()));
    for (int step = 0; step < 3000; ++step) {
        const int object = int(random() % 4);
        const int cause = int(random() % 3);
        const int severity = int(random() % 10);
        const QString area = areas[object % 3];
        // Twice as often raised as any other.
        const auto operation = operations[std::size_t(std::max(0, int(random() % 10) - 1))];
        const ObjectKey key{ScadaObjectType::AnalogPoint, 200001 + object};
        if (random() % 4 == 0) {
            alarms.now = alarms.now.addSecs(7);
            alarms.manager.advance(alarms.now);
            plain.advance(alarms.now);
        } else {
            perform(alarms, operation, key, Cause(cause), severity, area);
            plain.apply(operation, {object, cause}, alarms.now, severity, area);
        }
        std::array<int, 10> visible{};
        int highest = -1;
        QCOMPARE(alarms.manager.count(), plain.alarms.size());
        for (const auto& [where, alarm] : plain.alarms) {
            const ScadaAlarm found = alarms.manager.alarm(alarm.id);
            QCOMPARE(found.state, plain.stateOf(where));
            QCOMPARE(found.severity, alarm.severity);
            visible[std::size_t(alarm.severity)] += plain.isVisible(where) ? 1 : 0;
            if (plain.waits(where))
                highest = std::max(highest, alarm.severity);
        }
        QCOMPARE(alarms.manager.highestUnacknowledgedSeverity(), highest);
        for (int each = 0; each < 10; ++each)
            QCOMPARE(alarms.manager.visibleCount(each), visible[std::size_t(each)]);
        for (int each = 0; each < areas.size(); ++each) {
            const auto waiting = std::count_if(plain.alarms.begin(), plain.alarms.end(), [&](const auto& entry) {
                return plain.waits(entry.first) && (each == 0 || entry.second.area == areas[each]);
            });
            QCOMPARE(alarms.manager.unacknowledgedCount(areas[each]), int(waiting));
            const ScadaAlarm first = alarms.manager.firstOut(areas[each]);
            firsts[std::size_t(each)].heed(plain, areas[each], first.id);
            QCOMPARE(first.id, firsts[std::size_t(each)].id);
            if (first.id != 0 && alarms.manager.alarm(first.id).id != 0)
                QCOMPARE(first.state, alarms.manager.alarm(first.id).state);
        }
    }
}

QTEST_GUILESS_MAIN(tst_AlarmManager)
#include "tst_alarmmanager.moc"
