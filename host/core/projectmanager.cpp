#include "host/core/projectmanager.h"

#include "host/canvas/pagereader.h"
#include "host/core/filename_p.h"
#include "host/core/projectpanel_p.h"
#include "host/runtime/pointlist.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using Done = tl::expected<void, QString>;
using Settings = std::vector<std::pair<const char*, QVariant>>;

tl::expected<Project, QString> with(Project project, const Settings& settings)
{
    for (const auto& [name, value] : settings) {
        auto changed = project.withSetting(QLatin1String(name), value);
        if (!changed)
            return changed;
        project = *changed;
    }
    return project;
}

/// A list as a setting; without any name the project has no such member.
QVariant listed(const QStringList& names)
{
    return names.isEmpty() ? QVariant() : QVariant(names);
}

QStringList without(QStringList names, const QString& name)
{
    names.removeAll(name);
    return names;
}

Done writeNew(const QString& fileName, const QByteArray& text)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::NewOnly))
        return tl::make_unexpected(ProjectManager::tr("%1 can't be made: %2").arg(fileName, file.errorString()));
    if (file.write(text) == text.size() && file.flush())
        return {};
    const QString reason = file.errorString();
    file.remove();
    return tl::make_unexpected(ProjectManager::tr("%1 can't be written: %2").arg(fileName, reason));
}

QByteArray emptyPage()
{
    return "{\n \"format\": \"korvane-page\",\n \"version\": " + QByteArray::number(PageReader::version) +
           ",\n \"layers\": []\n}\n";
}

Done checkNewFolder(const QString& folder)
{
    const QFileInfo info(folder);
    if (info.exists() && !info.isDir())
        return tl::make_unexpected(ProjectManager::tr("%1 is a file, not a folder.").arg(folder));
    const QDir dir(folder);
    if (dir.exists(QStringLiteral("project.json")))
        return tl::make_unexpected(ProjectManager::tr("%1 holds a project already.").arg(folder));
    if (info.exists() && !dir.isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
        return tl::make_unexpected(ProjectManager::tr("%1 is not empty.").arg(folder));
    return {};
}

/// project.json comes last: without it the folder is no project.
Done writeProject(const QString& folder, const QString& name)
{
    const QDir dir(folder);
    if (!dir.mkpath(QStringLiteral("pages")))
        return tl::make_unexpected(
            ProjectManager::tr("The folder %1 can't be made.").arg(dir.filePath(QStringLiteral("pages"))));
    if (Done points = writeNew(dir.filePath(QStringLiteral("points.csv")), PointList::empty()); !points)
        return points;
    const QByteArray text = "{\n \"version\": " + QByteArray::number(Project::version) + "\n}\n";
    return Project::parse(text, folder)
        .and_then([&](const Project& project) { return project.withSetting(QStringLiteral("name"), name); })
        .and_then([](const Project& project) { return project.write(); });
}

/// Leaves nothing behind when it fails.
Done makeProject(const QString& folder, const QString& name)
{
    if (const QString problem = FileName::problem(name); !problem.isEmpty())
        return tl::make_unexpected(problem);
    if (Done isFree = checkNewFolder(folder); !isFree)
        return isFree;
    const bool wasThere = QFileInfo::exists(folder);
    Done written = writeProject(folder, name);
    if (!written && wasThere) {
        QDir(folder).remove(QStringLiteral("points.csv"));
        QDir(folder).rmdir(QStringLiteral("pages"));
    } else if (!written) {
        QDir(folder).removeRecursively();
    }
    return written;
}

} // namespace

ProjectManager::ProjectManager(QWidget* parent) : KorvaneProjectManagerInterface(parent)
{
    setWindowFlag(Qt::Window);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new ProjectPanel(*this, this));
}

ProjectManager::~ProjectManager() = default;

bool ProjectManager::finish(const Done& done)
{
    m_lastError = done ? QString() : done.error();
    Q_EMIT changed();
    return done.has_value();
}

void ProjectManager::close()
{
    if (!m_project)
        return;
    m_project.reset();
    m_stored.reset();
    m_isSecured = false;
    Q_EMIT changed();
    Q_EMIT projectClosed();
}

