#pragma once

#include "host/hostexport.h"
#include "host/sources/columnmap.h"
#include "host/sources/recordedtime.h"
#include "host/sources/sample.h"

#include <QString>
#include <QStringList>
#include <QTimeZone>

#include <tl/expected.hpp>
#include <tsl/robin_map.h>

#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

/// Turns the records of a recording into samples.
///
/// The header names the columns: a column "datetime", "time" or "timestamp" (in any case) holds the time. With columns
/// "name" and "value" the recording is a narrow one: each row holds the value of the point that it names and, in a column
/// "quality", if there is one, the ValueMark::Quality bits as a decimal number. Else it is wide: every other column holds
/// the values of the points that it feeds (ColumnMap), and what feeds none is not read. An empty field is no value.
class KORVANE_HOST_EXPORT RecordingTable
{
public:
    /// What is wrong with a row.
    struct Problem
    {
        static constexpr std::size_t wholeRow = std::numeric_limits<std::size_t>::max();

        QString text;
        std::size_t field = wholeRow; ///< that shows it
    };

    enum class TimeColumn {
        Read,    ///< there must be one
        Ignored, ///< samples have time 0
    };

    RecordingTable(ColumnMap map, const QTimeZone& zone, TimeColumn timeColumn);

    /// Begins a recording with the fields of its header. Where a time column is ignored, it takes a column that feeds a
    /// point to tell a header.
    /// \returns why no row can be read.
    [[nodiscard]] tl::expected<void, QString> readHeader(const std::vector<std::string_view>& names, char separator);
    /// Forgets the time of the row before: the next one may have any.
    void rewind();

    /// Appends the samples of one row.
    /// \returns the row's time; or what is wrong with it, and then nothing was appended. Wrong is another number of
    /// fields than the header's, no time or one before the last row's, no number or no quality.
    [[nodiscard]] tl::expected<qint64, Problem> appendRow(const std::vector<std::string_view>& fields,
                                                          std::vector<Sample>& samples);

    /// The text for a problem in line \p line of \p file.
    QString problemText(const QString& file, qint64 line, const Problem& problem) const;
    /// The objects that rows can hold samples of.
    std::vector<ObjectKey> objects() const;
    /// Takes what was found to feed no point since the last call: columns of the header, names of a narrow recording's
    /// rows, each once.
    QStringList takeUnknownNames();

private:
    struct NameHash
    {
        using is_transparent = void;
        std::size_t operator()(std::string_view name) const noexcept { return std::hash<std::string_view>()(name); }
    };
    struct WideTarget
    {
        std::size_t field = 0;
        ColumnMap::Target target;
    };

    void mapColumns(const std::vector<std::string_view>& names);
    tl::expected<qint64, Problem> readTime(std::string_view text);
    tl::expected<void, Problem> appendWide(const std::vector<std::string_view>& fields, qint64 timeMs,
                                           std::vector<Sample>& samples) const;
    tl::expected<void, Problem> appendNarrow(const std::vector<std::string_view>& fields, qint64 timeMs,
                                             std::vector<Sample>& samples);
    const std::vector<ColumnMap::Target>& targetsOfName(std::string_view name);

    ColumnMap m_map;
    RecordedTime m_time;
    TimeColumn m_timeColumn;
    qint64 m_lastTimeMs = std::numeric_limits<qint64>::min();

    QStringList m_names;
    bool m_hasDecimalComma = false;
    bool m_isNarrow = false;
    std::size_t m_timeField = 0;
    std::size_t m_nameField = 0;
    std::size_t m_valueField = 0;
    std::size_t m_qualityField = 0;
    std::vector<WideTarget> m_targets; ///< in the order of fields
    /// What names of a narrow recording feed, filled as they come.
    tsl::robin_map<std::string, std::vector<ColumnMap::Target>, NameHash, std::equal_to<>> m_targetsOfNames;
    QStringList m_unknownNames;
};
