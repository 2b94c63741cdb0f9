#pragma once

#include "host/hostexport.h"
#include "host/sources/csvfile.h"
#include "host/sources/recordingoptions.h"
#include "host/sources/recordingtable.h"
#include "host/sources/sourcepoint.h"
#include "host/sources/valuesource.h"

#include <QString>

#include <tl/expected.hpp>

#include <memory>
#include <optional>
#include <vector>

class ProblemTexts;

/// Plays a recording from a file, row by row as rows become due; the file may be of any length.
///
/// RecordingTable says how a recording looks. By its rows' times, a row is due when the system's clock reaches its time,
/// so that clock should start at firstTimeMs(). By arrival, it is due as long after the start as it is after the first
/// row, and has that time. A recording that begins again goes on in time: the first row follows the last one at the
/// distance of the last two rows with different times, or a second.
///
/// A malformed row is left out, told by problemFound() with file, line and column, and counted, on the first pass; after
/// twenty texts the others are only counted. A file that cannot be read, or is gone, makes the source fail; it goes on
/// behind the last line it read as soon as a call of advance() can read the file again. A recording takes no commands.
class KORVANE_HOST_EXPORT RecordingSource : public ValueSource
{
    Q_OBJECT

public:
    /// Most rows and fields that one call of advance() reads; what is due beyond them comes with the next.
    static constexpr int mostRows = 50000;
    static constexpr std::size_t mostFields = 1000000;

    /// Opens \p file and reads on to its first row.
    /// \param points the points that it may feed
    RecordingSource(const QString& file, const std::vector<SourcePoint>& points, const RecordingOptions& options,
                    QObject* parent = nullptr);
    ~RecordingSource() override;

    QString description() const override;
    /// Those of the columns, once the header was read.
    std::vector<ObjectKey> objects() const override;
    void start(qint64 nowMs) override;
    void advance(qint64 nowMs) override;
    /// Opens the file anew and goes on behind the last line read, of which there may be more by now.
    /// \returns why it can't be opened; the source has failed then, unless it was not started.
    tl::expected<void, QString> reconnect(qint64 nowMs) override;

    /// Goes on with the first row at or after \p timeMs, a time of the recording: of a looped one's later passes too,
    /// counted on from the first pass. The rows before it are read and left out by the next calls of advance(), the file
    /// from its beginning when it lies behind; where there is none, the recording ends. The system's clock is the
    /// caller's to set (ReplayClock::seek()).
    /// \returns false, and does nothing, for a recording by arrival, before start() and for a time after the year 9999.
    bool seek(qint64 timeMs);

    /// Time of the first row, milliseconds since 1970-01-01 UTC; nothing when there is none or the file cannot be read.
    std::optional<qint64> firstTimeMs() const { return m_firstTimeMs; }
    /// Malformed rows so far.
    qint64 problemCount() const;

private:
    /// What reading one record led to.
    enum class Step { Row, Nothing, End };
    struct Budget;

    void restart();
    tl::expected<void, QString> makeReadable();
    tl::expected<void, QString> open();
    tl::expected<void, QString> readHeader();
    tl::expected<bool, QString> readRow(Budget& budget);
    tl::expected<Step, QString> readRecord(Budget& budget);
    tl::expected<bool, QString> beginAgain();
    void takeRow(qint64 timeMs);
    void skipPasses();
    bool isAhead(qint64 timeMs) const;
    tl::expected<void, QString> collectDue(qint64 nowMs);
    void tellProblems();

    QString m_path;
    RecordingOptions m_options;
    CsvFile m_file;
    ColumnMap m_map;
    std::optional<RecordingTable> m_table; ///< once the column map was read
    std::unique_ptr<ProblemTexts> m_problems;
    std::unique_ptr<ProblemTexts> m_unknownNames;
    QStringList m_notes; ///< other texts that wait to be told

    bool m_isStarted = false;
    bool m_isAtEnd = false;
    qint64 m_lastLine = 0;     ///< read last on this pass
    qint64 m_furthestLine = 0; ///< read last on any pass: problems up to here are known
    std::optional<qint64> m_firstTimeMs;
    qint64 m_lastTimeMs = 0; ///< of the row read last
    qint64 m_stepMs = 1000;
    qint64 m_rowsOfPass = 0;
    qint64 m_shiftMs = 0;              ///< from a row's time to when it is due
    std::optional<qint64> m_nextDueMs; ///< when the next row is due, whatever its time
    std::optional<qint64> m_soughtMs;  ///< rows due before are left out
    bool m_hasRow = false;             ///< whether m_row waits to become due
    std::vector<Sample> m_row;
    std::vector<Sample> m_batch;
};
