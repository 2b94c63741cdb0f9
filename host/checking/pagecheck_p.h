#pragma once

#include "host/canvas/page.h"
#include "host/checking/finding.h"
#include "host/projectfiles/pagetext.h"
#include "host/projectfiles/scriptplaces_p.h"
#include "host/runtime/runtimedatabase.h"
#include "host/scripting/scriptcompiler.h"

#include <QHash>
#include <QSet>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

class CanvasScadaActionManagerFactoryInterface;
class TagAction;
struct Project;

/// Checks pages, one after the other.
class PageCheck
{
public:
    /// \p project, \p database, \p managers must outlive this
    PageCheck(const Project& project, const RuntimeDatabase& database,
              CanvasScadaActionManagerFactoryInterface& managers);

    /// The numbers of the accounts that there are; pages' rights are not checked without them.
    void setAccounts(const QSet<int>& accounts) { m_accounts = accounts; }
    std::vector<Finding> run(const QString& page);

private:
    void checkPage(const Page& page);
    void checkAction(const TagAction& action, int shape, int number);
    void checkOperation(const Operation& operation, int shape);
    void checkEvents(const Page& page, const Shape* shape, int number);
    void checkScript(const QString& source, int shape, int event);
    void checkAccess(const PageAccess& access);
    void addProblem(const QString& problem);
    void checkTag(const QString& tag, const PageText::Place& where);
    void add(Finding::Severity severity, const char* code, int line, int shape, const QString& text);
    void addInScript(Finding::Severity severity, const char* code, int line, int shape, int event, const QString& text);
    int lineOf(const PageText::Place& where);
    const PageText* text();
    QString objectName(int shape);

    const Project& m_project;
    const RuntimeDatabase& m_database;
    CanvasScadaActionManagerFactoryInterface& m_managers;
    QStringList m_pages;
    std::optional<QSet<int>> m_accounts;
    QHash<QString, std::optional<ScriptCompiler::Problem>> m_compiled; ///< by script: many shapes have the same one
    // Of the page at hand:
    QString m_file;
    QByteArray m_bytes;
    std::optional<PageText> m_text; ///< made when the first line is asked for
    QHash<QString, int> m_firstPlaces;
    std::vector<const Shape*> m_shapes;
    std::vector<Finding> m_findings;
};
