#include "host/alarms/alarmlog.h"
#include "host/runtime/runtimestore.h"

#include <QProcess>
#include <QSqlDatabase>
#include <QSqlError>
#include <QSqlQuery>
#include <QTemporaryDir>
#include <QtTest>

#include <cstdio>
#include <random>

using Cause = ScadaAlarm::Cause;
using Kind = AlarmTransition::Kind;
using Korvane::ScadaObjectType;
using State = ScadaAlarm::State;

Q_DECLARE_METATYPE(AlarmLog::Query)

namespace {

constexpr ObjectKey flow{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey pump{ScadaObjectType::DigitalPoint, 100001};

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

QDateTime at(qint64 ms)
{
    return QDateTime::fromMSecsSinceEpoch(Q_INT64_C(1714557600000) + ms, Qt::UTC); // 2024-05-01T10:00:00Z
}

AlarmTransition eventOf(const QString& message, qint64 ms = 0)
{
    AlarmTransition line;
    line.time = at(ms);
    line.alarm.message = message;
    return line;
}

AlarmTransition lineOf(ObjectKey object, qint64 ms, Kind kind = Kind::Raised)
{
    AlarmTransition line;
    line.kind = kind;
    line.time = at(ms);
    line.alarm.objectType = object.type;
    line.alarm.objectId = object.id;
    return line;
}

AlarmTransition fullLine()
{
    AlarmTransition line;
    line.kind = Kind::Shelved;
    line.time = at(-1);
    line.alarm.id = Q_UINT64_C(9007199254740993); // beyond what a double holds
    line.alarm.objectType = ScadaObjectType::ChannelObject;
    line.alarm.objectId = 2147483647;
    line.alarm.tag = text("@C::라인 1");
    line.alarm.area = text("East");
    line.alarm.severity = 9;
    line.alarm.state = State::Shelved;
    line.alarm.cause = Cause::Communication;
    line.alarm.value = 0.1;
    line.alarm.limit = -1e300;
    line.alarm.message = text("it's \"one\"; DROP TABLE alarm_log; --");
    line.alarm.raised = at(1);
    line.alarm.returned = at(2);
    line.alarm.acknowledged = at(3);
    line.alarm.acknowledgedBy = text("ann");
    line.user = text("bob");
    line.reason = text("noise");
    line.until = at(4);
    return line;
}

bool isSame(const AlarmTransition& a, const AlarmTransition& b)
{
    return a.kind == b.kind && a.time == b.time && a.alarm.isEqual(b.alarm) && a.user == b.user &&
           a.reason == b.reason && a.until == b.until && a.alarm.value.type() == b.alarm.value.type() &&
           a.alarm.limit.type() == b.alarm.limit.type();
}

QStringList messagesOf(const AlarmLog& log, const AlarmLog::Query& query = {})
{
    QStringList messages;
    const auto lines = log.read(query);
    if (!lines)
        qFatal("%s", qPrintable(lines.error()));
    for (const AlarmTransition& line : *lines)
        messages.append(line.alarm.message);
    return messages;
}

/// Runs a statement on a file behind the log's back; the database's reason when it fails.
QString change(const QString& fileName, const QString& statement)
{
    const QString name = QStringLiteral("test");
    QString reason;
    {
        QSqlDatabase file = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), name);
        file.setDatabaseName(fileName);
        QSqlQuery query(file);
        if (!file.open() || !query.exec(statement))
            reason = file.isOpen() ? query.lastError().databaseText() : file.lastError().text();
    }
    QSqlDatabase::removeDatabase(name);
    return reason;
}

/// The connection of the only log that is open.
QSqlDatabase connectionOfLog()
{
    const QStringList names = QSqlDatabase::connectionNames().filter(QStringLiteral("AlarmLog"));
    if (names.size() != 1)
        qFatal("%d logs are open", names.size());
    return QSqlDatabase::database(names.first());
}

