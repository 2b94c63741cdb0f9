#pragma once

#include "host/hostexport.h"

#include "platform/data/objectkey.h"

#include <QStringList>

class ScadaRuntimeInterface;
struct Project;

/// Names of the project's pages with a tag of \p object, by its name or its id and whatever the field, the start page
/// first, then in alphabetical order. Reads the files as they are: a page that can't be read has none.
/// \param runtime where tags are looked up
KORVANE_HOST_EXPORT QStringList pagesNaming(const Project& project, ObjectKey object, ScadaRuntimeInterface& runtime);
