#pragma once

#include "host/scriptediting/scriptvocabulary.h"

#include <QSet>

/// Picks from many texts those to show for what was typed: the very same first, then those that begin with it, then
/// those that contain it, case aside and otherwise in the order in which they are offered. No text twice.
class CompletionFilter
{
public:
    static constexpr std::size_t mostShown = 200;

    explicit CompletionFilter(const QString& typed);

    void offer(const QString& text, const QString& hint = {});
    /// Nothing that is still offered would be shown.
    bool isFull() const { return m_beginning.size() >= mostShown; }

    /// Those picked, at most mostShown.
    std::vector<ScriptVocabulary::Word> picked() const;

private:
    bool matchesAt(const QString& text, int position) const;
    bool isInside(const QString& text) const;

    QString m_typed;
    QString m_folded;
    QChar m_firstUpper;
    QSet<QString> m_known;
    std::vector<ScriptVocabulary::Word> m_same;
    std::vector<ScriptVocabulary::Word> m_beginning;
    std::vector<ScriptVocabulary::Word> m_containing;
};