/// A manager whose changes go into a log, with a clock that is turned by hand.
struct Alarms
{
    explicit Alarms(AlarmLog* log = nullptr)
    {
        if (!log)
            return;
        QObject::connect(&manager, &AlarmManager::transitioned, &manager,
                         [log](const AlarmTransition& transition) { log->append(transition); });
        QObject::connect(&manager, &AlarmManager::exclusionChanged, &manager,
                         [this, log](ObjectKey object) { log->appendExclusion(object, manager.exclusion(object)); });
    }
    quint64 raise(ObjectKey object, Cause cause = Cause::High)
    {
        ScadaAlarm alarm = lineOf(object, 0).alarm;
        alarm.cause = cause;
        alarm.value = 81.5;
        return manager.raiseAlarm(alarm);
    }
    /// What happens in a tick follows from its number alone.
    void takeTick(int tick)
    {
        std::mt19937 random{unsigned(tick)};
        now = at(tick * 1000);
        manager.advance(now);
        for (int i = 0; i < 6; ++i) {
            const ObjectKey object{ScadaObjectType::AnalogPoint, qint32(200001 + random() % 5)};
            const auto cause = Cause(random() % 3);
            const quint64 id = manager.standing(object, cause);
            switch (random() % 8) {
            case 0:
            case 1:
                raise(object, cause);
                break;
            case 2:
                manager.returnAlarm(id, now);
                break;
            case 3:
                manager.acknowledge(id, text("ann"));
                break;
            case 4:
                manager.shelve(id, now.addSecs(7), text("bob"), text("noise"));
                break;
            case 5:
                manager.unshelve(id, text("bob"));
                break;
            case 6:
                manager.setSuppressed(object, random() % 2 == 0, text("pump off"));
                break;
            case 7:
                manager.setOutOfService(object, random() % 3 == 0, text("ann"), text("repair"));
                break;
            }
        }
    }
    /// Everything that stands, as text.
    QStringList standing() const
    {
        QStringList all;
        for (const ScadaAlarm& alarm : manager.activeAlarms()) {
            const AlarmManager::Shelf shelf = manager.shelf(alarm.id);
            all.append(QStringLiteral("%1: %2/%3 state %4, %5 to %6 by %7 %8, shelved until %9")
                           .arg(alarm.id)
                           .arg(alarm.objectId)
                           .arg(int(alarm.cause))
                           .arg(int(alarm.state))
                           .arg(alarm.raised.toString(Qt::ISODateWithMs), alarm.returned.toString(Qt::ISODateWithMs),
                                alarm.acknowledgedBy, alarm.acknowledged.toString(Qt::ISODateWithMs),
                                shelf.until.toString(Qt::ISODateWithMs) + shelf.user + shelf.reason));
        }
        for (const ObjectKey object : manager.excludedObjects()) {
            const AlarmManager::Exclusion exclusion = manager.exclusion(object);
            all.append(QStringLiteral("%1: %2 %3 %4 %5 %6")
                           .arg(object.id)
                           .arg(int(exclusion.isSuppressed))
                           .arg(int(exclusion.isOutOfService))
                           .arg(exclusion.suppressionReason, exclusion.serviceReason, exclusion.serviceUser));
        }
        all.sort();
        return all;
    }

    QDateTime now = at(0);
    AlarmManager manager{[this] { return now; }};
};

/// The last tick whose changes the log has; 0 before the first.
int lastTickOf(const AlarmLog& log)
{
    const auto lines = log.read({});
    for (const AlarmTransition& line : *lines) {
        if (line.kind == Kind::Event)
            return line.alarm.message.toInt();
    }
    return 0;
}

/// The child of the test that kills it: goes on from where the file left it, and says each tick once it is committed.
int writeTicks(const QString& fileName)
{
    AlarmLog log;
    if (!log.open(fileName))
        return 1;
    Alarms alarms(&log);
    if (!log.restore(alarms.manager))
        return 1;
    for (int tick = lastTickOf(log) + 1;; ++tick) {
        alarms.takeTick(tick);
        log.append(eventOf(QString::number(tick), tick * 1000));
        if (!log.commit())
            return 1;
        std::printf("%d\n", tick);
        std::fflush(stdout);
    }
}

} // namespace

class tst_AlarmLog : public QObject
{
    Q_OBJECT

private:
    QString newFile() { return m_folder.filePath(QStringLiteral("log%1.db").arg(++m_files)); }

    QTemporaryDir m_folder;
    int m_files = 0;

private Q_SLOTS:
    void initTestCase() { QVERIFY(m_folder.isValid()); }

