#include "host/projectfiles/filechanges.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <algorithm>
#include <filesystem>

namespace {

using Done = tl::expected<void, QString>;

QString changesOf(const QString& folder)
{
    return folder + QStringLiteral("/.changes");
}
QString pendingOf(const QString& folder)
{
    return changesOf(folder) + QStringLiteral("/pending");
}
QString lastOf(const QString& folder)
{
    return changesOf(folder) + QStringLiteral("/last");
}
QString newFile(const QString& changes, std::size_t number)
{
    return QStringLiteral("%1/%2.new").arg(changes).arg(number);
}
QString oldFile(const QString& changes, std::size_t number)
{
    return QStringLiteral("%1/%2.old").arg(changes).arg(number);
}
QString journalFile(const QString& changes)
{
    return changes + QStringLiteral("/journal.json");
}

std::filesystem::path pathOf(const QString& name)
{
    return std::filesystem::path(name.toStdU16String());
}

tl::unexpected<QString> failed(const QString& file, const QString& reason)
{
    return tl::make_unexpected(QStringLiteral("%1: %2").arg(file, reason));
}

/// Tells files apart, not adversaries.
QByteArray hashOf(const QByteArray& bytes)
{
    return QCryptographicHash::hash(bytes, QCryptographicHash::Md5);
}

/// Empty for a file that can't be read.
QByteArray hashOfFile(const QString& name)
{
    QFile file(name);
    QCryptographicHash hash(QCryptographicHash::Md5);
    return file.open(QIODevice::ReadOnly) && hash.addData(&file) ? hash.result() : QByteArray();
}

bool areSame(const QString& a, const QString& b)
{
    QFile first(a);
    QFile second(b);
    return first.open(QIODevice::ReadOnly) && second.open(QIODevice::ReadOnly) && first.size() == second.size() &&
           first.readAll() == second.readAll();
}

/// Whether a path in a journal stays within the project, whoever wrote the journal.
bool isInside(const QString& path)
{
    const QString clean = QDir::cleanPath(path);
    return !path.isEmpty() && QDir::isRelativePath(clean) && clean != QLatin1String("..") &&
           !clean.startsWith(QLatin1String("../"));
}

/// Replaces \p to, if it is there, in one step.
Done moveFile(const QString& from, const QString& to)
{
    std::error_code error;
    std::filesystem::rename(pathOf(from), pathOf(to), error);
    if (error)
        return failed(to, QStringLiteral("can't be replaced: %1").arg(QString::fromStdString(error.message())));
    return {};
}

/// On the disk when it returns.
Done writeFile(const QString& name, const QByteArray& bytes)
{
    QSaveFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit())
        return failed(name, QStringLiteral("can't be written: %1").arg(file.errorString()));
    return {};
}

} // namespace

tl::expected<std::unique_ptr<FileChanges>, QString> FileChanges::begin(const QString& folder)
{
    if (!QDir().mkpath(changesOf(folder)))
        return failed(changesOf(folder), QStringLiteral("can't be made"));
    std::unique_ptr<FileChanges> changes(new FileChanges(folder));
    if (!changes->m_lock->tryLock(0))
        return failed(folder, QStringLiteral("another program changes the project right now"));
    if (QFileInfo::exists(pendingOf(folder)))
        return failed(folder, QStringLiteral("a change before was not ended"));
    if (!QDir().mkpath(pendingOf(folder)))
        return failed(pendingOf(folder), QStringLiteral("can't be made"));
    changes->m_ownsPending = true;
    return changes;
}

FileChanges::FileChanges(const QString& folder)
    : m_folder(folder), m_lock(std::make_unique<QLockFile>(changesOf(folder) + QStringLiteral("/lock")))
{
    m_lock->setStaleLockTime(0); // however long it takes; a lock whose program is gone counts for nothing
}

FileChanges::~FileChanges()
{
    if (m_ownsPending)
        QDir(pendingOf(m_folder)).removeRecursively();
    m_lock->unlock();
    QDir().rmdir(changesOf(m_folder)); // where nothing is left in it
}

Done FileChanges::stage(const QString& path, const QByteArray& bytes)
{
    const QString pending = pendingOf(m_folder);
    const QString target = m_folder + QLatin1Char('/') + path;
    const std::size_t number = m_entries.size();
    if (auto kept = keepOld(target, oldFile(pending, number)); !kept)
        return kept;
    if (auto written = writeFile(newFile(pending, number), bytes); !written)
        return written;
    QFile::setPermissions(newFile(pending, number), QFile::permissions(target));
    m_entries.push_back({path, hashOf(bytes)});
    return {};
}

// A second name for the old file would cost nothing, but follow whoever edits the file in its place.
Done FileChanges::keepOld(const QString& target, const QString& old) const
{
    if (!QFile::copy(target, old))
        return failed(target, QStringLiteral("can't be kept in %1").arg(pendingOf(m_folder)));
    return {};
}

Done FileChanges::commit(const QString& title)
{
    return commit(Journal{title, false, m_entries});
}

Done FileChanges::commit(const Journal& journal)
{
    if (auto written = writeJournal(pendingOf(m_folder), journal); !written)
        return written;
    if (auto applied = apply(m_folder, journal); !applied) {
        m_ownsPending = takeBack(m_folder, journal);
        return applied;
    }
    m_ownsPending = false;
    return end(m_folder, journal);
}

