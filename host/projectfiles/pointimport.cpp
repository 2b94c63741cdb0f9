#include "host/projectfiles/pointimport.h"

#include "host/projectfiles/csvtext.h"
#include "host/projectfiles/pointcells.h"
#include "host/projectfiles/textedits.h"
#include "host/runtime/pointlist.h"
#include "host/sources/csvreader.h"

#include <QHash>
#include <QTemporaryDir>

#include <algorithm>
#include <map>

namespace {

using Object = RuntimeDatabase::Object;
using Korvane::ScadaObjectType;
using PointImport::Result;
using Done = tl::expected<void, QString>;

tl::unexpected<QString> refused(const QString& text)
{
    return tl::make_unexpected(text);
}

/// Points of both kinds share ids and names, units and lines have their own.
QString familyOf(const QString& kind)
{
    return kind == QLatin1String("unit") || kind == QLatin1String("line") ? kind : QStringLiteral("point");
}

QString keyOf(const Object& object, const QString& nameOrId)
{
    return familyOf(PointCells::text(object, QStringLiteral("kind"))) + QLatin1Char(' ') + nameOrId;
}

class Merge
{
public:
    Merge(const QString& list, const QString& file) : m_listFile(list), m_file(file) {}

    tl::expected<Result, QString> run();

private:
    Done read();
    Done readTheirs();
    Done take(const Object& object);
    void change(const Object& before, const Object& after);
    void addColumns();
    void addObjects();
    Done verify() const;

