#pragma once

#include "host/hostexport.h"
#include "host/sources/csvreader.h"
#include "host/sources/recordingoptions.h"
#include "host/sources/recordingtable.h"
#include "host/sources/sourcepoint.h"
#include "host/sources/valuesource.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

class ProblemTexts;
class QSocketNotifier;

/// Delivers a recording that another program writes to a pipe, as it comes: all samples of one read at once.
///
/// RecordingTable says how it looks; by arrival, a time column is not read and may be missing. Lines before a usable
/// header are dropped, and until it comes the source has failed. Malformed rows are left out, told and counted like those
/// of RecordingSource; the end of the input is the end of the recording. Needs an event loop, and a system whose pipes can
/// be waited for: elsewhere (Windows) it fails.
class KORVANE_HOST_EXPORT StreamSource : public ValueSource
{
    Q_OBJECT

public:
    /// Milliseconds since 1970-01-01 UTC of the system's clock.
    using Clock = std::function<qint64()>;

    static constexpr int standardInput = 0;

    /// \param descriptor open for reading; stays the caller's, who closes it after the source
    /// \param points the points that it may feed
    /// \param options a stream cannot begin again, whatever they say
    /// \param clock what samples by arrival take their time from
    StreamSource(int descriptor, const std::vector<SourcePoint>& points, const RecordingOptions& options, Clock clock,
                 QObject* parent = nullptr);
    ~StreamSource() override;

    QString description() const override;
    /// Those of the columns, once the header came.
    std::vector<ObjectKey> objects() const override;
    void start(qint64 nowMs) override;
    /// Delivers nothing; tries again to read a column map that was missing.
    void advance(qint64 nowMs) override;

    /// Malformed rows so far.
    qint64 problemCount() const;

private:
    void listen();
    void readAvailable();
    void readRecords();
    void readHeader();
    void readRow();
    void end(const QString& failure);
    void tellProblems();

    int m_descriptor;
    RecordingOptions m_options;
    Clock m_clock;
    ColumnMap m_map;
    std::optional<RecordingTable> m_table; ///< once the column map was read
    CsvReader m_reader;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::unique_ptr<ProblemTexts> m_problems;
    std::unique_ptr<ProblemTexts> m_unknownNames;
    QStringList m_notes; ///< other texts that wait to be told
    bool m_isStarted = false;
    bool m_hasHeader = false;
    qint64 m_arrivalMs = 0; ///< of what is being read
    std::vector<char> m_bytes;
    std::vector<Sample> m_batch;
};