    void everyFieldComesBack_data()
    {
        QTest::addColumn<AlarmTransition>("line");
        QTest::newRow("every field") << fullLine();
        QTest::newRow("none") << eventOf({});
        const auto valueRow = [](const char* name, const QVariant& value) {
            AlarmTransition line = eventOf({});
            line.alarm.value = value;
            line.alarm.limit = value;
            QTest::newRow(name) << line;
        };
        valueRow("a fraction", 0.1);
        valueRow("a fraction without decimals", 80.0);
        valueRow("a state", 3);
        valueRow("a negative state", -2147483647 - 1);
        valueRow("a number beyond 32 bits", Q_INT64_C(4294967296));
        valueRow("a text", text("열림"));
        valueRow("a text of digits", text("007"));
        valueRow("an empty text", text(""));
        const auto textRow = [](const char* name, const QString& words) {
            AlarmTransition line = eventOf(words);
            line.user = words;
            line.reason = words;
            line.alarm.tag = words;
            line.alarm.area = words;
            line.alarm.acknowledgedBy = words;
            QTest::newRow(name) << line;
        };
        textRow("quotes", text("'\"`;--\\"));
        textRow("lines", text("a\nb\r\nc\t"));
        textRow("a NUL", QStringLiteral("before") + QChar(0) + QStringLiteral("behind"));
        textRow("beyond the basic plane", text("\xF0\x9F\x94\x94 경보"));
        textRow("a million letters", QString(1024 * 1024, QLatin1Char('x')));
    }
    void everyFieldComesBack()
    {
        QFETCH(AlarmTransition, line);
        const QString file = newFile();
        AlarmLog log;
        QVERIFY(log.open(file));
        log.append(line);
        QCOMPARE(log.waiting(), std::size_t(1));
        QVERIFY(log.commit());
        QCOMPARE(log.waiting(), std::size_t(0));
        QVERIFY(log.open(file)); // closes what was open
        const auto lines = log.read({});
        QVERIFY(lines);
        QCOMPARE(lines->size(), std::size_t(1));
        QCOMPARE(lines->front().number, quint64(1));
        QVERIFY(isSame(lines->front(), line));
        QCOMPARE(lines->front().time.timeSpec(), Qt::UTC);
        QCOMPARE(lines->front().until.isValid(), line.until.isValid());
    }

    void everyKindComesBack()
    {
        AlarmLog log;
        QVERIFY(log.openInMemory());
        for (int kind = 0; kind <= int(Kind::Event); ++kind)
            log.append(lineOf(flow, kind, Kind(kind)));
        QVERIFY(log.commit());
        const auto lines = log.read({});
        QCOMPARE(lines->size(), std::size_t(10));
        for (std::size_t i = 0; i < lines->size(); ++i)
            QCOMPARE((*lines)[i].kind, Kind(9 - int(i)));
    }

    void aClosedLogTakesNothing()
    {
        AlarmLog log;
        QVERIFY(!log.isOpen());
        log.append(eventOf(text("lost")));
        log.appendExclusion(flow, {true, false, {}, {}, {}});
        QCOMPARE(log.waiting(), std::size_t(0));
        QVERIFY(log.commit());
        QVERIFY(log.read({})->empty());
        QVERIFY(log.openInMemory());
        QVERIFY(log.read({})->empty());
        log.append(eventOf(text("kept")));
        QVERIFY(log.commit());
        QCOMPARE(messagesOf(log), QStringList(text("kept")));
        log.close();
        QVERIFY(!log.isOpen());
        QVERIFY(log.openInMemory());
        QVERIFY(log.read({})->empty());
    }

    void linesAreReadNewestFirst_data()
    {
        QTest::addColumn<AlarmLog::Query>("query");
        QTest::addColumn<QString>("messages");
        using Query = AlarmLog::Query;
        const qint64 zero = at(0).toMSecsSinceEpoch();
        QTest::newRow("all") << Query() << "f e d c b a";
        QTest::newRow("the newest") << Query{std::numeric_limits<qint64>::min(), zero + 99, {}, 3} << "f e d";
        QTest::newRow("none") << Query{std::numeric_limits<qint64>::min(), zero + 99, {}, 0} << "";
        QTest::newRow("from a time, included") << Query{zero + 20, zero + 99, {}, 9} << "f e d c";
        QTest::newRow("up to a time, included") << Query{zero, zero + 20, {}, 9} << "d c b a";
        QTest::newRow("of a moment") << Query{zero + 10, zero + 10, {}, 9} << "b";
        QTest::newRow("times upside down") << Query{zero + 20, zero + 10, {}, 9} << "";
        QTest::newRow("of an object") << Query{zero, zero + 99, flow, 9} << "f c a";
        QTest::newRow("of an object, the newest") << Query{zero, zero + 99, flow, 2} << "f c";
        QTest::newRow("of an object in a time") << Query{zero + 5, zero + 25, flow, 9} << "c";
        QTest::newRow("of another kind of object")
            << Query{zero, zero + 99, {ScadaObjectType::RtuObject, flow.id}, 9} << "";
    }
    void linesAreReadNewestFirst()
    {
        QFETCH(AlarmLog::Query, query);
        QFETCH(QString, messages);
        AlarmLog log;
        QVERIFY(log.openInMemory());
        const auto append = [&](const char* message, ObjectKey object, qint64 ms) {
            AlarmTransition line = lineOf(object, ms);
            line.alarm.message = text(message);
            log.append(line);
        };
        append("b", pump, 10); // in no order of their times
        append("a", flow, 0);
        append("c", flow, 20);
        append("d", pump, 20); // of the same time, written later
        append("f", flow, 40);
        append("e", pump, 30);
        QVERIFY(log.commit());
        QCOMPARE(messagesOf(log, query).join(QLatin1Char(' ')), messages);
    }

