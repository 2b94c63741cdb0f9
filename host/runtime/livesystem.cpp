#include "host/runtime/livesystem.h"

#include "host/runtime/pointlist.h"
#include "host/scripting/scripthandler.h"
#include "host/shapes/svgsymbol.h"
#include "host/sources/manualsource.h"
#include "host/sources/recordingsource.h"
#include "host/sources/simulationsource.h"
#include "host/sources/streamsource.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace {

std::vector<SourcePoint> sourcePoints(const RuntimeDatabase& database)
{
    using Korvane::ScadaObjectType;
    std::vector<SourcePoint> points;
    for (const ScadaObjectType family :
         {ScadaObjectType::Point, ScadaObjectType::RtuObject, ScadaObjectType::ChannelObject}) {
        for (const ObjectKey key : database.objects(family)) {
            const RuntimeDatabase::Object* object = database.object(key);
            if (object->control.kind != ControlSetting::Kind::Manual)
                points.push_back({key, object->name, object->address});
        }
    }
    return points;
}

constexpr int standardInput = 0;

} // namespace

tl::expected<std::unique_ptr<LiveSystem>, QString> LiveSystem::open(const Options& options)
{
    const auto project = Project::read(options.folder);
    if (!project)
        return tl::make_unexpected(project.error());
    std::unique_ptr<LiveSystem> system(new LiveSystem(*project, options));
    if (const auto loaded = system->loadPoints(); !loaded)
        return tl::make_unexpected(loaded.error());
    const bool isOwn = options.source.isEmpty();
    const QString address = isOwn ? project->source : options.source;
    if (const auto opened = system->openSource(address.isEmpty() ? QStringLiteral("simulation") : address, isOwn);
        !opened)
        return tl::make_unexpected(opened.error());
    system->addManualSource();
    if (options.isStored && !system->m_replay)
        system->openStore();
    system->startAlarms();
    system->startControl(options.isStored && !system->m_replay);
    if (!system->m_core.scadaCoreInterface()->open())
        return tl::make_unexpected(QStringLiteral("the service hub lacks a service")); // a defect of this class
    return system;
}

LiveSystem::LiveSystem(const Project& project, const Options& options)
    : m_project(project),
      m_machineClock(options.machineClock ? options.machineClock : &QDateTime::currentMSecsSinceEpoch),
      m_isClockGiven(options.machineClock != nullptr),
      m_projectManager(nullptr),
      m_core([this] { return QDateTime::fromMSecsSinceEpoch(nowMs(), Qt::UTC); }),
      m_dataService(m_database, *m_core.scadaCoreInterface()),
      m_alarms(m_database, *m_core.scadaCoreInterface()),
      m_voice(nullptr),
      m_managers(m_core.scadaCoreInterface()),
      m_pages(m_project, *m_core.scadaCoreInterface()),
      m_control(m_project, {m_database, m_dataService, m_alarms, m_pages, *m_core.scadaCoreInterface()}),
      m_scripts(*m_core.scadaCoreInterface())
{
    KorvaneScadaCoreInterface& hub = *m_core.scadaCoreInterface();
    hub.setScadaRuntime(&m_database);
    hub.setDataServiceInterface(&m_dataService);
    hub.setAppPropertyManager(&m_properties);
    hub.setTTSInterface(&m_voice);
    hub.setCanvasActionManagerFactory(&m_managers);
    m_core.setCanvasManager(&m_pages);
    m_core.setDatabaseManager(&m_control.users());
    m_core.setProjectManager(&m_projectManager);
    m_projectManager.setProject(m_project);
    m_managers.setPresentRecords([this](const auto& objects) { return m_dataService.presentRecords(objects); });
    m_database.setClock([this] { return nowMs(); });
    if (!m_project.timeZone.isEmpty())
        m_database.setTimeZone(QTimeZone(m_project.timeZone.toLatin1()));
    PointDirectory::registerDirectory(&m_database);
    SvgSymbol::setSearchPaths({m_project.symbolFolder()});

    m_dataService.setTick(m_project.tick);
    connect(&m_dataService, &DataService::problemFound, this, [this](const QString& text) {
        m_alarms.addEvent(text);
        addProblem(text);
    });
    heedPages();
    heedScripts();
    m_scripts.setEnabled(options.areScriptsTrusted);
    connect(&m_properties, &PropertyManager::valueChanged, this, [this](const QString& name, const QVariant& value) {
        for (const auto& page : m_pages.pages())
            page->actions->takeProperty(name, value);
    });
    m_properties.setValue(QStringLiteral("Project"), m_project.name);
    m_blink.setInterval(halfBlink);
    connect(&m_blink, &QTimer::timeout, this, [this] {
        for (const auto& page : m_pages.pages()) {
            if (page->actions->isShown())
                page->actions->timeOut();
        }
    });
}

