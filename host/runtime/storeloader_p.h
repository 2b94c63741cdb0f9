#pragma once

#include "host/runtime/journalrow_p.h"
#include "host/runtime/runtimedatabase.h"

#include <QSqlDatabase>
#include <QStringList>

#include <tsl/robin_map.h>

#include <vector>

/// Brings a runtime database to where a store's file left it: the states first, then the journal rows behind them.
///
/// The time between two runs of the program is known to none of them. So a value of one run ends with that run's last
/// tick, before the first sample of a later run and at the end.
class StoreLoader
{
public:
    /// An object that a journal row behind its state tells of.
    struct Replayed
    {
        quint64 object;
        qint64 row;
    };

    StoreLoader(const QSqlDatabase& file, RuntimeDatabase& database);

    void load();
    const QStringList& problems() const { return m_problems; }
    /// In order of the rows; the same object several times.
    const std::vector<Replayed>& replayed() const { return m_replayed; }

private:
    struct Run
    {
        qint64 firstRow;
        qint64 lastTickMs;
    };
    /// What is known of an object: up to which row its stored state goes, and up to which it was replayed.
    struct Progress
    {
        qint64 state = 0;
        qint64 replayed = 0;
    };

    void readRuns();
    void readStates();
    void readJournal();
    void replay(qint64 row, const std::vector<JournalRow::Note>& notes);
    const Run* runOf(qint64 row) const;
    void endRun(quint64 object, const Run* run);

    QSqlDatabase m_file;
    RuntimeDatabase& m_database;
    QStringList m_problems;
    std::vector<Run> m_runs;
    tsl::robin_map<quint64, Progress> m_progress;
    std::vector<Replayed> m_replayed;
};
