#include "host/scriptediting/completionfilter_p.h"

namespace {

/// Character by character, so that lengths stay, and at once for most texts.
QChar folded(QChar c)
{
    if (c.unicode() < 0x80)
        return c >= QLatin1Char('A') && c <= QLatin1Char('Z') ? QChar(c.unicode() + ('a' - 'A')) : c;
    return c.toCaseFolded();
}

} // namespace

CompletionFilter::CompletionFilter(const QString& typed) : m_typed(typed), m_folded(typed)
{
    for (QChar& c : m_folded)
        c = folded(c);
    if (!m_folded.isEmpty())
        m_firstUpper = m_folded.front().toUpper();
}

bool CompletionFilter::matchesAt(const QString& text, int position) const
{
    const QChar* c = text.constData() + position;
    for (const QChar wanted : m_folded) {
        if (folded(*c++) != wanted)
            return false;
    }
    return true;
}

bool CompletionFilter::isInside(const QString& text) const
{
    const QChar first = m_folded.front();
    const QChar* const begin = text.constData();
    const int last = text.size() - m_folded.size();
    for (int position = 1; position <= last; ++position) {
        const QChar c = begin[position];
        if ((c == first || c == m_firstUpper) && matchesAt(text, position))
            return true;
    }
    return false;
}

void CompletionFilter::offer(const QString& text, const QString& hint)
{
    if (text.size() < m_folded.size())
        return;
    const bool begins = matchesAt(text, 0);
    if (begins ? isFull() : m_containing.size() >= mostShown || !isInside(text))
        return;
    if (m_known.contains(text))
        return;
    m_known.insert(text);
    auto& group = text == m_typed ? m_same : begins ? m_beginning : m_containing;
    group.push_back({text, hint});
}

std::vector<ScriptVocabulary::Word> CompletionFilter::picked() const
{
    std::vector<ScriptVocabulary::Word> all;
    for (const auto* group : {&m_same, &m_beginning, &m_containing})
        all.insert(all.end(), group->begin(), group->end());
    all.resize(qMin(all.size(), mostShown));
    return all;
}
