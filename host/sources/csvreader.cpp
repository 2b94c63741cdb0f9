#include "host/sources/csvreader.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>

namespace {

constexpr std::size_t nowhere = std::string::npos;

bool isBlank(char character, char separator)
{
    return character == ' ' || (character == '\t' && separator != '\t');
}

/// The most frequent separator of a line, those inside of quotes not counted.
char separatorOf(std::string_view line)
{
    constexpr std::array<char, 3> separators = {',', ';', '\t'};
    std::array<int, 3> counts = {};
    bool isInQuotes = false;
    for (const char character : line) {
        if (character == '"')
            isInQuotes = !isInQuotes;
        for (std::size_t i = 0; i < separators.size() && !isInQuotes; ++i)
            counts[i] += character == separators[i] ? 1 : 0;
    }
    return separators[std::size_t(std::max_element(counts.begin(), counts.end()) - counts.begin())];
}

} // namespace

CsvReader::CsvReader(LineBreaks lineBreaks) : m_lineBreaks(lineBreaks)
{
}

void CsvReader::append(const char* bytes, std::size_t count)
{
    m_fields.clear();
    if (m_begin > 0) {
        m_buffer.erase(0, m_begin);
        m_scanned -= m_begin;
        m_begin = 0;
    }
    m_buffer.append(bytes, count);
}

void CsvReader::finish()
{
    m_isFinished = true;
}

CsvReader::Result CsvReader::next()
{
    m_fields.clear();
    if (!m_isBegun && !dropByteOrderMark())
        return Result::NeedsBytes;
    if (m_isDroppingLine && !dropRestOfLine())
        return m_isFinished ? Result::Ended : Result::NeedsBytes;
    while (m_begin < m_buffer.size()) {
        const std::size_t lineEnd = findLineEnd(m_scanned);
        if (lineEnd == nowhere) {
            m_scanned = m_buffer.size();
            if (m_buffer.size() - m_begin <= maxRecordBytes)
                return Result::NeedsBytes;
            m_isDroppingLine = true;
            return skip(QStringLiteral("the line is longer than 1 MB"), m_buffer.size());
        }
        if (lineEnd - m_begin > maxRecordBytes)
            return skip(QStringLiteral("the line is longer than 1 MB"), lineEnd);
        if (isNoRecord(lineEnd)) {
            take(lineEnd, 1);
            continue;
        }
        switch (split(lineEnd)) {
        case Split::Done:
            take(m_splitEnd, m_splitLines);
            return Result::Record;
        case Split::NeedsBytes:
            return Result::NeedsBytes;
        case Split::OpenQuote:
            return skip(QStringLiteral("a quote is not closed"), lineEnd);
        case Split::TextBehindQuote:
            return skip(QStringLiteral("text stands behind a closing quote"), lineEnd);
        case Split::TooLong:
            return skip(QStringLiteral("a quote is not closed within 1 MB"), lineEnd);
        }
    }
    return m_isFinished ? Result::Ended : Result::NeedsBytes;
}

/// \returns false while too few bytes are there to tell.
bool CsvReader::dropByteOrderMark()
{
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    const std::string_view begin = std::string_view(m_buffer).substr(0, mark.size());
    if (begin.size() < mark.size() && !m_isFinished && begin == mark.substr(0, begin.size()))
        return false;
    m_begin = m_scanned = begin == mark ? mark.size() : 0;
    m_isBegun = true;
    return true;
}

/// \returns false while the line's end is not there.
bool CsvReader::dropRestOfLine()
{
    const std::size_t lineEnd = m_buffer.find('\n', m_begin);
    m_begin = m_scanned = lineEnd == nowhere ? m_buffer.size() : lineEnd + 1;
    m_isDroppingLine = lineEnd == nowhere;
    return !m_isDroppingLine;
}

/// \returns where the line feed stands, the buffer's end for a last line without one, or nowhere.
std::size_t CsvReader::findLineEnd(std::size_t from) const
{
    const std::size_t lineEnd = m_buffer.find('\n', from);
    return lineEnd == nowhere && m_isFinished ? m_buffer.size() : lineEnd;
}

bool CsvReader::isNoRecord(std::size_t lineEnd) const
{
    const std::string_view line(m_buffer.data() + m_begin, lineEnd - m_begin);
    return line.empty() || line == "\r" || line.front() == '#';
}

/// Goes on behind the line that ends at \p lineEnd.
void CsvReader::take(std::size_t lineEnd, qint64 lines)
{
    m_line = m_nextLine;
    m_nextLine += lines;
    m_begin = m_scanned = std::min(lineEnd + 1, m_buffer.size());
}

CsvReader::Result CsvReader::skip(const QString& problem, std::size_t lineEnd)
{
    m_fields.clear();
    m_problem = problem;
    take(lineEnd, 1);
    return Result::Skipped;
}

