#pragma once

#include "host/accounts/accountdatabase.h"
#include "host/actions/canvasactionmanagerfactory.h"
#include "host/core/korvanecore.h"
#include "host/core/project.h"
#include "host/core/propertymanager.h"
#include "host/hostexport.h"
#include "host/runtime/runtimedatabase.h"
#include "host/scripting/scriptengine.h"

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <memory>

class DesignDocument;

/// A project opened for editing: its points are known, but no values come, and its scripts run only when the user tries
/// one.
class KORVANE_HOST_EXPORT DesignSystem
{
public:
    /// \returns why the project can't be edited at all; what can be done without is a problem.
    static tl::expected<std::unique_ptr<DesignSystem>, QString> open(const QString& folder);
    ~DesignSystem();
    Q_DISABLE_COPY(DesignSystem)

    const Project& project() const { return m_project; }
    const RuntimeDatabase& database() const { return m_database; }
    KorvaneCore& core() { return m_core; }
    ScriptEngine& scripts() { return m_scripts; }
    /// What went wrong so far, oldest first.
    const QStringList& problems() const { return m_problems; }

    /// Opens a page for editing. Its own problems are its page's.
    /// \returns the document, which must not outlive this, or why it can't be opened.
    tl::expected<std::unique_ptr<DesignDocument>, QString> openPage(const QString& name);

private:
    explicit DesignSystem(const Project& project);
    void openAccounts();

    Project m_project;
    QStringList m_problems;
    RuntimeDatabase m_database;
    AccountDatabase m_accounts;
    PropertyManager m_properties;
    KorvaneCore m_core;
    CanvasActionManagerFactory m_managers;
    ScriptEngine m_scripts;
};
