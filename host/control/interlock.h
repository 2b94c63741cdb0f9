#pragma once

#include "host/actions/actionrule.h"
#include "host/hostexport.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <vector>

class RuntimeDatabase;

/// What must hold before a command is sent: comparisons of tags with numbers or other tags, joined by "and" and "or", of
/// which "and" binds closer: `P101.LEVEL > 20 and P101.BREAKER == 1`.
///
///     interlock  = comparison { ("and" | "or") comparison }
///     comparison = side ("==" | "!=" | "<" | "<=" | ">" | ">=") side
///     side       = number | tag
///
/// A tag with a blank stands in double quotes. A comparison reads as the conditions of pages do; one of a value that is
/// not known, or that nothing may be concluded from (ValueMark::unreliable), does not hold.
class KORVANE_HOST_EXPORT Interlock
{
public:
    /// \returns what is wrong with \p text, and where; an empty text is an interlock that always holds.
    static tl::expected<Interlock, QString> parse(const QString& text);

    /// The tags that it names, constants left out.
    QStringList tags() const;
    /// Why it does not hold now, naming the comparisons that fail; nothing when it holds.
    /// \returns the reason too when a tag names no known object
    tl::expected<void, QString> check(const RuntimeDatabase& database) const;

private:
    ActionRule m_rule;
};
