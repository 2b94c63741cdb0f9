#pragma once

#include "platform/platformexport.h"

#include <QString>

#include <rapidjson/fwd.h>

/// Pieces of JSON texts: a writer concatenates members and wraps them in braces.
///
/// No white space. Keys and texts are escaped where JSON asks for it (quotes, backslashes, control characters) and
/// otherwise stand as they are. A half of a surrogate pair, which no JSON reader takes, becomes U+FFFD.
namespace Korvane {

/// The member `"key":value`, with a comma behind it if \p comma says so; likewise the others.
KORVANE_PLATFORM_EXPORT QString jsKeyValue(const QString& key, int value, bool comma);
KORVANE_PLATFORM_EXPORT QString jsKeyInt64Value(const QString& key, qint64 value, bool comma);
/// The value is a text, quoted and escaped.
KORVANE_PLATFORM_EXPORT QString jsKeyStringValue(const QString& key, const QString& value, bool comma);
/// The fewest digits that read back to the same double. Whole numbers up to 2^53 stand without fraction and exponent,
/// so that they can be read as integers, but for minus zero, "-0.0", which as an integer would lose its sign. NaN and the
/// infinities, which JSON lacks, are null.
KORVANE_PLATFORM_EXPORT QString jsKeyDoubleValue(const QString& key, double value, bool comma);
/// \param valueText an object or array that is JSON already; inserted as it stands
KORVANE_PLATFORM_EXPORT QString jsKeyObjectValue(const QString& key, const QString& valueText, bool comma);

/// Of a text the text itself, without quotes; NULs and byte order marks in it stay. Of any other value its JSON text,
/// written as above, however deeply it is nested.
KORVANE_PLATFORM_EXPORT QString getJsonString(const rapidjson::Value& value);

} // namespace Korvane
