#include "host/runtime/runtimestore.h"

#include "platform/data/valuemarks.h"

#include <QProcess>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#include <cmath>
#include <cstdio>
#include <cstring>
#include <limits>
#include <random>

using DataCode::DataField;
using Korvane::ScadaObjectType;
using Object = RuntimeDatabase::Object;

namespace {

constexpr qint64 start = Q_INT64_C(1714557600000); // 2024-05-01T10:00:00Z
constexpr qint64 tickMs = 1000;
constexpr int pointCount = 40;

ObjectKey keyOf(int index)
{
    if (index == 0)
        return {ScadaObjectType::RtuObject, 1};
    if (index == 1)
        return {ScadaObjectType::ChannelObject, 1};
    if (index % 3 == 0)
        return {ScadaObjectType::DigitalPoint, 100000 + index};
    return {ScadaObjectType::AnalogPoint, 200000 + index};
}

std::vector<Object> plantObjects()
{
    std::vector<Object> objects;
    for (int i = 0; i < pointCount; ++i) {
        Object object{keyOf(i).type, keyOf(i).id, QStringLiteral("OBJECT%1").arg(i)};
        object.staleAfter = std::chrono::milliseconds(i % 2 == 0 ? 0 : 2500);
        objects.push_back(object);
    }
    return objects;
}

/// A database with the plant's objects and a clock that is moved by hand.
struct Plant
{
    Plant()
    {
        database.setTimeZone(QTimeZone::utc());
        database.setClock([this] { return now; });
        for (const Object& object : plantObjects()) {
            const bool isAdded = bool(database.add(object));
            Q_ASSERT(isAdded);
            Q_UNUSED(isAdded)
        }
    }
    /// What happens in a tick follows from its number alone: object 0 says the number, a third of the others something.
    std::vector<Sample> samplesOf(int tick) const
    {
        std::mt19937 random{unsigned(tick)};
        std::vector<Sample> samples{{keyOf(0), start + tick * tickMs, double(tick), 0}};
        for (int i = 1; i < pointCount; ++i) {
            if (random() % 3 != 0)
                continue;
            Sample sample{keyOf(i), start + tick * tickMs + int(random() % tickMs), double(random() % 5) / 2, 0};
            if (random() % 10 == 0)
                sample.quality = ValueMark::Invalid;
            samples.push_back(sample);
        }
        return samples;
    }
    void takeTick(int tick)
    {
        now = start + (tick + 1) * tickMs;
        for (const Sample& sample : samplesOf(tick))
            database.takeSample(sample);
    }
    void interruptAll()
    {
        for (int i = 0; i < pointCount; ++i)
            database.interrupt(keyOf(i), now);
    }

