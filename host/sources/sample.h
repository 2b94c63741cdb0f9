#pragma once

#include "platform/data/objectkey.h"

/// One value of one object at one moment, as a source delivers it.
struct Sample
{
    ObjectKey object;
    qint64 timeMs = 0;  ///< milliseconds since 1970-01-01 UTC
    double value = 0;   ///< in the point's unit; the number of the state of a digital point, unit or line
    qint32 quality = 0; ///< ValueMark::Quality bits that the source itself states
};
