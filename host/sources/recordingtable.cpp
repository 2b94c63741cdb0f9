#include "host/sources/recordingtable.h"

#include "host/sources/csvreader.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

namespace {

using Problem = RecordingTable::Problem;

constexpr std::size_t noField = Problem::wholeRow;
/// Names of a narrow recording that are remembered; those of any plant fit, and a flood of nonsense is bounded.
constexpr std::size_t mostNames = 3000000;
constexpr double highestQuality = 0xFF;

/// Where the first of \p names stands in the header; noField when none does.
std::size_t findColumn(const QStringList& header, std::initializer_list<const char*> names)
{
    for (int i = 0; i < header.size(); ++i) {
        const bool isFound = std::any_of(names.begin(), names.end(), [&](const char* name) {
            return header[i].compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
        });
        if (isFound)
            return std::size_t(i);
    }
    return noField;
}

tl::unexpected<Problem> wrong(std::size_t field, const QString& text)
{
    return tl::make_unexpected(Problem{text, field});
}

tl::unexpected<Problem> noNumber(std::size_t field, std::string_view text)
{
    return wrong(field, QStringLiteral("%1 is no number").arg(csvQuoted(text)));
}

/// Appends a sample; false when its value is beyond all numbers.
bool appendSample(std::vector<Sample>& samples, const ColumnMap::Target& target, qint64 timeMs, double number,
                  qint32 quality = 0)
{
    const double value = number * target.factor + target.offset;
    samples.push_back({target.object, timeMs, value, quality});
    return std::isfinite(value);
}

} // namespace

RecordingTable::RecordingTable(ColumnMap map, const QTimeZone& zone, TimeColumn timeColumn)
    : m_map(std::move(map)), m_time(zone), m_timeColumn(timeColumn)
{
}

tl::expected<void, QString> RecordingTable::readHeader(const std::vector<std::string_view>& names, char separator)
{
    m_names.clear();
    for (const std::string_view name : names)
        m_names.append(QString::fromUtf8(name.data(), int(name.size())));
    m_hasDecimalComma = csvHasDecimalComma(separator);
    m_timeField = findColumn(m_names, {"datetime", "time", "timestamp"});
    m_nameField = findColumn(m_names, {"name"});
    m_valueField = findColumn(m_names, {"value"});
    m_qualityField = findColumn(m_names, {"quality"});
    m_isNarrow = m_nameField != noField && m_valueField != noField;
    m_targets.clear();
    if (m_timeField == noField && m_timeColumn == TimeColumn::Read)
        return tl::make_unexpected(QStringLiteral("no column is called datetime, time or timestamp"));
    if (m_isNarrow)
        return {};
    m_unknownNames.clear();
    mapColumns(names);
    if (m_timeField == noField && m_targets.empty())
        return tl::make_unexpected(QStringLiteral("no column is called datetime, time or timestamp, or like a point"));
    return {};
}

void RecordingTable::mapColumns(const std::vector<std::string_view>& names)
{
    std::set<std::pair<qint32, qint32>> fed;
    for (std::size_t field = 0; field < names.size(); ++field) {
        if (field == m_timeField || names[field].empty())
            continue;
        bool isRead = false;
        for (const ColumnMap::Target& target : m_map.targets(names[field])) {
            // A point has one value at a time: the first of its columns is read.
            if (!fed.emplace(qint32(target.object.type), target.object.id).second)
                continue;
            m_targets.push_back({field, target});
            isRead = true;
        }
        if (!isRead)
            m_unknownNames.append(m_names[int(field)]);
    }
}

void RecordingTable::rewind()
{
    m_lastTimeMs = std::numeric_limits<qint64>::min();
}

std::vector<ObjectKey> RecordingTable::objects() const
{
    if (m_isNarrow)
        return m_map.objects();
    std::vector<ObjectKey> objects;
    for (const WideTarget& target : m_targets)
        objects.push_back(target.target.object);
    return objects;
}

