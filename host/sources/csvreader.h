#pragma once

#include "host/hostexport.h"

#include <QString>
#include <QtGlobal>

#include <cstddef>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// Splits separated text (RFC 4180) that arrives in pieces of any size into records and their fields.
///
/// Append bytes, then take records with next() until it needs more. How the bytes are cut changes nothing. Nothing is
/// copied for a record: its fields are views of the reader's buffer, valid until the next call of append() or next().
///
/// - The separator, comma, semicolon or tab, is the most frequent of them in the first record; with none, a comma.
/// - Lines end with LF or CRLF. Empty lines and lines that begin with "#" are no records, a byte order mark is dropped.
/// - Blanks around a field do not belong to it, but inside of quotes they do. A quote within an unquoted field is text.
class KORVANE_HOST_EXPORT CsvReader
{
public:
    /// Whether a record may go on behind its line inside of quotes. Where it may not, a quote that is never closed
    /// costs one line at once, so readers of numbers do without.
    enum class LineBreaks { EndRecords, AllowedInQuotes };

    enum class Result {
        Record,     ///< fields() are the next record's
        Skipped,    ///< a malformed record was left out: problem() says why, line() where
        NeedsBytes, ///< append() or finish()
        Ended,      ///< finished, and every record was taken
    };

    /// A longer record is malformed; so memory stays bounded whatever comes.
    static constexpr std::size_t maxRecordBytes = std::size_t(1) << 20;

    explicit CsvReader(LineBreaks lineBreaks = LineBreaks::EndRecords);

    void append(const char* bytes, std::size_t count);
    /// No bytes follow; the last line may lack its end.
    void finish();

    [[nodiscard]] Result next();

    const std::vector<std::string_view>& fields() const { return m_fields; }
    /// Line of the record taken last, from 1; of its first line, if it has several.
    qint64 line() const { return m_line; }
    /// What is wrong with the record that was skipped.
    QString problem() const { return m_problem; }
    /// NUL until the first record was taken.
    char separator() const { return m_separator; }
    /// Tells the separator from the next record again.
    void forgetSeparator() { m_separator = '\0'; }

private:
    enum class Split { Done, NeedsBytes, OpenQuote, TextBehindQuote, TooLong };

    bool dropByteOrderMark();
    bool dropRestOfLine();
    std::size_t findLineEnd(std::size_t from) const;
    bool isNoRecord(std::size_t lineEnd) const;
    Split split(std::size_t lineEnd);
    Split splitQuoted(std::size_t& at, std::size_t& end, std::size_t& lineEnd);
    void take(std::size_t lineEnd, qint64 lines);
    Result skip(const QString& problem, std::size_t lineEnd);

    LineBreaks m_lineBreaks;
    char m_separator = '\0';
    bool m_isBegun = false;
    bool m_isFinished = false;
    bool m_isDroppingLine = false; ///< the rest of a line that was too long
    std::string m_buffer;
    std::size_t m_begin = 0;   ///< of what was not taken yet
    std::size_t m_scanned = 0; ///< up to here there is no line end, from m_begin
    qint64 m_line = 0;
    qint64 m_nextLine = 1;
    std::size_t m_splitEnd = 0; ///< end of the last line that the record takes
    qint64 m_splitLines = 1;
    std::vector<std::string_view> m_fields;
    std::vector<std::size_t> m_escaped; ///< fields that hold doubled quotes
    QString m_problem;
};

/// A finite decimal number with an optional sign and exponent; with \p hasDecimalComma a comma may stand for the point.
/// Nothing may stand around it.
KORVANE_HOST_EXPORT std::optional<double> csvNumber(std::string_view text, bool hasDecimalComma);

/// Whether a comma can be a decimal comma in text that is separated by \p separator.
constexpr bool csvHasDecimalComma(char separator) noexcept
{
    return separator != ',';
}

/// A field in quotes for a message, shortened when it is long; bytes that are no UTF-8 show as replacement characters.
KORVANE_HOST_EXPORT QString csvQuoted(std::string_view text);

/// Where something stands, for a message: "FILE, line 12", and "FILE, line 12, column 3 (NAME)" with a field, counted
/// from 0, and the header's name of it.
KORVANE_HOST_EXPORT QString csvPlace(const QString& file, qint64 line);
KORVANE_HOST_EXPORT QString csvPlace(const QString& file, qint64 line, std::size_t field, const QString& name);