/// Splits the record that begins at m_begin into m_fields. The buffer is changed only when all of it is there.
CsvReader::Split CsvReader::split(std::size_t lineEnd)
{
    m_fields.clear();
    m_escaped.clear();
    m_splitLines = 1;
    const auto withoutReturn = [this](std::size_t end) {
        return end > m_begin && m_buffer[end - 1] == '\r' ? end - 1 : end;
    };
    std::size_t at = m_begin;
    std::size_t end = withoutReturn(lineEnd);
    if (m_separator == '\0')
        m_separator = separatorOf(std::string_view(m_buffer.data() + at, end - at));

    const char* const data = m_buffer.data();
    while (true) {
        while (at < end && isBlank(data[at], m_separator))
            ++at;
        if (at < end && data[at] == '"') {
            const Split quoted = splitQuoted(at, end, lineEnd);
            if (quoted != Split::Done) {
                m_fields.clear();
                return quoted;
            }
        } else {
            const void* found = std::memchr(data + at, m_separator, end - at);
            const std::size_t fieldEnd = found ? std::size_t(static_cast<const char*>(found) - data) : end;
            std::size_t textEnd = fieldEnd;
            while (textEnd > at && isBlank(data[textEnd - 1], m_separator))
                --textEnd;
            m_fields.emplace_back(data + at, textEnd - at);
            at = fieldEnd;
        }
        if (at == end)
            break;
        ++at; // the separator
    }

    for (const std::size_t field : m_escaped) {
        char* const begin = m_buffer.data() + (m_fields[field].data() - data);
        char* to = begin;
        for (const char* from = begin; from < begin + m_fields[field].size(); ++from) {
            *to++ = *from;
            if (*from == '"')
                ++from;
        }
        m_fields[field] = std::string_view(begin, std::size_t(to - begin));
    }
    m_splitEnd = lineEnd;
    return Split::Done;
}

/// Takes the quoted field whose opening quote stands at \p at, and leaves \p at on the separator or the end behind it.
/// A field of several lines moves \p end and \p lineEnd on.
CsvReader::Split CsvReader::splitQuoted(std::size_t& at, std::size_t& end, std::size_t& lineEnd)
{
    const std::size_t begin = ++at;
    bool isEscaped = false;
    while (true) {
        const std::size_t quote = std::string_view(m_buffer.data(), end).find('"', at);
        if (quote == nowhere) {
            if (m_lineBreaks == LineBreaks::EndRecords || lineEnd >= m_buffer.size())
                return Split::OpenQuote;
            const std::size_t next = findLineEnd(lineEnd + 1);
            if ((next == nowhere ? m_buffer.size() : next) - m_begin > maxRecordBytes)
                return Split::TooLong;
            if (next == nowhere)
                return Split::NeedsBytes;
            at = end;
            lineEnd = next;
            end = next > at && m_buffer[next - 1] == '\r' ? next - 1 : next;
            ++m_splitLines;
        } else if (quote + 1 < end && m_buffer[quote + 1] == '"') {
            isEscaped = true;
            at = quote + 2;
        } else {
            at = quote;
            break;
        }
    }
    if (isEscaped)
        m_escaped.push_back(m_fields.size());
    m_fields.emplace_back(m_buffer.data() + begin, at - begin);
    ++at;
    while (at < end && isBlank(m_buffer[at], m_separator))
        ++at;
    return at == end || m_buffer[at] == m_separator ? Split::Done : Split::TextBehindQuote;
}

std::optional<double> csvNumber(std::string_view text, bool hasDecimalComma)
{
    if (hasDecimalComma && text.find(',') != nowhere) {
        std::string withPoint(text);
        std::replace(withPoint.begin(), withPoint.end(), ',', '.');
        return csvNumber(withPoint, false);
    }
    if (text.size() > 1 && text.front() == '+' && text[1] != '-')
        text.remove_prefix(1);
    double number = 0;
    const char* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest != end || !std::isfinite(number))
        return std::nullopt;
    return number;
}

QString csvQuoted(std::string_view text)
{
    constexpr std::size_t shown = 40; // characters
    QString read = QString::fromUtf8(text.data(), int(std::min(text.size(), 4 * shown))).simplified();
    if (std::size_t(read.size()) > shown)
        read = read.left(int(shown)) + QStringLiteral("...");
    return QLatin1Char('"') + read + QLatin1Char('"');
}

QString csvPlace(const QString& file, qint64 line)
{
    return QStringLiteral("%1, line %2").arg(file).arg(line);
}

QString csvPlace(const QString& file, qint64 line, std::size_t field, const QString& name)
{
    return QStringLiteral("%1, line %2, column %3 (%4)")
        .arg(file, QString::number(line), QString::number(field + 1), name);
}
