#include "host/runtime/bytes_p.h"
#include "host/runtime/sql_p.h"
#include "host/runtime/storeloader_p.h"

#include <algorithm>

StoreLoader::StoreLoader(const QSqlDatabase& file, RuntimeDatabase& database) : m_file(file), m_database(database)
{
}

void StoreLoader::load()
{
    readRuns();
    readStates();
    readJournal();
    for (const auto& [object, progress] : m_progress)
        endRun(object, runOf(progress.replayed));
}

void StoreLoader::readRuns()
{
    QSqlQuery query(m_file);
    if (!query.exec(QStringLiteral("SELECT first_row, last_tick_ms FROM runs ORDER BY first_row")))
        m_problems.append(QStringLiteral("the times of earlier runs could not be read: %1").arg(reasonOf(query)));
    while (query.next())
        m_runs.push_back({query.value(0).toLongLong(), query.value(1).toLongLong()});
}

void StoreLoader::readStates()
{
    QSqlQuery query(m_file);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT object, journal_row, state FROM states")))
        m_problems.append(QStringLiteral("the stored statistics could not be read: %1").arg(reasonOf(query)));
    while (query.next()) {
        const auto object = query.value(0).toULongLong();
        const ObjectKey key = keyOfStored(object);
        const RuntimeDatabase::Object* known = m_database.object(key);
        if (!known)
            continue;
        QByteArray state = query.value(2).toByteArray();
        if (unseal(state) && m_database.restore(key, state)) {
            const qint64 row = query.value(1).toLongLong();
            m_progress[object] = {row, row};
        } else {
            m_problems.append(QStringLiteral("%1 (id %2): the stored statistics are damaged and begin anew")
                                  .arg(known->name, QString::number(key.id)));
        }
    }
}

void StoreLoader::readJournal()
{
    QSqlQuery query(m_file);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT journal_row, notes FROM journal ORDER BY journal_row")))
        m_problems.append(QStringLiteral("the journal could not be read: %1").arg(reasonOf(query)));
    while (query.next()) {
        const qint64 row = query.value(0).toLongLong();
        if (const auto notes = JournalRow::read(query.value(1).toByteArray()))
            replay(row, *notes);
        else
            m_problems.append(QStringLiteral("journal row %1 is damaged: its samples are missing").arg(row));
    }
    if (query.lastError().isValid() && m_problems.isEmpty())
        m_problems.append(QStringLiteral("the journal could not be read to its end: %1").arg(reasonOf(query)));
}

void StoreLoader::replay(qint64 row, const std::vector<JournalRow::Note>& notes)
{
    const Run* run = runOf(row);
    for (const JournalRow::Note& note : notes) {
        const Sample& sample = note.sample;
        if (!m_database.object(sample.object))
            continue;
        const quint64 object = storedKey(sample.object);
        Progress& progress = m_progress[object];
        if (row <= progress.state)
            continue;
        if (row != progress.replayed) {
            if (const Run* before = runOf(progress.replayed); before != run)
                endRun(object, before);
            progress.replayed = row;
            m_replayed.push_back({object, row});
        }
        if (note.isCommunication)
            m_database.setCommunicationFailed(sample.object, sample.value != 0, sample.timeMs);
        else
            m_database.takeSample(sample);
    }
}

/// The run that wrote a row; null for one that no run is known of.
const StoreLoader::Run* StoreLoader::runOf(qint64 row) const
{
    const auto behind = std::upper_bound(m_runs.begin(), m_runs.end(), row,
                                         [](qint64 wanted, const Run& run) { return wanted < run.firstRow; });
    return behind == m_runs.begin() ? nullptr : &*std::prev(behind);
}

void StoreLoader::endRun(quint64 object, const Run* run)
{
    // What was entered by hand holds until something else is entered.
    const RuntimeDatabase::Object* found = m_database.object(keyOfStored(object));
    if (found && found->control.kind == ControlSetting::Kind::Manual)
        return;
    // Without its run, nothing says how long the value held: not at all, then.
    m_database.interrupt(keyOfStored(object), run ? run->lastTickMs : std::numeric_limits<qint64>::min());
}