    void theFileRefusesChanges_data()
    {
        QTest::addColumn<QString>("statement");
        QTest::newRow("another message") << text("UPDATE alarm_log SET message = 'never happened'");
        QTest::newRow("a line less") << text("DELETE FROM alarm_log WHERE line = 1");
        QTest::newRow("none at all") << text("DELETE FROM alarm_log");
        QTest::newRow("a line in place of another")
            << text("INSERT OR REPLACE INTO alarm_log (line, kind, time_ms) VALUES (1, 9, 0)");
        QTest::newRow("a changed line in place of another") << text("UPDATE OR REPLACE alarm_log SET line = 2");
    }
    void theFileRefusesChanges()
    {
        QFETCH(QString, statement);
        const QString file = newFile();
        AlarmLog log;
        QVERIFY(log.open(file));
        log.append(eventOf(text("first")));
        log.append(eventOf(text("second")));
        QVERIFY(log.commit());
        QCOMPARE(change(file, statement), text("lines of the alarm log are never changed"));
        QCOMPARE(messagesOf(log), (QStringList{text("second"), text("first")}));
        log.append(eventOf(text("third")));
        QVERIFY(log.commit());
        QCOMPARE(log.read({})->front().number, quint64(3));
    }

    void whatStoodGoesOn()
    {
        const QString file = newFile();
        QStringList standing;
        quint64 last = 0;
        {
            AlarmLog log;
            QVERIFY(log.open(file));
            Alarms alarms(&log);
            const quint64 returned = alarms.raise(flow, Cause::Low);
            alarms.raise(flow);
            const quint64 shelved = alarms.raise(pump, Cause::StateChange);
            const quint64 acknowledged = alarms.raise(pump, Cause::Quality);
            const quint64 ended = alarms.raise({ScadaObjectType::RtuObject, 1});
            last = alarms.raise({ScadaObjectType::RtuObject, 2});
            QVERIFY(alarms.manager.returnAlarm(returned, at(1)));
            QVERIFY(alarms.manager.shelve(shelved, at(60000), text("bob"), text("noise")));
            QVERIFY(log.commit());
            QVERIFY(alarms.manager.shelve(shelved, at(90000), text("ann"), text("still noise")));
            QVERIFY(alarms.manager.returnAlarm(shelved, at(2))); // the shelf's line is no longer its newest
            QVERIFY(alarms.manager.acknowledge(acknowledged, text("ann")));
            QVERIFY(alarms.manager.acknowledge(ended, text("ann")));
            QVERIFY(alarms.manager.returnAlarm(ended, at(3)));
            QVERIFY(alarms.manager.setSuppressed({ScadaObjectType::RtuObject, 2}, true, text("pump off")));
            QVERIFY(alarms.manager.setOutOfService({ScadaObjectType::RtuObject, 2}, true, text("ann"), text("repair")));
            QVERIFY(alarms.manager.setSuppressed({ScadaObjectType::RtuObject, 3}, true, text("over")));
            QVERIFY(alarms.manager.setSuppressed({ScadaObjectType::RtuObject, 3}, false, {}));
            QVERIFY(log.commit());
            standing = alarms.standing();
            QCOMPARE(standing.size(), 6); // five alarms and an object
        }
        AlarmLog log;
        QVERIFY(log.open(file));
        Alarms alarms(&log);
        QVERIFY(log.restore(alarms.manager));
        QCOMPARE(log.waiting(), std::size_t(0));
        QCOMPARE(alarms.standing(), standing);
        QCOMPARE(alarms.manager.alarm(2).value, QVariant(81.5));
        QCOMPARE(alarms.raise({ScadaObjectType::RtuObject, 5}), last + 1);
    }

