#pragma once

#include "host/hostexport.h"
#include "host/runtime/runtimedatabase.h"
#include "host/sources/sample.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>
#include <tsl/robin_map.h>

#include <deque>
#include <memory>
#include <vector>

class JournalRow;

/// The file in which a runtime database outlives the program, even one that is killed: the list of points, and the
/// statistics and last values of each object.
///
/// Samples go into a journal first, one row a tick; the objects' states follow later, a few at a time, and the journal
/// rows behind them go. What was not committed is lost when the program is killed; when the whole machine stops, the
/// newest commits may be lost too, and what is left is whole.
///
/// One program at a time: open(), importPoints() as needed, load() once all objects are added, and then with every tick
/// append() what was taken, commit() and fold(). Nothing but open() may be called while it is closed. GUI thread only.
class KORVANE_HOST_EXPORT RuntimeStore
{
public:
    RuntimeStore();
    ~RuntimeStore();
    Q_DISABLE_COPY(RuntimeStore)

    /// Opens the SQLite file of that name, or makes a new one; what was open is closed.
    /// \returns the reason, naming the file: it can't be read or written; it is no database, or that of another
    /// program; a newer version of this program wrote it.
    [[nodiscard]] tl::expected<void, QString> open(const QString& fileName);

    /// Closes the file; what waits for a commit is lost.
    void close();
    bool isOpen() const { return !m_connection.isEmpty(); }
    QString fileName() const { return m_fileName; }

    /// Makes \p points the stored list. Rows that are the same already are not written. The statistics of objects that
    /// leave the list are kept for their return.
    [[nodiscard]] tl::expected<void, QString> importPoints(const std::vector<RuntimeDatabase::Object>& points);

    /// The stored list in its order.
    [[nodiscard]] tl::expected<std::vector<RuntimeDatabase::Object>, QString> loadPoints() const;

    /// Brings the objects of \p database to where the last commit left them. Values count from then on only when they
    /// have a new sample, and are Stale until then. Call it once after open(), before the first sample.
    /// \returns what could not be read and was skipped, a text each.
    QStringList load(RuntimeDatabase& database);

    /// Notes samples for the next commit, in the order in which the database took them.
    void append(const std::vector<Sample>& samples);
    /// Notes that the database was told of an object's failing or returning communication.
    void appendCommunicationFailed(ObjectKey object, bool failed, qint64 timeMs);
    /// How many notes wait for the next commit.
    std::size_t waiting() const;

    /// Writes what waits in one transaction, and \p nowMs as the time up to which this program is known to have run.
    /// Worth a call without anything waiting, for the sake of that time.
    /// \returns the reason when it failed; everything goes on waiting then.
    [[nodiscard]] tl::expected<void, QString> commit(qint64 nowMs);

    /// Writes the states of up to \p maxPoints objects, those first that have gone unwritten longest, and drops the
    /// journal rows that no object needs any more. Does nothing while notes wait for a commit, or before load().
    /// What \p database took must have been appended.
    /// \returns how many objects it went through, or the reason why it failed.
    [[nodiscard]] tl::expected<int, QString> fold(const RuntimeDatabase& database, int maxPoints);

    /// How many objects have changed since their state was written.
    std::size_t unfolded() const { return m_changed.size(); }

private:
    /// An object and the first journal row that it needs.
    struct Changed
    {
        quint64 object;
        qint64 row;
    };

    tl::expected<void, QString> prepare();
    tl::unexpected<QString> failure(const QString& what) const;
    void markChanged(quint64 object, qint64 row);

    QString m_connection; ///< name of the Qt connection; empty while closed
    QString m_fileName;
    std::unique_ptr<JournalRow> m_notes;
    bool m_isLoaded = false;
    qint64 m_lastRow = 0;          ///< of the journal; rows are never numbered twice
    qint64 m_firstRowOfRun = 1;    ///< tells the runs of the program apart
    std::deque<Changed> m_changed; ///< in order of the rows
    tsl::robin_map<quint64, bool> m_isChanged;
};