    qint64 now = start;
    RuntimeDatabase database;
};

QString differenceOf(const Plant& found, const Plant& expected)
{
    for (int i = 0; i < pointCount; ++i) {
        if (found.database.state(keyOf(i)) != expected.database.state(keyOf(i)))
            return QStringLiteral("object %1 is in another state").arg(i);
    }
    return {};
}

int lastTickOf(const Plant& plant)
{
    const QuorixData record = plant.database.presentRecord(keyOf(0));
    const QuorixValue* value = record.GetValue("value");
    return value ? value->toInt32() : -1;
}

bool runTick(Plant& plant, RuntimeStore& store, int tick, int maxPoints)
{
    plant.takeTick(tick);
    store.append(plant.samplesOf(tick));
    return store.commit(plant.now) && store.fold(plant.database, maxPoints);
}

/// The child of the test that kills it: goes on from where the file left it, and says each tick once it is committed.
int writeTicks(const QString& fileName)
{
    RuntimeStore store;
    Plant plant;
    if (!store.open(fileName) || !store.load(plant.database).isEmpty())
        return 1;
    for (int tick = lastTickOf(plant) + 1;; ++tick) {
        if (!runTick(plant, store, tick, 7))
            return 1;
        std::printf("%d\n", tick);
        std::fflush(stdout);
    }
}

/// Runs statements on a file behind the store's back.
bool change(const QString& fileName, const QString& statement)
{
    const QString name = QStringLiteral("test");
    bool isDone = false;
    {
        QSqlDatabase file = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        file.setDatabaseName(fileName);
        isDone = file.open() && QSqlQuery(file).exec(statement);
    }
    QSqlDatabase::removeDatabase(name);
    return isDone;
}

qint64 countOf(const QString& fileName, const QString& table)
{
    const QString name = QStringLiteral("test");
    qint64 count = -1;
    {
        QSqlDatabase file = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        file.setDatabaseName(fileName);
        QSqlQuery query(file);
        if (file.open() && query.exec(QStringLiteral("SELECT count(*) FROM %1").arg(table)) && query.next())
            count = query.value(0).toLongLong();
    }
    QSqlDatabase::removeDatabase(name);
    return count;
}

bool isSame(double a, double b)
{
    return a == b || (std::isnan(a) && std::isnan(b));
}

bool isSame(const Object& a, const Object& b)
{
    return a.type == b.type && a.id == b.id && a.name == b.name && a.station == b.station &&
           a.description == b.description && a.displayName == b.displayName && isSame(a.lowLow, b.lowLow) &&
           isSame(a.low, b.low) && isSame(a.high, b.high) && isSame(a.highHigh, b.highHigh) &&
           a.hysteresis == b.hysteresis && a.unit == b.unit && a.decimals == b.decimals && a.scaleLow == b.scaleLow &&
           a.scaleHigh == b.scaleHigh && a.states == b.states && a.abnormalState == b.abnormalState &&
           a.staleAfter == b.staleAfter && a.address == b.address && a.area == b.area &&
           a.alarm.severities == b.alarm.severities && isSame(a.alarm.rateLimit, b.alarm.rateLimit) &&
           a.alarm.onDelay == b.alarm.onDelay && a.alarm.offDelay == b.alarm.offDelay &&
           a.alarm.isLatching == b.alarm.isLatching && a.alarm.message == b.alarm.message && a.parent == b.parent &&
           a.control.isEqual(b.control);
}

Object fullObject()
{
    Object object{ScadaObjectType::DigitalPoint, 100001, QStringLiteral("밸브")};
    object.station = QStringLiteral("LOOP");
    object.description = QStringLiteral("it's \"one\"");
    object.displayName = QStringLiteral("Valve");
    object.lowLow = -1.5;
    object.highHigh = 1e300;
    object.hysteresis = 0.25;
    object.unit = QStringLiteral("°C");
    object.decimals = 3;
    object.scaleLow = -10;
    object.scaleHigh = 10;
    object.states = QStringList{QStringLiteral("closed"), {}, QStringLiteral("a\nb, \"c\"")};
    object.abnormalState = 2;
    object.staleAfter = std::chrono::hours(1000);
    object.address = QStringLiteral("1/2/3");
    object.area = QStringLiteral("East, 동");
    object.alarm.severities = {0, 1, 2, 3, AlarmSetting::noAlarm, 5, 9, AlarmSetting::noAlarm};
    object.alarm.rateLimit = 0.1;
    object.alarm.onDelay = std::chrono::milliseconds(1500);
    object.alarm.offDelay = std::chrono::hours(1000);
    object.alarm.isLatching = true;
    object.alarm.message = QStringLiteral("Close \"valve\"\n3");
    object.parent = QStringLiteral("장치 \"1\"");
    object.control.kind = ControlSetting::Kind::Manual;
    object.control.role = AccountRole::Engineer;
    object.control.confirmation = ControlSetting::Confirmation::Second;
    object.control.isReasonNeeded = true;
    object.control.low = -0.5;
    object.control.high = 1e-300;
    object.control.step = 0.1;
    object.control.feedback = QStringLiteral("밸브 위치");
    object.control.tolerance = 0.01;
    object.control.timeout = std::chrono::milliseconds(3599999);
    object.control.interlock = QStringLiteral("A > 1 && \"B\" < 2");
    return object;
}

/// A database file as version 1 wrote it: points without areas and alarms. It holds FLOW, which had the value 60.
QStringList statementsOfVersion1()
{
    return {
        QStringLiteral(
            "CREATE TABLE points (object INTEGER PRIMARY KEY, place INTEGER NOT NULL, kind INTEGER NOT NULL, "
            "id INTEGER, name TEXT, station TEXT, description TEXT, display_name TEXT, low_low REAL, low REAL, "
            "high REAL, high_high REAL, hysteresis REAL, unit TEXT, decimals INTEGER, scale_low REAL, "
            "scale_high REAL, states TEXT, abnormal_state INTEGER, stale_after_ms INTEGER, address TEXT)"),
        QStringLiteral("CREATE TABLE states (object INTEGER PRIMARY KEY, journal_row INTEGER NOT NULL, "
                       "state BLOB NOT NULL)"),
        QStringLiteral("CREATE TABLE journal (journal_row INTEGER PRIMARY KEY, notes BLOB NOT NULL)"),
        QStringLiteral("CREATE TABLE runs (first_row INTEGER PRIMARY KEY, last_tick_ms INTEGER NOT NULL)"),
        QStringLiteral("INSERT INTO points (object, place, kind, id, name, high, hysteresis, decimals, scale_low, "
                       "scale_high, abnormal_state, stale_after_ms) "
                       "VALUES (800008, 0, 1, 200002, 'FLOW', 80, 0, -1, 0, 0, -1, 0)"),
        QStringLiteral("PRAGMA user_version = 1"),
    };
}

/// One as version 2 wrote it: without parents and commands.
QStringList statementsOfVersion2()
{
    QStringList statements = statementsOfVersion1();
    statements.removeLast();
    for (const char* column : {"area TEXT", "severities TEXT", "rate_limit REAL", "on_delay_ms INTEGER",
                               "off_delay_ms INTEGER", "latching INTEGER", "alarm_message TEXT"})
        statements.append(QStringLiteral("ALTER TABLE points ADD COLUMN %1").arg(QLatin1String(column)));
    statements.append(QStringLiteral("UPDATE points SET area = 'East', severities = '-1 -1 5 -1 -1 -1 -1 -1', "
                                     "on_delay_ms = 1500, off_delay_ms = 0, latching = 1"));
    statements.append(QStringLiteral("PRAGMA user_version = 2"));
    return statements;
}

} // namespace