    void numbersGoOnBehindAnEndedAlarm()
    {
        const QString file = newFile();
        {
            AlarmLog log;
            QVERIFY(log.open(file));
            Alarms alarms(&log);
            for (int i = 0; i < 3; ++i) {
                const quint64 id = alarms.raise(flow);
                QVERIFY(alarms.manager.acknowledge(id, {}));
                QVERIFY(alarms.manager.returnAlarm(id, at(1)));
            }
            QVERIFY(log.commit());
        }
        AlarmLog log;
        QVERIFY(log.open(file));
        Alarms alarms(&log);
        QVERIFY(log.restore(alarms.manager));
        QCOMPARE(alarms.manager.count(), std::size_t(0));
        alarms.now = at(2);
        QCOMPARE(alarms.raise(flow), quint64(4));
        QVERIFY(log.commit());
        QCOMPARE(log.read({})->front().number, quint64(10));
    }

    void anyMomentCanBeTheLast()
    {
        const QString file = newFile();
        Alarms expected;
        int tick = 0;
        for (int run = 0; run < 40; ++run) {
            AlarmLog log;
            QVERIFY(log.open(file));
            Alarms alarms(&log);
            QVERIFY(log.restore(alarms.manager));
            QCOMPARE(alarms.standing(), expected.standing());
            for (int i = 0; i <= run % 5; ++i) {
                ++tick;
                alarms.takeTick(tick);
                expected.takeTick(tick);
                QCOMPARE(alarms.standing(), expected.standing());
                if (i % 2 == 1)
                    QVERIFY(log.commit());
            }
            QVERIFY(log.commit());
        }
    }

