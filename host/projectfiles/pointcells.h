#pragma once

#include "host/hostexport.h"
#include "host/runtime/runtimedatabase.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <vector>

/// Objects as lists of points hold them: the other way round than PointList.
namespace PointCells {

/// The columns of a list, in the order in which they are written.
KORVANE_HOST_EXPORT QStringList columns();

/// What stands in that column of the object's line; empty where the object has the default, or for an unknown column.
/// Numbers are written with as many digits as they need.
KORVANE_HOST_EXPORT QString text(const RuntimeDatabase::Object& object, const QString& column);

/// A list with all columns, separated by commas, one line an object.
KORVANE_HOST_EXPORT QByteArray list(const std::vector<RuntimeDatabase::Object>& objects);

} // namespace PointCells
