#pragma once

#include <QByteArray>
#include <QString>

/// JSON that is easy to read in a test: single quotes stand for double ones.
inline QString json(const char* text)
{
    return QString::fromUtf8(text).replace(QLatin1Char('\''), QLatin1Char('"'));
}

/// An array in an array and so on.
inline QString nestedArrays(int depth)
{
    return QString(depth, QLatin1Char('[')) + QString(depth, QLatin1Char(']'));
}

/// An object in an object and so on, under the name "1", and 1 in the innermost.
inline QString nestedObjects(int depth)
{
    return json("{'1':").repeated(depth) + QLatin1Char('1') + QString(depth, QLatin1Char('}'));
}

/// Calls \p check with everything that is left of the text's UTF-8 form when it is cut, down to nothing.
template <typename Check>
void forEachCut(const QString& text, Check check)
{
    const QByteArray whole = text.toUtf8();
    for (int size = whole.size() - 1; size >= 0; --size)
        check(QString::fromUtf8(whole.left(size)));
}
