#pragma once

#include "host/hostexport.h"

#include <QByteArray>

#include <vector>

/// Replacements of parts of a text that leave all the rest byte for byte as it is.
class KORVANE_HOST_EXPORT TextEdits
{
public:
    /// Puts \p text in the place of the bytes from \p begin up to, not including, \p end of the original. Parts must not
    /// overlap; two insertions at one place come in the order in which they were made.
    void replace(int begin, int end, const QByteArray& text) { m_edits.push_back({begin, end, text}); }
    bool isEmpty() const { return m_edits.empty(); }
    QByteArray applied(const QByteArray& original) const;

private:
    struct Edit
    {
        int begin;
        int end;
        QByteArray text;
    };
    std::vector<Edit> m_edits;
};
