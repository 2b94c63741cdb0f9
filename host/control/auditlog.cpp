#include "host/control/auditlog.h"

#include "host/control/auditentry_p.h"
#include "host/runtime/sql_p.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFileInfo>
#include <QUrl>

namespace {

constexpr const char* noHash = ""; // in front of the first line

QByteArray hashOf(const QByteArray& before, qint64 line, const QByteArray& entry)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    hash.addData(before);
    hash.addData(QByteArray::number(line));
    hash.addData(entry);
    return hash.result().toHex();
}

QStringList schema()
{
    const QString refusal =
        QStringLiteral("CREATE TRIGGER IF NOT EXISTS audit_log_keeps_on_%1 BEFORE %1 ON audit_log "
                       "BEGIN SELECT RAISE(ABORT, 'lines of the audit log are never changed'); END");
    return {
        QStringLiteral("CREATE TABLE IF NOT EXISTS audit_log (line INTEGER PRIMARY KEY, time_ms INTEGER NOT NULL, "
                       "entry TEXT NOT NULL, hash TEXT NOT NULL)"),
        QStringLiteral("CREATE INDEX IF NOT EXISTS audit_log_by_time ON audit_log (time_ms)"),
        // What was last, apart from the lines: what was cut off would not be missed otherwise.
        QStringLiteral("CREATE TABLE IF NOT EXISTS audit_end (place INTEGER PRIMARY KEY CHECK (place = 1), "
                       "line INTEGER NOT NULL, hash TEXT NOT NULL)"),
        refusal.arg(QStringLiteral("update")),
        refusal.arg(QStringLiteral("delete")),
        // A line that replaces another one is no change and no deletion to SQLite.
        QStringLiteral("CREATE TRIGGER IF NOT EXISTS audit_log_keeps_on_insert BEFORE INSERT ON audit_log "
                       "WHEN EXISTS (SELECT 1 FROM audit_log WHERE line = NEW.line) "
                       "BEGIN SELECT RAISE(ABORT, 'lines of the audit log are never changed'); END"),
    };
}

// Beside the file while a program has it open, or after one that was killed.
QString journalOf(const QString& fileName)
{
    return fileName + QStringLiteral("-wal");
}
QString journalIndexOf(const QString& fileName)
{
    return fileName + QStringLiteral("-shm");
}

// Without a journal it takes a promise that nobody writes to keep SQLite from making one.
QString readOnlyAddress(const QString& fileName, bool hasJournal)
{
    const QString file = QUrl::fromLocalFile(fileName).toString(QUrl::FullyEncoded);
    return file + (hasJournal ? QStringLiteral("?readonly_shm=1") : QStringLiteral("?immutable=1"));
}

} // namespace

AuditLog::~AuditLog()
{
    close();
}

tl::unexpected<QString> AuditLog::failure(const QString& what) const
{
    const QString place = m_fileName.isEmpty() ? QString() : m_fileName + QStringLiteral(": ");
    return tl::make_unexpected(QStringLiteral("%1the audit log %2").arg(place, what));
}

tl::expected<void, QString> AuditLog::open(const QString& fileName)
{
    close();
    m_connection = newConnectionName("audit");
    m_fileName = QDir::toNativeSeparators(fileName);
    // No copy of the connection may live on when it is closed.
    const auto prepared =
        openSqlite(m_connection, fileName).and_then([this](const QSqlDatabase&) { return prepare(); });
    if (prepared)
        return {};
    const auto refused = failure(QStringLiteral("can't be used: %1").arg(prepared.error()));
    close();
    return refused;
}

tl::expected<void, QString> AuditLog::openInMemory()
{
    return open(QStringLiteral(":memory:"));
}