void LiveSystem::heedPages()
{
    connect(&m_pages, &CanvasManager::opened, this, [this](Page* page) {
        m_dataService.addPage(page->actions.get());
        m_alarms.addPage(page->actions.get());
        for (const QString& problem : qAsConst(page->problems))
            addProblem(problem);
        m_pageScripts.push_back(std::make_unique<PageScripts>(*page, m_core, m_scripts, m_database));
        if (m_scripts.isEnabled())
            m_pageScripts.back()->load();
    });
    connect(&m_pages, &CanvasManager::aboutToClose, this, [this](Page* page) {
        scriptsOf(*page)->unload();
        m_pageScripts.erase(std::find_if(m_pageScripts.begin(), m_pageScripts.end(),
                                         [page](const auto& scripts) { return &scripts->page() == page; }));
        m_dataService.removePage(page->actions.get());
        m_alarms.removePage(page->actions.get());
    });
}

void LiveSystem::heedScripts()
{
    m_core.setScriptInterface(&m_scripts);
    m_scripts.setLimits({m_project.scriptLimit});
    m_scripts.setFolder(m_project.folder);
    m_scripts.setAlarmDesk(&m_alarms.desk());
    m_scripts.setPageNames([this] { return m_project.pages(); });
    connect(&m_scripts, &ScriptEngine::failed, this, &LiveSystem::addProblem);
    connect(&m_scripts, &ScriptEngine::logged, this, [this](ScriptEngine::Severity severity, const QString& text) {
        if (severity == ScriptEngine::Severity::Error)
            addProblem(text);
    });
    connect(&m_dataService, &DataService::batchSent, this, [this] {
        for (const auto& scripts : m_pageScripts)
            scripts->noteValues();
    });
}

PageScripts* LiveSystem::scriptsOf(const Page& page) const
{
    const auto found = std::find_if(m_pageScripts.begin(), m_pageScripts.end(),
                                    [&page](const auto& scripts) { return &scripts->page() == &page; });
    return found == m_pageScripts.end() ? nullptr : found->get();
}

void LiveSystem::trustScripts()
{
    m_scripts.setEnabled(true);
    for (const auto& scripts : m_pageScripts)
        scripts->load();
}

bool LiveSystem::hasUntrustedScripts() const
{
    return !m_scripts.isEnabled() && std::any_of(m_pageScripts.begin(), m_pageScripts.end(),
                                                 [](const auto& scripts) { return !scripts->page().events.isEmpty(); });
}

LiveSystem::~LiveSystem()
{
    m_core.scadaCoreInterface()->close();
    if (m_dataService.isRunning())
        m_alarms.addEvent(tr("%1 ended").arg(m_project.name));
    m_dataService.stop();
    m_alarms.commit();
    // Sound devices turn the event loop as they go: nothing may come back to what is gone by then.
    m_alarms.disconnect(this);
    m_properties.disconnect(this);
    while (!m_pages.pages().empty())
        m_pages.close(m_pages.pages().back()->canvas->canvasName());
}

qint64 LiveSystem::nowMs() const
{
    return m_replay ? m_replay->nowMs() : m_machineClock();
}

void LiveSystem::addProblem(const QString& text)
{
    constexpr int mostKept = 1000;
    m_problems.append(text);
    if (m_problems.size() > mostKept)
        m_problems.removeFirst();
    Q_EMIT problemFound(text);
}

tl::expected<void, QString> LiveSystem::loadPoints()
{
    const auto loaded = PointList::load(m_project.pointFile(), m_database);
    if (!loaded)
        return tl::make_unexpected(loaded.error());
    for (const QString& problem : *loaded)
        addProblem(problem);
    return {};
}

