#pragma once

#include "host/hostexport.h"

#include <QString>

#include <optional>

class RuntimeDatabase;

/// Whether a tag names something that there is.
namespace TagCheck {

struct Found
{
    const char* code = "";
    QString text;
};

/// "unknown-tag" for one that names no object, "missing-field" for a field that the object does not have or that there is
/// not; nothing for constants, properties of the application, the empty text, and what there is.
KORVANE_HOST_EXPORT std::optional<Found> run(const QString& tag, const RuntimeDatabase& database);

} // namespace TagCheck
