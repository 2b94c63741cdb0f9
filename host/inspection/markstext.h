#pragma once

#include "host/hostexport.h"

#include <QString>

class QuorixData;

/// The marks of a record in words, joined by ", "; "good" for a record without any.
KORVANE_HOST_EXPORT QString marksText(const QuorixData& record);
