#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <vector>

/// What a ScriptEditor offers while one types, in the order in which it is to be shown. Empty by default; copying is
/// cheap.
///
/// Receivers and callees are written as they are typed, blanks and what stands in brackets left out: "korvane.tags",
/// "canvas.shape()" for canvas.shape("P1"), "canvas[]" for canvas["P1"]. A callee that is subscripted ends in "[".
struct ScriptVocabulary
{
    struct Word
    {
        QString text;
        QString hint; ///< one line shown beside it: its signature or meaning; may be empty
    };

    std::vector<Word> words;                   ///< offered where no dot stands before: keywords, names of the namespace
    QHash<QString, std::vector<Word>> members; ///< by receiver: "tags" -> read, write
    QHash<QString, QString> argumentKinds;     ///< callee -> kind of its text arguments: "tags.read" -> "tag"
    QHash<QString, QStringList> texts;         ///< kind -> what is offered inside the quotes; 100,000 are no burden
};
