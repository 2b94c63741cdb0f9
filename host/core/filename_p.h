#pragma once

#include <QString>

/// Which names files can have wherever the project is brought.
namespace FileName {

/// Bytes in UTF-8. File systems take 255; the suffix and what stands behind it while a file is saved come on top.
constexpr int longest = 240;

/// Why no file can have that name, for a user's eyes; empty when one can.
QString problem(const QString& name);

} // namespace FileName