QString RecordingTable::problemText(const QString& file, qint64 line, const Problem& problem) const
{
    const QString place = problem.field == Problem::wholeRow
                              ? csvPlace(file, line)
                              : csvPlace(file, line, problem.field, m_names.value(int(problem.field)));
    return QStringLiteral("%1: %2").arg(place, problem.text);
}

QStringList RecordingTable::takeUnknownNames()
{
    return std::exchange(m_unknownNames, {});
}

tl::expected<qint64, Problem> RecordingTable::appendRow(const std::vector<std::string_view>& fields,
                                                        std::vector<Sample>& samples)
{
    if (fields.size() != std::size_t(m_names.size())) {
        return wrong(noField, QStringLiteral("the row has %1 columns, the header %2")
                                  .arg(QString::number(fields.size()), QString::number(m_names.size())));
    }
    qint64 timeMs = 0;
    if (m_timeColumn == TimeColumn::Read) {
        auto time = readTime(fields[m_timeField]);
        if (!time)
            return time;
        timeMs = *time;
    }
    const std::size_t before = samples.size();
    const auto appended = m_isNarrow ? appendNarrow(fields, timeMs, samples) : appendWide(fields, timeMs, samples);
    if (!appended) {
        samples.resize(before);
        return tl::make_unexpected(appended.error());
    }
    m_lastTimeMs = timeMs;
    return timeMs;
}

tl::expected<qint64, Problem> RecordingTable::readTime(std::string_view text)
{
    const auto time = m_time.read(text, m_lastTimeMs);
    if (!time)
        return wrong(m_timeField, QStringLiteral("%1 is no time").arg(csvQuoted(text)));
    if (*time < m_lastTimeMs)
        return wrong(m_timeField, QStringLiteral("the time %1 goes back").arg(csvQuoted(text)));
    return *time;
}

tl::expected<void, Problem> RecordingTable::appendWide(const std::vector<std::string_view>& fields, qint64 timeMs,
                                                       std::vector<Sample>& samples) const
{
    for (const WideTarget& wide : m_targets) {
        const std::string_view text = fields[wide.field];
        if (text.empty())
            continue;
        const auto number = csvNumber(text, m_hasDecimalComma);
        if (!number || !appendSample(samples, wide.target, timeMs, *number))
            return noNumber(wide.field, text);
    }
    return {};
}

tl::expected<void, Problem> RecordingTable::appendNarrow(const std::vector<std::string_view>& fields, qint64 timeMs,
                                                         std::vector<Sample>& samples)
{
    const std::string_view text = fields[m_valueField];
    const std::string_view qualityText = m_qualityField == noField ? std::string_view() : fields[m_qualityField];
    const auto number = csvNumber(text, m_hasDecimalComma);
    if (!number && !text.empty())
        return noNumber(m_valueField, text);
    const auto quality = qualityText.empty() ? std::optional<double>(0) : csvNumber(qualityText, false);
    if (!quality || *quality < 0 || *quality > highestQuality || std::floor(*quality) != *quality)
        return wrong(m_qualityField, QStringLiteral("%1 is no quality from 0 to 255").arg(csvQuoted(qualityText)));
    if (fields[m_nameField].empty())
        return wrong(m_nameField, QStringLiteral("no point is named"));
    for (const ColumnMap::Target& target : targetsOfName(fields[m_nameField])) {
        if (number && !appendSample(samples, target, timeMs, *number, qint32(*quality)))
            return noNumber(m_valueField, text);
    }
    return {};
}

const std::vector<ColumnMap::Target>& RecordingTable::targetsOfName(std::string_view name)
{
    static const std::vector<ColumnMap::Target> none;
    if (const auto known = m_targetsOfNames.find(name); known != m_targetsOfNames.end())
        return known->second;
    if (m_targetsOfNames.size() >= mostNames)
        return none;
    const auto& targets = m_targetsOfNames.emplace(std::string(name), m_map.targets(name)).first->second;
    if (targets.empty())
        m_unknownNames.append(QString::fromUtf8(name.data(), int(name.size())));
    return targets;
}