void ProjectManager::setProject(const Project& project)
{
    close();
    m_project = project;
    m_stored = project;
    m_isSecured = project.isSecured;
    finish({});
    Q_EMIT projectOpened();
}

bool ProjectManager::openProject(const QString& folder)
{
    const auto project = Project::read(folder);
    if (!project)
        return finish(tl::make_unexpected(project.error()));
    setProject(*project);
    return true;
}

bool ProjectManager::createProject(const QString& folder, const QString& name)
{
    const auto project = makeProject(folder, name).and_then([&folder] { return Project::read(folder); });
    if (!project)
        return finish(tl::make_unexpected(project.error()));
    close();
    m_project = *project;
    m_stored = *project;
    finish({});
    Q_EMIT projectCreated();
    Q_EMIT projectOpened();
    return true;
}

bool ProjectManager::closeProject()
{
    if (!m_project)
        return finish(tl::make_unexpected(tr("No project is open.")));
    close();
    return finish({});
}

bool ProjectManager::isSecurityEnabled()
{
    return m_isSecured;
}

bool ProjectManager::setSecurityEnabled(bool enabled)
{
    return change(QStringLiteral("security"), enabled);
}

bool ProjectManager::isOpen() const
{
    return m_project.has_value();
}

bool ProjectManager::isModified() const
{
    return m_project && m_project->text != m_stored->text;
}

bool ProjectManager::saveProject()
{
    if (!m_project)
        return finish(tl::make_unexpected(tr("No project is open.")));
    return finish(store(*m_project));
}

/// A file that is gone is made anew.
ProjectManager::Done ProjectManager::store(const Project& project)
{
    QFile file(m_stored->settingsFile());
    if (file.open(QIODevice::ReadOnly) && file.readAll() != m_stored->text) {
        return tl::make_unexpected(
            tr("%1 was changed by another program and is left as it is. Open the project again.").arg(file.fileName()));
    }
    file.close();
    Done written = project.write();
    if (written)
        m_stored = project;
    return written;
}

QString ProjectManager::projectName() const
{
    return m_project ? m_project->name : QString();
}

QString ProjectManager::projectFolder() const
{
    return m_project ? m_project->folder : QString();
}

QString ProjectManager::lastError() const
{
    return m_lastError;
}

QStringList ProjectManager::pages() const
{
    return m_project ? m_project->pages() : QStringList();
}

QString ProjectManager::pageFile(const QString& page) const
{
    return pages().contains(page) ? m_project->pageFile(page) : QString();
}

QString ProjectManager::startPage() const
{
    return m_project ? m_project->startPage : QString();
}

ProjectManager::Done ProjectManager::checkPage(const QString& page) const
{
    if (!m_project)
        return tl::make_unexpected(tr("No project is open."));
    if (!pages().contains(page))
        return tl::make_unexpected(tr("The project has no page \"%1\".").arg(page));
    return {};
}

/// Letters that differ in case only are the same name for some file systems, to which the project may be brought.
ProjectManager::Done ProjectManager::checkNewPage(const QString& name, const QString& exceptFile) const
{
    if (!m_project)
        return tl::make_unexpected(tr("No project is open."));
    if (const QString problem = FileName::problem(name); !problem.isEmpty())
        return tl::make_unexpected(problem);
    QStringList files = QDir(m_project->pageFolder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System);
    files.removeOne(exceptFile);
    const QString file = QFileInfo(m_project->pageFile(name)).fileName();
    if (!files.contains(file, Qt::CaseInsensitive))
        return {};
    if (m_project->removedPages.contains(name))
        return tl::make_unexpected(
            tr("The name \"%1\" is taken by a page that was removed; its file is still there.").arg(name));
    return tl::make_unexpected(tr("The name \"%1\" is taken.").arg(name));
}

bool ProjectManager::setStartPage(const QString& page)
{
    if (Done isThere = checkPage(page); !isThere)
        return finish(isThere);
    return change(QStringLiteral("startPage"), page);
}

