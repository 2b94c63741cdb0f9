#pragma once

#include "host/projectfiles/objectrenamer.h"
#include "host/projectfiles/pagetext.h"
#include "host/projectfiles/scriptplaces_p.h"
#include "host/projectfiles/textedits.h"

#include <string>

/// Renames an object in one page file.
class PageRename
{
public:
    /// \p name, \p page, \p rename, \p result must outlive this
    PageRename(const QString& name, const PageText& page, const ObjectRename& rename, ObjectRenamer::Result& result)
        : m_name(name), m_page(page), m_rename(rename), m_utf8(rename.before.toUtf8().toStdString()), m_result(result)
    {
    }

    /// What changes in the file; the changes are added to the result.
    TextEdits run();

private:
    void renameAt(const PageText::Place& place);
    void renameRecord(const PageText::Place& place);
    void renameInScript(const PageText::Script& script);
    /// What a literal becomes; empty where it stays.
    QString contentOf(const ScriptLiteral& literal, const ScriptPlaces& places, int shape);
    void note(int line, const QString& text);

    const QString& m_name;
    const PageText& m_page;
    const ObjectRename& m_rename;
    std::string m_utf8;
    ObjectRenamer::Result& m_result;
    TextEdits m_edits;
    int m_lastRecord = -1; ///< where the record begins that was changed last: both sides of a condition share one
};
