#include "host/runtime/runtimestore.h"

#include "host/runtime/bytes_p.h"
#include "host/runtime/journalrow_p.h"
#include "host/runtime/pointtable_p.h"
#include "host/runtime/sql_p.h"
#include "host/runtime/storeloader_p.h"

#include <QDir>

#include <algorithm>
#include <utility>

namespace {

constexpr int schemaVersion = 3; // 1 had points without areas and alarms, 2 without parents and commands

tl::expected<void, QString> createSchema(QSqlDatabase& database)
{
    Transaction transaction(database);
    return createPointTable(database)
        .and_then([&] {
            return execute(database, QStringLiteral("CREATE TABLE states (object INTEGER PRIMARY KEY, "
                                                    "journal_row INTEGER NOT NULL, state BLOB NOT NULL)"));
        })
        .and_then([&] {
            return execute(database, QStringLiteral("CREATE TABLE journal (journal_row INTEGER PRIMARY KEY, "
                                                    "notes BLOB NOT NULL)"));
        })
        .and_then([&] {
            return execute(database, QStringLiteral("CREATE TABLE runs (first_row INTEGER PRIMARY KEY, "
                                                    "last_tick_ms INTEGER NOT NULL)"));
        })
        .and_then([&] { return execute(database, QStringLiteral("PRAGMA user_version = %1").arg(schemaVersion)); })
        .and_then([&] { return transaction.commit(); });
}

/// Brings a file of an earlier version up to this one. Shows at once whether the file can be written.
tl::expected<void, QString> renewSchema(QSqlDatabase& database)
{
    Transaction transaction(database);
    return completePointTable(database)
        .and_then([&] { return execute(database, QStringLiteral("PRAGMA user_version = %1").arg(schemaVersion)); })
        .and_then([&] { return transaction.commit(); });
}

/// Refuses a file that this version can't use.
tl::expected<int, QString> versionOf(const QSqlDatabase& database)
{
    return ask(database, QStringLiteral("PRAGMA user_version")).and_then([&](const QVariant& stored) {
        const int version = stored.toInt();
        if (version > schemaVersion) {
            return tl::expected<int, QString>(
                tl::unexpect, QStringLiteral("a newer version of this program wrote it (layout %1, this one knows %2)")
                                  .arg(version)
                                  .arg(schemaVersion));
        }
        const auto tables = ask(database, QStringLiteral("SELECT count(*) FROM sqlite_master"));
        if (tables && version == 0 && tables->toInt() > 0)
            return tl::expected<int, QString>(tl::unexpect, QStringLiteral("it is another program's database"));
        return tl::expected<int, QString>(version);
    });
}

} // namespace

RuntimeStore::RuntimeStore() : m_notes(std::make_unique<JournalRow>())
{
}

RuntimeStore::~RuntimeStore()
{
    close();
}

tl::unexpected<QString> RuntimeStore::failure(const QString& what) const
{
    return tl::make_unexpected(QStringLiteral("%1: %2").arg(QDir::toNativeSeparators(m_fileName), what));
}

tl::expected<void, QString> RuntimeStore::open(const QString& fileName)
{
    close();
    m_fileName = fileName;
    m_connection = newConnectionName("RuntimeStore");
    const tl::expected<void, QString> prepared = prepare();
    if (prepared)
        return {};
    const auto failed = failure(QStringLiteral("can't be used as runtime store: %1").arg(prepared.error()));
    close();
    return failed;
}

tl::expected<void, QString> RuntimeStore::prepare()
{
    auto opened = openSqlite(m_connection, m_fileName);
    if (!opened)
        return tl::make_unexpected(opened.error());
    QSqlDatabase& database = *opened;
    const auto version = versionOf(database);
    if (!version)
        return tl::make_unexpected(version.error());
    // Deleted rows need not be overwritten: the journal is nothing but rows that go.
    for (const char* setting :
         {"PRAGMA journal_mode = WAL", "PRAGMA synchronous = NORMAL", "PRAGMA secure_delete = OFF"}) {
        if (auto set = execute(database, QLatin1String(setting)); !set)
            return set;
    }
    auto written = *version == 0 ? createSchema(database) : renewSchema(database);
    if (!written)
        return written;
    return ask(database, QStringLiteral("SELECT max(ifnull((SELECT max(journal_row) FROM journal), 0), "
                                        "ifnull((SELECT max(journal_row) FROM states), 0), "
                                        "ifnull((SELECT max(first_row) FROM runs), 1) - 1)"))
        .map([this](const QVariant& row) {
            m_lastRow = row.toLongLong();
            m_firstRowOfRun = m_lastRow + 1;
        });
}

void RuntimeStore::close()
{
    if (m_connection.isEmpty())
        return;
    closeDatabase(m_connection);
    m_connection.clear();
    m_fileName.clear();
    m_isLoaded = false;
    m_notes->clear();
    m_changed.clear();
    m_isChanged.clear();
}

