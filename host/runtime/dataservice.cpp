#include "host/runtime/dataservice.h"

#include "host/core/project.h"
#include "host/runtime/runtimedatabase.h"
#include "host/runtime/runtimestore.h"
#include "platform/data/valuemarks.h"
#include "scada/hub/canvasscadaactionmanagerinterface.h"
#include "scada/hub/korvanescadacoreinterface.h"

#include <QMetaMethod>
#include <QScopedValueRollback>

#include <algorithm>

namespace {

constexpr std::chrono::milliseconds usualTick{50};
constexpr int foldedPointsATick = 200; // keeps a tick short; what is not folded is in the journal

} // namespace

DataService::DataService(RuntimeDatabase& database, KorvaneScadaCoreInterface& hub, QObject* parent)
    : QObject(parent), m_database(database), m_hub(hub)
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(usualTick);
    connect(&m_timer, &QTimer::timeout, this, &DataService::tick);
}

DataService::~DataService() = default;

qint64 DataService::nowMs() const
{
    return m_hub.currentTime().toMSecsSinceEpoch();
}

void DataService::addSource(std::unique_ptr<ValueSource> source)
{
    ValueSource* added = source.get();
    m_sources.push_back(std::move(source));
    m_sourceFigures.push_back(std::make_unique<SourceFigures>());
    SourceFigures* figures = m_sourceFigures.back().get();
    connect(added, &ValueSource::delivered, this,
            [this, figures](const std::vector<Sample>& samples) { takeFrom(*figures, samples); });
    connect(added, &ValueSource::problemFound, this, [this, figures](const QString& text) {
        ++figures->errors;
        figures->lastError = text;
        Q_EMIT problemFound(text);
    });
    connect(added, &ValueSource::commandAnswered, this, &DataService::commandAnswered);
    connect(added, &ValueSource::stateChanged, this, [added, figures] {
        if (added->state() == ValueSource::State::Failed) {
            ++figures->errors;
            figures->lastError = added->failure();
        }
    });
    connect(added, &ValueSource::stateChanged, this, [this, added] { heedSource(*added); });
    if (added->state() == ValueSource::State::Failed)
        heedSource(*added);
}

void DataService::setTick(std::chrono::milliseconds tick)
{
    m_timer.setInterval(std::clamp(tick, Project::shortestTick, Project::longestTick));
}

void DataService::start()
{
    for (const auto& source : m_sources)
        source->start(nowMs());
    m_timer.start();
}

void DataService::stop()
{
    m_timer.stop();
    if (!m_store)
        return;
    if (const auto committed = m_store->commit(nowMs()); !committed)
        tellOnce(committed.error());
}

void DataService::takeFrom(SourceFigures& figures, const std::vector<Sample>& samples)
{
    figures.samples += samples.size();
    for (const Sample& sample : samples)
        figures.newestMs = std::max(figures.newestMs, sample.timeMs);
    if (m_held.isEmpty()) {
        take(samples);
        return;
    }
    m_taken.clear();
    for (const Sample& sample : samples) {
        const auto held = m_held.find(sample.object);
        if (held == m_held.end())
            m_taken.push_back(sample);
        else
            held->newest = sample;
    }
    take(m_taken);
}

void DataService::take(const std::vector<Sample>& samples)
{
    for (const Sample& sample : samples) {
        if (!m_database.takeSample(sample)) {
            ++m_figures.ignoredSamples;
            continue;
        }
        ++m_figures.samples;
        m_newestMs = std::max(m_newestMs, sample.timeMs);
        m_history.append(sample);
        noteChanged(sample.object);
    }
    if (m_store)
        m_store->append(samples);
}

void DataService::noteChanged(ObjectKey object)
{
    if (Korvane::isPointObjectType(object.type))
        m_newPoints.insert(static_cast<quint32>(object.id));
    else if (std::find(m_newOthers.begin(), m_newOthers.end(), object) == m_newOthers.end())
        m_newOthers.push_back(object);
}

void DataService::hold(ObjectKey object)
{
    ++m_held[object].count;
}

