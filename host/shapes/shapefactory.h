#pragma once

#include "host/hostexport.h"
#include "host/shapes/shape.h"

#include <QString>

#include <memory>
#include <vector>

/// The classes of shapes there are, by the names that page files hold.
namespace ShapeFactory {

/// All classes, in the order in which editors offer them.
KORVANE_HOST_EXPORT const std::vector<const ShapeClass*>& classes();
/// \returns null for an unknown name (case-sensitive).
KORVANE_HOST_EXPORT const ShapeClass* find(const QString& className);
/// A shape of that class with its defaults; null for an unknown name.
KORVANE_HOST_EXPORT std::unique_ptr<Shape> create(const QString& className);

} // namespace ShapeFactory
