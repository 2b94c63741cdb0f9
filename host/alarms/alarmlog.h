#pragma once

#include "host/alarms/alarmmanager.h"
#include "host/alarms/alarmtransition.h"
#include "host/hostexport.h"

#include <QString>

#include <tl/expected.hpp>

#include <deque>
#include <limits>
#include <utility>
#include <vector>

/// The alarm and event log: every change of an alarm and every event, in the order in which they came, in an SQLite file.
///
/// Lines are only ever added; the file itself refuses to change or delete one. Beside them it keeps what stands, so that
/// a program that was killed goes on with the alarms it had: what was committed is there. GUI thread only.
class KORVANE_HOST_EXPORT AlarmLog
{
public:
    /// Which lines are read.
    struct Query
    {
        qint64 fromMs = std::numeric_limits<qint64>::min(); ///< first time, since 1970-01-01 UTC
        qint64 toMs = std::numeric_limits<qint64>::max();   ///< last time, included
        ObjectKey object = {};                              ///< an invalid one for all
        int most = 1000;                                    ///< newest lines only
    };

    AlarmLog() = default;
    ~AlarmLog();
    Q_DISABLE_COPY(AlarmLog)

    /// Opens the SQLite file, which others may use too, and makes what is missing in it; what was open is closed.
    /// \returns the reason, naming the file.
    [[nodiscard]] tl::expected<void, QString> open(const QString& fileName);
    /// Keeps the log in memory, for a system whose history is not this plant's.
    [[nodiscard]] tl::expected<void, QString> openInMemory();
    void close();
    bool isOpen() const { return !m_connection.isEmpty(); }

    /// Notes a line for the next commit. A log that is not open takes none.
    void append(const AlarmTransition& transition);
    /// Notes why the alarms of an object are kept from the operator now.
    void appendExclusion(ObjectKey object, const AlarmManager::Exclusion& exclusion);
    /// How many notes wait for the next commit.
    std::size_t waiting() const { return m_lines.size() + m_exclusions.size(); }

    /// Writes what waits in one transaction, of the lines the oldest \p mostLines; does nothing when nothing waits.
    /// \returns the reason when it failed; everything goes on waiting then.
    [[nodiscard]] tl::expected<void, QString> commit(std::size_t mostLines = std::numeric_limits<std::size_t>::max());

    /// Lines that were committed, newest first.
    tl::expected<std::vector<AlarmTransition>, QString> read(const Query& query) const;

    /// Gives \p manager what stood when the last commit was made.
    [[nodiscard]] tl::expected<void, QString> restore(AlarmManager& manager) const;

private:
    tl::expected<void, QString> prepare();
    tl::expected<void, QString> writeLines(std::size_t count);
    tl::expected<void, QString> writeExclusions();
    tl::unexpected<QString> failure(const QString& what) const;

    QString m_connection; ///< name of the Qt connection; empty while closed
    QString m_fileName;
    std::deque<AlarmTransition> m_lines;
    std::vector<std::pair<ObjectKey, AlarmManager::Exclusion>> m_exclusions;
};