void DataService::release(ObjectKey object)
{
    const auto held = m_held.find(object);
    if (held == m_held.end() || --held->count > 0)
        return;
    const std::optional<Sample> newest = held->newest;
    m_held.erase(held);
    if (!newest || isTooOld(*newest))
        return;
    // What was entered meanwhile is younger than what was held back, and would have it ignored.
    Sample sample = *newest;
    sample.timeMs = std::max(sample.timeMs, nowMs());
    takeAsNewest(sample);
}

// What would have gone stale by now says nothing of the process; what its source has lost was forgotten with that.
bool DataService::isTooOld(const Sample& sample) const
{
    const RuntimeDatabase::Object* object = m_database.object(sample.object);
    const qint64 staleAfterMs = object ? object->staleAfter.count() : 0;
    return staleAfterMs > 0 && sample.timeMs + staleAfterMs <= nowMs();
}

// A source's clock may run before the system's.
void DataService::takeAsNewest(Sample sample)
{
    const QuorixData record = m_database.presentRecord(sample.object);
    if (const QuorixValue* time = record.GetValue("time"))
        sample.timeMs = std::max(sample.timeMs, time->toVariant().toDateTime().toMSecsSinceEpoch());
    take({sample});
}

void DataService::enter(const Sample& sample)
{
    takeAsNewest(sample);
}

ValueSource* DataService::commandSource(ObjectKey object) const
{
    const auto found = std::find_if(m_sources.begin(), m_sources.end(),
                                    [object](const auto& source) { return source->takesCommands(object); });
    return found == m_sources.end() ? nullptr : found->get();
}

ValueSource* DataService::sourceOf(ObjectKey object) const
{
    for (const auto& source : m_sources) {
        const std::vector<ObjectKey> objects = source->objects();
        if (std::find(objects.begin(), objects.end(), object) != objects.end())
            return source.get();
    }
    return nullptr;
}

void DataService::heedSource(ValueSource& source)
{
    const bool hasFailed = source.state() == ValueSource::State::Failed;
    if (hasFailed)
        Q_EMIT problemFound(QStringLiteral("%1: %2").arg(source.description(), source.failure()));
    for (const ObjectKey object : source.objects()) {
        if (const auto held = m_held.find(object); hasFailed && held != m_held.end())
            held->newest.reset();
        if (!m_database.setCommunicationFailed(object, hasFailed, nowMs()))
            continue;
        noteChanged(object);
        if (m_store)
            m_store->appendCommunicationFailed(object, hasFailed, nowMs());
    }
    const auto canFail = [](const auto& each) { return each->canFail(); };
    m_isFailed = std::any_of(m_sources.begin(), m_sources.end(), canFail) &&
                 std::all_of(m_sources.begin(), m_sources.end(), [](const auto& each) {
                     return !each->canFail() || each->state() == ValueSource::State::Failed;
                 });
    if (!m_isFailed)
        m_isFailureTold = false;
}

void DataService::tick()
{
    // A page's script or a listener may turn the event loop amid a batch of samples.
    if (m_isTicking)
        return;
    const QScopedValueRollback<bool> ticking(m_isTicking, true);
    const qint64 now = nowMs();
    for (const auto& source : m_sources)
        source->advance(now);
    for (const ObjectKey object : m_database.takeStale(now))
        noteChanged(object);
    send();
    if (m_store) {
        if (const auto committed = m_store->commit(now); !committed)
            tellOnce(committed.error());
        else if (const auto folded = m_store->fold(m_database, foldedPointsATick); !folded)
            tellOnce(folded.error());
        else
            m_toldProblem.clear();
    }
    Q_EMIT ticked();
}

// A full disk fails with every tick: once is enough, until it fails for another reason.
void DataService::tellOnce(const QString& problem)
{
    if (problem == m_toldProblem)
        return;
    m_toldProblem = problem;
    Q_EMIT problemFound(problem);
}

