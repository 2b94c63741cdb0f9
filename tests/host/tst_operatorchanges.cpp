#include "platform/data/valuemarks.h"
#include "tests/support/operatedplant.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QtTest>

#include <algorithm>
#include <cmath>
#include <limits>

using Kind = OperatingState::Kind;
using Limit = OperatorChanges::Limit;

namespace {

constexpr ObjectKey pump = OperatedPlant::pump;
constexpr ObjectKey level = OperatedPlant::level;
constexpr ObjectKey flow = OperatedPlant::flow;
constexpr ObjectKey unit = OperatedPlant::unit;
constexpr ObjectKey line = OperatedPlant::line;

QString text(const char* latin1)
{
    return QString::fromLatin1(latin1);
}

ScadaOperationMessage by(const char* user)
{
    ScadaOperationMessage message;
    message.user = text(user);
    message.reason = text("because");
    return message;
}

qint32 limitMarks(const OperatedPlant& plant)
{
    return plant.database.presentRecord(level).GetValue("limit")->toInt32();
}

/// Has whatever is written into the operating state fail, while it lives.
class FullDisk
{
public:
    explicit FullDisk(const QString& folder)
    {
        QSqlDatabase other = QSqlDatabase::addDatabase(text("QSQLITE"), text("full"));
        other.setDatabaseName(folder + text("/operating.db"));
        if (!other.open())
            qFatal("no operating state");
        execute("CREATE TRIGGER full_1 BEFORE INSERT ON operating_state BEGIN SELECT RAISE(ABORT, 'full'); END");
        execute("CREATE TRIGGER full_2 BEFORE DELETE ON operating_state BEGIN SELECT RAISE(ABORT, 'full'); END");
    }
    ~FullDisk()
    {
        execute("DROP TRIGGER full_1");
        execute("DROP TRIGGER full_2");
        QSqlDatabase::database(text("full")).close();
        QSqlDatabase::removeDatabase(text("full"));
    }
    Q_DISABLE_COPY(FullDisk)

private:
    static void execute(const char* sql)
    {
        if (!QSqlQuery(QSqlDatabase::database(text("full"))).exec(text(sql)))
            qFatal("%s", sql);
    }
};

} // namespace

