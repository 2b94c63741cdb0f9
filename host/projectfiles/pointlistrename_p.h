#pragma once

#include "host/projectfiles/csvtext.h"
#include "host/projectfiles/objectrenamer.h"
#include "host/projectfiles/textedits.h"

#include <tl/expected.hpp>

#include <vector>

/// Renames an object in the list of points, and in the column map of the recording that the project plays.
class PointListRename
{
public:
    struct File
    {
        QString name; ///< relative to the project's folder
        QByteArray bytes;
    };

    /// \p project, \p rename, \p result must outlive this
    PointListRename(const Project& project, const ObjectRename& rename, ObjectRenamer::Result& result)
        : m_project(project), m_rename(rename), m_result(result)
    {
    }

    /// The files that become others; the changes are added to the result.
    /// \returns why they can't be renamed in.
    tl::expected<std::vector<File>, QString> run();

private:
    tl::expected<void, QString> renameRow(const CsvText& list, const CsvText::Row& row);
    tl::expected<void, QString> renameInterlock(const CsvText& list, const CsvText::Row& row);
    void renameMap(std::vector<File>& files);
    void keepColumn(const CsvText& list, const CsvText::Row& row);
    void addAddressColumn(const CsvText& list, const CsvText::Row& owner);
    bool isParent(const QString& kind, const QString& parent) const;
    bool isOwn(const CsvText& list, const CsvText::Row& row) const;
    bool feedsByName() const;
    void set(const CsvText& list, const CsvText::Row& row, const char* column, const QString& value);
    void tell(int line, const QString& object, const char* what, const QString& before, const QString& after);

    const Project& m_project;
    const ObjectRename& m_rename;
    ObjectRenamer::Result& m_result;
    TextEdits m_edits;
};
