#include "host/alarms/alarmsystem.h"

#include "host/runtime/runtimedatabase.h"
#include "scada/hub/canvasscadaactionmanagerinterface.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <algorithm>

namespace {

// Some 15 ms of writing: a burst must not hold the window.
constexpr std::size_t mostLinesAtOnce = 1000;
// What could not be written may have to wait long for another change.
constexpr std::chrono::seconds retryAfter{1};

} // namespace

AlarmSystem::AlarmSystem(RuntimeDatabase& database, KorvaneScadaCoreInterface& hub, QObject* parent)
    : QObject(parent),
      m_database(database),
      m_hub(hub),
      m_manager([&hub] { return hub.currentTime(); }),
      m_processor(database, m_manager),
      m_desk(m_manager, hub)
{
    hub.setAlarmManager(&m_manager);
    hub.setAlarmProcessor(&m_processor);
    m_manager.setLatching([this](ObjectKey key) {
        const RuntimeDatabase::Object* object = m_database.object(key);
        return object && object->alarm.isLatching;
    });
    connect(&m_manager, &AlarmManager::transitioned, this, &AlarmSystem::take);
    connect(&m_manager, &AlarmManager::exclusionChanged, this,
            [this](ObjectKey object) { m_log.appendExclusion(object, m_manager.exclusion(object)); });
    m_settle.setSingleShot(true);
    m_settle.setInterval(0);
    m_retry.setSingleShot(true);
    m_retry.setInterval(retryAfter);
    connect(&m_retry, &QTimer::timeout, this, [this] { commit(mostLinesAtOnce); });
    connect(&m_settle, &QTimer::timeout, this, [this] {
        commit(mostLinesAtOnce);
        if (m_toldProblem.isEmpty() && m_log.waiting() > 0)
            m_settle.start();
        Q_EMIT changed();
    });
}

AlarmSystem::~AlarmSystem()
{
    commit();
    m_hub.setAlarmManager(nullptr);
    m_hub.setAlarmProcessor(nullptr);
}

tl::expected<void, QString> AlarmSystem::start(const QString& fileName)
{
    auto opened = fileName.isEmpty() ? m_log.openInMemory()
                                     : m_log.open(fileName).and_then([this] { return m_log.restore(m_manager); });
    if (!opened) {
        if (const auto inMemory = m_log.openInMemory(); !inMemory)
            opened = inMemory;
    }
    m_processor.watchAll();
    return opened;
}

void AlarmSystem::take(const AlarmTransition& transition)
{
    m_log.append(transition);
    m_settle.start();
    if (!transition.isAnnouncement())
        return;
    m_newest = transition.alarm;
    announce(transition.alarm);
}

// One after the other, though a page may raise another from within: a result ends the oldest alarm that waits for one.
void AlarmSystem::announce(const ScadaAlarm& alarm)
{
    m_announced.push_back(alarm);
    if (m_isAnnouncing)
        return;
    m_isAnnouncing = true;
    for (; !m_announced.empty(); m_announced.pop_front())
        tellPages(m_announced.front());
    m_isAnnouncing = false;
}

// A page may be closed, or opened, by whoever hears of the alarm.
void AlarmSystem::tellPages(const ScadaAlarm& alarm)
{
    for (CanvasScadaActionManagerInterface* page : std::vector<CanvasScadaActionManagerInterface*>(m_pages)) {
        const auto isOpen = [&] { return std::find(m_pages.begin(), m_pages.end(), page) != m_pages.end(); };
        if (!isOpen() || !page->isShown())
            continue;
        const auto concerned = page->actionsBoundTo(alarm.object());
        if (concerned.isEmpty())
            continue;
        page->requestAlarm(alarm, concerned);
        if (isOpen())
            page->setAlarmResult(static_cast<int>(m_manager.alarm(alarm.id).state));
    }
}

void AlarmSystem::advance()
{
    const QDateTime now = m_hub.currentTime();
    m_processor.advance(now.toMSecsSinceEpoch());
    m_manager.advance(now);
}

void AlarmSystem::addEvent(const QString& text, const QString& user)
{
    AlarmTransition event;
    event.kind = AlarmTransition::Kind::Event;
    event.time = m_hub.currentTime();
    event.alarm.message = text;
    event.user = user;
    m_log.append(event);
    m_settle.start();
}

// A full disk fails every time: once is told, until it fails for another reason.
void AlarmSystem::commit(std::size_t mostLines)
{
    if (m_log.waiting() == 0)
        return;
    const auto committed = m_log.commit(mostLines);
    if (committed) {
        m_toldProblem.clear();
        Q_EMIT logged();
        return;
    }
    m_retry.start();
    if (committed.error() == m_toldProblem)
        return;
    m_toldProblem = committed.error();
    Q_EMIT problemFound(m_toldProblem);
}

void AlarmSystem::addPage(CanvasScadaActionManagerInterface* page)
{
    if (std::find(m_pages.begin(), m_pages.end(), page) == m_pages.end())
        m_pages.push_back(page);
}

void AlarmSystem::removePage(CanvasScadaActionManagerInterface* page)
{
    m_pages.erase(std::remove(m_pages.begin(), m_pages.end(), page), m_pages.end());
}
