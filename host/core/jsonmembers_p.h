#pragma once

#include "host/hostexport.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <tl/expected.hpp>

#include <optional>

/// Changes single members of a JSON text and leaves every other byte as it is.
///
/// The text is an object, known to be right. A path has a name for each level of objects; of members with the same name
/// the last one counts, as everywhere in this program.
namespace JsonMembers {

/// The text with \p value, a JSON text itself, as the member's value. A new member comes last, indented as the one before
/// it; objects that are missing on the way are made.
/// \returns what stands in the way: a member that is no object.
KORVANE_HOST_EXPORT tl::expected<QByteArray, QString> with(const QByteArray& text, const QStringList& path,
                                                           const QByteArray& value);
/// The text without the member; the text itself when it has none.
KORVANE_HOST_EXPORT QByteArray without(const QByteArray& text, const QStringList& path);

/// \p value on one line. Flags, finite numbers, texts, lists and maps of such, and nullptr; nothing for anything else.
KORVANE_HOST_EXPORT std::optional<QByteArray> textOf(const QVariant& value);

} // namespace JsonMembers
