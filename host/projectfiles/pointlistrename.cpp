#include "host/projectfiles/pointlistrename_p.h"

#include "host/core/project.h"
#include "host/projectfiles/interlocktags.h"
#include "host/sources/sourceaddress.h"

#include <QDir>

#include <algorithm>

namespace {

using Korvane::ScadaObjectType;
using Done = tl::expected<void, QString>;

const QString listFile = QStringLiteral("points.csv");

ScadaObjectType typeOf(const QString& kind)
{
    if (kind == QLatin1String("unit"))
        return ScadaObjectType::RtuObject;
    return kind == QLatin1String("line") ? ScadaObjectType::ChannelObject : ScadaObjectType::Point;
}

} // namespace

tl::expected<std::vector<PointListRename::File>, QString> PointListRename::run()
{
    const auto list = CsvText::read(m_project.pointFile());
    if (!list)
        return tl::make_unexpected(list.error());
    for (const CsvText::Row& row : list->rows()) {
        if (row.fields.size() != list->headerRow().fields.size())
            continue; // left out by whoever reads the list
        if (auto renamed = renameRow(*list, row); !renamed)
            return tl::make_unexpected(renamed.error());
    }
    std::vector<File> files;
    files.push_back({listFile, m_edits.applied(list->bytes())});
    renameMap(files);
    return files;
}

bool PointListRename::isOwn(const CsvText& list, const CsvText::Row& row) const
{
    const ScadaObjectType type = typeOf(CsvText::value(row, list.column("kind")).toLower());
    const ScadaObjectType wanted = Korvane::isPointObjectType(m_rename.type) ? ScadaObjectType::Point : m_rename.type;
    return type == wanted && CsvText::value(row, list.column("name")) == m_rename.before;
}

// Units are points' parents, lines those of units.
bool PointListRename::isParent(const QString& kind, const QString& parent) const
{
    const ScadaObjectType wanted =
        typeOf(kind) == ScadaObjectType::RtuObject ? ScadaObjectType::ChannelObject : ScadaObjectType::RtuObject;
    return m_rename.type == wanted && parent == m_rename.before;
}

Done PointListRename::renameRow(const CsvText& list, const CsvText::Row& row)
{
    const QString name = CsvText::value(row, list.column("name"));
    if (isOwn(list, row)) {
        set(list, row, "name", m_rename.after);
        tell(row.line, name, "object", m_rename.before, m_rename.after);
        keepColumn(list, row);
    }
    const QString feedback = CsvText::value(row, list.column("feedback"));
    if (const auto renamed = m_rename.tag(feedback)) {
        set(list, row, "feedback", *renamed);
        tell(row.line, name, "feedback", feedback, *renamed);
    }
    const QString parent = CsvText::value(row, list.column("parent"));
    if (isParent(CsvText::value(row, list.column("kind")).toLower(), parent)) {
        set(list, row, "parent", m_rename.after);
        tell(row.line, name, "parent", parent, m_rename.after);
    }
    return renameInterlock(list, row);
}

Done PointListRename::renameInterlock(const CsvText& list, const CsvText::Row& row)
{
    const QString before = CsvText::value(row, list.column("interlock"));
    QString after = before;
    std::vector<InterlockTag> tags = InterlockTag::of(before);
    std::reverse(tags.begin(), tags.end()); // so that places in front stay
    for (const InterlockTag& tag : tags) {
        const auto renamed = m_rename.tag(tag.tag);
        if (!renamed)
            continue;
        const auto written = InterlockTag::written(*renamed);
        if (!written) {
            return tl::make_unexpected(
                QStringLiteral("%1:%2: the interlock can't hold a name with a quote").arg(listFile).arg(row.line));
        }
        after.replace(tag.begin, tag.end - tag.begin, *written);
    }
    if (after != before) {
        set(list, row, "interlock", after);
        tell(row.line, CsvText::value(row, list.column("name")), "interlock", before, after);
    }
    return {};
}

/// Whether the recording that the project plays may feed the object by its name.
bool PointListRename::feedsByName() const
{
    const auto source =
        SourceAddress::parse(m_project.source.isEmpty() ? QStringLiteral("simulation") : m_project.source);
    if (!source || source->kind == SourceAddress::Kind::Simulation || !source->map.isEmpty())
        return false; // a map says it alone
    if (source->kind == SourceAddress::Kind::StandardInput)
        return true; // nobody knows what will come
    const auto recording = CsvText::header(m_project.path(source->file));
    const bool isNarrow = recording.contains(QStringLiteral("name"), Qt::CaseInsensitive) &&
                          recording.contains(QStringLiteral("value"), Qt::CaseInsensitive);
    return isNarrow || recording.contains(m_rename.before);
}

void PointListRename::keepColumn(const CsvText& list, const CsvText::Row& row)
{
    const QString address = CsvText::value(row, list.column("address"));
    if (address == m_rename.before || !feedsByName())
        return;
    if (!address.isEmpty()) {
        m_result.notes.append(QStringLiteral("%1:%2: what the recording calls \"%3\" feeds the object no more; its "
                                             "address is \"%4\"")
                                  .arg(listFile)
                                  .arg(row.line)
                                  .arg(m_rename.before, address));
        return;
    }
    if (list.column("address") < 0)
        addAddressColumn(list, row);
    else
        set(list, row, "address", m_rename.before);
    tell(row.line, m_rename.before, "address", QString(), m_rename.before);
}

void PointListRename::addAddressColumn(const CsvText& list, const CsvText::Row& owner)
{
    const auto append = [&](const CsvText::Row& row, const QString& value) {
        const int end = row.fields.back().end;
        m_edits.replace(end, end, list.separator() + list.field(value));
    };
    append(list.headerRow(), QStringLiteral("address"));
    for (const CsvText::Row& row : list.rows())
        append(row, row.line == owner.line ? m_rename.before : QString());
}

// A map names points by name or address; a point that it names by its name has to be named anew.
void PointListRename::renameMap(std::vector<File>& files)
{
    const auto source = SourceAddress::parse(m_project.source);
    if (!source || source->map.isEmpty())
        return;
    const auto map = CsvText::read(m_project.path(source->map));
    if (!map)
        return; // told by whoever plays the recording
    const QString name = QDir(m_project.folder).relativeFilePath(m_project.path(source->map));
    TextEdits edits;
    std::vector<CsvText::Row> rows = map->rows();
    rows.push_back(map->headerRow()); // a map needs no header
    for (const CsvText::Row& row : rows) {
        if (CsvText::value(row, 1) != m_rename.before)
            continue;
        edits.replace(row.fields[1].begin, row.fields[1].end, map->field(m_rename.after));
        m_result.changes.push_back({name, row.line, {}, QStringLiteral("map"), m_rename.before, m_rename.after});
    }
    if (edits.isEmpty())
        return;
    if (name.startsWith(QLatin1String("..")))
        m_result.notes.append(QStringLiteral("%1: lies outside of the project and is left as it is").arg(name));
    else
        files.push_back({name, edits.applied(map->bytes())});
}

void PointListRename::set(const CsvText& list, const CsvText::Row& row, const char* column, const QString& value)
{
    const CsvText::Field& field = row.fields[static_cast<std::size_t>(list.column(column))];
    m_edits.replace(field.begin, field.end, list.field(value));
}

void PointListRename::tell(int line, const QString& object, const char* what, const QString& before,
                           const QString& after)
{
    m_result.changes.push_back({listFile, line, object, QLatin1String(what), before, after});
}
