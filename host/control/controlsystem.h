#pragma once

#include "host/accounts/accountdatabase.h"
#include "host/accounts/databasemanager.h"
#include "host/canvas/pageaccess.h"
#include "host/control/accountlog.h"
#include "host/control/auditlog.h"
#include "host/control/controlpath.h"
#include "host/control/operatingstate.h"
#include "host/control/operatorchanges.h"
#include "host/hostexport.h"
#include "host/runtime/runtimemanager.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <tl/expected.hpp>

class AlarmSystem;
class CanvasManager;
class DataService;
class KorvaneScadaCoreInterface;
class RuntimeDatabase;
struct Project;

/// Operating a system at work: who is logged on, what he may, and the one way by which he acts on the process.
///
/// Registers its runtime manager with the hub, its accounts as the process's and with the data service, and asks for
/// rights wherever pages are opened and alarms are acted on.
class KORVANE_HOST_EXPORT ControlSystem : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(ControlSystem)

public:
    /// Parts of the system that it works on; all must outlive it.
    struct Parts
    {
        RuntimeDatabase& database;
        DataService& data;
        AlarmSystem& alarms;
        CanvasManager& pages;
        KorvaneScadaCoreInterface& hub;
    };

    ControlSystem(const Project& project, const Parts& parts, QObject* parent = nullptr);
    ~ControlSystem() override;

    /// Begins, once every object was added and before the first sample.
    /// \param isKept whether what operators do is kept in the project's file; in memory otherwise
    /// \param isProcess whether commands may reach a process: then nothing is sent that can't be accounted for in the file
    void start(bool isKept, bool isProcess);

    AccountDatabase& accounts() { return m_accounts; }
    DatabaseManager& users() { return m_users; }
    AuditLog& audit() { return m_audit; }
    ControlPath& path() { return m_path; }
    OperatorChanges& changes() { return m_changes; }
    RuntimeManager& manager() { return m_manager; }

    /// Looks up anew what the current user may, in case his account was changed. Done every few seconds by itself.
    void refreshSession();

    /// Why the current user may not open a page with that access, for his eyes; nothing when he may.
    tl::expected<void, QString> mayOpen(const PageAccess& access) const;
    /// The same of a page of the project by its name, open or not.
    bool mayOpenPage(const QString& page) const;

Q_SIGNALS:
    void problemFound(const QString& text);

private:
    void openFiles(bool isKept, bool isProcess);
    void connectRights();

    const Project& m_project;
    Parts m_parts;
    AccountDatabase m_accounts;
    AccountLog m_accountLog; ///< hears of the end of the session, with the users
    DatabaseManager m_users;
    AuditLog m_audit;
    OperatingState m_state;
    ControlPath m_path;
    OperatorChanges m_changes;
    RuntimeManager m_manager;
    QTimer m_refresh; ///< of the session
};