    void whatWasCommittedOutlivesAKill()
    {
        const QString file = newFile();
        Alarms expected;
        int tick = 0;
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

            AlarmLog log;
            QVERIFY(log.open(file));
            const int found = lastTickOf(log);
            QVERIFY2(found == told || found == told + 1, qPrintable(QString::number(found)));
            Alarms alarms;
            QVERIFY(log.restore(alarms.manager));
            while (tick < found)
                expected.takeTick(++tick);
            QCOMPARE(alarms.standing(), expected.standing());
            AlarmLog::Query all;
            all.most = std::numeric_limits<int>::max();
            const auto lines = log.read(all);
            int events = 0;
            for (const AlarmTransition& line : *lines)
                events += line.kind == Kind::Event ? 1 : 0;
            QCOMPARE(events, found); // each tick once, none missing
            QCOMPARE(lines->front().number, quint64(lines->size()));
        }
    }

    void aFullFileLosesNothing()
    {
        const QString file = newFile();
        AlarmLog log;
        QVERIFY(log.open(file));
        log.append(eventOf(text("before")));
        QVERIFY(log.commit());
        QSqlQuery limit(connectionOfLog());
        QVERIFY(limit.exec(QStringLiteral("PRAGMA max_page_count = 1"))); // as many as it has
        limit.finish();
        const QString large(100000, QLatin1Char('x'));
        log.append(eventOf(text("small")));
        log.append(eventOf(large));
        log.appendExclusion(flow, {true, false, text("pump off"), {}, {}});
        for (int attempt = 0; attempt < 2; ++attempt) {
            const auto committed = log.commit();
            QVERIFY(!committed);
            QCOMPARE(committed.error(),
                     QDir::toNativeSeparators(file) +
                         QStringLiteral(": the alarm log could not be written: database or disk is full"));
            QCOMPARE(log.waiting(), std::size_t(3));
            QCOMPARE(messagesOf(log), QStringList(text("before"))); // all or nothing
        }
        QVERIFY(limit.exec(QStringLiteral("PRAGMA max_page_count = 1000000")));
        limit.finish();
        log.append(eventOf(text("behind")));
        QVERIFY(log.commit());
        QCOMPARE(messagesOf(log), (QStringList{text("behind"), large, text("small"), text("before")}));
        Alarms alarms;
        QVERIFY(log.restore(alarms.manager));
        QVERIFY(alarms.manager.exclusion(flow).isSuppressed);
    }

    void aLockedFileLosesNothing()
    {
        const QString file = newFile();
        AlarmLog log;
        QVERIFY(log.open(file));
        QVERIFY(QSqlQuery(connectionOfLog()).exec(QStringLiteral("PRAGMA busy_timeout = 0")));
        log.append(eventOf(text("a")));
        {
            QSqlDatabase other = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), QStringLiteral("other"));
            other.setDatabaseName(file);
            QVERIFY(other.open());
            QVERIFY(QSqlQuery(other).exec(QStringLiteral("BEGIN IMMEDIATE")));
            const auto committed = log.commit();
            QVERIFY(!committed);
            QVERIFY2(committed.error().endsWith(QStringLiteral("database is locked")), qPrintable(committed.error()));
            QVERIFY(QSqlQuery(other).exec(QStringLiteral("ROLLBACK")));
        }
        QSqlDatabase::removeDatabase(QStringLiteral("other"));
        QVERIFY(log.commit());
        QCOMPARE(messagesOf(log), QStringList(text("a")));
    }

    void filesThatCannotBeUsed_data()
    {
        QTest::addColumn<QString>("fileName");
        QTest::addColumn<QString>("reason");
        QTest::newRow("a folder that is not there")
            << m_folder.filePath(QStringLiteral("none/log.db")) << text("unable to open database file");
        QTest::newRow("a folder") << m_folder.path() << text("unable to open database file");
        QFile garbage(newFile());
        QVERIFY(garbage.open(QIODevice::WriteOnly));
        garbage.write(QByteArray(5000, 'x'));
        QTest::newRow("garbage") << garbage.fileName() << text("file is not a database");
        const QString other = newFile();
        QCOMPARE(change(other, text("CREATE TABLE alarm_log (something)")), QString());
        QTest::newRow("another program's log") << other << text("no such column");
    }
    void filesThatCannotBeUsed()
    {
        QFETCH(QString, fileName);
        QFETCH(QString, reason);
        AlarmLog log;
        const auto opened = log.open(fileName);
        QVERIFY(!opened);
        QVERIFY2(opened.error().startsWith(QDir::toNativeSeparators(fileName) +
                                           QStringLiteral(": can't be used as alarm log: ")),
                 qPrintable(opened.error()));
        QVERIFY2(opened.error().contains(reason), qPrintable(opened.error()));
        QVERIFY(!log.isOpen());
        QVERIFY(log.open(newFile()));
    }

    void aDamagedFileSaysWhatItCouldNotRead()
    {
        const QString file = newFile();
        AlarmLog log;
        QVERIFY(log.open(file));
        QCOMPARE(change(file, text("DROP TABLE standing_alarms")), QString());
        Alarms alarms;
        const auto restored = log.restore(alarms.manager);
        QVERIFY(!restored);
        QCOMPARE(restored.error(),
                 QDir::toNativeSeparators(file) +
                     QStringLiteral(": the alarms that stood could not be read: no such table: standing_alarms"));
        QCOMPARE(change(file, text("DROP TABLE alarm_log")), QString());
        QVERIFY2(log.read({}).error().contains(text("the alarm log could not be read: no such table: alarm_log")),
                 qPrintable(log.read({}).error()));
    }

    void theStoreUsesTheSameFile()
    {
        const QString file = newFile();
        RuntimeStore store;
        QVERIFY(store.open(file));
        AlarmLog log;
        QVERIFY(log.open(file));
        RuntimeDatabase database;
        QVERIFY(database.add({flow.type, flow.id, QStringLiteral("FLOW")}));
        QVERIFY(store.load(database).isEmpty());
        for (int i = 0; i < 20; ++i) {
            const Sample sample{flow, at(i).toMSecsSinceEpoch(), double(i), 0};
            QVERIFY(database.takeSample(sample));
            store.append({sample});
            log.append(eventOf(QString::number(i), i));
            QVERIFY(log.commit());
            QVERIFY(store.commit(sample.timeMs));
            QVERIFY(store.fold(database, 1));
            QCOMPARE(messagesOf(log).size(), i + 1);
        }
        store.close();
        log.close();
        QVERIFY(log.open(file)); // in the other order
        QVERIFY(store.open(file));
        RuntimeDatabase later;
        QVERIFY(later.add({flow.type, flow.id, QStringLiteral("FLOW")}));
        QVERIFY(store.load(later).isEmpty());
        QCOMPARE(later.presentRecord(flow).GetValue("value")->toDouble(), 19.0);
        QCOMPARE(messagesOf(log).first(), QStringLiteral("19"));
    }
};

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() == 3 && arguments.at(1) == QLatin1String("--write-ticks"))
        return writeTicks(arguments.at(2));
    tst_AlarmLog test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_alarmlog.moc"
