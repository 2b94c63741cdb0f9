#pragma once

#include "host/checking/finding.h"
#include "host/hostexport.h"

#include <QString>

#include <vector>

class RuntimeDatabase;
struct Project;

/// Finds what is wrong with a project, without running anything of it: no value is read, no script is run.
namespace ProjectCheck {

/// Of the project in \p folder, whatever state it is in: by file and line, those of the whole project and its points first.
KORVANE_HOST_EXPORT std::vector<Finding> run(const QString& folder);

/// Of the pages of \p project, and of what its points say of each other; the points are those of \p database.
KORVANE_HOST_EXPORT std::vector<Finding> run(const Project& project, const RuntimeDatabase& database);

} // namespace ProjectCheck