void DataService::send()
{
    m_batch.points.clear();
    m_batch.rtus.clear();
    m_batch.channels.clear();
    if (m_isFailed) {
        if (m_isFailureTold)
            return;
        m_isFailureTold = true;
    } else {
        if (m_newPoints.empty())
            return;
        tellChanged();
        for (const quint32 id : m_newPoints) {
            const auto signedId = static_cast<qint32>(id);
            m_batch.points.emplace(id, m_database.presentRecord({Korvane::pointTypeOfId(signedId), signedId}));
        }
        m_newPoints.clear();
        for (const ObjectKey object : m_newOthers) {
            auto& records = object.type == Korvane::ScadaObjectType::RtuObject ? m_batch.rtus : m_batch.channels;
            records.emplace(static_cast<quint32>(object.id), m_database.presentRecord(object));
        }
        m_newOthers.clear();
    }
    m_figures.newestSampleMs = m_newestMs;
    m_newestMs = 0;
    ++m_figures.batches;
    m_figures.records += m_batch.points.size() + m_batch.rtus.size() + m_batch.channels.size();
    // A page may be closed or opened by what a batch does.
    for (CanvasScadaActionManagerInterface* page : std::vector<CanvasScadaActionManagerInterface*>(m_pages)) {
        if (std::find(m_pages.begin(), m_pages.end(), page) != m_pages.end())
            page->takeBatch(m_batch);
    }
    Q_EMIT batchSent();
}

void DataService::tellChanged()
{
    static const QMetaMethod told = QMetaMethod::fromSignal(&DataService::objectsChanged);
    if (!isSignalConnected(told))
        return;
    std::vector<ObjectKey> changed;
    changed.reserve(m_newPoints.size() + m_newOthers.size());
    for (const quint32 id : m_newPoints)
        changed.push_back({Korvane::pointTypeOfId(static_cast<qint32>(id)), static_cast<qint32>(id)});
    changed.insert(changed.end(), m_newOthers.begin(), m_newOthers.end());
    Q_EMIT objectsChanged(changed);
}

void DataService::addPage(CanvasScadaActionManagerInterface* page)
{
    if (std::find(m_pages.begin(), m_pages.end(), page) == m_pages.end())
        m_pages.push_back(page);
}

void DataService::removePage(CanvasScadaActionManagerInterface* page)
{
    m_pages.erase(std::remove(m_pages.begin(), m_pages.end(), page), m_pages.end());
}

std::vector<MwDataDepartment> DataService::presentRecords(const QList<ObjectKey>& objects) const
{
    std::vector<MwDataDepartment> batches;
    MwDataDepartment present;
    const auto add = [&](ObjectKey object) {
        const QuorixData record = m_database.presentRecord(object);
        const auto id = static_cast<quint32>(object.id);
        if (Korvane::isPointObjectType(object.type))
            present.points.emplace(id, record);
        else if (object.type == Korvane::ScadaObjectType::RtuObject)
            present.rtus.emplace(id, record);
        else if (object.type == Korvane::ScadaObjectType::ChannelObject)
            present.channels.emplace(id, record);
    };
    for (const ObjectKey object : objects)
        add(object);
    if (present.points.empty()) {
        // Without a point it would say that the source has failed.
        const auto points = m_database.objects(Korvane::ScadaObjectType::Point);
        if (points.empty())
            return batches;
        add(points.front());
    }
    batches.push_back(std::move(present));
    if (m_isFailed)
        batches.emplace_back();
    return batches;
}

int DataService::failedPoints() const
{
    int count = 0;
    for (const ObjectKey object : m_database.objects(Korvane::ScadaObjectType::Point)) {
        // What nobody has entered yet is no failure.
        if (m_database.object(object)->control.kind == ControlSetting::Kind::Manual)
            continue;
        const QuorixData record = m_database.presentRecord(object);
        const QuorixValue* quality = record.GetValue("quality");
        count += quality && (quality->toInt32() & ValueMark::unreliable) ? 1 : 0;
    }
    return count;
}

QVariant DataService::historyValue(ObjectKey object, DataCode::DataField field)
{
    return m_database.historyValue(object, field);
}

bool DataService::queryUserAccounts(const QString& sql, QList<EUserAccount>& accounts)
{
    if (!m_accountQuery)
        return false;
    const auto found = m_accountQuery(sql);
    if (!found) {
        Q_EMIT problemFound(found.error());
        return false;
    }
    accounts += *found;
    return true;
}
