#pragma once

#include <QString>
#include <QStringView>

/// What is being typed at a place of a script, as far as completion asks.
struct CompletionPlace
{
    enum class Kind {
        None,   ///< a comment, a number, the end of the source
        Word,   ///< a name, perhaps its begin only
        Member, ///< a name behind a dot
        Text,   ///< a string
    };

    /// What is being typed at the end of \p source.
    static CompletionPlace atEndOf(QStringView source);

    Kind kind = Kind::None;
    int begin = 0;      ///< position of the first character typed
    QString typed;      ///< of a string: with its escapes resolved
    QString owner;      ///< of a member: its receiver; of a text: the callee, ending in "[" for a subscript; else empty
    QChar quote;        ///< of a string
    bool isRaw = false; ///< of a string
};
