#include "platform/data/valuemarks.h"
#include "tests/support/operatedplant.h"

#include <QSignalSpy>
#include <QtTest>

#include <cmath>

using Command = ScadaOperationMessage::Operation;
using DataCode::DataField;
using Limit = RuntimeManager::LimitKind;
using Outcome = ScadaOperationMessage::Outcome;

namespace {

constexpr ObjectKey pump = OperatedPlant::pump;
constexpr ObjectKey breaker = OperatedPlant::breaker;
constexpr ObjectKey level = OperatedPlant::level;
constexpr ObjectKey dose = OperatedPlant::dose;
constexpr ObjectKey flow = OperatedPlant::flow;
constexpr ObjectKey unit = OperatedPlant::unit;
constexpr ObjectKey line = OperatedPlant::line;
constexpr ObjectKey nowhere{Korvane::ScadaObjectType::AnalogPoint, 299999};

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

QDateTime at(qint64 ms)
{
    return OperatedPlant::utc(OperatedPlant::begin + ms);
}

/// An operation that makes a request of an object.
struct Ask
{
    std::function<quint32(RuntimeManager&, ObjectKey)> of = {};
    ObjectKey object = {};
    Command operation = Command::Operate;
    bool isSupervisors = true;
};

Outcome ended(OperatedPlant& plant, quint32 id)
{
    OperatedPlant::settle();
    return plant.outcomeOf(id);
}

} // namespace

Q_DECLARE_METATYPE(Ask)

