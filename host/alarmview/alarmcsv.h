#pragma once

#include "host/hostexport.h"

#include <QString>
#include <QVector>
#include <Qt>

#include <tl/expected.hpp>

class QAbstractItemModel;

/// Tables as separated text (RFC 4180) that spreadsheets open: UTF-8 with a byte order mark, lines that end with CRLF.
namespace AlarmCsv {

/// Under this role a table gives what is written of a cell: a number, a time, or a text.
constexpr int ValueRole = Qt::UserRole + 1;

/// Writes the header and every row, with the columns \p columns of \p model in that order. Times are written as ISO 8601 in
/// UTC with milliseconds. A text that a spreadsheet would take for a formula, since it begins with "=", "+", "-", "@", a tab
/// or a carriage return, gets an apostrophe in front; numbers don't.
///
/// The file appears under its name, in place of one that was there, only when all of it is written.
/// \returns the reason, naming the file.
[[nodiscard]] KORVANE_HOST_EXPORT tl::expected<void, QString>
write(const QString& fileName, const QAbstractItemModel& model, const QVector<int>& columns);

} // namespace AlarmCsv
