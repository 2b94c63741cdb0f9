#pragma once

#include "host/runtime/pointcolumns_p.h"
#include "host/sources/csvreader.h"

#include <QString>

#include <array>
#include <chrono>
#include <optional>
#include <string_view>

/// The line of a list of points that was read last, by columns.
///
/// Each function that reads leaves what it would fill as it is where the field is empty or the column is missing.
class PointLine
{
public:
    using Column = PointColumns::Column;

    static constexpr int longestSeconds = 1000000000; ///< their milliseconds fit
    static constexpr std::size_t noField = std::string_view::npos;

    /// Why a line is left out, and the field that shows it, if it is one.
    struct Refusal
    {
        QString text;
        std::size_t field = noField;
    };
    using Refused = std::optional<Refusal>;

    /// \param record where lines are read; must outlive this
    explicit PointLine(const CsvReader& record);

    /// Tells where a column stands.
    /// \returns false when it stands elsewhere already, where it is left.
    bool setField(Column column, std::size_t field);
    bool hasColumn(Column column) const { return m_fields[column] != noField; }

    /// The field as it stands; empty where the line has no such field.
    std::string_view textOf(Column column) const;
    QString lowerCaseOf(Column column) const;
    Refusal refusal(Column column, const QString& text) const { return {text, m_fields[column]}; }

    Refused readText(Column column, QString& text) const;
    Refused readNumber(Column column, double& number) const;
    /// From 0 on.
    Refused readPositive(Column column, double& number) const;
    Refused readInteger(Column column, int highest, int& number) const;
    Refused readFlag(Column column, bool& flag) const;
    /// Seconds, fractions allowed.
    Refused readDuration(Column column, std::chrono::milliseconds& duration, int mostSeconds = longestSeconds) const;

    /// A whole number within bounds; nothing for other text.
    static std::optional<int> wholeNumber(std::string_view text, int lowest, int highest);

private:
    const CsvReader& m_record;
    std::array<std::size_t, PointColumns::names.size()> m_fields = {}; ///< by column
};
