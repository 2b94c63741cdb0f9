#pragma once

#include "host/hostexport.h"

#include <QString>

/// Who uses the machine, by its own account of it: the one name there is where nobody logs on. Never empty on a machine that
/// gives its users a home.
KORVANE_HOST_EXPORT QString machineUser();
