#include "host/projectfiles/taguses.h"

#include "host/core/project.h"
#include "host/projectfiles/csvtext.h"
#include "host/projectfiles/interlocktags.h"
#include "host/projectfiles/scriptplaces_p.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/tagresolution.h"

#include <QFile>

#include <algorithm>
#include <array>

namespace {

using Korvane::ScadaObjectType;

bool isOfName(QChar letter)
{
    return letter.isLetterOrNumber() || QStringLiteral("_.-#@").contains(letter);
}

class Search
{
public:
    Search(const Project& project, const RuntimeDatabase& database, ObjectKey object)
        : m_project(project),
          m_database(database),
          m_object(object),
          m_name(database.object(object)->name),
          m_utf8(m_name.toUtf8().toStdString())
    {
    }

    TagUse::Result run();

private:
    void searchPoints();
    void searchPage(const QString& page);
    void searchScript(const PageText& text, const PageText::Script& script);
    bool isOfObject(const QString& tag) const;
    bool mayBeOfObject(std::string_view tag) const
    {
        return tag.find(m_utf8) != std::string_view::npos || tag.find('#') != std::string_view::npos;
    }
    bool isParent(const QString& kind, const QString& parent) const;
    void add(int line, const QString& shape, const QString& what, const QString& tag)
    {
        m_result.uses.push_back({m_file, line, m_page, shape, what, tag});
    }

    const Project& m_project;
    const RuntimeDatabase& m_database;
    ObjectKey m_object;
    QString m_name;
    std::string m_utf8;
    QString m_file;
    QString m_page;
    TagUse::Result m_result;
};

bool Search::isOfObject(const QString& tag) const
{
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(tag, &m_database);
    return link.id != 0 && ObjectKey{link.type, link.id} == m_object;
}

TagUse::Result Search::run()
{
    searchPoints();
    for (const QString& page : m_project.pages())
        searchPage(page);
    return std::move(m_result);
}

// Units are points' parents, lines those of units.
bool Search::isParent(const QString& kind, const QString& parent) const
{
    const ScadaObjectType wanted =
        kind == QLatin1String("unit") ? ScadaObjectType::ChannelObject : ScadaObjectType::RtuObject;
    return m_object.type == wanted && parent == m_name;
}

void Search::searchPoints()
{
    const auto list = CsvText::read(m_project.pointFile());
    if (!list) {
        m_result.problems.append(list.error());
        return;
    }
    m_file = QStringLiteral("points.csv");
    for (const CsvText::Row& row : list->rows()) {
        const auto value = [&](const char* column) { return CsvText::value(row, list->column(column)); };
        const QString name = value("name");
        const QString kind = value("kind").toLower();
        const QString prefix = kind == QLatin1String("unit")   ? Korvane::tagPrefix(ScadaObjectType::RtuObject)
                               : kind == QLatin1String("line") ? Korvane::tagPrefix(ScadaObjectType::ChannelObject)
                                                               : QString();
        if (isOfObject(prefix + name))
            add(row.line, name, QStringLiteral("object"), name);
        if (const QString feedback = value("feedback"); isOfObject(feedback))
            add(row.line, name, QStringLiteral("feedback"), feedback);
        for (const InterlockTag& tag : InterlockTag::of(value("interlock"))) {
            if (isOfObject(tag.tag))
                add(row.line, name, QStringLiteral("interlock"), tag.tag);
        }
        if (const QString parent = value("parent"); isParent(kind, parent))
            add(row.line, name, QStringLiteral("parent"), parent);
    }
}

void Search::searchPage(const QString& page)
{
    m_page = page;
    m_file = QStringLiteral("pages/%1.pws").arg(page);
    QFile file(m_project.pageFile(page));
    if (!file.open(QIODevice::ReadOnly)) {
        m_result.problems.append(QStringLiteral("%1: can't be read: %2").arg(m_file, file.errorString()));
        return;
    }
    const auto text = PageText::parse(file.readAll());
    if (!text) {
        m_result.problems.append(QStringLiteral("%1: %2").arg(m_file, text.error()));
        return;
    }
    const std::size_t first = m_result.uses.size();
    for (const PageText::Place& place : text->places()) {
        if (!place.text.isEmpty() && !mayBeOfObject(place.tag))
            continue;
        if (const QString tag = text->tagAt(place); isOfObject(tag)) {
            const int offset = place.text.isEmpty() ? place.record.begin : place.text.begin;
            add(text->lineOf(offset), text->shapeName(place.shape), TagUse::wordOf(static_cast<int>(place.kind)), tag);
        }
    }
    for (const PageText::Script& script : text->scripts())
        searchScript(*text, script);
    std::stable_sort(m_result.uses.begin() + static_cast<std::ptrdiff_t>(first), m_result.uses.end(),
                     [](const TagUse& a, const TagUse& b) { return a.line < b.line; });
}

void Search::searchScript(const PageText& text, const PageText::Script& script)
{
    const ScriptPlaces places(text, script);
    if (!places.source().contains(m_name) && !places.source().contains(QLatin1Char('#')))
        return;
    for (const ScriptLiteral& literal : ScriptWords::of(places.source()).literals) {
        const bool isTag = isOfObject(literal.value);
        if (isTag || TagUse::isNamedIn(literal.value, m_name)) {
            add(places.lineOf(literal.begin), text.shapeName(script.shape),
                isTag ? QStringLiteral("script") : QStringLiteral("text"), literal.value);
        }
    }
}

} // namespace

TagUse::Result TagUse::of(const Project& project, const RuntimeDatabase& database, ObjectKey object)
{
    return database.object(object) ? Search(project, database, object).run() : Result();
}

QString TagUse::wordOf(int kind)
{
    static constexpr std::array<const char*, 5> words = {"binding", "condition", "bound", "operation", "other"};
    return QLatin1String(words[static_cast<std::size_t>(kind)]);
}

bool TagUse::isNamedIn(const QString& text, const QString& name)
{
    for (int at = text.indexOf(name); at >= 0; at = text.indexOf(name, at + 1)) {
        const int end = at + name.size();
        const bool isWhole = (at == 0 || !isOfName(text.at(at - 1))) && (end == text.size() || !isOfName(text.at(end)));
        if (isWhole)
            return true;
    }
    return false;
}