class tst_RuntimeStore : public QObject
{
    Q_OBJECT

private:
    QString newFile() { return m_folder.filePath(QStringLiteral("store%1.db").arg(++m_files)); }

    QTemporaryDir m_folder;
    int m_files = 0;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void pointsComeBackAsTheyWere()
    {
        RuntimeStore store;
        const QString file = newFile();
        QVERIFY(store.open(file));
        QCOMPARE(store.fileName(), file);
        QVERIFY(store.loadPoints()->empty());
        std::vector<Object> points{fullObject(),
                                   {ScadaObjectType::AnalogPoint, 200001, QStringLiteral("FLOW")},
                                   {ScadaObjectType::RtuObject, 1, QStringLiteral("FLOW")},
                                   {ScadaObjectType::ChannelObject, 1, QStringLiteral("LINE")}};
        QVERIFY(store.importPoints(points));
        store.close();
        QVERIFY(!store.isOpen());

        QVERIFY(store.open(file));
        const auto loaded = store.loadPoints();
        QVERIFY(loaded);
        QCOMPARE(loaded->size(), points.size());
        for (std::size_t i = 0; i < points.size(); ++i)
            QVERIFY(isSame((*loaded)[i], points[i]));
    }

    void aFileOfVersion1IsBroughtUpToDate()
    {
        const QString file = newFile();
        for (const QString& statement : statementsOfVersion1())
            QVERIFY(change(file, statement));
        {
            RuntimeStore store;
            QVERIFY(store.open(file));
            const auto loaded = store.loadPoints();
            QVERIFY(loaded);
            Object expected{ScadaObjectType::AnalogPoint, 200002, QStringLiteral("FLOW")};
            expected.high = 80;
            QCOMPARE(loaded->size(), std::size_t(1));
            QVERIFY(isSame(loaded->front(), expected));
            QVERIFY(store.importPoints({fullObject(), expected}));
        }
        QCOMPARE(countOf(file, QStringLiteral("pragma_user_version WHERE user_version = 3")), 1);
        QCOMPARE(countOf(file, QStringLiteral("pragma_table_info('points')")), 40); // nineteen more
        RuntimeStore store;
        QVERIFY(store.open(file)); // once more, with nothing to do
        QVERIFY(isSame(store.loadPoints()->front(), fullObject()));
        QCOMPARE(countOf(file, QStringLiteral("pragma_table_info('points')")), 40);
    }