Done FileChanges::writeJournal(const QString& changes, const Journal& journal)
{
    QJsonArray files;
    for (const Entry& entry : journal.entries)
        files.append(QJsonArray{entry.path, QString::fromLatin1(entry.after.toHex())});
    const QJsonObject stored{{QStringLiteral("title"), journal.title},
                             {QStringLiteral("undo"), journal.isUndo},
                             {QStringLiteral("files"), files}};
    return writeFile(journalFile(changes), QJsonDocument(stored).toJson());
}

tl::expected<FileChanges::Journal, QString> FileChanges::readJournal(const QString& changes)
{
    QFile file(journalFile(changes));
    if (!file.open(QIODevice::ReadOnly))
        return failed(file.fileName(), QStringLiteral("can't be read: %1").arg(file.errorString()));
    const QJsonObject stored = QJsonDocument::fromJson(file.readAll()).object();
    Journal journal{stored.value(QLatin1String("title")).toString(), stored.value(QLatin1String("undo")).toBool(), {}};
    const QJsonArray files = stored.value(QLatin1String("files")).toArray();
    for (const QJsonValue& each : files) {
        const QJsonArray entry = each.toArray();
        if (!isInside(entry.at(0).toString()))
            return failed(file.fileName(), QStringLiteral("names a file outside of the project"));
        journal.entries.push_back({entry.at(0).toString(), QByteArray::fromHex(entry.at(1).toString().toLatin1())});
    }
    return journal;
}

// May go on with what an interrupted one left: files that are in place already have no new one any more.
Done FileChanges::apply(const QString& folder, const Journal& journal)
{
    for (std::size_t number = 0; number < journal.entries.size(); ++number) {
        const QString staged = newFile(pendingOf(folder), number);
        const QString target = folder + QLatin1Char('/') + journal.entries[number].path;
        if (!QFileInfo::exists(staged))
            continue;
        if (!areSame(target, oldFile(pendingOf(folder), number)))
            return failed(target, QStringLiteral("was changed by somebody else meanwhile"));
        if (auto moved = moveFile(staged, target); !moved)
            return moved;
    }
    return {};
}

// What somebody else changed meanwhile stays. False when an old file could not be put back.
bool FileChanges::takeBack(const QString& folder, const Journal& journal)
{
    bool isDone = true;
    for (std::size_t number = 0; number < journal.entries.size(); ++number) {
        const QString target = folder + QLatin1Char('/') + journal.entries[number].path;
        const bool isInPlace = !QFileInfo::exists(newFile(pendingOf(folder), number));
        if (isInPlace && hashOfFile(target) == journal.entries[number].after)
            isDone &= moveFile(oldFile(pendingOf(folder), number), target).has_value();
    }
    return isDone;
}

Done FileChanges::end(const QString& folder, const Journal& journal)
{
    if (!QDir(lastOf(folder)).removeRecursively())
        return failed(lastOf(folder), QStringLiteral("can't be removed"));
    if (journal.isUndo) {
        QDir(pendingOf(folder)).removeRecursively();
        return {};
    }
    return moveFile(pendingOf(folder), lastOf(folder));
}

tl::expected<QString, QString> FileChanges::recover(const QString& folder)
{
    const QString pending = pendingOf(folder);
    if (!QFileInfo::exists(pending))
        return QString();
    FileChanges changes(folder);
    if (!changes.m_lock->tryLock(0))
        return failed(folder, QStringLiteral("another program changes the project right now"));
    if (!QFileInfo::exists(journalFile(pending))) {
        changes.m_ownsPending = true;
        return QStringLiteral("an interrupted change was forgotten: no file of the project was changed yet");
    }
    const auto journal = readJournal(pending);
    if (!journal)
        return tl::make_unexpected(journal.error());
    if (const auto applied = apply(folder, *journal); !applied) {
        changes.m_ownsPending = takeBack(folder, *journal);
        return QStringLiteral("an interrupted change was taken back (%1): %2").arg(journal->title, applied.error());
    }
    if (const auto ended = end(folder, *journal); !ended)
        return tl::make_unexpected(ended.error());
    return QStringLiteral("an interrupted change was completed: %1").arg(journal->title);
}

tl::expected<QString, QString> FileChanges::undo(const QString& folder)
{
    if (!QFileInfo::exists(journalFile(lastOf(folder))))
        return failed(folder, QStringLiteral("there is no change to take back"));
    const auto changes = begin(folder);
    return changes ? (*changes)->undoLast() : tl::make_unexpected(changes.error());
}

tl::expected<QString, QString> FileChanges::undoLast()
{
    const QString last = lastOf(m_folder);
    const auto journal = readJournal(last);
    if (!journal)
        return tl::make_unexpected(journal.error());
    for (const Entry& entry : journal->entries) {
        const QString target = m_folder + QLatin1Char('/') + entry.path;
        if (hashOfFile(target) != entry.after)
            return failed(target,
                          QStringLiteral("was changed since, so \"%1\" can't be taken back").arg(journal->title));
    }
    for (std::size_t number = 0; number < journal->entries.size(); ++number) {
        QFile old(oldFile(last, number));
        if (!old.open(QIODevice::ReadOnly))
            return failed(old.fileName(), QStringLiteral("can't be read: %1").arg(old.errorString()));
        if (auto staged = stage(journal->entries[number].path, old.readAll()); !staged)
            return tl::make_unexpected(staged.error());
    }
    if (auto done = commit(Journal{journal->title, true, m_entries}); !done)
        return tl::make_unexpected(done.error());
    return journal->title;
}
