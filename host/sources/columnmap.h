#pragma once

#include "host/hostexport.h"
#include "host/sources/sourcepoint.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Which column of a recording feeds which points.
///
/// Without a file, a column feeds every point that has the column's name as its own or as its address. A file says it
/// alone, in lines "column;point[;factor;offset]": the point, by name or address, gets the column's number times factor
/// (1) plus offset (0). A first line "column;point..." is taken for a header.
class KORVANE_HOST_EXPORT ColumnMap
{
public:
    /// One point that a column feeds.
    struct Target
    {
        ObjectKey object;
        double factor = 1;
        double offset = 0;
    };

    explicit ColumnMap(const std::vector<SourcePoint>& points);

    /// Takes the columns from a file from here on.
    /// \returns what was left out, with file, line and column, the first twenty texts; or why the file cannot be read.
    [[nodiscard]] tl::expected<QStringList, QString> read(const QString& path);

    /// The points that a column feeds, in the order of the list of points; none for an unknown column.
    std::vector<Target> targets(std::string_view column) const;
    /// All that some column could feed.
    std::vector<ObjectKey> objects() const;

private:
    using Entry = std::pair<std::string, Target>;

    static void sort(std::vector<Entry>& entries);
    static std::vector<Target> find(const std::vector<Entry>& entries, std::string_view name);
    class Reader;

    std::vector<Entry> m_points;  ///< by name and address, UTF-8
    std::vector<Entry> m_columns; ///< by column, when a file says it
    bool m_hasFile = false;
};
