#pragma once

#include "host/hostexport.h"

#include <QString>
#include <QStringList>

struct Project;

/// Names of the project's pages with a shape bound to \p object (the prefix and name of a tag, whatever its field), the
/// start page first, then in alphabetical order. Reads the files as they are: a page that can't be read has none.
KORVANE_HOST_EXPORT QStringList pagesNaming(const Project& project, const QString& object);