/// \param change made to what is stored as well as to what will be saved
ProjectManager::Done ProjectManager::changeFiles(const Change& change, const std::function<Done()>& act,
                                                 const std::function<void()>& takeBack)
{
    const auto stored = change(*m_stored);
    const auto project = change(*m_project);
    if (!stored || !project)
        return tl::make_unexpected(stored ? project.error() : stored.error());
    if (Done acted = act(); !acted)
        return acted;
    if (stored->text != m_stored->text) {
        if (Done kept = store(*stored); !kept) {
            takeBack();
            return kept;
        }
    }
    m_project = *project;
    return {};
}

ProjectManager::Done ProjectManager::makePage(const QString& page)
{
    if (Done isFree = checkNewPage(page, QString()); !isFree)
        return isFree;
    if (!QDir().mkpath(m_project->pageFolder()))
        return tl::make_unexpected(tr("The folder %1 can't be made.").arg(m_project->pageFolder()));
    const auto change = [&page](const Project& project) {
        return with(project, {{"removedPages", listed(without(project.removedPages, page))},
                              {"pages", project.pages() + QStringList{page}}});
    };
    const QString file = m_project->pageFile(page);
    return changeFiles(
        change, [&file] { return writeNew(file, emptyPage()); }, [&file] { QFile::remove(file); });
}

bool ProjectManager::addPage(const QString& page)
{
    return finish(makePage(page));
}

ProjectManager::Done ProjectManager::takeOutPage(const QString& page)
{
    if (Done isThere = checkPage(page); !isThere)
        return isThere;
    Settings settings = {{"pages", listed(without(m_project->pageOrder, page))},
                         {"removedPages", m_project->removedPages + QStringList{page}}};
    if (m_project->startPage == page)
        settings.push_back({"startPage", QVariant()});
    const auto changed = with(*m_project, settings);
    if (!changed)
        return tl::make_unexpected(changed.error());
    m_project = *changed;
    return {};
}

bool ProjectManager::removePage(const QString& page)
{
    return finish(takeOutPage(page));
}

ProjectManager::Done ProjectManager::giveNewName(const QString& page, const QString& newName)
{
    if (Done isThere = checkPage(page); !isThere || page == newName)
        return isThere;
    const QString from = m_project->pageFile(page);
    if (Done isFree = checkNewPage(newName, QFileInfo(from).fileName()); !isFree)
        return isFree;
    const QString to = m_project->pageFile(newName);
    const auto change = [&](const Project& project) {
        QStringList order = without(project.pageOrder, newName);
        std::replace(order.begin(), order.end(), page, newName);
        Settings settings = {{"pages", listed(order)},
                             {"removedPages", listed(without(project.removedPages, newName))}};
        if (project.startPage == page)
            settings.push_back({"startPage", newName});
        return with(project, settings);
    };
    const auto rename = [&]() -> Done {
        QFile file(from);
        if (file.rename(to))
            return {};
        return tl::make_unexpected(tr("%1 can't be renamed: %2").arg(from, file.errorString()));
    };
    return changeFiles(change, rename, [&] { QFile::rename(to, from); });
}

bool ProjectManager::renamePage(const QString& page, const QString& newName)
{
    return finish(giveNewName(page, newName));
}

QVariant ProjectManager::setting(const QString& name) const
{
    return m_project ? m_project->setting(name) : QVariant();
}

bool ProjectManager::change(const QString& setting, const QVariant& value)
{
    if (!m_project)
        return finish(tl::make_unexpected(tr("No project is open.")));
    const auto changed = m_project->withSetting(setting, value);
    if (!changed)
        return finish(tl::make_unexpected(changed.error()));
    m_project = *changed;
    return finish({});
}

bool ProjectManager::setSetting(const QString& name, const QVariant& value)
{
    return change(name, value);
}

std::chrono::milliseconds ProjectManager::tick() const
{
    return m_project ? m_project->tick : std::chrono::milliseconds(0);
}

QStringList ProjectManager::sources() const
{
    return m_project && !m_project->source.isEmpty() ? QStringList(m_project->source) : QStringList();
}

QString ProjectManager::resourceFile(const QString& relativePath) const
{
    if (!m_project || QDir::isAbsolutePath(relativePath))
        return {};
    const QString file = QDir::cleanPath(m_project->path(relativePath));
    const bool isInside = file.startsWith(m_project->folder + QLatin1Char('/'));
    return isInside && QFileInfo(file).isFile() ? file : QString();
}
