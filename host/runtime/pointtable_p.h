#pragma once

#include "host/runtime/runtimedatabase.h"

#include <QSqlDatabase>

#include <tl/expected.hpp>

#include <vector>

// The table of points in a runtime store's file. Failures are SQLite's own texts.

/// Makes the table in a new file.
tl::expected<void, QString> createPointTable(QSqlDatabase& database);
/// Adds the columns that a table of an earlier version lacks.
tl::expected<void, QString> completePointTable(QSqlDatabase& database);

/// Makes \p points the table's content; changes what differs. Within the caller's transaction.
tl::expected<void, QString> writePoints(QSqlDatabase& database, const std::vector<RuntimeDatabase::Object>& points);

/// The content in its order.
tl::expected<std::vector<RuntimeDatabase::Object>, QString> readPoints(const QSqlDatabase& database);
