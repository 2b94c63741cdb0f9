#pragma once

#include <QSet>
#include <QString>

#include <optional>

/// The user accounts of a project, as far as they lie in a file beside it.
namespace AccountNumbers {

/// \returns nothing where there is no such file, or it can't be read; it is never changed.
std::optional<QSet<int>> read(const QString& fileName);

} // namespace AccountNumbers