    void aFileOfVersion2IsBroughtUpToDate()
    {
        const QString file = newFile();
        for (const QString& statement : statementsOfVersion2())
            QVERIFY(change(file, statement));
        Object expected{ScadaObjectType::AnalogPoint, 200002, QStringLiteral("FLOW")};
        expected.high = 80;
        expected.area = QStringLiteral("East");
        expected.alarm.severities[2] = 5;
        expected.alarm.onDelay = std::chrono::milliseconds(1500);
        expected.alarm.isLatching = true;
        {
            RuntimeStore store;
            QVERIFY(store.open(file));
            const auto loaded = store.loadPoints();
            QVERIFY(loaded);
            QCOMPARE(loaded->size(), std::size_t(1));
            QVERIFY(isSame(loaded->front(), expected)); // takes no commands, which operators might send
            QVERIFY(loaded->front().control.role == AccountRole::Operator);
            QVERIFY(store.importPoints({fullObject(), expected}));
        }
        QCOMPARE(countOf(file, QStringLiteral("pragma_user_version WHERE user_version = 3")), 1);
        QCOMPARE(countOf(file, QStringLiteral("pragma_table_info('points')")), 40); // twelve more
        RuntimeStore store;
        QVERIFY(store.open(file));
        QVERIFY(isSame(store.loadPoints()->front(), fullObject()));
        QVERIFY(isSame(store.loadPoints()->back(), expected));
    }

    void aRoleThatIsNoneLetsNobodyBelowIn()
    {
        const QString file = newFile();
        RuntimeStore store;
        QVERIFY(store.open(file));
        QVERIFY(store.importPoints({fullObject()}));
        QVERIFY(change(file, QStringLiteral("UPDATE points SET control_role = 'oprator'")));
        QVERIFY(store.loadPoints()->front().control.role == AccountRole::Administrator);
    }

    void aFileThatWasBroughtHalfUpToDateIsFinished()
    {
        const QString file = newFile();
        for (const QString& statement : statementsOfVersion1())
            QVERIFY(change(file, statement));
        QVERIFY(change(file, QStringLiteral("ALTER TABLE points ADD COLUMN area TEXT")));
        RuntimeStore store;
        QVERIFY(store.open(file));
        QVERIFY(store.importPoints({fullObject()}));
        QVERIFY(isSame(store.loadPoints()->front(), fullObject()));
    }

    void statisticsOutliveAnOlderVersion()
    {
        const QString file = newFile();
        {
            RuntimeStore store;
            Plant plant;
            QVERIFY(store.open(file));
            QVERIFY(store.load(plant.database).isEmpty());
            const Sample sample{keyOf(2), start, 60, 0};
            plant.database.takeSample(sample);
            store.append({sample});
            QVERIFY(store.commit(start + 60000));
        }
        QVERIFY(change(file, QStringLiteral("DROP TABLE points")));
        for (const QString& statement : statementsOfVersion1()) {
            if (!statement.startsWith(QLatin1String("CREATE")) || statement.contains(QLatin1String("TABLE points")))
                QVERIFY(change(file, statement));
        }
        RuntimeStore store;
        Plant plant;
        QVERIFY(store.open(file));
        QVERIFY(store.load(plant.database).isEmpty());
        QCOMPARE(plant.database.presentRecord(keyOf(2)).GetValue("value")->toDouble(), 60.0);
    }

    void anImportReplacesWhatChanged()
    {
        RuntimeStore store;
        QVERIFY(store.open(newFile()));
        std::vector<Object> points = plantObjects();
        QVERIFY(store.importPoints(points));
        points.erase(points.begin() + 3);
        points[5].high = 12;
        points[6].area = QStringLiteral("East");
        points[8].alarm.severities[2] = 7;
        points[11].alarm.rateLimit = 2;
        points[12].parent = QStringLiteral("OBJECT0");
        points[13].control.kind = ControlSetting::Kind::SelectFirst;
        points[14].control.role = AccountRole::Viewer;
        points[15].control.confirmation = ControlSetting::Confirmation::User;
        points[16].control.isReasonNeeded = true;
        points[17].control.low = 0;
        points[18].control.interlock = QStringLiteral("OBJECT2 > 1");
        std::swap(points[7], points[9]);
        points.push_back({ScadaObjectType::AnalogPoint, 299999, QStringLiteral("NEW")});
        QVERIFY(store.importPoints(points));
        const auto loaded = store.loadPoints();
        QVERIFY(loaded);
        QCOMPARE(loaded->size(), points.size());
        for (std::size_t i = 0; i < points.size(); ++i)
            QVERIFY(isSame((*loaded)[i], points[i]));
    }