class tst_RuntimeManager : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatMakesRequests_data()
    {
        QTest::addColumn<Ask>("ask");
        const auto row = [](const char* name, ObjectKey object, Command operation, bool isSupervisors,
                            std::function<quint32(RuntimeManager&, ObjectKey)> of) {
            QTest::newRow(name) << Ask{std::move(of), object, operation, isSupervisors};
        };
        const QString why = text("because");
        row("select", breaker, Command::Select, false, [why](auto& m, auto o) { return m.select(o, why); });
        row("operate", pump, Command::Operate, false, [why](auto& m, auto o) { return m.operate(o, 1, why); });
        row("setPoint", level, Command::SetPoint, false, [why](auto& m, auto o) { return m.setPoint(o, 40, why); });
        row("raise", level, Command::Raise, false, [why](auto& m, auto o) { return m.raise(o, why); });
        row("lower", level, Command::Lower, false, [why](auto& m, auto o) { return m.lower(o, why); });
        row("enterValue", dose, Command::EnterValue, false, [why](auto& m, auto o) { return m.enterValue(o, 7, why); });
        row("substitute", level, Command::Substitute, true, [why](auto& m, auto o) { return m.substitute(o, 7, why); });
        row("endSubstitution", flow, Command::EndSubstitution, true,
            [why](auto& m, auto o) { return m.endSubstitution(o, why); });
        row("setControlInhibited", pump, Command::Inhibit, true,
            [why](auto& m, auto o) { return m.setControlInhibited(o, true, why); });
        row("setAlarmInhibited", pump, Command::Inhibit, true,
            [why](auto& m, auto o) { return m.setAlarmInhibited(o, true, why); });
        row("setScanInhibited", pump, Command::Inhibit, true,
            [why](auto& m, auto o) { return m.setScanInhibited(o, true, why); });
        row("setInformationTag", pump, Command::Tag, false,
            [](auto& m, auto o) { return m.setInformationTag(o, text("leaks")); });
        row("setLimit", level, Command::ChangeLimit, true,
            [why](auto& m, auto o) { return m.setLimit(o, Limit::High, 60, why); });
        row("resetLimits", level, Command::ChangeLimit, true, [why](auto& m, auto o) { return m.resetLimits(o, why); });
        row("setDeadBand", level, Command::ChangeDeadBand, true,
            [why](auto& m, auto o) { return m.setDeadBand(o, 2, why); });
        row("stopScan", unit, Command::Scan, true, [why](auto& m, auto o) { return m.stopScan(o, why); });
        row("startScan", unit, Command::Scan, true, [why](auto& m, auto o) { return m.startScan(o, why); });
        row("reconnect", line, Command::Reconnect, true, [why](auto& m, auto o) { return m.reconnect(o, why); });
        row("resetStatistics", level, Command::ResetStatistics, true,
            [why](auto& m, auto o) { return m.resetStatistics(o, why); });
    }
    void whatMakesRequests()
    {
        QFETCH(Ask, ask);
        OperatedPlant plant({true, {}, {}});
        plant.say(level, 50);
        QVERIFY(plant.changes.substitute(flow, 3, {}));
        QSignalSpy progressed(&plant.manager, &RuntimeManager::remoteControled);
        QSignalSpy finished(&plant.manager, &RuntimeManager::remoteControlFinished);
        QCOMPARE(ask.of(plant.manager, nowhere), quint32(0));

        const quint32 refused = ask.of(plant.manager, ask.object);
        QCOMPARE(refused, quint32(1));                    // the unknown object took no number
        QCOMPARE(progressed.size() + finished.size(), 0); // not before it has returned
        OperatedPlant::settle();
        QCOMPARE(progressed.size(), 1);
        QCOMPARE(finished.size(), 1);
        const auto end = finished[0][0].value<ScadaOperationMessage>();
        QCOMPARE(end.outcome, Outcome::NotPermitted); // nobody is logged on
        QCOMPARE(end.operation, ask.operation);
        QVERIFY((ObjectKey{end.objectType, end.objectId}) == ask.object);
        QCOMPARE(end.reason, ask.operation == Command::Tag ? QString() : text("because"));

        plant.logOn(ask.isSupervisors ? "bob" : "vic");
        QCOMPARE(ended(plant, ask.of(plant.manager, ask.object)), Outcome::NotPermitted);
        plant.logOn(ask.isSupervisors ? "sue" : "bob");
        const quint32 id = ask.of(plant.manager, ask.object);
        QCOMPARE(id, quint32(3));
        OperatedPlant::settle();
        QVERIFY(plant.outcomeOf(id) != Outcome::NotPermitted);
        QVERIFY(plant.manager.operations(at(0), at(0), 100).first().requestId == id);
    }

    // Control

    void commandsReachTheSource()
    {
        OperatedPlant plant;
        RuntimeManager& manager = plant.manager;
        plant.say(level, 50);
        const quint32 operating = manager.operate(pump, 1, {});
        const quint32 selecting = manager.select(breaker, {});
        QCOMPARE(manager.pendingRequests().size(), 2);
        QCOMPARE(ended(plant, selecting), Outcome::Done);
        QCOMPARE(manager.selectedBy(breaker), manager.currentUser());
        QCOMPARE(manager.selectedUntil(breaker), at(30000));
        QVERIFY(manager.selectedBy(pump).isEmpty());
        QVERIFY(!manager.selectedUntil(pump).isValid());
        QCOMPARE(manager.request(operating).outcome, Outcome::Sent);
        QCOMPARE(manager.request(99).requestId, quint32(0));
        manager.setPoint(level, 12.5, {});
        OperatedPlant::settle();
        plant.say(level, 12.5);
        manager.raise(level, {});
        OperatedPlant::settle();
        plant.say(level, 17.5);
        manager.lower(level, {});
        OperatedPlant::settle();
        QStringList written;
        for (const ValueSource::Command& command : plant.source->written)
            written.append(QStringLiteral("%1=%2").arg(command.object.id).arg(command.value));
        QCOMPARE(written.join(QLatin1Char(' ')), text("100001=1 200001=12.5 200001=17.5 200001=12.5"));
        QVERIFY(manager.cancel(selecting));
        QVERIFY(manager.selectedBy(breaker).isEmpty());
        QVERIFY(!manager.cancel(selecting));
        QVERIFY(!manager.cancel(operating)); // was sent
        QCOMPARE(manager.pendingRequests().size(), 2);
    }

    void aSecondPersonConfirms()
    {
        OperatedPlant plant(OperatedPlant::with(
            pump, [](ControlSetting& setting) { setting.confirmation = ControlSetting::Confirmation::Second; }, true));
        plant.logOn("ann");
        plant.confirmer.answer = [&plant](const ScadaOperationMessage&) { return plant.givePassword("ann"); };
        const quint32 id = plant.manager.operate(pump, 1, {});
        OperatedPlant::settle();
        QVERIFY(!plant.manager.confirm(id, text("bob")));
        QVERIFY(plant.givePassword("bob"));
        QVERIFY(plant.manager.confirm(id, text("bob")));
        QCOMPARE(ended(plant, id), Outcome::Sent);
    }

    void theTimeForFeedbackCanBeChanged()
    {
        OperatedPlant plant;
        QCOMPARE(plant.manager.feedbackTimeout(), std::chrono::milliseconds(10000));
        plant.manager.setFeedbackTimeout(std::chrono::milliseconds(250));
        QCOMPARE(plant.manager.feedbackTimeout(), std::chrono::milliseconds(250));
        plant.manager.setFeedbackTimeout(std::chrono::milliseconds(0));
        QCOMPARE(plant.manager.feedbackTimeout(), std::chrono::milliseconds(250));
        const quint32 id = plant.manager.operate(pump, 1, {});
        OperatedPlant::settle();
        plant.pass(250);
        QCOMPARE(plant.outcomeOf(id), Outcome::TimedOut);
    }

    void aRequestIsMadeFromAPage()
    {
        OperatedPlant plant;
        plant.path.setPageCheck([](const QString& page) { return page == text("open"); });
        quint32 outer = 0;
        quint32 inner = 0;
        quint32 behind = 0;
        {
            const RuntimeManager::Origin secret(plant.manager, text("secret"));
            {
                const RuntimeManager::Origin open(plant.manager, text("open"));
                inner = plant.manager.operate(pump, 1, {});
            }
            outer = plant.manager.setInformationTag(pump, text("x"));
        }
        behind = plant.manager.setInformationTag(pump, text("y"));
        QCOMPARE(ended(plant, inner), Outcome::Sent);
        QCOMPARE(plant.outcomeOf(outer), Outcome::NotPermitted);
        QCOMPARE(plant.outcomeOf(behind), Outcome::Done);
    }

    // Manual entry and substitution

    void aValueIsEnteredByHand()
    {
        OperatedPlant plant;
        const quint32 id = plant.manager.enterValue(dose, 3.5, {});
        OperatedPlant::settle();
        QCOMPARE(plant.source->written.back().value, 3.5);
        plant.say(dose, 3.5);
        QCOMPARE(plant.outcomeOf(id), Outcome::Done);
        QCOMPARE(ended(plant, plant.manager.enterValue(flow, 3.5, {})), Outcome::Refused);
    }

    void aValueIsSubstituted()
    {
        OperatedPlant plant({true, {}, {}});
        plant.logOn("sue");
        RuntimeManager& manager = plant.manager;
        plant.say(flow, 1);
        QCOMPARE(ended(plant, manager.substitute(flow, text("2.5"), text("sensor is broken"))), Outcome::Done);
        QCOMPARE(manager.value(flow), QVariant(2.5));
        QCOMPARE(manager.substitutedBy(flow), text("sue"));
        QVERIFY(manager.substitutedBy(level).isEmpty());
        QCOMPARE(manager.substitutedObjects(), QList<ObjectKey>{flow});
        QCOMPARE(ended(plant, manager.substitute(flow, text("much"), {})), Outcome::Refused);
        QCOMPARE(ended(plant, manager.substitute(flow, {}, {})), Outcome::Refused);
        QCOMPARE(manager.value(flow), QVariant(2.5));
        QCOMPARE(ended(plant, manager.endSubstitution(flow, {})), Outcome::Done);
        QVERIFY(manager.substitutedBy(flow).isEmpty());
        QVERIFY(manager.substitutedObjects().isEmpty());
        QCOMPARE(ended(plant, manager.endSubstitution(flow, {})), Outcome::Refused);
    }

    // Marks

    void marksAreSetAndTakenBack()
    {
        OperatedPlant plant;
        RuntimeManager& manager = plant.manager;
        plant.say(pump, 1);
        manager.setControlInhibited(pump, true, {});
        manager.setAlarmInhibited(pump, true, {});
        manager.setScanInhibited(pump, true, {});
        manager.setInformationTag(pump, text("leaks"));
        OperatedPlant::settle();
        QCOMPARE(manager.tagMarks(pump), 0x0f);
        QCOMPARE(manager.informationTag(pump), text("leaks"));
        QVERIFY(manager.informationTag(level).isEmpty());
        for (const ValueMark::Tag mark : {ValueMark::ControlInhibited, ValueMark::AlarmInhibited,
                                          ValueMark::ScanInhibited, ValueMark::InformationTag})
            QCOMPARE(manager.objectsMarked(mark), QList<ObjectKey>{pump});
        QCOMPARE(ended(plant, manager.operate(pump, 0, {})), Outcome::Inhibited);
        manager.setControlInhibited(pump, false, {});
        manager.setAlarmInhibited(pump, false, {});
        manager.setScanInhibited(pump, false, {});
        manager.setInformationTag(pump, {});
        OperatedPlant::settle();
        QCOMPARE(manager.tagMarks(pump), 0);
        QVERIFY(manager.objectsMarked(ValueMark::ScanInhibited).isEmpty());
        QCOMPARE(ended(plant, manager.operate(pump, 0, {})), Outcome::Sent);
        QCOMPARE(manager.tagMarks(nowhere), 0);
    }

    // Limits

    void limitsAreChangedAndPutBack()
    {
        OperatedPlant plant;
        RuntimeManager& manager = plant.manager;
        QCOMPARE(manager.statedLimit(level, Limit::High), QVariant(80.0));
        QCOMPARE(manager.statedLimit(level, Limit::Low), QVariant(10.0));
        QVERIFY(!manager.statedLimit(level, Limit::HighHigh).isValid());
        QVERIFY(!manager.statedLimit(level, Limit::LowLow).isValid());
        QVERIFY(!manager.statedLimit(nowhere, Limit::High).isValid());
        QCOMPARE(manager.deadBand(level), 1.0);
        manager.setLimit(level, Limit::HighHigh, 95, {});
        manager.setLimit(level, Limit::LowLow, 5, {});
        manager.setLimit(level, Limit::High, {}, {});
        manager.setLimit(level, Limit::Low, 12, {});
        manager.setDeadBand(level, 2.5, {});
        OperatedPlant::settle();
        QCOMPARE(manager.fieldValue(level, DataField::HighHighLimit), QVariant(95.0));
        QCOMPARE(manager.fieldValue(level, DataField::LowLowLimit), QVariant(5.0));
        QVERIFY(!manager.fieldValue(level, DataField::HighLimit).isValid());
        QCOMPARE(manager.fieldValue(level, DataField::LowLimit), QVariant(12.0));
        QCOMPARE(manager.statedLimit(level, Limit::High), QVariant(80.0)); // the list's stays
        QCOMPARE(manager.deadBand(level), 2.5);
        QCOMPARE(ended(plant, manager.setLimit(level, Limit::High, text("high"), {})), Outcome::Refused);
        QCOMPARE(ended(plant, manager.setLimit(level, Limit::High, 12, {})), Outcome::Refused);
        QCOMPARE(ended(plant, manager.setDeadBand(level, -1, {})), Outcome::Refused);
        QCOMPARE(ended(plant, manager.resetLimits(level, {})), Outcome::Done);
        QCOMPARE(manager.fieldValue(level, DataField::HighLimit), QVariant(80.0));
        QVERIFY(!manager.fieldValue(level, DataField::HighHighLimit).isValid());
        QCOMPARE(manager.deadBand(level), 1.0);
        QCOMPARE(manager.deadBand(nowhere), 0.0);
    }

    // Acknowledgement and counts

    void alarmsAreCountedAndAcknowledged()
    {
        OperatedPlant plant;
        RuntimeManager& manager = plant.manager;
        QSignalSpy one(&manager, &RuntimeManager::alarmAcked);
        QSignalSpy several(&manager, &RuntimeManager::alarmSequenceAcked);
        const auto raise = [&plant] {
            plant.pass(1000);
            plant.say(level, 50);
            plant.pass(1000);
            plant.say(level, 85);
        };
        const auto id = static_cast<uint>(level.id);
        QVERIFY(!manager.acknowledgePoint(id));
        raise();
        QCOMPARE(manager.alarmCount(5), 1);
        QCOMPARE(manager.alarmCount(4), 0);
        QCOMPARE(manager.unacknowledgedCount({}), 1);
        QCOMPARE(manager.unacknowledgedCount(text("North")), 1);
        QCOMPARE(manager.unacknowledgedCount(text("South")), 0);
        QVERIFY(manager.acknowledgePoint(id));
        QCOMPARE(one.size(), 1);
        QCOMPARE(one[0][0].toUInt(), id);
        QCOMPARE(manager.alarmCount(5), 1);
        QCOMPARE(manager.unacknowledgedCount({}), 0);
        raise();
        QCOMPARE(manager.acknowledgePoints({id, 100001}), 1);
        QCOMPARE(manager.acknowledgePoints({id}), 0);
        QCOMPARE(several.size(), 1);
        QCOMPARE(several[0][0].value<QList<uint>>(), QList<uint>{id});
        raise();
        QCOMPARE(manager.acknowledgeArea(text("South")), 0);
        QCOMPARE(manager.acknowledgeArea(text("North")), 1);
        raise();
        plant.pass(1000);
        plant.say(level, 50); // gone before anybody looked
        QCOMPARE(manager.alarmCount(5), 0);
        QCOMPARE(manager.unacknowledgedCount(text("North")), 1);
        QCOMPARE(manager.acknowledgeArea({}), 1);
        QCOMPARE(several.size(), 3);
    }

    void alarmsAreShelvedAndBroughtBack()
    {
        OperatedPlant plant;
        RuntimeManager& manager = plant.manager;
        QVERIFY(!manager.shelve(level, at(60000), text("test")));
        plant.say(level, 85);
        plant.pass(50);
        QVERIFY(!manager.unshelve(level, {}));
        QVERIFY(manager.shelve(level, at(60000), text("test")));
        QCOMPARE(manager.unacknowledgedCount({}), 0);
        QCOMPARE(manager.alarmCount(5), 1); // its condition holds
        QVERIFY(manager.unshelve(level, {}));
        QCOMPARE(manager.unacknowledgedCount({}), 1);
        QVERIFY(manager.shelve(level, at(60000), text("test")));
        plant.pass(60000);
        QCOMPARE(manager.unacknowledgedCount({}), 1); // at that time by itself
    }

    void theAlarmsOfAPageAreAcknowledged()
    {
        TemporaryFiles files;
        QVERIFY(QDir().mkpath(files.path(text("pages"))));
        files.write(text("pages/a.pws"), "{\"format\":\"korvane-page\",\"version\":1,\"layers\":[{\"name\":\"v\","
                                         "\"shapes\":[{\"class\":\"ReadOut\",\"name\":\"r\",\"place\":[0,0,9,9],"
                                         "\"actions\":[{\"type\":2,\"version\":911,\"targets\":[{\"tag\":\"LEVEL\"}]}"
                                         "]}]}]}");
        files.write(text("pages/b.pws"), "{\"format\":\"korvane-page\",\"version\":1,\"layers\":[]}");
        OperatedPlant plant;
        plant.project.folder = files.path(text("pages")).chopped(6);
        const auto page = plant.pages.open(text("a"));
        QVERIFY2(page, page ? "" : qPrintable(page.error()));
        const auto other = plant.pages.open(text("b"));
        plant.say(level, 85);
        plant.pass(50);
        QSignalSpy several(&plant.manager, &RuntimeManager::alarmSequenceAcked);
        QCOMPARE(plant.manager.acknowledgePage(nullptr), 0);
        QCOMPARE(plant.manager.acknowledgePage((*other)->canvas.get()), 0);
        QCOMPARE(plant.manager.acknowledgePage((*page)->canvas.get()), 1);
        QCOMPARE(several.size(), 1);
        QCOMPARE(plant.manager.acknowledgePage((*page)->canvas.get()), 0);
        QVERIFY(plant.pages.close(text("a")));
        QVERIFY(plant.pages.close(text("b")));
    }

    void silencing()
    {
        OperatedPlant plant;
        QSignalSpy silenced(&plant.manager, &RuntimeManager::silenced);
        plant.manager.silence();
        QCOMPARE(silenced.size(), 1);
    }

    // Scan and communication

    void aUnitIsScannedOrNot()
    {
        OperatedPlant plant;
        RuntimeManager& manager = plant.manager;
        plant.say(level, 50);
        QVERIFY(manager.isScanning(unit));
        QVERIFY(!manager.isScanning(level));
        QVERIFY(!manager.isScanning({Korvane::ScadaObjectType::RtuObject, 99}));
        QCOMPARE(ended(plant, manager.startScan(unit, {})), Outcome::Refused); // it is
        QCOMPARE(ended(plant, manager.stopScan(unit, {})), Outcome::Done);
        QVERIFY(!manager.isScanning(unit));
        QCOMPARE(plant.qualityOf(level), qint32(ValueMark::Stale));
        QCOMPARE(ended(plant, manager.stopScan(level, {})), Outcome::Refused);
        QCOMPARE(ended(plant, manager.startScan(unit, {})), Outcome::Done);
        QVERIFY(manager.isScanning(unit));
    }

    void aLineIsConnectedAnew()
    {
        OperatedPlant plant;
        QCOMPARE(ended(plant, plant.manager.reconnect(line, {})), Outcome::Done); // through its unit
        QCOMPARE(plant.source->reconnects, 1);
        QCOMPARE(ended(plant, plant.manager.reconnect(unit, {})), Outcome::Refused);
        QCOMPARE(ended(plant, plant.manager.reconnect(level, {})), Outcome::Refused);
        QCOMPARE(plant.source->reconnects, 1);
    }

    void aUnitCommunicatesOrNot()
    {
        OperatedPlant plant;
        RuntimeManager& manager = plant.manager;
        QVERIFY(!manager.isCommunicating(unit));
        QVERIFY(!manager.lastCommunicationChange(unit, true).isValid());
        plant.say(unit, 0);
        plant.pass(1000);
        plant.say(unit, 1);
        QVERIFY(manager.isCommunicating(unit));
        QCOMPARE(manager.lastCommunicationChange(unit, true), at(1000));
        plant.pass(1000);
        plant.say(unit, 0);
        QVERIFY(!manager.isCommunicating(unit));
        QCOMPARE(manager.lastCommunicationChange(unit, false), at(2000));
        QCOMPARE(manager.lastCommunicationChange(unit, true), at(1000));
        plant.pass(1000);
        plant.say(unit, 1);
        QVERIFY(manager.isCommunicating(unit));
        plant.source->fail();
        QVERIFY(!manager.isCommunicating(unit)); // nobody knows
        QVERIFY(!manager.isCommunicating(level));
        QVERIFY(!manager.isCommunicating(line));
    }

    // Values and fields

    void valuesAreReadBack()
    {
        OperatedPlant plant;
        RuntimeManager& manager = plant.manager;
        QVERIFY(!manager.value(level).isValid());
        QVERIFY(!manager.record(level).GetValue("value"));
        QVERIFY(!manager.record(nowhere).GetValue("quality"));
        QVERIFY(!manager.lastChange(level).isValid());
        plant.say(level, 50.5);
        plant.say(pump, 1);
        QCOMPARE(manager.value(level), QVariant(50.5));
        QCOMPARE(manager.value(pump), QVariant(1));
        QCOMPARE(manager.record(level).GetValue("value")->toDouble(), 50.5);
        plant.pass(1000);
        plant.say(level, 50.5); // the same once more
        QCOMPARE(manager.lastChange(level), at(0));
        plant.say(level, 51);
        QCOMPARE(manager.lastChange(level), at(1000));
        QVERIFY(!manager.lastChange(nowhere).isValid());
        QVERIFY(manager.readAgain(level));
        QCOMPARE(plant.source->readAgainOf, QList<ObjectKey>{level});
        QVERIFY(!manager.readAgain(line)); // no source delivers it
    }

    void fieldsOfEverySupplierAreReadBack()
    {
        OperatedPlant plant;
        RuntimeManager& manager = plant.manager;
        plant.say(level, 50);
        plant.pass(1800000);
        plant.say(level, 60);
        plant.pass(7200000);
        plant.say(level, 61);
        QCOMPARE(manager.fieldValue(level, DataField::Value), QVariant(61.0));
        QCOMPARE(manager.fieldValue(level, DataField::UpdateTime).toDateTime(), at(9000000));
        QCOMPARE(manager.fieldValue(level, DataField::PointName), QVariant(text("LEVEL")));
        QCOMPARE(manager.fieldValue(level, DataField::HighLimit), QVariant(80.0));
        QCOMPARE(manager.fieldValue(level, DataField::TotalMaximum).toDouble(), 61.0);
        QCOMPARE(manager.fieldValue(level, DataField::PastMaximum).toDouble(), 60.0);
        QVERIFY(!manager.fieldValue(level, DataField::CommState).isValid()); // no field of a point
        QVERIFY(!manager.fieldValue(level, DataField::TodayOnCount).isValid());
        QVERIFY(!manager.fieldValue(level, DataField::Unknown).isValid());
        QVERIFY(!manager.fieldValue(nowhere, DataField::Value).isValid());
        plant.say(unit, 1);
        QCOMPARE(manager.fieldValue(unit, DataField::CommState), QVariant(1));
        QCOMPARE(manager.fieldValue(unit, DataField::ScanState), QVariant(1));
        QVERIFY(plant.changes.setScanInhibited(unit, true, {}));
        QCOMPARE(manager.fieldValue(unit, DataField::ScanState), QVariant(0));
        QCOMPARE(manager.fieldValue(unit, DataField::CommState), QVariant(1));
    }

    void statisticsBeginAnew()
    {
        OperatedPlant plant;
        QVERIFY(!plant.manager.statisticsStart(level).isValid());
        QCOMPARE(ended(plant, plant.manager.resetStatistics(level, {})), Outcome::Refused);
        plant.say(level, 50);
        QCOMPARE(plant.manager.statisticsStart(level), at(0));
        plant.pass(5000);
        QCOMPARE(ended(plant, plant.manager.resetStatistics(level, {})), Outcome::Done);
        QCOMPARE(plant.manager.statisticsStart(level), at(5000));
    }

    // Histories and events

    void historiesAreRead()
    {
        OperatedPlant plant;
        for (int second = 0; second <= 6; ++second) {
            plant.say(level, second * 1.5, second == 2 ? ValueMark::Estimated : 0);
            plant.say(pump, second % 2);
            plant.pass(1000);
        }
        const auto samples = plant.manager.history(level, at(1000), at(3000), 100);
        QCOMPARE(samples.size(), 3); // both ends are included
        QCOMPARE(samples[0].time, at(1000));
        QCOMPARE(samples[1].value, QVariant(3.0));
        QCOMPARE(samples[1].quality, qint32(ValueMark::Estimated));
        QCOMPARE(samples[2].time, at(3000));
        const auto thin = plant.manager.history(level, at(0), at(6000), 3);
        QCOMPARE(thin.size(), 3);
        QCOMPARE(thin[1].time, at(3000));
        QCOMPARE(plant.manager.history(pump, at(1000), at(1000), 1)[0].value, QVariant(1));
        QVERIFY(plant.manager.history(level, at(0), at(6000), 0).isEmpty());
        QVERIFY(plant.manager.history(level, at(0), at(6000), -1).isEmpty());
        QVERIFY(plant.manager.history(nowhere, at(0), at(6000), 9).isEmpty());
    }

    void eventsAreRead()
    {
        OperatedPlant plant;
        plant.say(level, 85);
        plant.pass(1000);
        plant.alarms.addEvent(text("shift begins"), text("ann"));
        plant.alarms.commit();
        const auto events = plant.manager.events({}, at(0), at(5000), 100);
        QCOMPARE(events.size(), 2);
        QCOMPARE(events[0].text, text("shift begins")); // newest first
        QCOMPARE(events[0].user, text("ann"));
        QCOMPARE(events[0].time, at(1000));
        QVERIFY(!events[0].object.isValid());
        QVERIFY(events[1].object == level);
        QVERIFY(events[1].user.isEmpty());
        QCOMPARE(plant.manager.events({}, at(0), at(5000), 1).size(), 1);
        QCOMPARE(plant.manager.events(level, at(0), at(5000), 100).size(), 1);
        QVERIFY(plant.manager.events(level, at(1), at(5000), 100).isEmpty());
        QVERIFY(plant.manager.events(pump, at(0), at(5000), 100).isEmpty());
    }

    void operationsAreRead()
    {
        OperatedPlant plant;
        plant.manager.operate(pump, 9, text("first"));
        OperatedPlant::settle();
        plant.pass(1000);
        plant.manager.operate(pump, 9, text("second"));
        OperatedPlant::settle();
        const auto all = plant.manager.operations(at(0), at(1000), 100);
        QCOMPARE(all.size(), 2);
        QCOMPARE(all[0].reason, text("second"));
        QCOMPARE(all[1].outcome, Outcome::OutOfLimits);
        QCOMPARE(plant.manager.operations(at(0), at(999), 100).size(), 1);
        QCOMPARE(plant.manager.operations(at(0), at(1000), 1).size(), 1);
        plant.audit.close();
        QVERIFY(plant.manager.operations(at(0), at(1000), 100).isEmpty());
    }

    // Stations and areas

    void stationsAndAreasAreNamed()
    {
        OperatedPlant plant;
        RuntimeManager& manager = plant.manager;
        QCOMPARE(manager.stations(), (QStringList{text("LOOP"), QString()}));
        QCOMPARE(manager.objectsOf(text("LOOP")), (QList<ObjectKey>{pump, breaker, level, dose, flow}));
        QCOMPARE(manager.objectsOf({}), (QList<ObjectKey>{unit, line}));
        QVERIFY(manager.objectsOf(text("loop")).isEmpty());
        QCOMPARE(manager.areas(), (QStringList{text("North"), text("South")}));
        QCOMPARE(manager.areaOf(level), text("North"));
        QCOMPARE(manager.areaOf(unit), text("South"));
        QVERIFY(manager.areaOf(line).isEmpty());
        QVERIFY(manager.areaOf(nowhere).isEmpty());
    }

    // Session and rights

    void aSessionHasItsRights()
    {
        OperatedPlant plant({true, {}, {}});
        RuntimeManager& manager = plant.manager;
        QVERIFY(manager.currentUser().isEmpty());
        QVERIFY(manager.areas().isEmpty());
        QVERIFY(!manager.mayControl(pump));
        plant.logOn("ann");
        QCOMPARE(manager.currentUser(), text("ann"));
        QCOMPARE(manager.areas(), QStringList{text("North")});
        QVERIFY(manager.mayControl(pump));
        QVERIFY(!manager.mayControl(flow)); // takes no commands from anybody
        QVERIFY(!manager.mayControl(nowhere));
        plant.logOn("sam");
        QVERIFY(!manager.mayControl(pump));
        plant.logOn("vic");
        QVERIFY(!manager.mayControl(pump));
        plant.logOn("bob");
        QCOMPARE(manager.areas(), (QStringList{text("North"), text("South")}));
        QCOMPARE(ended(plant, manager.select(breaker, {})), Outcome::Done);
        manager.endSession();
        QVERIFY(manager.currentUser().isEmpty());
        QVERIFY(manager.selectedBy(breaker).isEmpty());
        QVERIFY(!plant.users.currentAccount());
        QCOMPARE(manager.workplace(), text("desk 1"));
    }

    void pagesMayBeOpenedAsWhoeverKnowsSays()
    {
        OperatedPlant plant;
        QVERIFY(plant.manager.mayOpenPage(text("any")));
        plant.manager.setPageCheck([](const QString& page) { return page == text("a"); });
        QVERIFY(plant.manager.mayOpenPage(text("a")));
        QVERIFY(!plant.manager.mayOpenPage(text("b")));
    }

    // Replay

    void withoutAReplayThereIsNothingToSet()
    {
        OperatedPlant plant;
        QVERIFY(!plant.manager.isReplay());
        QCOMPARE(plant.manager.replaySpeed(), 1.0);
        QVERIFY(!plant.manager.setReplaySpeed(2));
        QVERIFY(!plant.manager.seekReplay(at(0)));
        plant.manager.setSimulated(true);
        QVERIFY(plant.manager.isReplay()); // commands reach no process
        QVERIFY(!plant.manager.setReplaySpeed(2));
    }

    void aReplayIsHeldHurriedAndTurnedBack()
    {
        OperatedPlant plant;
        double speed = 3;
        qint64 sought = 0;
        plant.manager.setReplay({[&speed] { return speed; },
                                 [&speed](double asked) {
                                     speed = asked;
                                     return true;
                                 },
                                 [&sought](qint64 timeMs) {
                                     sought = timeMs;
                                     return timeMs < OperatedPlant::begin + 5000;
                                 }});
        QVERIFY(plant.manager.isReplay());
        QCOMPARE(plant.manager.replaySpeed(), 3.0);
        QVERIFY(plant.manager.setReplaySpeed(0));
        QCOMPARE(plant.manager.replaySpeed(), 0.0);
        QVERIFY(!plant.manager.setReplaySpeed(-1));
        QVERIFY(!plant.manager.setReplaySpeed(std::nan("")));
        QVERIFY(!plant.manager.setReplaySpeed(INFINITY));
        QCOMPARE(speed, 0.0);
        QVERIFY(plant.manager.seekReplay(at(1000)));
        QCOMPARE(sought, OperatedPlant::begin + 1000);
        QVERIFY(!plant.manager.seekReplay(at(6000)));
        sought = 7;
        QVERIFY(!plant.manager.seekReplay({}));
        QCOMPARE(sought, qint64(7));
    }

    // Health

    void sourcesAreHealthyOrNot()
    {
        OperatedPlant plant;
        RuntimeManager& manager = plant.manager;
        QVERIFY(manager.isHealthy());
        QCOMPARE(manager.sources().size(), 1);
        QVERIFY(!manager.sources()[0].lastSample.isValid());
        plant.source->deliver({{level, plant.nowMs + 20, 1, 0}, {pump, plant.nowMs + 10, 1, 0}});
        plant.source->report(text("line 7 skipped"));
        RuntimeManager::SourceHealth health = manager.sources()[0];
        QCOMPARE(health.name, text("test line"));
        QVERIFY(health.isConnected);
        QCOMPARE(health.lastSample, at(20));
        QCOMPARE(health.sampleCount, quint64(2));
        QCOMPARE(health.errorCount, quint64(1));
        QCOMPARE(health.lastError, text("line 7 skipped"));
        QVERIFY(manager.isHealthy());
        plant.source->fail();
        health = manager.sources()[0];
        QVERIFY(!health.isConnected);
        QCOMPARE(health.errorCount, quint64(2));
        QCOMPARE(health.lastError, text("the line is dead"));
        QVERIFY(!manager.isHealthy());
        plant.source->recover();
        QVERIFY(manager.isHealthy());
        plant.source->end();
        QVERIFY(!manager.isHealthy()); // delivers no more
        QVERIFY(manager.sources()[0].isConnected);
    }
};

QTEST_MAIN(tst_RuntimeManager)
#include "tst_runtimemanager.moc"
