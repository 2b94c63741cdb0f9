#pragma once

#include "host/hostexport.h"

#include <QString>

#include <optional>
#include <vector>

/// A tag in the text of an interlock.
struct KORVANE_HOST_EXPORT InterlockTag
{
    int begin = 0; ///< with its quotes, if it has them
    int end = 0;
    QString tag;

    /// The tags of \p interlock: "TAG OP VALUE and|or ...", numbers left out. Of a malformed text what can be told.
    static std::vector<InterlockTag> of(const QString& interlock);
    /// How \p tag stands in an interlock, in quotes where it needs them; nothing where it can't, since it has a quote.
    static std::optional<QString> written(const QString& tag);
};
