#include "host/design/designsystem.h"

#include "host/design/designdocument.h"
#include "host/runtime/pointlist.h"
#include "host/shapes/svgsymbol.h"

tl::expected<std::unique_ptr<DesignSystem>, QString> DesignSystem::open(const QString& folder)
{
    const auto project = Project::read(folder);
    if (!project)
        return tl::make_unexpected(project.error());
    std::unique_ptr<DesignSystem> system(new DesignSystem(*project));
    const auto loaded = PointList::load(project->pointFile(), system->m_database);
    if (!loaded)
        return tl::make_unexpected(loaded.error());
    system->m_problems = *loaded;
    system->openAccounts();
    return system;
}

DesignSystem::DesignSystem(const Project& project)
    : m_project(project), m_managers(m_core.scadaCoreInterface()), m_scripts(*m_core.scadaCoreInterface())
{
    KorvaneScadaCoreInterface& hub = *m_core.scadaCoreInterface();
    hub.setScadaRuntime(&m_database);
    hub.setAppPropertyManager(&m_properties);
    hub.setCanvasActionManagerFactory(&m_managers);
    m_core.setScriptInterface(&m_scripts);
    m_scripts.setLimits({m_project.scriptLimit});
    m_scripts.setFolder(m_project.folder);
    m_scripts.setPageNames([this] { return m_project.pages(); });
    PointDirectory::registerDirectory(&m_database);
    SvgSymbol::setSearchPaths({m_project.symbolFolder()});
}

// A page's access names accounts; a project without user security has none.
void DesignSystem::openAccounts()
{
    if (!m_project.isSecured)
        return;
    if (const auto opened = m_accounts.open(m_project.accounts); !opened)
        m_problems.append(opened.error());
    UserAccountDatabase::registerDatabase(&m_accounts);
}

DesignSystem::~DesignSystem()
{
    m_core.scadaCoreInterface()->close();
}

tl::expected<std::unique_ptr<DesignDocument>, QString> DesignSystem::openPage(const QString& name)
{
    if (!m_project.pages().contains(name))
        return tl::make_unexpected(QStringLiteral("the project has no page \"%1\"").arg(name));
    return DesignDocument::open(m_project.pageFile(name), m_managers, m_database, m_scripts);
}
