#pragma once

#include "host/hostexport.h"
#include "host/sources/sample.h"
#include "host/sources/sourcepoint.h"

#include <QByteArray>
#include <QSaveFile>
#include <QString>

#include <tl/expected.hpp>

#include <optional>
#include <vector>

/// Writes samples as a recording that RecordingSource plays back, under the names of the points and in UTC.
///
/// It has a row at each whole second for which samples came since the row before: with the newest value of every point at
/// that time, and nothing for a point that has none or ValueMark::Invalid. The file appears under its name, in place of
/// one that was there, only when it is finished.
class KORVANE_HOST_EXPORT RecordingWriter
{
    Q_DISABLE_COPY(RecordingWriter)

public:
    RecordingWriter(const QString& path, const std::vector<SourcePoint>& points);
    /// Drops what was not finished.
    ~RecordingWriter();

    /// \returns the reason, naming the file, when it cannot be created.
    [[nodiscard]] tl::expected<void, QString> open();
    /// Takes samples in the order of their times; those of other objects are ignored. A sample from before the last row
    /// counts for the next one.
    void write(const std::vector<Sample>& samples);
    /// Ends what open() began.
    /// \returns the reason, naming the file, when not all of it could be written; then nothing of it stays.
    [[nodiscard]] tl::expected<void, QString> finish();

private:
    struct Column
    {
        ObjectKey object;
        QByteArray text; ///< of the newest value
    };

    Column* findColumn(ObjectKey object);
    void writeRow();

    QSaveFile m_file;
    QByteArray m_header;
    std::vector<Column> m_columns;       ///< in the order of the points
    std::vector<std::size_t> m_byObject; ///< columns sorted by their objects
    std::optional<qint64> m_row;         ///< the second whose row is being filled
    QByteArray m_line;
};