tl::expected<void, QString> AuditLog::openReadOnly(const QString& fileName)
{
    close();
    m_fileName = QDir::toNativeSeparators(fileName);
    m_hadJournal = false;
    m_changed = {};
    if (!QFileInfo(fileName).isFile())
        return failure(QStringLiteral("can't be read: there is no such file"));
    const QString file = QFileInfo(fileName).canonicalFilePath(); // a journal lies beside that
    m_fileName = QDir::toNativeSeparators(file);
    m_hadJournal = QFileInfo::exists(journalOf(file));
    m_changed = QFileInfo(file).lastModified();
    m_connection = newConnectionName("audit");
    const auto checked = openSqlite(m_connection, readOnlyAddress(file, m_hadJournal),
                                    QStringLiteral(";QSQLITE_OPEN_READONLY;QSQLITE_OPEN_URI"))
                             .and_then([this](const QSqlDatabase&) { return checkLayout(); });
    if (checked)
        return {};
    const bool isHalf = m_hadJournal && !QFileInfo::exists(journalIndexOf(file));
    const auto refused =
        failure(isHalf ? QStringLiteral("can't be read: %1 is missing").arg(journalIndexOf(QFileInfo(file).fileName()))
                       : QStringLiteral("can't be read: %1").arg(checked.error()));
    close();
    return refused;
}

bool AuditLog::isOvertaken() const
{
    if (!QFileInfo(m_fileName).isFile()) // whatever of it is left, nobody writes to that
        return false;
    if (QFileInfo::exists(journalOf(m_fileName)) != m_hadJournal)
        return true;
    return !m_hadJournal && QFileInfo(m_fileName).lastModified() != m_changed;
}

void AuditLog::close()
{
    if (!isOpen())
        return;
    closeDatabase(m_connection);
    m_connection.clear();
}

tl::expected<void, QString> AuditLog::prepare()
{
    QSqlDatabase database = QSqlDatabase::database(m_connection, false);
    QStringList statements = {QStringLiteral("PRAGMA journal_mode = WAL"), QStringLiteral("PRAGMA synchronous = FULL")};
    for (const QString& statement : statements + schema()) {
        if (auto done = execute(database, statement); !done)
            return done;
    }
    // Whoever writes to a file that is complete is not to be waited for.
    const auto ends = ask(database, QStringLiteral("SELECT count(*) FROM audit_end"));
    if (!ends)
        return tl::make_unexpected(ends.error());
    if (ends->toInt() > 0)
        return {};
    return execute(database, QStringLiteral("INSERT OR IGNORE INTO audit_end VALUES (1, 0, '')"));
}

tl::expected<void, QString> AuditLog::checkLayout() const
{
    QSqlDatabase database = QSqlDatabase::database(m_connection, false);
    return execute(database, QStringLiteral("SELECT line, time_ms, entry, hash FROM audit_log LIMIT 0"))
        .and_then(
            [&database] { return execute(database, QStringLiteral("SELECT line, hash FROM audit_end LIMIT 0")); });
}

tl::expected<void, QString> AuditLog::append(const ScadaOperationMessage& message, const QString& workplace)
{
    return write(AuditEntry::of(message, workplace), message.time.toMSecsSinceEpoch());
}

tl::expected<void, QString> AuditLog::append(const AccountEvent& event, const QString& workplace, const QDateTime& time)
{
    return write(AuditEntry::of(event, workplace, time), time.toMSecsSinceEpoch());
}

tl::expected<void, QString> AuditLog::write(const QByteArray& entry, qint64 timeMs)
{
    if (!isOpen())
        return failure(QStringLiteral("is not open"));
    QSqlDatabase database = QSqlDatabase::database(m_connection, false);
    Transaction transaction(database);
    // Another program may have written since: its line is the one before. Writing first waits for it; a reader that would
    // write is turned away at once.
    if (const auto locked = execute(database, QStringLiteral("UPDATE audit_end SET line = line")); !locked)
        return failure(QStringLiteral("can't be written: %1").arg(locked.error()));
    QSqlQuery end(database);
    if (!transaction.isOpen() || !end.exec(QStringLiteral("SELECT line, hash FROM audit_end")) || !end.next())
        return failure(QStringLiteral("can't be read: %1").arg(reasonOf(end)));
    const qint64 line = end.value(0).toLongLong() + 1;
    const QByteArray hash = hashOf(end.value(1).toByteArray(), line, entry);
    end.finish();

    QSqlQuery insert(database);
    insert.prepare(QStringLiteral("INSERT INTO audit_log (line, time_ms, entry, hash) VALUES (?, ?, ?, ?)"));
    insert.addBindValue(line);
    insert.addBindValue(timeMs);
    insert.addBindValue(QString::fromUtf8(entry));
    insert.addBindValue(QString::fromLatin1(hash));
    QSqlQuery update(database);
    update.prepare(QStringLiteral("UPDATE audit_end SET line = ?, hash = ?"));
    update.addBindValue(line);
    update.addBindValue(QString::fromLatin1(hash));
    if (!insert.exec())
        return failure(QStringLiteral("can't be written: %1").arg(reasonOf(insert)));
    if (!update.exec())
        return failure(QStringLiteral("can't be written: %1").arg(reasonOf(update)));
    if (const auto committed = transaction.commit(); !committed)
        return failure(QStringLiteral("can't be written: %1").arg(committed.error()));
    return {};
}

