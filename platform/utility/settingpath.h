#pragma once

#include "platform/platformexport.h"

#include <QString>

namespace Korvane {

/// The full path of a settings file, where the platform keeps settings.
///
/// \param fileName name of the file; empty for the application's own, "<application>.ini"
/// \param perUser below the user's settings folder (QStandardPaths::AppConfigLocation); else beside the program, where
///        one
///        file serves every user of the machine
/// \param makeFolder makes the folder when it is missing; a folder that can't be made is left to whoever writes the
///        file
KORVANE_PLATFORM_EXPORT QString getSettingPath(const QString& fileName, bool perUser, bool makeFolder);

} // namespace Korvane
