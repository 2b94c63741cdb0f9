#include "host/sources/recordedtime.h"

#include "host/sources/csvreader.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>
#include <tuple>

namespace {

constexpr qint64 secondMs = 1000;
constexpr qint64 minuteMs = 60000;
constexpr qint64 hourMs = 3600000;
constexpr qint64 dayMs = 86400000;
constexpr qint64 epochJulianDay = 2440588;
constexpr double firstMilliseconds = 1e11;           ///< as a number; below they are seconds
constexpr double lastMilliseconds = 253402300799999; ///< of the year 9999

/// Takes parts of a text from its beginning; once one is not there, nothing more is.
class Scanner
{
public:
    explicit Scanner(std::string_view text) : m_rest(text) {}

    bool isGood() const { return m_isGood; }
    bool isAtEnd() const { return m_rest.empty(); }
    char ahead() const { return m_rest.empty() ? '\0' : m_rest.front(); }

    /// A number of exactly \p digits digits up to \p highest.
    int number(int digits, int highest)
    {
        int number = 0;
        for (int i = 0; i < digits; ++i)
            number = number * 10 + digit();
        m_isGood = m_isGood && number <= highest;
        return number;
    }

    void one(std::string_view characters)
    {
        m_isGood = m_isGood && !m_rest.empty() && characters.find(m_rest.front()) != std::string_view::npos;
        if (m_isGood)
            m_rest.remove_prefix(1);
    }

    /// Milliseconds of a fraction with one digit at least.
    int fraction()
    {
        int milliseconds = digit() * 100;
        for (int scale = 10; m_isGood && isDigit(ahead()); scale /= 10)
            milliseconds += digit() * scale;
        return milliseconds;
    }

private:
    static bool isDigit(char character) { return character >= '0' && character <= '9'; }

    int digit()
    {
        m_isGood = m_isGood && isDigit(ahead());
        if (!m_isGood)
            return 0;
        const int digit = m_rest.front() - '0';
        m_rest.remove_prefix(1);
        return digit;
    }

    std::string_view m_rest;
    bool m_isGood = true;
};

struct CivilTime
{
    qint64 localMs;
    std::optional<qint64> offsetMs; ///< from UTC, when the text says it
};

/// The offset behind a time: "Z", "+09:00", "+0900" or "+09".
qint64 scanOffset(Scanner& scanner)
{
    if (scanner.ahead() == 'Z' || scanner.ahead() == 'z') {
        scanner.one("Zz");
        return 0;
    }
    const int sign = scanner.ahead() == '-' ? -1 : 1;
    scanner.one("+-");
    qint64 minutes = qint64(scanner.number(2, 23)) * 60;
    if (scanner.ahead() == ':')
        scanner.one(":");
    if (!scanner.isAtEnd())
        minutes += scanner.number(2, 59);
    return sign * minutes * minuteMs;
}

std::optional<CivilTime> scanCivilTime(std::string_view text)
{
    Scanner scanner(text);
    const int year = scanner.number(4, 9999);
    scanner.one("-");
    const int month = scanner.number(2, 12);
    scanner.one("-");
    const int day = scanner.number(2, 31);
    scanner.one(" Tt");
    qint64 ms = scanner.number(2, 23) * hourMs;
    scanner.one(":");
    ms += scanner.number(2, 59) * minuteMs;
    scanner.one(":");
    ms += scanner.number(2, 59) * secondMs;
    if (scanner.ahead() == '.' || scanner.ahead() == ',') {
        scanner.one(".,");
        ms += scanner.fraction();
    }
    std::optional<qint64> offsetMs;
    if (!scanner.isAtEnd())
        offsetMs = scanOffset(scanner);
    const QDate date(year, month, day);
    if (!scanner.isGood() || !scanner.isAtEnd() || !date.isValid())
        return std::nullopt;
    return CivilTime{(date.toJulianDay() - epochJulianDay) * dayMs + ms, offsetMs};
}

qint64 floorDivide(qint64 a, qint64 b)
{
    return a / b - (a % b < 0 ? 1 : 0);
}

} // namespace

RecordedTime::RecordedTime(const QTimeZone& zone) : m_zone(zone.isValid() ? zone : QTimeZone::utc())
{
}

std::optional<qint64> RecordedTime::read(std::string_view text, qint64 notBeforeMs)
{
    if (text.size() > 4 && text[4] == '-') {
        const auto time = scanCivilTime(text);
        if (!time)
            return std::nullopt;
        return time->offsetMs ? time->localMs - *time->offsetMs : toUtc(time->localMs, notBeforeMs);
    }
    const auto number = csvNumber(text, false);
    if (!number)
        return std::nullopt;
    const double ms = std::abs(*number) < firstMilliseconds ? *number * 1000 : *number;
    if (std::abs(ms) > lastMilliseconds)
        return std::nullopt;
    // Seconds with three decimals are not whole milliseconds as binary numbers, only close to them.
    return qint64(std::floor(ms + 1e-3));
}

qint64 RecordedTime::toUtc(qint64 localMs, qint64 notBeforeMs)
{
    const qint64 minute = floorDivide(localMs, minuteMs);
    if (minute != m_minute)
        findOffsets(minute);
    const qint64 utcMs = localMs - m_offsetMs;
    const qint64 laterMs = localMs - m_laterOffsetMs;
    return utcMs < notBeforeMs && laterMs >= notBeforeMs ? laterMs : utcMs;
}

void RecordedTime::findOffsets(qint64 localMinute)
{
    m_minute = localMinute;
    const qint64 localMs = localMinute * minuteMs;
    const qint64 days = floorDivide(localMs, dayMs);
    const QDateTime local(QDate::fromJulianDay(days + epochJulianDay),
                          QTime::fromMSecsSinceStartOfDay(int(localMs - days * dayMs)), m_zone);
    m_offsetMs = m_laterOffsetMs = localMs - local.toMSecsSinceEpoch();
    for (const qint64 shiftMs : {-60 * minuteMs, -30 * minuteMs, 30 * minuteMs, 60 * minuteMs}) {
        const qint64 utcMs = localMs - m_offsetMs + shiftMs;
        const qint64 offsetMs = qint64(m_zone.offsetFromUtc(QDateTime::fromMSecsSinceEpoch(utcMs, Qt::UTC))) * 1000;
        if (utcMs + offsetMs != localMs)
            continue;
        std::tie(m_laterOffsetMs, m_offsetMs) = std::minmax({m_offsetMs, offsetMs});
        return;
    }
}