tl::expected<QList<ScadaOperationMessage>, QString> AuditLog::read(const QDateTime& from, const QDateTime& to,
                                                                   int most) const
{
    if (!isOpen())
        return failure(QStringLiteral("is not open"));
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    query.setForwardOnly(true);
    query.prepare(QStringLiteral("SELECT entry FROM audit_log WHERE time_ms BETWEEN ? AND ? "
                                 "AND instr(entry, '\"account\":') = 0 ORDER BY line DESC LIMIT ?"));
    query.addBindValue(from.toMSecsSinceEpoch());
    query.addBindValue(to.toMSecsSinceEpoch());
    query.addBindValue(std::max(most, 0));
    if (!query.exec())
        return failure(QStringLiteral("can't be read: %1").arg(reasonOf(query)));
    QList<ScadaOperationMessage> messages;
    while (query.next()) {
        if (const auto message = AuditEntry::message(query.value(0).toByteArray()))
            messages.append(*message);
    }
    return messages;
}

tl::expected<QList<AuditLine>, QString> AuditLog::newest(int most) const
{
    if (!isOpen())
        return failure(QStringLiteral("is not open"));
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    query.setForwardOnly(true);
    query.prepare(QStringLiteral("SELECT line, entry, hash FROM audit_log ORDER BY line DESC LIMIT ?"));
    query.addBindValue(std::max(most, 0));
    if (!query.exec())
        return failure(QStringLiteral("can't be read: %1").arg(reasonOf(query)));
    QList<AuditLine> lines;
    while (query.next()) {
        AuditLine line = AuditEntry::line(query.value(1).toByteArray());
        line.number = query.value(0).toLongLong();
        line.hash = query.value(2).toString();
        lines.append(line);
    }
    return lines;
}

tl::expected<qint64, QString> AuditLog::verify() const
{
    if (!isOpen())
        return failure(QStringLiteral("is not open"));
    QSqlDatabase database = QSqlDatabase::database(m_connection, false);
    // The lines and their end as of one moment, whoever writes meanwhile.
    const Transaction transaction(database);
    if (!transaction.isOpen())
        return failure(QStringLiteral("can't be read: %1").arg(reasonOf(database.lastError())));
    QSqlQuery query(database);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT line, time_ms, entry, hash FROM audit_log ORDER BY line")))
        return failure(QStringLiteral("can't be read: %1").arg(reasonOf(query)));
    qint64 line = 0;
    QByteArray hash = noHash;
    while (query.next()) {
        ++line;
        const QByteArray entry = query.value(2).toByteArray();
        const QByteArray expected = hashOf(hash, line, entry);
        if (query.value(0).toLongLong() != line)
            return failure(QStringLiteral("lacks line %1").arg(line));
        if (query.value(3).toByteArray() != expected ||
            query.value(1).toLongLong() != AuditEntry::time(entry).toMSecsSinceEpoch())
            return failure(QStringLiteral("was changed at or before line %1").arg(line));
        hash = expected;
    }
    QSqlQuery end(database);
    if (!end.exec(QStringLiteral("SELECT line, hash FROM audit_end")) || !end.next())
        return failure(QStringLiteral("lacks its end: %1").arg(reasonOf(end)));
    if (end.value(0).toLongLong() != line || end.value(1).toByteArray() != hash)
        return failure(QStringLiteral("ends with line %1 and should with %2").arg(line).arg(end.value(0).toLongLong()));
    return line;
}