tl::expected<void, QString> LiveSystem::openSource(const QString& text, bool isOwn)
{
    const auto address = SourceAddress::parse(text);
    if (!address)
        return tl::make_unexpected(address.error());
    const std::vector<SourcePoint> points = sourcePoints(m_database);
    RecordingOptions options;
    options.times = address->times;
    options.isLooped = address->isLooped;
    options.map = isOwn && !address->map.isEmpty() ? m_project.path(address->map) : address->map;
    options.zone =
        m_project.timeZone.isEmpty() ? QTimeZone::systemTimeZone() : QTimeZone(m_project.timeZone.toLatin1());
    switch (address->kind) {
    case SourceAddress::Kind::Simulation:
        m_dataService.addSource(std::make_unique<SimulationSource>(address->seed, points));
        return {};
    case SourceAddress::Kind::StandardInput:
        m_dataService.addSource(
            std::make_unique<StreamSource>(standardInput, points, options, [this] { return nowMs(); }));
        return {};
    case SourceAddress::Kind::Recording:
        break;
    }
    // The project's own source lies in the project, one from the command line where its author is.
    const QString file = isOwn ? m_project.path(address->file) : address->file;
    if (!QFileInfo(file).isFile())
        return tl::make_unexpected(QStringLiteral("%1: there is no such recording").arg(file));
    auto recording = std::make_unique<RecordingSource>(file, points, options);
    if (!recording->firstTimeMs()) {
        const QString reason = recording->failure();
        return tl::make_unexpected(reason.isEmpty() ? QStringLiteral("%1: has no row that could be played").arg(file)
                                                    : reason);
    }
    m_replay.emplace(address->times == SourceAddress::Times::Row ? *recording->firstTimeMs() : m_machineClock(),
                     address->speed, m_isClockGiven ? m_machineClock : ReplayClock::Base());
    m_replay->pause(); // until start()
    m_dataService.addSource(std::move(recording));
    return {};
}

void LiveSystem::addManualSource()
{
    std::vector<ObjectKey> points;
    for (const ObjectKey point : m_database.objects(Korvane::ScadaObjectType::Point)) {
        if (m_database.object(point)->control.kind == ControlSetting::Kind::Manual)
            points.push_back(point);
    }
    if (!points.empty())
        m_dataService.addSource(std::make_unique<ManualSource>(points, [this] { return nowMs(); }));
}

// Without the file the system runs as well: what it would keep is lost at its end.
void LiveSystem::openStore()
{
    const QString lost = QStringLiteral("; statistics and the alarm log are not kept beyond the end of this program");
    if (const auto opened = m_store.open(m_project.databaseFile()); !opened) {
        addProblem(opened.error() + lost);
        return;
    }
    std::vector<RuntimeDatabase::Object> points;
    for (const ObjectKey key : m_database.objects(Korvane::ScadaObjectType::Point))
        points.push_back(*m_database.object(key));
    if (const auto imported = m_store.importPoints(points); !imported) {
        addProblem(imported.error() + lost);
        m_store.close();
        return;
    }
    for (const QString& problem : m_store.load(m_database))
        addProblem(problem);
    m_dataService.setStore(&m_store);
}

// What pages show of the alarms by tags such as "@::AlarmsUnacknowledged".
void LiveSystem::showAlarmFigures()
{
    const AlarmManager& manager = m_alarms.manager();
    const ScadaAlarm first = manager.firstOut({});
    int visible = 0;
    for (int severity = ScadaAlarm::lowestSeverity; severity <= ScadaAlarm::highestSeverity; ++severity)
        visible += manager.visibleCount(severity);
    m_properties.setValue(QStringLiteral("AlarmsStanding"), visible);
    m_properties.setValue(QStringLiteral("AlarmsUnacknowledged"), manager.unacknowledgedCount({}));
    m_properties.setValue(QStringLiteral("AlarmsHighestSeverity"), manager.highestUnacknowledgedSeverity());
    m_properties.setValue(QStringLiteral("NewestAlarm"), m_alarms.newest().message);
    m_properties.setValue(QStringLiteral("FirstAlarm"), first.message);
}

