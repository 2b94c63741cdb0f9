#include "host/control/controlsystem.h"

#include "host/alarms/alarmsystem.h"
#include "host/canvas/canvasmanager.h"
#include "host/canvas/pagereader.h"
#include "host/core/project.h"
#include "host/runtime/dataservice.h"
#include "host/runtime/runtimedatabase.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QSysInfo>

ControlSystem::ControlSystem(const Project& project, const Parts& parts, QObject* parent)
    : QObject(parent),
      m_project(project),
      m_parts(parts),
      m_users(m_accounts),
      m_path({parts.database, parts.data, m_users, m_audit, parts.hub}),
      m_changes(parts.database, parts.data, parts.alarms, m_state, parts.hub),
      m_manager({parts.database, parts.data, parts.alarms, m_users, m_audit, m_path, m_changes, parts.pages, parts.hub},
                QSysInfo::machineHostName())
{
    m_users.setSecured(project.isSecured);
    m_path.setWorkplace(m_manager.workplace());
    parts.hub.setRuntimeManager(&m_manager);
    connect(&m_path, &ControlPath::problemFound, this, &ControlSystem::problemFound);
    connect(&parts.data, &DataService::ticked, &m_path, [this] { m_path.advance(); });
    connect(&m_users, &DatabaseManager::loggedOff, &m_path, &ControlPath::endSession);
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

void ControlSystem::start(bool isKept)
{
    openFiles(isKept);
    // Without accounts a secured project lets nobody in; an unsecured one needs none.
    if (m_project.isSecured) {
        if (const auto opened = m_accounts.open(m_project.accounts); !opened)
            Q_EMIT problemFound(opened.error());
        UserAccountDatabase::registerDatabase(&m_accounts);
    }
    for (const QString& problem : m_changes.restore())
        Q_EMIT problemFound(problem);
}

void ControlSystem::openFiles(bool isKept)
{
    if (isKept) {
        const auto audit = m_audit.open(m_project.operatingFile());
        const auto state = m_state.open(m_project.operatingFile());
        if (audit && state)
            return;
        Q_EMIT problemFound(audit ? state.error() : audit.error());
        if (!audit)
            return; // nothing is sent that could not be accounted for
    } else if (const auto audit = m_audit.openInMemory(); !audit) {
        Q_EMIT problemFound(audit.error());
    }
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
