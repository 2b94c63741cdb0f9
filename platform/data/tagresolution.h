#pragma once

#include "platform/data/datalinkinfo.h"
#include "platform/platformexport.h"

#include <QString>

class ScadaRuntimeInterface;

namespace Korvane {

/// Splits a tag string into the object and the field that it names, and finds the object.
///
///     tag    = constant | [prefix] name [":" field]
///     prefix = "@R::" | "@C::" | "@::"
///     name   = any text; "#" and decimal digits name an object by its id
///
/// - A text that QString::toDouble takes whole ("12.5", "1e5", " 7 ", "nan") is a constant: type NoObject, the text as
///   its name. The empty text names no object either.
/// - What follows the last ":" is a field when Korvane::dtStringToCode knows it, else it belongs to the name.
/// - "#" with an id beyond 32 bits is a name. Application properties have no ids.
///
/// \param runtime where the object is looked up: found gives its kind and id; not found gives Point, or the prefix's
///        kind, with id 0. Application properties are not in it. With null the text alone decides: an id is taken as it
///        stands, its kind by the prefix or by its range (Point outside the ranges), and a point's name is looked up in
///        the registered PointDirectory, if there is one.
/// \returns a link whose absoluteName() resolves to the same link again under the same runtime and directory.
KORVANE_PLATFORM_EXPORT DataLinkInfo resolveFromString(const QString& tag, const ScadaRuntimeInterface* runtime);

/// resolveFromString without a runtime: the text-only form.
KORVANE_PLATFORM_EXPORT DataLinkInfo quickResolveFromString(const QString& tag);

/// Whether lists of objects may give an object of kind \p type the name \p name. Written behind the kind's prefix, it
/// must resolve to exactly that name, so it is not empty, no "#" with an id, does not end in ":" and a known field and,
/// for points, is no number and does not begin with "@", which is kept free for prefixes. False for NoObject.
KORVANE_PLATFORM_EXPORT bool isAddressableName(const QString& name, ScadaObjectType type = ScadaObjectType::Point);

} // namespace Korvane
