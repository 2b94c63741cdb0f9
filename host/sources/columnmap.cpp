#include "host/sources/columnmap.h"

#include "host/sources/csvfile.h"
#include "host/sources/problemtexts_p.h"

#include <algorithm>
#include <array>

ColumnMap::ColumnMap(const std::vector<SourcePoint>& points)
{
    m_points.reserve(points.size());
    for (const SourcePoint& point : points) {
        m_points.emplace_back(point.name.toStdString(), Target{point.object});
        if (!point.address.isEmpty() && point.address != point.name)
            m_points.emplace_back(point.address.toStdString(), Target{point.object});
    }
    sort(m_points);
}

void ColumnMap::sort(std::vector<Entry>& entries)
{
    std::stable_sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return a.first < b.first; });
}

std::vector<ColumnMap::Target> ColumnMap::find(const std::vector<Entry>& entries, std::string_view name)
{
    std::vector<Target> targets;
    const auto first = std::lower_bound(entries.begin(), entries.end(), name,
                                        [](const Entry& entry, std::string_view text) { return entry.first < text; });
    for (auto at = first; at != entries.end() && at->first == name; ++at)
        targets.push_back(at->second);
    return targets;
}

std::vector<ColumnMap::Target> ColumnMap::targets(std::string_view column) const
{
    return find(m_hasFile ? m_columns : m_points, column);
}

std::vector<ObjectKey> ColumnMap::objects() const
{
    const auto isLess = [](ObjectKey a, ObjectKey b) { return a.type != b.type ? a.type < b.type : a.id < b.id; };
    std::vector<ObjectKey> objects;
    for (const Entry& entry : m_hasFile ? m_columns : m_points)
        objects.push_back(entry.second.object);
    std::sort(objects.begin(), objects.end(), isLess);
    objects.erase(std::unique(objects.begin(), objects.end()), objects.end());
    return objects;
}

/// Reads one file.
class ColumnMap::Reader
{
public:
    Reader(const QString& path, const std::vector<Entry>& points)
        : problems(QStringLiteral("%1: further lines that are left out are not told").arg(path)),
          m_path(path),
          m_points(points)
    {
    }

    tl::expected<void, QString> read();

    std::vector<Entry> columns;
    ProblemTexts problems;

private:
    void readLine();
    bool readNumber(std::size_t field, double& number);
    void addProblem(std::size_t field, const QString& text);
    bool isHeader() const;

    QString m_path;
    const std::vector<Entry>& m_points;
    CsvFile m_file;
    bool m_isBegun = false;
};

tl::expected<void, QString> ColumnMap::Reader::read()
{
    if (auto opened = m_file.open(m_path); !opened)
        return opened;
    while (true) {
        const auto next = m_file.next();
        if (!next)
            return tl::make_unexpected(next.error());
        if (*next == CsvReader::Result::Ended)
            return {};
        if (*next == CsvReader::Result::Skipped)
            addProblem(std::string::npos, m_file.record().problem());
        else if (m_isBegun || !isHeader())
            readLine();
        m_isBegun = true;
    }
}

bool ColumnMap::Reader::isHeader() const
{
    const auto& fields = m_file.record().fields();
    return fields.size() >= 2 && fields[0] == "column" && fields[1] == "point";
}

void ColumnMap::Reader::readLine()
{
    const auto& fields = m_file.record().fields();
    if (fields.size() < 2 || fields.size() > 4) {
        addProblem(
            std::string::npos,
            QStringLiteral("the line has %1 columns; it needs a column and a point, and may have a factor and an "
                           "offset")
                .arg(fields.size()));
        return;
    }
    std::vector<Target> targets = find(m_points, fields[1]);
    if (targets.empty()) {
        addProblem(1, QStringLiteral("there is no point %1").arg(csvQuoted(fields[1])));
        return;
    }
    Target scale;
    if (!readNumber(2, scale.factor) || !readNumber(3, scale.offset))
        return;
    for (const Target& target : targets)
        columns.emplace_back(std::string(fields[0]), Target{target.object, scale.factor, scale.offset});
}

/// Leaves \p number as it is when the field is empty or missing; false when it is no number.
bool ColumnMap::Reader::readNumber(std::size_t field, double& number)
{
    const auto& fields = m_file.record().fields();
    if (field >= fields.size() || fields[field].empty())
        return true;
    const auto read = csvNumber(fields[field], csvHasDecimalComma(m_file.record().separator()));
    if (read)
        number = *read;
    else
        addProblem(field, QStringLiteral("%1 is no number").arg(csvQuoted(fields[field])));
    return read.has_value();
}

void ColumnMap::Reader::addProblem(std::size_t field, const QString& text)
{
    constexpr std::array<const char*, 4> names = {"column", "point", "factor", "offset"};
    const qint64 line = m_file.record().line();
    problems.add(QStringLiteral("%1: %2").arg(
        field < names.size() ? csvPlace(m_path, line, field, QLatin1String(names[field])) : csvPlace(m_path, line),
        text));
}

tl::expected<QStringList, QString> ColumnMap::read(const QString& path)
{
    Reader reader(path, m_points);
    if (auto done = reader.read(); !done)
        return tl::make_unexpected(done.error());
    m_columns = std::move(reader.columns);
    sort(m_columns);
    m_hasFile = true;
    return reader.problems.take();
}