// The log lies in the store's file; where that can't be used, it lasts as long as the program.
void LiveSystem::startAlarms()
{
    connect(&m_alarms, &AlarmSystem::problemFound, this, &LiveSystem::addProblem);
    connect(&m_dataService, &DataService::ticked, &m_alarms, &AlarmSystem::advance);
    connect(&m_alarms, &AlarmSystem::changed, this, &LiveSystem::showAlarmFigures);
    if (const auto started = m_alarms.start(m_store.fileName()); !started)
        addProblem(started.error() + QStringLiteral("; the alarm log is not kept beyond the end of this program"));
    showAlarmFigures();
}

void LiveSystem::startControl(bool isKept)
{
    connect(&m_control, &ControlSystem::problemFound, this, &LiveSystem::addProblem);
    const auto& sources = m_dataService.sources();
    const bool isSimulated = std::any_of(sources.begin(), sources.end(), [](const auto& source) {
        return qobject_cast<const SimulationSource*>(source.get()) != nullptr;
    });
    const std::vector<ObjectKey> points = m_database.objects(Korvane::ScadaObjectType::Point);
    const bool isCommanded = std::any_of(points.begin(), points.end(), [this](ObjectKey point) {
        return m_database.object(point)->control.isControllable() && m_dataService.commandSource(point);
    });
    m_control.start(isKept, isCommanded && !isSimulated && !m_replay);
    heedSessions();
    RuntimeManager& manager = m_control.manager();
    manager.setSimulated(isSimulated);
    if (!m_replay)
        return;
    manager.setReplay({[this] { return m_replay->isPaused() ? 0 : m_replay->speed(); },
                       [this](double speed) {
                           if (speed == 0) {
                               m_replay->pause();
                               return true;
                           }
                           m_replay->setSpeed(speed);
                           m_replay->resume();
                           return true;
                       },
                       [this](qint64 timeMs) { return seekReplay(timeMs); }});
}

// What was before is not what will have been: values, statistics and what pages show begin anew.
bool LiveSystem::seekReplay(qint64 timeMs)
{
    for (const auto& source : m_dataService.sources()) {
        auto* recording = qobject_cast<RecordingSource*>(source.get());
        if (!recording || !recording->seek(timeMs))
            continue;
        m_database.forgetValues();
        m_replay->seek(timeMs);
        m_control.changes().renewSubstitutes();
        m_alarms.addEvent(
            tr("Replay went to %1").arg(QDateTime::fromMSecsSinceEpoch(timeMs, Qt::UTC).toString(Qt::ISODate)));
        return true;
    }
    return false;
}

void LiveSystem::heedSessions()
{
    const auto tell = [this](ScriptHandler handler) {
        for (const auto& scripts : m_pageScripts)
            scripts->noteSession(handler);
    };
    connect(&m_control.users(), &DatabaseManager::loggedOn, this, [this, tell](const QString& user) {
        m_properties.setValue(QStringLiteral("User"), user);
        m_alarms.addEvent(tr("%1 logged on").arg(user), user);
        // Behind whoever opens pages for him.
        QMetaObject::invokeMethod(
            this, [tell] { tell(ScriptHandler::Logon); }, Qt::QueuedConnection);
    });
    connect(&m_control.users(), &DatabaseManager::loggedOff, this, [this, tell](const QString& user) {
        m_properties.setValue(QStringLiteral("User"), QString());
        m_alarms.addEvent(tr("%1 logged off").arg(user), user);
        tell(ScriptHandler::Logout);
    });
    m_properties.setValue(QStringLiteral("User"), m_control.manager().currentUser());
}

QString LiveSystem::sourceDescription() const
{
    QStringList descriptions;
    for (const auto& source : m_dataService.sources()) {
        if (source->canFail()) // what is entered by hand goes without saying
            descriptions.append(source->description());
    }
    return descriptions.join(QStringLiteral(", "));
}

void LiveSystem::start()
{
    if (m_replay)
        m_replay->resume();
    m_alarms.addEvent(tr("%1 started: %2").arg(m_project.name, sourceDescription()));
    m_dataService.start();
    m_blink.start();
}

tl::expected<Page*, QString> LiveSystem::openPage(const QString& name)
{
    auto page = m_pages.open(name);
    if (!page)
        addProblem(page.error());
    return page;
}
