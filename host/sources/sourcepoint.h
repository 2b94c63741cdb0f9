#pragma once

#include "platform/data/objectkey.h"

#include <QString>

/// What a source is told of a point: the names under which it may find the point's values.
struct SourcePoint
{
    ObjectKey object;
    QString name;
    QString address; ///< what the point is called in its source; empty for its own name
};