    QString m_listFile;
    QString m_file;
    CsvText m_list;
    PointList::Result m_own;
    std::vector<Object> m_theirs;
    QStringList m_columns; ///< of the merged file that lists have
    QHash<QString, const Object*> m_byId;
    QHash<QString, const Object*> m_byName;
    QHash<QString, const CsvText::Row*> m_rows;
    std::vector<Object> m_added;
    /// Values of columns that the list gets, by column and line.
    std::map<QString, std::map<int, QString>> m_newColumns;
    TextEdits m_edits;
    Result m_result;
};

Done Merge::read()
{
    auto list = CsvText::read(m_listFile);
    if (!list)
        return refused(list.error());
    m_list = std::move(*list);
    auto own = PointList::read(m_listFile);
    if (!own)
        return refused(own.error());
    m_own = std::move(*own);
    for (const Object& object : m_own.objects) {
        m_byId.insert(keyOf(object, QString::number(object.id)), &object);
        m_byName.insert(keyOf(object, object.name), &object);
    }
    for (const CsvText::Row& row : m_list.rows()) {
        const QString kind = CsvText::value(row, m_list.column("kind")).toLower();
        const QString key = familyOf(kind) + QLatin1Char(' ') + CsvText::value(row, m_list.column("name"));
        if (!m_rows.contains(key) && row.fields.size() == m_list.headerRow().fields.size())
            m_rows.insert(key, &row);
    }
    return readTheirs();
}

Done Merge::readTheirs()
{
    const auto text = CsvText::read(m_file);
    if (!text)
        return refused(text.error());
    auto theirs = PointList::read(m_file);
    if (!theirs)
        return refused(theirs.error());
    const QString header = csvPlace(m_file, text->headerRow().line) + QLatin1String(", column");
    for (const QString& problem : theirs->problems) {
        if (!problem.startsWith(header))
            return refused(problem);
        m_result.notes.append(problem);
    }
    m_theirs = std::move(theirs->objects);
    for (const QString& column : PointCells::columns()) {
        if (text->header().contains(column))
            m_columns.append(column);
    }
    return {};
}

Done Merge::take(const Object& object)
{
    const Object* sameId = m_byId.value(keyOf(object, QString::number(object.id)));
    const Object* sameName = m_byName.value(keyOf(object, object.name));
    if (!sameId && !sameName) {
        m_added.push_back(object);
        m_result.added.append(object.name);
    } else if (sameId == sameName) {
        change(*sameId, object);
    } else if (sameId) {
        return refused(QStringLiteral("%1: object \"%2\": the id %3 belongs to \"%4\"; names are changed by renaming")
                           .arg(m_file, object.name)
                           .arg(object.id)
                           .arg(sameId->name));
    } else {
        return refused(QStringLiteral("%1: object \"%2\": it has the id %3 already, not %4")
                           .arg(m_file, object.name)
                           .arg(sameName->id)
                           .arg(object.id));
    }
    return {};
}

void Merge::change(const Object& before, const Object& after)
{
    const CsvText::Row& row = *m_rows.value(keyOf(before, before.name));
    QStringList texts;
    for (const QString& column : qAsConst(m_columns)) {
        const QString old = PointCells::text(before, column);
        const QString now = PointCells::text(after, column);
        if (old == now)
            continue;
        texts.append(QStringLiteral("%1 \"%2\" -> \"%3\"").arg(column, old, now));
        const int place = m_list.header().indexOf(column);
        if (place < 0) {
            m_newColumns[column][row.line] = now;
            continue;
        }
        const CsvText::Field& field = row.fields[static_cast<std::size_t>(place)];
        m_edits.replace(field.begin, field.end, m_list.field(now));
    }
    if (texts.isEmpty())
        ++m_result.unchanged;
    else
        m_result.changed.append(QStringLiteral("%1: %2").arg(before.name, texts.join(QStringLiteral(", "))));
}

// Only those that hold something: a list without them means the same.
void Merge::addColumns()
{
    for (const QString& column : qAsConst(m_columns)) {
        const bool isHeld = std::any_of(m_added.begin(), m_added.end(), [&column](const Object& object) {
            return !PointCells::text(object, column).isEmpty();
        });
        if (isHeld && !m_list.header().contains(column))
            m_newColumns[column];
    }
    for (const auto& [column, values] : m_newColumns) {
        const int end = m_list.headerRow().fields.back().end;
        m_edits.replace(end, end, m_list.separator() + m_list.field(column));
        for (const CsvText::Row& row : m_list.rows()) {
            const auto value = values.find(row.line);
            const int rowEnd = row.fields.back().end;
            m_edits.replace(rowEnd, rowEnd,
                            m_list.separator() + m_list.field(value == values.end() ? QString() : value->second));
        }
    }
}

void Merge::addObjects()
{
    QStringList header = m_list.header();
    for (const auto& column : m_newColumns)
        header.append(column.first);
    QByteArray lines;
    for (const Object& object : m_added) {
        QByteArray line;
        for (const QString& column : qAsConst(header))
            line += m_list.field(PointCells::text(object, column)) + m_list.separator();
        line.chop(1);
        lines += line + '\n';
    }
    const int end = m_list.bytes().size();
    if (!lines.isEmpty() && !m_list.bytes().endsWith('\n'))
        lines.prepend('\n');
    m_edits.replace(end, end, lines);
}

// Whatever was put in, all of it has to come out again.
Done Merge::verify() const
{
    const QTemporaryDir folder;
    const QString name = folder.filePath(QStringLiteral("points.csv"));
    QFile file(name);
    if (!file.open(QIODevice::WriteOnly) || file.write(m_result.text) != m_result.text.size())
        return refused(QStringLiteral("%1: can't be written: %2").arg(name, file.errorString()));
    file.close();
    const auto merged = PointList::read(name);
    if (merged && merged->objects.size() == m_own.objects.size() + m_added.size())
        return {};
    const QString reason = !merged                      ? merged.error()
                           : merged->problems.isEmpty() ? QStringLiteral("objects got lost")
                                                        : merged->problems.constLast();
    return refused(QStringLiteral("%1: can't be merged: %2").arg(m_file, QString(reason).replace(name, m_listFile)));
}

tl::expected<Result, QString> Merge::run()
{
    if (auto done = read(); !done)
        return refused(done.error());
    for (const Object& object : m_theirs) {
        if (auto done = take(object); !done)
            return refused(done.error());
    }
    addColumns();
    addObjects();
    m_result.text = m_edits.applied(m_list.bytes());
    if (auto done = verify(); !done)
        return refused(done.error());
    return std::move(m_result);
}

} // namespace

tl::expected<Result, QString> PointImport::merge(const QString& list, const QString& file)
{
    return Merge(list, file).run();
}