    void aHundredThousandPointsAreImported()
    {
        RuntimeStore store;
        QVERIFY(store.open(newFile()));
        std::vector<Object> points;
        for (int i = 0; i < 100000; ++i) {
            points.push_back({ScadaObjectType::AnalogPoint, 200001 + i, QStringLiteral("STATION.POINT%1").arg(i)});
            points.back().high = i;
        }
        QVERIFY(store.importPoints(points));
        const auto loaded = store.loadPoints();
        QVERIFY(loaded);
        QCOMPARE(loaded->size(), points.size());
        QVERIFY(isSame(loaded->back(), points.back()));
    }

    void filesThatCannotBeUsed_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("reason");
        QTest::newRow("a folder that is not there")
            << m_folder.filePath(QStringLiteral("none/store.db")) << QStringLiteral("unable to open database file");
        QTest::newRow("a folder") << m_folder.path() << QStringLiteral("unable to open database file");

        QFile text(newFile());
        QVERIFY(text.open(QIODevice::WriteOnly));
        text.write(QByteArray(5000, 'x'));
        QTest::newRow("a text file") << text.fileName() << QStringLiteral("file is not a database");

        const QString other = newFile();
        QVERIFY(change(other, QStringLiteral("CREATE TABLE something (a)")));
        QTest::newRow("another program's database") << other << QStringLiteral("it is another program's database");

        const QString newer = newFile();
        QVERIFY(RuntimeStore().open(newer));
        QVERIFY(change(newer, QStringLiteral("PRAGMA user_version = 99")));
        QTest::newRow("a newer version's database")
            << newer << QStringLiteral("a newer version of this program wrote it (layout 99, this one knows 3)");

