#pragma once

#include "host/hostexport.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <vector>

/// A list of points as text: which bytes each field takes, so that some can be changed without anything else of the file
/// changing. Lines are told apart as CsvReader does.
class KORVANE_HOST_EXPORT CsvText
{
public:
    struct Field
    {
        int begin = 0; ///< with its quotes, if it has them
        int end = 0;
        QString value;
    };
    struct Row
    {
        int line = 0;
        std::vector<Field> fields;
    };

    /// Malformed records are left out. \returns why \p path can't be read, or that it has no header.
    static tl::expected<CsvText, QString> read(const QString& path);

    /// The fields of the first line of a table that may be large; empty for one that can't be read.
    static QStringList header(const QString& path);

    const QByteArray& bytes() const { return m_bytes; }
    char separator() const { return m_separator; }
    const QStringList& header() const { return m_header; } ///< in lower case
    const Row& headerRow() const { return m_headerRow; }
    const std::vector<Row>& rows() const { return m_rows; }
    /// Number of the first column of that name; -1 for none.
    int column(const char* name) const { return m_header.indexOf(QLatin1String(name)); }
    /// The value of a row in that column; empty without one.
    static QString value(const Row& row, int column);

    /// \p value as a field of a file with that separator, in quotes where it needs them.
    static QByteArray field(const QString& value, char separator);
    QByteArray field(const QString& value) const { return field(value, m_separator); }

private:
    QByteArray m_bytes;
    char m_separator = ',';
    QStringList m_header;
    Row m_headerRow;
    std::vector<Row> m_rows;
};
