#include "host/projectfiles/pagerename_p.h"

#include "host/projectfiles/taguses.h"

#include <QDataStream>

#include <map>

TextEdits PageRename::run()
{
    for (const PageText::Place& place : m_page.places()) {
        if (place.text.isEmpty() || place.tag.find(m_utf8) != std::string_view::npos)
            renameAt(place);
    }
    for (const PageText::Script& script : m_page.scripts())
        renameInScript(script);
    return m_edits;
}

void PageRename::renameAt(const PageText::Place& place)
{
    const QString before = m_page.tagAt(place);
    const auto after = m_rename.tag(before);
    if (!after)
        return;
    const bool hasText = !place.text.isEmpty();
    if (hasText)
        m_edits.replace(place.text.begin, place.text.end, PageText::literal(*after));
    renameRecord(place);
    m_result.changes.push_back({m_name, m_page.lineOf(hasText ? place.text.begin : place.record.begin),
                                m_page.shapeName(place.shape), TagUse::wordOf(static_cast<int>(place.kind)), before,
                                *after});
}

void PageRename::renameRecord(const PageText::Place& place)
{
    if (place.record.isEmpty() || place.record.begin == m_lastRecord)
        return;
    const QByteArray record = m_page.recordAt(place);
    const auto renamed = place.kind == PageText::Kind::Binding ? m_rename.targetRecord(record, place.version)
                                                               : m_rename.conditionRecord(record, place.version);
    if (!renamed)
        return; // the text beside it wins
    m_lastRecord = place.record.begin;
    m_edits.replace(place.record.begin, place.record.end, '"' + renamed->toBase64() + '"');
}

void PageRename::note(int line, const QString& text)
{
    m_result.notes.append(QStringLiteral("%1:%2: %3").arg(m_name).arg(line).arg(text));
}

QString PageRename::contentOf(const ScriptLiteral& literal, const ScriptPlaces& places, int shape)
{
    const int line = places.lineOf(literal.begin);
    const auto after = m_rename.tag(literal.value);
    if (!after) {
        if (TagUse::isNamedIn(literal.value, m_rename.before))
            note(line, QStringLiteral("\"%1\" is no tag by itself and stays").arg(literal.value));
        return {};
    }
    const auto content = literal.written(*after);
    if (!content) {
        note(line, QStringLiteral("a raw string can't hold the new name and stays"));
        return {};
    }
    m_result.changes.push_back(
        {m_name, line, m_page.shapeName(shape), QStringLiteral("script"), literal.value, *after});
    return *content;
}

void PageRename::renameInScript(const PageText::Script& script)
{
    const ScriptPlaces places(m_page, script);
    if (!places.source().contains(m_rename.before))
        return;
    const bool isData = !script.data.isEmpty();
    std::map<int, QString> changed; // by segment
    int shift = 0;                  // of what follows in the segment, or in the whole source
    for (const ScriptLiteral& literal : ScriptWords::of(places.source()).literals) {
        const ScriptPlaces::Segment segment =
            isData ? ScriptPlaces::Segment{0, 0, places.source().size()} : places.segmentOf(literal);
        const QString content = segment.number < 0 ? QString() : contentOf(literal, places, script.shape);
        if (content.isEmpty())
            continue;
        if (changed.find(segment.number) == changed.end()) {
            changed[segment.number] = places.source().mid(segment.begin, segment.end - segment.begin);
            shift = 0;
        }
        changed[segment.number].replace(literal.begin - segment.begin + shift, literal.end - literal.begin, content);
        shift += content.size() - (literal.end - literal.begin);
    }
    for (const auto& [number, text] : changed) {
        if (isData) {
            QByteArray data;
            QDataStream out(&data, QIODevice::WriteOnly);
            out << text;
            m_edits.replace(script.data.begin, script.data.end, '"' + data.toBase64() + '"');
        } else {
            const PageText::Range range = script.lines[static_cast<std::size_t>(number)].range;
            m_edits.replace(range.begin, range.end, PageText::literal(text));
        }
    }
}