        const QString readOnly = newFile();
        QVERIFY(RuntimeStore().open(readOnly));
        QVERIFY(QFile::setPermissions(readOnly, QFileDevice::ReadOwner));
        if (!QFile(readOnly).open(QIODevice::ReadWrite)) // an administrator may write it all the same
            QTest::newRow("a file that can't be written") << readOnly << QStringLiteral("readonly");
    }
    void filesThatCannotBeUsed()
    {
        QFETCH(QString, fileName);
        QFETCH(QString, reason);

        RuntimeStore store;
        const auto opened = store.open(fileName);
        QVERIFY(!opened);
        QVERIFY2(opened.error().startsWith(QDir::toNativeSeparators(fileName)), qPrintable(opened.error()));
        QVERIFY2(opened.error().contains(reason), qPrintable(opened.error()));
        QVERIFY(!store.isOpen());
        QVERIFY(store.open(newFile())); // and can be used for another
    }

    void statisticsOutliveTheProgram_data()
    {
        QTest::addColumn<int>("maxPoints");
        QTest::newRow("all in the journal") << 0;
        QTest::newRow("a few folded with each tick") << 3;
        QTest::newRow("everything folded with each tick") << 1000;
    }
    void statisticsOutliveTheProgram()
    {
        QFETCH(int, maxPoints);

        const QString file = newFile();
        Plant expected;
        int tick = 0;
        for (int run = 0; run < 4; ++run) {
            RuntimeStore store;
            Plant plant;
            QVERIFY(store.open(file));
            QCOMPARE(store.load(plant.database), QStringList());
            plant.now = expected.now;
            if (run > 0)
                expected.interruptAll();
            QCOMPARE(differenceOf(plant, expected), QString());
            // The last run has no samples; an hour passes between two runs.
            const int ticks = run == 3 ? 0 : 25;
            for (int i = 0; i < ticks; ++i, ++tick) {
                QVERIFY(runTick(plant, store, tick, maxPoints));
                expected.takeTick(tick);
            }
            if (ticks == 0)
                QVERIFY(store.commit(plant.now + 1000));
            QCOMPARE(differenceOf(plant, expected), QString());
            tick += 3600;
        }
        RuntimeStore store;
        Plant plant;
        QVERIFY(store.open(file));
        QCOMPARE(store.load(plant.database), QStringList());
        QCOMPARE(differenceOf(plant, expected), QString());
        QCOMPARE(plant.database.presentRecord(keyOf(0)).GetValue("quality")->toInt32(), int(ValueMark::Stale));
    }

    void timeBetweenRunsIsUnknown()
    {
        const QString file = newFile();
        const ObjectKey flow = keyOf(2); // holds for ever
        {
            RuntimeStore store;
            Plant plant;
            QVERIFY(store.open(file));
            QVERIFY(store.load(plant.database).isEmpty());
            const Sample sample{flow, start, 60, 0};
            plant.database.takeSample(sample);
            store.append({sample});
            QVERIFY(store.commit(start + 60000));
            QVERIFY(store.commit(start + 120000)); // nothing new, but still running
        }
        for (int run = 0; run < 2; ++run) {
            RuntimeStore store;
            Plant plant;
            QVERIFY(store.open(file));
            QVERIFY(store.load(plant.database).isEmpty());
            plant.now = start + 1800000;
            QCOMPARE(plant.database.fieldValue(flow, DataField::TotalAccumulated), QVariant(2.0));
            QCOMPARE(plant.database.fieldValue(flow, DataField::TotalMean), QVariant(60.0));
            QVERIFY(store.commit(plant.now)); // the value does not hold again because the program runs
        }
    }

    void failuresOfCommunicationAreJournalled()
    {
        const QString file = newFile();
        const ObjectKey flow = keyOf(2);
        {
            RuntimeStore store;
            Plant plant;
            QVERIFY(store.open(file));
            QVERIFY(store.load(plant.database).isEmpty());
            const Sample sample{flow, start, 60, 0};
            plant.database.takeSample(sample);
            store.append({sample});
            plant.database.setCommunicationFailed(flow, true, start + 60000);
            store.appendCommunicationFailed(flow, true, start + 60000);
            QCOMPARE(store.waiting(), std::size_t(2));
            QVERIFY(store.commit(start + 600000));
            QCOMPARE(store.waiting(), std::size_t(0));
        }
        RuntimeStore store;
        Plant plant;
        QVERIFY(store.open(file));
        QVERIFY(store.load(plant.database).isEmpty());
        plant.now = start + 1800000;
        QCOMPARE(plant.database.fieldValue(flow, DataField::TotalAccumulated), QVariant(1.0));
        QCOMPARE(plant.database.presentRecord(flow).GetValue("quality")->toInt32(),
                 ValueMark::CommunicationFailed | ValueMark::Stale);
    }

    void foldingGoesThroughAllInTurn()
    {
        const QString file = newFile();
        RuntimeStore store;
        Plant plant;
        QVERIFY(store.open(file));
        plant.takeTick(0);
        store.append(plant.samplesOf(0));
        QCOMPARE(store.fold(plant.database, 100).value(), 0); // not loaded
        QVERIFY(store.load(plant.database).isEmpty());
        QCOMPARE(store.fold(plant.database, 100).value(), 0); // not committed
        QVERIFY(store.commit(plant.now));
        const auto changed = int(store.unfolded());
        QCOMPARE(changed, int(plant.samplesOf(0).size()));
        QCOMPARE(store.fold(plant.database, 5).value(), 5);
        QCOMPARE(countOf(file, QStringLiteral("journal")), 1);
        QCOMPARE(countOf(file, QStringLiteral("states")), 5);
        QCOMPARE(store.fold(plant.database, 1000).value(), changed - 5);
        QCOMPARE(countOf(file, QStringLiteral("journal")), 0);
        QCOMPARE(store.unfolded(), std::size_t(0));
        QCOMPARE(store.fold(plant.database, 1000).value(), 0);
        for (int tick = 1; tick < 60; ++tick)
            QVERIFY(runTick(plant, store, tick, 20));
        QVERIFY(countOf(file, QStringLiteral("journal")) <= 4);
    }

    void samplesOfUnknownObjectsDoNotStayInTheJournal()
    {
        const QString file = newFile();
        RuntimeStore store;
        Plant plant;
        QVERIFY(store.open(file));
        QVERIFY(store.load(plant.database).isEmpty());
        store.append({{{ScadaObjectType::AnalogPoint, 299999}, start, 1, 0}});
        QVERIFY(store.commit(start));
        QVERIFY(store.fold(plant.database, 10));
        QCOMPARE(countOf(file, QStringLiteral("journal")), 0);
    }

    void aRowThatAStateHoldsAlreadyCountsOnce()
    {
        const QString file = newFile();
        const ObjectKey pump = keyOf(3);
        {
            RuntimeStore store;
            Plant plant;
            QVERIFY(store.open(file));
            QVERIFY(store.load(plant.database).isEmpty());
            const std::vector<Sample> samples{
                {pump, start, 1, 0}, {pump, start, 0, 0}, {pump, start, 1, 0}, {keyOf(2), start, 5, 0}};
            for (const Sample& sample : samples)
                plant.database.takeSample(sample);
            store.append(samples);
            QVERIFY(store.commit(start));
            QCOMPARE(store.fold(plant.database, 1).value(), 1); // the pump's; the row stays for the other
        }
        RuntimeStore store;
        Plant plant;
        QVERIFY(store.open(file));
        QVERIFY(store.load(plant.database).isEmpty());
        QCOMPARE(plant.database.fieldValue(pump, DataField::TotalOnCount), QVariant(1));
        QCOMPARE(plant.database.fieldValue(pump, DataField::TotalOffCount), QVariant(1));
        QCOMPARE(plant.database.presentRecord(keyOf(2)).GetValue("value")->toDouble(), 5.0);
    }

    void statisticsOfObjectsThatLeftAreKept()
    {
        const QString file = newFile();
        {
            RuntimeStore store;
            Plant plant;
            QVERIFY(store.open(file));
            QVERIFY(store.importPoints(plantObjects()));
            QVERIFY(store.load(plant.database).isEmpty());
            QVERIFY(runTick(plant, store, 0, 1000));
            QVERIFY(store.importPoints({}));
        }
        {
            RuntimeStore store;
            RuntimeDatabase empty;
            QVERIFY(store.open(file));
            QVERIFY(store.loadPoints()->empty());
            QVERIFY(store.load(empty).isEmpty());
            QVERIFY(store.commit(start + 2 * tickMs));
            QVERIFY(store.fold(empty, 1000));
        }
        RuntimeStore store;
        Plant plant;
        QVERIFY(store.open(file));
        QVERIFY(store.load(plant.database).isEmpty());
        QCOMPARE(lastTickOf(plant), 0);
        QVERIFY(!plant.database.state(keyOf(0)).isEmpty());
    }

    void damagedBytesAreSkipped_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::addColumn<QString>("problem");
        const QString state = QStringLiteral("OBJECT0 (id 1): the stored statistics are damaged and begin anew");
        const QString row = QStringLiteral("journal row 2 is damaged: its samples are missing");
        const QString unit = QStringLiteral("WHERE object = %1").arg(1 * 4 + 1);
        QTest::newRow("a state that is cut off")
            << QStringLiteral("UPDATE states SET state = substr(state, 1, 30) %1").arg(unit) << state;
        QTest::newRow("an empty state") << QStringLiteral("UPDATE states SET state = x'' %1").arg(unit) << state;
        QTest::newRow("a state with another byte")
            << QStringLiteral("UPDATE states SET state = CAST(substr(state, 1, 20) || x'5a' || substr(state, 22) AS "
                              "BLOB) %1")
                   .arg(unit)
            << state;
        QTest::newRow("a journal row that is cut off")
            << QStringLiteral("UPDATE journal SET notes = substr(notes, 1, 40) WHERE journal_row = 2") << row;
        QTest::newRow("an empty journal row")
            << QStringLiteral("UPDATE journal SET notes = x'' WHERE journal_row = 2") << row;
        QTest::newRow("a journal row with another byte")
            << QStringLiteral("UPDATE journal SET notes = CAST(substr(notes, 1, 30) || x'5a' || substr(notes, 32) AS "
                              "BLOB) WHERE journal_row = 2")
            << row;
    }
    void damagedBytesAreSkipped()
    {
        QFETCH(QString, statement);
        QFETCH(QString, problem);

        const QString file = newFile();
        {
            RuntimeStore store;
            Plant plant;
            QVERIFY(store.open(file));
            QVERIFY(store.load(plant.database).isEmpty());
            for (int tick = 0; tick < 4; ++tick)
                QVERIFY(runTick(plant, store, tick, 1));
        }
        QVERIFY(change(file, statement));
        RuntimeStore store;
        Plant plant;
        QVERIFY(store.open(file));
        const QString expected = QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(file), problem);
        QCOMPARE(store.load(plant.database), QStringList(expected));
        QCOMPARE(lastTickOf(plant), 3);
        int restored = 0;
        for (int i = 0; i < pointCount; ++i)
            restored += plant.database.state(keyOf(i)).isEmpty() ? 0 : 1;
        QVERIFY(restored > pointCount / 2);
    }

    void notesComeThroughTheJournal_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<qint64>("timeMs");
        QTest::newRow("nothing") << 0.0 << start;
        QTest::newRow("minus nothing") << -0.0 << start;
        QTest::newRow("a small number") << -128.0 << start + 1;
        QTest::newRow("a number of few digits") << 0.5 << start - 1;
        QTest::newRow("a number of many digits") << 0.1 << start;
        QTest::newRow("the largest number") << std::numeric_limits<double>::max() << start;
        QTest::newRow("the smallest number") << std::numeric_limits<double>::denorm_min() << start;
        QTest::newRow("a time long after") << 1.0 << Q_INT64_C(253402300799999);
        QTest::newRow("a time long before") << 1.0 << Q_INT64_C(-62135596800000);
    }
    void notesComeThroughTheJournal()
    {
        QFETCH(double, value);
        QFETCH(qint64, timeMs);

        const QString file = newFile();
        Plant plant;
        const std::vector<Sample> samples{{keyOf(0), start, 1, 0}, {keyOf(2), timeMs, value, ValueMark::Test}};
        {
            RuntimeStore store;
            QVERIFY(store.open(file));
            QVERIFY(store.load(plant.database).isEmpty());
            for (const Sample& sample : samples)
                QVERIFY(plant.database.takeSample(sample));
            store.append(samples);
            QVERIFY(store.commit(start));
        }
        RuntimeStore store;
        Plant other;
        QVERIFY(store.open(file));
        QVERIFY(store.load(other.database).isEmpty());
        plant.now = start;
        plant.interruptAll();
        QCOMPARE(differenceOf(other, plant), QString());
        const double read = other.database.presentRecord(keyOf(2)).GetValue("value")->toDouble();
        QCOMPARE(std::memcmp(&read, &value, sizeof read), 0);
    }

    void whatWasCommittedOutlivesAKill()
    {
        const QString file = newFile();
        Plant expected;
        int tick = 0; // the first one that the child of the round writes
        for (const int ticks : {1, 20, 3, 50, 11}) {
            QProcess child;
            child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--write-ticks"), file});
            QVERIFY(child.waitForStarted());
            int told = -1;
            while (told < tick + ticks) {
                QVERIFY2(child.canReadLine() || child.waitForReadyRead(), "the child ended by itself");
                while (child.canReadLine())
                    told = child.readLine().trimmed().toInt();
            }
            child.kill();
            QVERIFY(child.waitForFinished());
            while (child.canReadLine())
                told = child.readLine().trimmed().toInt();
            QCOMPARE(child.exitStatus(), QProcess::CrashExit);

            RuntimeStore store;
            Plant plant;
            QVERIFY(store.open(file));
            QCOMPARE(store.load(plant.database), QStringList());
            const int found = lastTickOf(plant);
            QVERIFY2(found == told || found == told + 1, qPrintable(QString::number(found)));
            for (; tick <= found; ++tick)
                expected.takeTick(tick);
            expected.interruptAll();
            QCOMPARE(differenceOf(plant, expected), QString());
        }
    }

    void twoStoresAtATime()
    {
        RuntimeStore first;
        RuntimeStore second;
        QVERIFY(first.open(newFile()));
        QVERIFY(second.open(newFile()));
        QVERIFY(first.importPoints(plantObjects()));
        QVERIFY(second.loadPoints()->empty());
        QVERIFY(first.open(second.fileName())); // closes what was open
        QVERIFY(first.loadPoints()->empty());
    }
};

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1) == QLatin1String("--write-ticks"))
        return writeTicks(arguments.at(2));
    tst_RuntimeStore test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_runtimestore.moc"
