#include "host/control/controlsystem.h"

#include "host/alarms/alarmsystem.h"
#include "host/canvas/canvasmanager.h"
#include "host/canvas/pagereader.h"
#include "host/core/project.h"
#include "host/runtime/dataservice.h"
#include "host/runtime/runtimedatabase.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QSysInfo>

namespace {

constexpr std::chrono::seconds refreshInterval{5};
constexpr std::chrono::seconds refreshPause{60};

} // namespace

ControlSystem::ControlSystem(const Project& project, const Parts& parts, QObject* parent)
    : QObject(parent),
      m_project(project),
      m_parts(parts),
      m_accountLog(project.operatingFile(), QSysInfo::machineHostName(), [this] { return m_users.currentUserId(); }),
      m_users(m_accounts),
      m_path({parts.database, parts.data, m_users, m_audit, parts.hub}),
      m_changes(parts.database, parts.data, parts.alarms, m_state, parts.hub),
      m_manager({parts.database, parts.data, parts.alarms, m_users, m_audit, m_path, m_changes, parts.pages, parts.hub},
                QSysInfo::machineHostName())
{
    const auto record = [this](const AccountEvent& event) { return m_accountLog.record(event); };
    m_accounts.setRecorder(record);
    m_users.setRecorder(record);
    m_users.setSecured(project.isSecured);
    m_path.setWorkplace(m_manager.workplace());
    parts.hub.setRuntimeManager(&m_manager);
    connect(&m_path, &ControlPath::problemFound, this, &ControlSystem::problemFound);
    connect(&m_users, &DatabaseManager::problemFound, this, &ControlSystem::problemFound);
    connect(&parts.data, &DataService::ticked, &m_path, [this] { m_path.advance(); });
    connect(&m_users, &DatabaseManager::loggedOff, &m_path, &ControlPath::endSession);
    connect(&m_refresh, &QTimer::timeout, this, &ControlSystem::refreshSession);
    connectRights();
}

ControlSystem::~ControlSystem()
{
    m_parts.hub.setRuntimeManager(nullptr);
    m_parts.data.setAccountQuery({});
    m_parts.pages.setAccessCheck({});
    m_parts.alarms.desk().setPermission({});
}

void ControlSystem::connectRights()
{
    const auto mayOpen = [this](const QString& page) { return mayOpenPage(page); };
    m_path.setPageCheck(mayOpen);
    m_manager.setPageCheck(mayOpen);
    m_parts.pages.setAccessCheck([this](const PageAccess& access) { return this->mayOpen(access); });
    m_parts.data.setAccountQuery([this](const QString& sql) { return m_accounts.query(sql); });
    m_parts.alarms.desk().setPermission([this](AlarmDesk::Act act, ObjectKey object) {
        const bool isSupervisors = act == AlarmDesk::Act::TakeOutOfService;
        return m_users.may(isSupervisors ? AccountRole::Supervisor : AccountRole::Operator, m_manager.areaOf(object));
    });
}

void ControlSystem::start(bool isKept, bool isProcess)
{
    openFiles(isKept, isProcess);
    // Without accounts a secured project lets nobody in; an unsecured one needs none.
    if (m_project.isSecured) {
        if (const auto opened = m_accounts.open(m_project.accounts); !opened)
            Q_EMIT problemFound(opened.error());
        UserAccountDatabase::registerDatabase(&m_accounts);
        m_refresh.start(refreshInterval);
    }
    for (const QString& problem : m_changes.restore())
        Q_EMIT problemFound(problem);
}

void ControlSystem::refreshSession()
{
    // A server that is out of reach is not asked at every turn: each time may take a while.
    const bool isReached = m_users.refresh().has_value();
    m_refresh.setInterval(isReached ? refreshInterval : refreshPause);
}

// Without what operators did before, inhibits among it, nothing may be sent.
void ControlSystem::openFiles(bool isKept, bool isProcess)
{
    if (isKept) {
        const auto audit = m_audit.open(m_project.operatingFile());
        const auto state = m_state.open(m_project.operatingFile());
        if (audit && state)
            return;
        m_audit.close();
        m_state.close();
        Q_EMIT problemFound(tr("%1; no commands are sent").arg(audit ? state.error() : audit.error()));
        return;
    }
    if (isProcess) {
        Q_EMIT problemFound(tr("What operators do is not kept: no commands are sent"));
        return;
    }
    if (const auto audit = m_audit.openInMemory(); !audit)
        Q_EMIT problemFound(audit.error());
    if (const auto state = m_state.openInMemory(); !state)
        Q_EMIT problemFound(state.error());
}

tl::expected<void, QString> ControlSystem::mayOpen(const PageAccess& access) const
{
    if (!m_users.isSecured())
        return {};
    const auto& account = m_users.currentAccount();
    if (!account)
        return tl::make_unexpected(tr("Log on to open this page."));
    if (!access.mayOpen(account->number))
        return tl::make_unexpected(tr("%1 may not open this page.").arg(account->name));
    return {};
}

bool ControlSystem::mayOpenPage(const QString& page) const
{
    if (!m_users.isSecured())
        return true;
    for (const auto& open : m_parts.pages.pages()) {
        if (open->canvas->canvasName() == page)
            return mayOpen(open->access).has_value();
    }
    const auto access = PageReader::readAccess(m_project.pageFile(page));
    return access && mayOpen(*access).has_value();
}
