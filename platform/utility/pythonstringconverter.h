#pragma once

#include "platform/platformexport.h"

#include <QString>

/// Turns texts into what stands between the quotes of a string literal of Python.
class KORVANE_PLATFORM_EXPORT PythonStringConverter
{
public:
    PythonStringConverter() = delete;

    /// The body of a literal, for single or double quotes, one or three of them, without a prefix: what Python
    /// evaluates it to is \p text, character by character. ASCII only; a half of a surrogate pair stays what it is.
    static QString convert(const QString& text);
};
