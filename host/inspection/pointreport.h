#pragma once

#include "host/hostexport.h"
#include "platform/data/objectkey.h"

#include <QString>
#include <QStringList>
#include <QVector>

class RuntimeDatabase;

/// The points of the runtime database as rows of texts: name, value, unit, quality, time, and the statistics of the day.
namespace PointReport {

KORVANE_HOST_EXPORT QStringList header();
KORVANE_HOST_EXPORT QStringList row(const RuntimeDatabase& database, ObjectKey point);
/// All points in columns of even width, the header first; a line each.
KORVANE_HOST_EXPORT QString text(const RuntimeDatabase& database);

} // namespace PointReport
