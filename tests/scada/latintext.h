#pragma once

#include <QString>

inline QString text(const char* latin)
{
    return QString::fromLatin1(latin);
}
