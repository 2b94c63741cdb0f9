#pragma once

#include "host/hostexport.h"

#include <QChar>
#include <QString>

#include <optional>
#include <vector>

/// A string literal of a script, as far as its text is known without running it.
struct KORVANE_HOST_EXPORT ScriptLiteral
{
    QString value; ///< what the script finds
    int begin = 0; ///< of what stands between the quotes, in the source
    int end = 0;
    int line = 1; ///< on which it begins
    QChar quote;
    bool isRaw = false;
    bool isFormatted = false;
    /// "tags.read" where the literal is the whole first argument of that call; empty where it is not.
    QString call;

    /// How \p text has to stand between the literal's quotes.
    /// \returns nothing where it can't: a raw string has no way to write its quote.
    std::optional<QString> written(const QString& text) const;
};

/// What can be told of a Python source by its words alone.
struct KORVANE_HOST_EXPORT ScriptWords
{
    /// Without those whose text is only known when the script runs: byte strings, unclosed ones, and those with rare
    /// escapes or, in formatted ones, expressions.
    std::vector<ScriptLiteral> literals;
    /// The calls of parts of the module, "control.operate", each with its line.
    struct Call
    {
        QString name;
        int line = 1;
    };
    std::vector<Call> calls;

    static ScriptWords of(const QString& source);
};