class tst_OperatorChanges : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commandsAreInhibited()
    {
        OperatedPlant plant;
        plant.say(pump, 0);
        QVERIFY(plant.changes.setControlInhibited(pump, true, by("sue")));
        QCOMPARE(plant.database.tagMarks(pump), qint32(ValueMark::ControlInhibited));
        plant.pass(50);
        QVERIFY(std::find(plant.changed.begin(), plant.changed.end(), pump) != plant.changed.end()); // pages hear of it
        QCOMPARE(plant.changes.objectsMarked(ValueMark::ControlInhibited), QList<ObjectKey>{pump});
        QCOMPARE(plant.changes.state().find(pump, Kind::ControlInhibited)->user, text("sue"));
        QVERIFY(plant.changes.setControlInhibited(pump, false, by("sue")));
        QCOMPARE(plant.database.tagMarks(pump), 0);
        QVERIFY(plant.changes.objectsMarked(ValueMark::ControlInhibited).isEmpty());
    }

    void anInformationTagHasAText()
    {
        OperatedPlant plant;
        QVERIFY(plant.changes.setInformationTag(unit, text("being painted"), by("ann")));
        QCOMPARE(plant.database.tagMarks(unit), qint32(ValueMark::InformationTag));
        QCOMPARE(plant.changes.state().find(unit, Kind::InformationTag)->value, text("being painted"));
        QVERIFY(plant.changes.setInformationTag(unit, {}, by("ann")));
        QCOMPARE(plant.database.tagMarks(unit), 0);
    }

    void marksStandBesideOneAnother()
    {
        OperatedPlant plant;
        QVERIFY(plant.changes.setControlInhibited(pump, true, by("sue")));
        QVERIFY(plant.changes.setInformationTag(pump, text("x"), by("sue")));
        QVERIFY(plant.changes.setAlarmInhibited(pump, true, by("sue")));
        QVERIFY(plant.changes.setScanInhibited(pump, true, by("sue")));
        QCOMPARE(plant.database.tagMarks(pump), 0x0f);
        QVERIFY(plant.changes.setControlInhibited(pump, false, by("sue")));
        QCOMPARE(plant.database.tagMarks(pump), 0x0e);
    }

    void alarmsAreInhibitedFromBothSides()
    {
        OperatedPlant plant;
        QVERIFY(plant.changes.setAlarmInhibited(level, true, by("sue")));
        QCOMPARE(plant.database.tagMarks(level), qint32(ValueMark::AlarmInhibited));
        QVERIFY(!plant.changes.setAlarmInhibited(level, true, by("sue"))); // it is so already
        plant.say(level, 85);
        plant.pass(50);
        QCOMPARE(plant.alarms.manager().waitingCount(5), 0);
        // The alarm list puts it back into service, and the mark follows.
        QVERIFY(plant.alarms.manager().setOutOfService(level, false, text("sue"), {}));
        QCOMPARE(plant.database.tagMarks(level), 0);
        QVERIFY(!plant.changes.setAlarmInhibited(level, false, by("sue")));
        QVERIFY(plant.alarms.manager().setOutOfService(pump, true, text("sue"), text("test")));
        QCOMPARE(plant.changes.objectsMarked(ValueMark::AlarmInhibited), QList<ObjectKey>{pump});
        QVERIFY(plant.changes.setAlarmInhibited(pump, false, by("sue")));
        QCOMPARE(plant.database.tagMarks(pump), 0);
    }

    void aPointThatIsNotScannedIsStaleUntilItIsScannedAgain()
    {
        OperatedPlant plant;
        plant.say(level, 50);
        QVERIFY(plant.changes.setScanInhibited(level, true, by("sue")));
        QVERIFY(!plant.changes.setScanInhibited(level, true, by("sue")));
        QCOMPARE(plant.qualityOf(level), qint32(ValueMark::Stale));
        plant.pass(100);
        plant.say(level, 60);
        plant.say(level, 61);
        QCOMPARE(plant.valueOf(level), QVariant(50.0));
        QCOMPARE(plant.qualityOf(level), qint32(ValueMark::Stale));
        QVERIFY(plant.changes.setScanInhibited(level, false, by("sue")));
        QCOMPARE(plant.valueOf(level), QVariant(61.0)); // the newest that was held back
        QCOMPARE(plant.qualityOf(level), 0);
        QVERIFY(!plant.changes.setScanInhibited(level, false, by("sue")));
    }

    void aUnitTakesItsPointsAlong()
    {
        OperatedPlant plant;
        plant.say(level, 50);
        plant.say(pump, 1);
        QVERIFY(plant.changes.setScanInhibited(level, true, by("sue"))); // by itself besides
        QVERIFY(plant.changes.setScanInhibited(unit, true, by("sue")));
        QCOMPARE(plant.database.tagMarks(unit), qint32(ValueMark::ScanInhibited));
        QCOMPARE(plant.qualityOf(pump), qint32(ValueMark::Stale));
        plant.pass(10);
        plant.say(pump, 0);
        plant.say(level, 51);
        QCOMPARE(plant.valueOf(pump), QVariant(1));
        QVERIFY(plant.changes.setScanInhibited(unit, false, by("sue")));
        QCOMPARE(plant.valueOf(pump), QVariant(0));
        QCOMPARE(plant.valueOf(level), QVariant(50.0)); // its own inhibit still stands
        QVERIFY(plant.changes.setScanInhibited(level, false, by("sue")));
        QCOMPARE(plant.valueOf(level), QVariant(51.0));
        QVERIFY(!plant.changes.setScanInhibited(line, true, by("sue"))); // a line is not scanned
    }

    void aSubstitutedValueStandsUntilItIsTakenBack()
    {
        OperatedPlant plant;
        plant.say(level, 50);
        plant.pass(10);
        QVERIFY(plant.changes.substitute(level, 33.25, by("sue")));
        QCOMPARE(plant.valueOf(level), QVariant(33.25));
        QCOMPARE(plant.qualityOf(level), qint32(ValueMark::Substituted));
        plant.pass(10);
        plant.say(level, 60);
        QCOMPARE(plant.valueOf(level), QVariant(33.25));
        QVERIFY(plant.changes.substitute(level, 34, by("sue"))); // another one in its place
        QCOMPARE(plant.valueOf(level), QVariant(34.0));
        QVERIFY(plant.changes.endSubstitution(level));
        QCOMPARE(plant.valueOf(level), QVariant(60.0));
        QCOMPARE(plant.qualityOf(level), 0);
        QVERIFY(!plant.changes.endSubstitution(level));
    }

    void withoutANewValueNothingIsKnownBehindASubstitution()
    {
        OperatedPlant plant;
        plant.say(level, 50);
        QVERIFY(plant.changes.substitute(level, 33, by("sue")));
        QVERIFY(plant.changes.endSubstitution(level));
        QVERIFY((plant.qualityOf(level) & ValueMark::Stale) != 0);
    }

    void aSubstituteDoesNotGoStale()
    {
        OperatedPlant plant(
            {false, {}, [](RuntimeDatabase::Object& object) { object.staleAfter = std::chrono::seconds(10); }});
        plant.say(level, 50);
        QVERIFY(plant.changes.substitute(level, 33, by("sue")));
        plant.pass(3600000);
        QCOMPARE(plant.qualityOf(level), qint32(ValueMark::Substituted));
    }

    void aSubstituteIsInForceThoughTheSourcesClockIsAhead()
    {
        OperatedPlant plant;
        plant.source->deliver({{level, plant.nowMs + 60000, 50, 0}});
        QVERIFY(plant.changes.substitute(level, 33, by("sue")));
        QCOMPARE(plant.valueOf(level), QVariant(33.0));
        plant.source->deliver({{level, plant.nowMs + 50000, 51, 0}});
        QVERIFY(plant.changes.endSubstitution(level));
        QCOMPARE(plant.valueOf(level), QVariant(51.0));
    }

    void substitutedAndNotScannedAreTwoReasons()
    {
        OperatedPlant plant;
        plant.say(level, 50);
        QVERIFY(plant.changes.setScanInhibited(level, true, by("sue")));
        QVERIFY(plant.changes.substitute(level, 33, by("sue")));
        QCOMPARE(plant.qualityOf(level), qint32(ValueMark::Substituted));
        plant.pass(10);
        plant.say(level, 60);
        QVERIFY(plant.changes.endSubstitution(level));
        QCOMPARE(plant.valueOf(level), QVariant(33.0)); // still not scanned
        QVERIFY((plant.qualityOf(level) & ValueMark::Stale) != 0);
        QVERIFY(plant.changes.setScanInhibited(level, false, by("sue")));
        QCOMPARE(plant.valueOf(level), QVariant(60.0));
        // The other way round.
        QVERIFY(plant.changes.substitute(level, 34, by("sue")));
        QVERIFY(plant.changes.setScanInhibited(unit, true, by("sue")));
        QCOMPARE(plant.qualityOf(level), qint32(ValueMark::Substituted)); // what was put there stands
        plant.pass(10);
        plant.say(level, 70);
        QVERIFY(plant.changes.setScanInhibited(unit, false, by("sue")));
        QCOMPARE(plant.valueOf(level), QVariant(34.0));
        QVERIFY(plant.changes.endSubstitution(level));
        QCOMPARE(plant.valueOf(level), QVariant(70.0));
    }

    void whatDoesNotFitIsNotSubstituted_data()
    {
        QTest::addColumn<int>("object"); // 0 level, 1 pump, 2 unit
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("fits");
        const double infinity = std::numeric_limits<double>::infinity();
        QTest::newRow("a number") << 0 << -3.5 << true;
        QTest::newRow("no number") << 0 << std::numeric_limits<double>::quiet_NaN() << false;
        QTest::newRow("infinite") << 0 << -infinity << false;
        QTest::newRow("a state") << 1 << 1.0 << true;
        QTest::newRow("half a state") << 1 << 0.5 << false;
        QTest::newRow("a state below all") << 1 << -1.0 << false;
        QTest::newRow("a state beyond all") << 1 << 1e12 << false;
        QTest::newRow("a unit") << 2 << 1.0 << false;
    }
    void whatDoesNotFitIsNotSubstituted()
    {
        QFETCH(int, object);
        QFETCH(double, value);
        QFETCH(bool, fits);
        OperatedPlant plant;
        const ObjectKey key = object == 0 ? level : object == 1 ? pump : unit;
        QCOMPARE(plant.changes.substitute(key, value, by("sue")).has_value(), fits);
        QCOMPARE(plant.changes.state().find(key, Kind::Substitution).has_value(), fits);
        QCOMPARE(plant.data.isHeld(key), fits);
    }

    void limitsAreJudgedAtOnce()
    {
        OperatedPlant plant;
        plant.say(level, 70);
        QCOMPARE(limitMarks(plant), 0);
        QVERIFY(plant.changes.setLimit(level, Limit::High, 60, by("sue")));
        QCOMPARE(limitMarks(plant), qint32(ValueMark::AboveHigh));
        plant.pass(50);
        QCOMPARE(plant.alarms.manager().waitingCount(5), 1);
        QVERIFY(plant.changes.setLimit(level, Limit::High, std::nullopt, by("sue"))); // taken away
        QCOMPARE(limitMarks(plant), 0);
        QVERIFY(plant.changes.setLimit(level, Limit::Low, 75, by("sue")));
        QCOMPARE(limitMarks(plant), qint32(ValueMark::BelowLow));
        QVERIFY(plant.changes.setDeadBand(level, 3, by("sue")));
        plant.say(level, 77.5); // beyond the limit, within its dead band
        QCOMPARE(limitMarks(plant), qint32(ValueMark::BelowLow));
        QVERIFY(plant.changes.setDeadBand(level, 2, by("sue")));
        QCOMPARE(limitMarks(plant), 0);
        QVERIFY(plant.changes.resetLimits(level));
        QCOMPARE(plant.database.limits(level).low, 10.0);
        QCOMPARE(plant.database.limits(level).high, 80.0);
        QCOMPARE(plant.database.hysteresis(level), 1.0);
        QVERIFY(plant.changes.state().objects().isEmpty());
    }

    void limitsThatDoNotFitAreRefused()
    {
        OperatedPlant plant;
        QVERIFY(!plant.changes.setLimit(level, Limit::High, 10, by("sue"))); // as the low one
        QVERIFY(!plant.changes.setLimit(level, Limit::HighHigh, 79, by("sue")));
        QVERIFY(!plant.changes.setLimit(level, Limit::LowLow, 11, by("sue")));
        QVERIFY(!plant.changes.setLimit(level, Limit::High, std::numeric_limits<double>::quiet_NaN(), by("sue")));
        QVERIFY(!plant.changes.setLimit(level, Limit::High, std::numeric_limits<double>::infinity(), by("sue")));
        QVERIFY(!plant.changes.setLimit(pump, Limit::High, 1, by("sue")));
        QVERIFY(!plant.changes.resetLimits(pump));
        QVERIFY(!plant.changes.setDeadBand(level, -1, by("sue")));
        QVERIFY(!plant.changes.setDeadBand(pump, 1, by("sue")));
        QCOMPARE(plant.database.limits(level).high, 80.0);
        QVERIFY(plant.changes.state().objects().isEmpty());
        QVERIFY(plant.changes.setLimit(level, Limit::HighHigh, 80, by("sue"))); // may be as the high one
    }

    void statisticsBeginAnew()
    {
        OperatedPlant plant;
        QVERIFY(!plant.changes.resetStatistics(level, by("sue"))); // there are none
        plant.say(level, 90);
        plant.pass(1000);
        plant.say(level, 20);
        plant.pass(1000);
        const auto highest = [&plant] {
            return plant.database.fieldValue(level, DataCode::DataField::TotalMaximum).toDouble();
        };
        QCOMPARE(highest(), 90.0);
        QVERIFY(plant.changes.resetStatistics(level, by("sue")));
        QCOMPARE(highest(), 20.0);
        QCOMPARE(plant.database.statisticsSinceMs(level).value_or(0), plant.nowMs);
    }

    void statisticsOfUnknownAgeBeginAnewToo()
    {
        OperatedPlant before;
        before.say(level, 90);
        QByteArray state = before.database.state(level);
        // As it was stored before it said since when the statistics run: layout byte, time, quality, flag, value.
        state.remove(1 + 8 + 4 + 1 + 8, 8);
        state[0] = 1;
        OperatedPlant plant;
        QVERIFY(plant.database.restore(level, state));
        plant.pass(1000);
        QVERIFY(plant.changes.resetStatistics(level, by("sue"))); // before the first sample
        QCOMPARE(plant.database.statisticsSinceMs(level).value_or(0), plant.nowMs);
    }

    void everythingOutlastsTheProgram()
    {
        TemporaryFiles files;
        const QString folder = files.path(QString());
        {
            OperatedPlant plant({false, folder, {}});
            QVERIFY(plant.changes.setControlInhibited(pump, true, by("sue")));
            QVERIFY(plant.changes.setInformationTag(pump, text("leaks"), by("sue")));
            QVERIFY(plant.changes.setAlarmInhibited(flow, true, by("sue")));
            QVERIFY(plant.changes.setScanInhibited(unit, true, by("sue")));
            QVERIFY(plant.changes.substitute(level, 0.1, by("sue")));
            QVERIFY(plant.changes.setLimit(level, Limit::High, 60, by("sue")));
            QVERIFY(plant.changes.setLimit(level, Limit::Low, std::nullopt, by("sue")));
            QVERIFY(plant.changes.setDeadBand(level, 2.5, by("sue")));
            plant.alarms.commit();
        }
        OperatedPlant plant({false, folder, {}});
        QCOMPARE(plant.problems, QStringList());
        QCOMPARE(plant.database.tagMarks(pump), qint32(ValueMark::ControlInhibited | ValueMark::InformationTag));
        QCOMPARE(plant.database.tagMarks(flow), qint32(ValueMark::AlarmInhibited));
        QCOMPARE(plant.database.tagMarks(unit), qint32(ValueMark::ScanInhibited));
        QCOMPARE(plant.valueOf(level), QVariant(0.1));
        QCOMPARE(plant.qualityOf(level), qint32(ValueMark::Substituted));
        QCOMPARE(plant.database.limits(level).high, 60.0);
        QVERIFY(std::isnan(plant.database.limits(level).low));
        QCOMPARE(plant.database.hysteresis(level), 2.5);
        plant.pass(10);
        plant.say(pump, 1); // of a unit that is not scanned
        QVERIFY(!plant.valueOf(pump).isValid());
        plant.say(level, 70);
        QVERIFY(plant.changes.setScanInhibited(unit, false, by("sue")));
        QCOMPARE(plant.valueOf(pump), QVariant(1));
        QCOMPARE(plant.valueOf(level), QVariant(0.1)); // is still substituted
        QVERIFY(plant.changes.endSubstitution(level));
        QCOMPARE(plant.valueOf(level), QVariant(70.0));
    }

    void whatNoLongerFitsIsSaidAndWaits()
    {
        TemporaryFiles files;
        const QString folder = files.path(QString());
        {
            OperatedPlant plant({false, folder, {}});
            QVERIFY(plant.changes.setLimit(level, Limit::Low, 70, by("sue")));
        }
        const auto lowerHigh = [](RuntimeDatabase::Object& object) {
            if (object.id == level.id)
                object.high = 60; // another point list
        };
        {
            OperatedPlant plant({false, folder, lowerHigh});
            QCOMPARE(plant.problems.size(), 1);
            QVERIFY2(plant.problems[0].startsWith(text("LEVEL: ")), qPrintable(plant.problems[0]));
            QCOMPARE(plant.database.limits(level).low, 10.0);
        }
        OperatedPlant plant({false, folder, {}}); // it fits again
        QCOMPARE(plant.problems, QStringList());
        QCOMPARE(plant.database.limits(level).low, 70.0);
    }

    void objectsThatAreGoneWaitForTheirReturn()
    {
        TemporaryFiles files;
        const QString folder = files.path(QString());
        {
            OperatedPlant plant({false, folder, {}});
            QVERIFY(plant.changes.setControlInhibited(pump, true, by("sue")));
            QVERIFY(plant.changes.substitute(pump, 1, by("sue")));
        }
        {
            OperatedPlant plant({false, folder, [](RuntimeDatabase::Object& object) {
                                     if (object.id == pump.id)
                                         object.id = 100077;
                                 }});
            QCOMPARE(plant.problems, QStringList());
            QVERIFY(plant.changes.objectsMarked(ValueMark::ControlInhibited).isEmpty());
            QVERIFY(plant.manager.substitutedObjects().isEmpty());
        }
        OperatedPlant plant({false, folder, {}});
        QCOMPARE(plant.database.tagMarks(pump), qint32(ValueMark::ControlInhibited));
        QCOMPARE(plant.manager.substitutedObjects(), QList<ObjectKey>{pump});
    }

    void whatCantBeKeptIsNotDone()
    {
        TemporaryFiles files;
        const QString folder = files.path(QString());
        OperatedPlant plant({false, folder, {}});
        plant.say(level, 50);
        QVERIFY(plant.changes.setControlInhibited(pump, true, by("sue")));
        QVERIFY(plant.changes.substitute(flow, 5, by("sue")));
        QVERIFY(plant.changes.setLimit(level, Limit::High, 70, by("sue")));
        const FullDisk full(folder);
        QVERIFY(!plant.changes.setControlInhibited(pump, false, by("sue")));
        QCOMPARE(plant.database.tagMarks(pump), qint32(ValueMark::ControlInhibited));
        QVERIFY(!plant.changes.setInformationTag(level, text("x"), by("sue")));
        QVERIFY(!plant.changes.setScanInhibited(level, true, by("sue")));
        QCOMPARE(plant.database.tagMarks(level), 0);
        QVERIFY(!plant.data.isHeld(level));
        QVERIFY(!plant.changes.substitute(level, 5, by("sue")));
        QVERIFY(!plant.data.isHeld(level));
        QCOMPARE(plant.valueOf(level), QVariant(50.0));
        QVERIFY(!plant.changes.endSubstitution(flow));
        QVERIFY(plant.data.isHeld(flow));
        QVERIFY(!plant.changes.setLimit(level, Limit::High, 40, by("sue")));
        QVERIFY(!plant.changes.resetLimits(level));
        QCOMPARE(plant.database.limits(level).high, 70.0);
        QCOMPARE(limitMarks(plant), 0);
        QVERIFY(!plant.changes.setDeadBand(level, 9, by("sue")));
        QCOMPARE(plant.database.hysteresis(level), 1.0);
        const auto since = plant.database.statisticsSinceMs(level);
        plant.pass(10);
        QVERIFY(!plant.changes.resetStatistics(level, by("sue")));
        QCOMPARE(plant.database.statisticsSinceMs(level).value_or(-1), since.value_or(-2));
    }
};

QTEST_GUILESS_MAIN(tst_OperatorChanges)
#include "tst_operatorchanges.moc"