tl::expected<void, QString> RuntimeStore::importPoints(const std::vector<RuntimeDatabase::Object>& points)
{
    Q_ASSERT(isOpen());
    QSqlDatabase database = QSqlDatabase::database(m_connection);
    Transaction transaction(database);
    const auto written = writePoints(database, points).and_then([&] { return transaction.commit(); });
    if (!written)
        return failure(QStringLiteral("the points could not be written: %1").arg(written.error()));
    return {};
}

tl::expected<std::vector<RuntimeDatabase::Object>, QString> RuntimeStore::loadPoints() const
{
    Q_ASSERT(isOpen());
    auto points = readPoints(QSqlDatabase::database(m_connection));
    if (!points)
        return failure(QStringLiteral("the points could not be read: %1").arg(points.error()));
    return points;
}

QStringList RuntimeStore::load(RuntimeDatabase& database)
{
    Q_ASSERT(isOpen());
    StoreLoader loader(QSqlDatabase::database(m_connection), database);
    loader.load();
    for (const StoreLoader::Replayed& replayed : loader.replayed())
        markChanged(replayed.object, replayed.row);
    m_isLoaded = true;
    QStringList problems;
    for (const QString& problem : loader.problems())
        problems.append(failure(problem).value());
    return problems;
}

void RuntimeStore::markChanged(quint64 object, qint64 row)
{
    if (m_isChanged.try_emplace(object, true).second)
        m_changed.push_back({object, row});
}

void RuntimeStore::append(const std::vector<Sample>& samples)
{
    for (const Sample& sample : samples) {
        m_notes->add(sample);
        markChanged(storedKey(sample.object), m_lastRow + 1);
    }
}

void RuntimeStore::appendCommunicationFailed(ObjectKey object, bool failed, qint64 timeMs)
{
    m_notes->addCommunicationFailed(object, failed, timeMs);
    markChanged(storedKey(object), m_lastRow + 1);
}

std::size_t RuntimeStore::waiting() const
{
    return m_notes->count();
}

tl::expected<void, QString> RuntimeStore::commit(qint64 nowMs)
{
    Q_ASSERT(isOpen());
    QSqlDatabase database = QSqlDatabase::database(m_connection);
    Transaction transaction(database);
    const auto failed = [this](const QString& reason) {
        return failure(QStringLiteral("the samples of a tick could not be written: %1").arg(reason));
    };
    if (m_notes->count() > 0) {
        QSqlQuery insert(database);
        insert.prepare(QStringLiteral("INSERT INTO journal (journal_row, notes) VALUES (?, ?)"));
        insert.addBindValue(m_lastRow + 1);
        insert.addBindValue(m_notes->bytes());
        if (!insert.exec())
            return failed(reasonOf(insert));
    }
    QSqlQuery run(database);
    run.prepare(QStringLiteral("INSERT OR REPLACE INTO runs (first_row, last_tick_ms) VALUES (?, ?)"));
    run.addBindValue(m_firstRowOfRun);
    run.addBindValue(nowMs);
    if (!run.exec())
        return failed(reasonOf(run));
    run.finish();
    if (const auto committed = transaction.commit(); !committed)
        return failed(committed.error());
    if (m_notes->count() > 0) {
        ++m_lastRow;
        m_notes->clear();
    }
    return {};
}

tl::expected<int, QString> RuntimeStore::fold(const RuntimeDatabase& database, int maxPoints)
{
    if (!m_isLoaded || m_notes->count() > 0 || m_changed.empty() || maxPoints < 1)
        return 0;
    const auto count = std::min(std::size_t(maxPoints), m_changed.size());
    QSqlDatabase file = QSqlDatabase::database(m_connection);
    Transaction transaction(file);
    const auto failed = [this](const QString& reason) {
        return failure(QStringLiteral("statistics could not be written: %1").arg(reason));
    };
    QSqlQuery write(file);
    write.prepare(QStringLiteral("INSERT OR REPLACE INTO states (object, journal_row, state) VALUES (?, ?, ?)"));
    for (std::size_t i = 0; i < count; ++i) {
        const QByteArray state = database.state(keyOfStored(m_changed[i].object));
        if (state.isEmpty())
            continue;
        write.bindValue(0, qlonglong(m_changed[i].object));
        write.bindValue(1, m_lastRow);
        write.bindValue(2, sealed(state));
        if (!write.exec())
            return failed(reasonOf(write));
    }
    const qint64 needed = count < m_changed.size() ? m_changed[count].row : m_lastRow + 1;
    if (const auto dropped = execute(file, QStringLiteral("DELETE FROM journal WHERE journal_row < %1").arg(needed));
        !dropped)
        return failed(dropped.error());
    write.finish();
    if (const auto committed = transaction.commit(); !committed)
        return failed(committed.error());
    for (std::size_t i = 0; i < count; ++i) {
        m_isChanged.erase(m_changed.front().object);
        m_changed.pop_front();
    }
    return int(count);
}
