#include "host/runtime/pointline_p.h"

#include <QTextCodec>

#include <algorithm>
#include <cmath>

namespace {

/// Nothing when \p text is not UTF-8.
std::optional<QString> fromUtf8(std::string_view text)
{
    const bool isAscii = std::none_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; });
    if (isAscii)
        return QString::fromLatin1(text.data(), int(text.size()));
    static QTextCodec* const codec = QTextCodec::codecForName("UTF-8");
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString read = codec->toUnicode(text.data(), int(text.size()), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        return std::nullopt;
    return read;
}

} // namespace

PointLine::PointLine(const CsvReader& record) : m_record(record)
{
    m_fields.fill(noField);
}

bool PointLine::setField(Column column, std::size_t field)
{
    if (hasColumn(column))
        return false;
    m_fields[column] = field;
    return true;
}

std::string_view PointLine::textOf(Column column) const
{
    const std::size_t field = m_fields[column];
    return field < m_record.fields().size() ? m_record.fields()[field] : std::string_view();
}

QString PointLine::lowerCaseOf(Column column) const
{
    const std::string_view text = textOf(column);
    return QString::fromUtf8(text.data(), int(text.size())).toLower();
}

PointLine::Refused PointLine::readText(Column column, QString& text) const
{
    const auto read = fromUtf8(textOf(column));
    if (!read)
        return refusal(column, QStringLiteral("%1 is not UTF-8").arg(csvQuoted(textOf(column))));
    if (!read->isEmpty())
        text = *read;
    return std::nullopt;
}

PointLine::Refused PointLine::readNumber(Column column, double& number) const
{
    const std::string_view text = textOf(column);
    if (text.empty())
        return std::nullopt;
    const auto read = csvNumber(text, csvHasDecimalComma(m_record.separator()));
    if (!read)
        return refusal(column, QStringLiteral("%1 is no number").arg(csvQuoted(text)));
    number = *read;
    return std::nullopt;
}

PointLine::Refused PointLine::readPositive(Column column, double& number) const
{
    auto refused = readNumber(column, number);
    if (!refused && number < 0)
        refused = refusal(column, QStringLiteral("%1 is below 0").arg(csvQuoted(textOf(column))));
    return refused;
}

PointLine::Refused PointLine::readInteger(Column column, int highest, int& number) const
{
    const std::string_view text = textOf(column);
    if (text.empty())
        return std::nullopt;
    const auto read = wholeNumber(text, 0, highest);
    if (!read)
        return refusal(column, QStringLiteral("%1 is no whole number from 0 to %2").arg(csvQuoted(text)).arg(highest));
    number = *read;
    return std::nullopt;
}

std::optional<int> PointLine::wholeNumber(std::string_view text, int lowest, int highest)
{
    const auto number = csvNumber(text, false);
    if (!number || *number < lowest || *number > highest || std::floor(*number) != *number)
        return std::nullopt;
    return int(*number);
}

PointLine::Refused PointLine::readFlag(Column column, bool& flag) const
{
    int number = flag ? 1 : 0;
    auto refused = readInteger(column, 1, number);
    flag = number == 1;
    return refused;
}

PointLine::Refused PointLine::readDuration(Column column, std::chrono::milliseconds& duration, int mostSeconds) const
{
    if (textOf(column).empty())
        return std::nullopt;
    double seconds = 0;
    if (auto refused = readNumber(column, seconds))
        return refused;
    if (seconds < 0 || seconds > mostSeconds)
        return refusal(
            column, QStringLiteral("%1 is not within 0 to %2 seconds").arg(csvQuoted(textOf(column))).arg(mostSeconds));
    duration = std::chrono::milliseconds(std::llround(seconds * 1000));
    return std::nullopt;
}
