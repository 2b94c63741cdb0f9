#include "host/runtime/runtimedatabase.h"

#include "host/runtime/bytes_p.h"
#include "host/runtime/pointstatistics.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/tagresolution.h"
#include "platform/data/valuemarks.h"

#include <QDateTime>
#include <QHash>
#include <QLocale>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

using Korvane::ScadaObjectType;

bool isKept(ScadaObjectType type)
{
    return type == ScadaObjectType::DigitalPoint || type == ScadaObjectType::AnalogPoint ||
           type == ScadaObjectType::RtuObject || type == ScadaObjectType::ChannelObject;
}

bool isIdOfType(qint32 id, ScadaObjectType type)
{
    return Korvane::isPointObjectType(type) ? Korvane::pointTypeOfId(id) == type : id > 0;
}

QString idRange(ScadaObjectType type)
{
    const auto range = [](qint32 first, qint32 last) { return QStringLiteral("%1 to %2").arg(first).arg(last); };
    switch (type) {
    case ScadaObjectType::DigitalPoint:
        return range(Korvane::firstDigitalPointId, Korvane::lastDigitalPointId);
    case ScadaObjectType::AnalogPoint:
        return range(Korvane::firstAnalogPointId, Korvane::lastAnalogPointId);
    default:
        return QStringLiteral("1 upwards");
    }
}

QVariant text(const QString& value)
{
    return value.isEmpty() ? QVariant() : QVariant(value);
}

QVariant limit(double value)
{
    return std::isnan(value) ? QVariant() : QVariant(value);
}

const QString noLimits = QStringLiteral("only an analog point has limits");
constexpr quint8 stateLayout = 2; // 1 did not say since when statistics run
constexpr qint64 never = std::numeric_limits<qint64>::min();
constexpr qint64 neverSampled = std::numeric_limits<qint64>::min();
constexpr qint64 earliestTimeMs = Q_INT64_C(-62135596800000); // 0001-01-01
constexpr qint64 latestTimeMs = Q_INT64_C(253402300799999);   // the end of 9999

/// The state that a source's number stands for; NaN for none.
double stateOf(double value)
{
    constexpr double bound = 2147483648.0;
    return value > -bound - 1 && value < bound ? std::trunc(value) : std::numeric_limits<double>::quiet_NaN();
}

bool isBeyondHigh(double value, double limit, double hysteresis, bool was)
{
    return value > (was ? limit - hysteresis : limit); // never beyond one that there is not
}

QString valueText(double value, int decimals)
{
    if (decimals >= 0)
        return QString::number(value, 'f', decimals);
    // Written out as long as that is shorter than an exponent.
    const double size = std::abs(value);
    const bool isUsual = value == 0 || (size >= 1e-6 && size < 1e15);
    return QString::number(value, isUsual ? 'f' : 'g', QLocale::FloatingPointShortest);
}

bool isFieldOf(DataCode::DataField field, ScadaObjectType type, DataFieldInfo::Supplier supplier)
{
    const DataFieldInfo* info = DataFieldInfo::find(field);
    return info && info->supplier() == supplier && info->isFieldOf(type);
}

} // namespace

RuntimeDatabase::Present::Present(const Object& object)
    : timeMs(neverSampled),
      quality(ValueMark::Invalid),
      isAnalog(object.type == ScadaObjectType::AnalogPoint),
      abnormalState(object.abnormalState),
      lowLow(object.lowLow),
      low(object.low),
      high(object.high),
      highHigh(object.highHigh),
      hysteresis(object.hysteresis > 0 ? object.hysteresis : 0),
      rateLimit(object.alarm.rateLimit),
      staleAfterMs(object.staleAfter.count() > PointStatistics::longestStaleAfterMs ? 0 : object.staleAfter.count())
{
}

RuntimeDatabase::RuntimeDatabase()
{
    setClock({});
}
RuntimeDatabase::~RuntimeDatabase() = default;

const RuntimeDatabase::Family* RuntimeDatabase::family(ScadaObjectType type) const
{
    if (Korvane::isPointObjectType(type))
        return &m_points;
    if (type == ScadaObjectType::RtuObject)
        return &m_rtus;
    return type == ScadaObjectType::ChannelObject ? &m_channels : nullptr;
}

RuntimeDatabase::Family* RuntimeDatabase::family(ScadaObjectType type)
{
    return const_cast<Family*>(std::as_const(*this).family(type));
}

void RuntimeDatabase::reserve(ScadaObjectType type, std::size_t count)
{
    Family* objects = family(type);
    if (!objects)
        return;
    objects->objects.reserve(count);
    objects->present.reserve(count);
    objects->byName.reserve(count);
    objects->byId.reserve(count);
}

tl::expected<void, QString> RuntimeDatabase::add(const Object& object)
{
    const auto refused = [&object](const QString& reason) {
        return tl::make_unexpected(
            QStringLiteral("%1 (id %2): %3").arg(object.name, QString::number(object.id), reason));
    };
    if (!isKept(object.type))
        return refused(QStringLiteral("kind %1 is no point, unit or line").arg(static_cast<int>(object.type)));
    if (!isIdOfType(object.id, object.type))
        return refused(QStringLiteral("the id is outside the range of its kind, %1").arg(idRange(object.type)));
    if (!Korvane::isAddressableName(object.name, object.type)) {
        return refused(
            QStringLiteral("no tag could reach this name: it is empty, a number, \"#\" with an id, begins with "
                           "\"@\" or ends in \":\" and a field"));
    }
    Family& objects = *family(object.type);
    if (objects.byId.contains(object.id))
        return refused(QStringLiteral("the id is taken by %1").arg(objects.objects[objects.byId.at(object.id)].name));
    if (objects.byName.contains(QStringView(object.name)))
        return refused(QStringLiteral("the name is taken by id %1").arg(findByName(object.type, object.name).id));

    const std::size_t index = objects.objects.size();
    objects.objects.push_back(object);
    objects.present.emplace_back(object);
    if (!Korvane::isPointObjectType(object.type))
        objects.communication.emplace_back();
    objects.byName.emplace(QStringView(objects.objects.back().name), ObjectKey{object.type, object.id});
    objects.byId.emplace(object.id, index);
    return {};
}

std::size_t RuntimeDatabase::count(ScadaObjectType type) const
{
    const Family* objects = family(type);
    return objects ? objects->objects.size() : 0;
}

ObjectKey RuntimeDatabase::findByName(ScadaObjectType type, QStringView name) const
{
    const Family* objects = family(type);
    if (!objects)
        return {};
    const auto found = objects->byName.find(name);
    return found == objects->byName.end() ? ObjectKey{} : found->second;
}

const RuntimeDatabase::Object* RuntimeDatabase::object(ObjectKey key) const
{
    const Family* objects = family(key.type);
    if (!objects)
        return nullptr;
    const auto found = objects->byId.find(key.id);
    return found == objects->byId.end() ? nullptr : &objects->objects[found->second];
}

const RuntimeDatabase::Present* RuntimeDatabase::findPresent(ObjectKey key) const
{
    const Family* objects = family(key.type);
    if (!objects)
        return nullptr;
    const auto found = objects->byId.find(key.id);
    return found == objects->byId.end() ? nullptr : &objects->present[found->second];
}

RuntimeDatabase::Present* RuntimeDatabase::findPresent(ObjectKey key)
{
    return const_cast<Present*>(std::as_const(*this).findPresent(key));
}

std::vector<ObjectKey> RuntimeDatabase::objects(ScadaObjectType type) const
{
    std::vector<ObjectKey> keys;
    const Family* objects = family(type);
    if (!objects)
        return keys;
    keys.reserve(objects->objects.size());
    for (const Object& object : objects->objects) {
        if (type == ScadaObjectType::Point || type == object.type)
            keys.push_back({object.type, object.id});
    }
    return keys;
}

ObjectKey RuntimeDatabase::findById(ScadaObjectType type, qint32 id) const
{
    const Object* found = object({type, id});
    return found ? ObjectKey{found->type, id} : ObjectKey{};
}

void RuntimeDatabase::setTimeZone(const QTimeZone& zone)
{
    m_calendar = StatisticsCalendar(zone);
}

void RuntimeDatabase::setClock(std::function<qint64()> clock)
{
    m_clock = clock ? std::move(clock) : std::function<qint64()>(&QDateTime::currentMSecsSinceEpoch);
}

bool RuntimeDatabase::takeSample(const Sample& sample)
{
    Family* objects = family(sample.object.type);
    if (!objects)
        return false;
    const auto found = objects->byId.find(sample.object.id);
    if (found == objects->byId.end())
        return false;
    Present& present = objects->present[found->second];
    if (sample.timeMs < present.timeMs || sample.timeMs < earliestTimeMs || sample.timeMs > latestTimeMs)
        return false;

    const double value = present.isAnalog ? sample.value : stateOf(sample.value);
    const qint32 limitMarksBefore = present.limitMarks;
    const qint32 qualityBefore = present.quality;
    const bool isFast = isTooFast(present, value, sample.timeMs);
    const bool wasKnown = present.hasValue;
    const bool wasOnLine = isOnLine(present);
    present.timeMs = sample.timeMs;
    present.quality = sample.quality;
    if (std::isfinite(value)) {
        if (!present.hasValue || present.value != value)
            present.changedMs = sample.timeMs;
        present.value = value;
        present.hasValue = true;
    } else {
        present.quality |= ValueMark::Invalid;
    }
    if ((present.quality & ValueMark::Invalid) == 0) {
        setLimitMarks(present);
        if (isFast)
            present.limitMarks |= ValueMark::Abnormal;
    }
    statisticsOf(present, sample.timeMs).take(sample.timeMs, value, present.quality, m_calendar);
    if (present.staleAfterMs > 0 && !present.isQueued)
        queueExpiry(*objects, found->second);
    noteCommunication(sample.object, wasKnown, wasOnLine, sample.timeMs);
    if (present.isWatched)
        tellMarks(present, limitMarksBefore, qualityBefore, sample.timeMs);
    return true;
}

bool RuntimeDatabase::isOnLine(const Present& present)
{
    return present.hasValue && present.value != 0 && (present.quality & ValueMark::unreliable) == 0;
}

// What a unit or line was before its first sample nobody knows: that one is no change.
void RuntimeDatabase::noteCommunication(ObjectKey key, bool wasKnown, bool wasOnLine, qint64 timeMs)
{
    if (!wasKnown || Korvane::isPointObjectType(key.type))
        return;
    Family& objects = *family(key.type);
    const std::size_t index = objects.byId.at(key.id);
    const bool isOn = isOnLine(objects.present[index]);
    if (isOn == wasOnLine)
        return;
    Communication& times = objects.communication[index];
    (isOn ? times.onLineMs : times.offLineMs) = timeMs;
}

QVariant RuntimeDatabase::communicationTime(ObjectKey key, bool onLine) const
{
    const Family* objects = family(key.type);
    if (!objects || objects->communication.empty())
        return {};
    const Communication& times = objects->communication[objects->byId.at(key.id)];
    const qint64 timeMs = onLine ? times.onLineMs : times.offLineMs;
    return timeMs == never ? QVariant() : QDateTime::fromMSecsSinceEpoch(timeMs, Qt::UTC);
}

/// Whether the value changed faster since the sample before than the point's rate limit. A sample that replaces one of the
/// same time keeps the answer.
bool RuntimeDatabase::isTooFast(const Present& before, double value, qint64 timeMs)
{
    if (std::isnan(before.rateLimit) || !before.isAnalog || !before.hasValue || (before.quality & ValueMark::Invalid))
        return false;
    if (timeMs == before.timeMs)
        return (before.limitMarks & ValueMark::Abnormal) != 0;
    const double seconds = static_cast<double>(timeMs - before.timeMs) / 1000;
    return std::abs(value - before.value) > before.rateLimit * seconds;
}

void RuntimeDatabase::watch(ObjectKey key, quint32 handle)
{
    Family* objects = family(key.type);
    const auto found = objects ? objects->byId.find(key.id) : decltype(objects->byId.find(0))();
    if (!objects || found == objects->byId.end())
        return;
    Present& present = objects->present[found->second];
    present.isWatched = true;
    present.isReportDue = true;
    present.watchHandle = handle;
    if (present.staleAfterMs > 0 && !present.isQueued) {
        m_expiries.push({now() + present.staleAfterMs, objects, found->second});
        present.isQueued = true;
    }
    if ((present.quality & ValueMark::CommunicationFailed) != 0)
        tellMarks(present, present.limitMarks, present.quality, now());
}

void RuntimeDatabase::tellMarks(Present& present, qint32 limitMarksBefore, qint32 qualityBefore, qint64 timeMs)
{
    const bool isSame = present.limitMarks == limitMarksBefore && present.quality == qualityBefore;
    if (!m_marksListener || (isSame && !present.isReportDue))
        return;
    present.isReportDue = false;
    const double value = present.hasValue ? present.value : std::numeric_limits<double>::quiet_NaN();
    m_marksListener->marksChanged({present.watchHandle, timeMs, value, present.limitMarks, present.quality});
}

void RuntimeDatabase::setLimitMarks(Present& present)
{
    if (!present.isAnalog) {
        const bool isAbnormal = present.abnormalState >= 0 && present.value == present.abnormalState;
        present.limitMarks = isAbnormal ? ValueMark::Abnormal : 0;
        return;
    }
    const qint32 before = present.limitMarks;
    const double value = present.value;
    const double hysteresis = present.hysteresis;
    qint32 marks = 0;
    const auto judge = [&](double number, double limit, qint32 mark) {
        if (isBeyondHigh(number, limit, hysteresis, (before & mark) != 0))
            marks |= mark;
    };
    judge(value, present.high, ValueMark::AboveHigh);
    judge(value, present.highHigh, ValueMark::AboveHighHigh);
    judge(-value, -present.low, ValueMark::BelowLow);
    judge(-value, -present.lowLow, ValueMark::BelowLowLow);
    present.limitMarks = marks;
}

PointStatistics& RuntimeDatabase::statisticsOf(Present& present, qint64 sinceMs) const
{
    if (!present.statistics) {
        const auto kind = present.isAnalog ? PointStatistics::Kind::Analog : PointStatistics::Kind::Digital;
        present.statistics = std::make_unique<PointStatistics>(kind, present.staleAfterMs);
        present.statisticsSinceMs = sinceMs;
    }
    return *present.statistics;
}

bool RuntimeDatabase::setTagMarks(ObjectKey key, qint32 marks)
{
    Present* present = findPresent(key);
    if (!present || present->tagMarks == marks)
        return false;
    present->tagMarks = static_cast<quint8>(marks);
    return true;
}

qint32 RuntimeDatabase::tagMarks(ObjectKey key) const
{
    const Present* present = findPresent(key);
    return present ? present->tagMarks : 0;
}

RuntimeDatabase::Limits RuntimeDatabase::limits(ObjectKey key) const
{
    const Present* present = findPresent(key);
    return present ? Limits{present->lowLow, present->low, present->high, present->highHigh} : Limits{};
}

tl::expected<RuntimeDatabase::Present*, QString> RuntimeDatabase::findAnalog(ObjectKey key)
{
    Present* present = findPresent(key);
    if (!present || !present->isAnalog)
        return tl::make_unexpected(noLimits);
    return present;
}

// Without waiting for a sample: what stands beyond a limit now is marked now.
void RuntimeDatabase::judgeAnew(Present& present)
{
    if (!present.hasValue || (present.quality & ValueMark::Invalid) != 0)
        return;
    const qint32 before = present.limitMarks;
    const qint32 rateMark = before & ValueMark::Abnormal;
    setLimitMarks(present);
    present.limitMarks |= rateMark;
    if (present.isWatched)
        tellMarks(present, before, present.quality, std::max(present.timeMs, now()));
}

tl::expected<void, QString> RuntimeDatabase::checkLimits(ObjectKey key, const Limits& limits) const
{
    const Present* present = findPresent(key);
    if (!present || !present->isAnalog)
        return tl::make_unexpected(noLimits);
    const auto isInOrder = [](double lower, double upper, bool mayBeEqual) {
        return std::isnan(lower) || std::isnan(upper) || lower < upper || (mayBeEqual && lower == upper);
    };
    const auto isLimit = [](double value) { return !std::isinf(value); };
    if (!isLimit(limits.lowLow) || !isLimit(limits.low) || !isLimit(limits.high) || !isLimit(limits.highHigh))
        return tl::make_unexpected(QStringLiteral("a limit must be a number"));
    if (!isInOrder(limits.lowLow, limits.low, true) || !isInOrder(limits.high, limits.highHigh, true) ||
        !isInOrder(limits.low, limits.high, false) || !isInOrder(limits.lowLow, limits.high, false) ||
        !isInOrder(limits.low, limits.highHigh, false) || !isInOrder(limits.lowLow, limits.highHigh, false))
        return tl::make_unexpected(
            QStringLiteral("limits must lie in their order: low low, low below high, high high"));
    return {};
}

tl::expected<void, QString> RuntimeDatabase::setLimits(ObjectKey key, const Limits& limits)
{
    if (auto checked = checkLimits(key, limits); !checked)
        return checked;
    Present& changed = *findPresent(key);
    changed.lowLow = limits.lowLow;
    changed.low = limits.low;
    changed.high = limits.high;
    changed.highHigh = limits.highHigh;
    judgeAnew(changed);
    return {};
}

double RuntimeDatabase::hysteresis(ObjectKey key) const
{
    const Present* present = findPresent(key);
    return present ? present->hysteresis : 0;
}

tl::expected<void, QString> RuntimeDatabase::setHysteresis(ObjectKey key, double hysteresis)
{
    const auto present = findAnalog(key);
    if (!present)
        return tl::make_unexpected(present.error());
    if (!std::isfinite(hysteresis) || hysteresis < 0)
        return tl::make_unexpected(QStringLiteral("a dead band must be a number from 0 on"));
    (*present)->hysteresis = hysteresis;
    judgeAnew(**present);
    return {};
}

void RuntimeDatabase::setHeldByHand(ObjectKey key, bool held)
{
    Family* objects = family(key.type);
    Present* present = findPresent(key);
    if (!present || present->isHeldByHand == held)
        return;
    present->isHeldByHand = held;
    if (!held && present->staleAfterMs > 0 && present->timeMs != neverSampled && !present->isQueued)
        queueExpiry(*objects, objects->byId.at(key.id));
}

bool RuntimeDatabase::setStale(ObjectKey key, qint64 nowMs)
{
    Present* present = findPresent(key);
    if (!present || present->timeMs == neverSampled || (present->quality & ValueMark::Stale) != 0)
        return false;
    const qint32 before = present->quality;
    const bool wasOnLine = isOnLine(*present);
    interrupt(key, nowMs);
    noteCommunication(key, present->hasValue, wasOnLine, nowMs);
    if (present->isWatched)
        tellMarks(*present, present->limitMarks, before, nowMs);
    return true;
}

std::optional<qint64> RuntimeDatabase::lastChangeMs(ObjectKey key) const
{
    const Present* present = findPresent(key);
    return present && present->changedMs != never ? std::optional(present->changedMs) : std::nullopt;
}

bool RuntimeDatabase::resetStatistics(ObjectKey key, qint64 nowMs)
{
    Present* present = findPresent(key);
    if (!present || !present->statistics)
        return false;
    present->statistics.reset();
    const double value = present->hasValue ? present->value : std::numeric_limits<double>::quiet_NaN();
    statisticsOf(*present, nowMs).take(std::max(nowMs, present->timeMs), value, present->quality, m_calendar);
    if ((present->quality & ValueMark::Stale) != 0)
        present->statistics->interrupt(nowMs, m_calendar);
    return true;
}

bool RuntimeDatabase::hasStatistics(ObjectKey key) const
{
    const Present* present = findPresent(key);
    return present && present->statistics;
}

std::optional<qint64> RuntimeDatabase::statisticsSinceMs(ObjectKey key) const
{
    const Present* present = findPresent(key);
    return present && present->statisticsSinceMs != never ? std::optional(present->statisticsSinceMs) : std::nullopt;
}

QuorixData RuntimeDatabase::presentRecord(ObjectKey key) const
{
    QuorixData record;
    const Present* present = findPresent(key);
    if (!present)
        return record;
    record.setMember("tag", qint32(present->tagMarks));
    record.setMember("limit", present->limitMarks);
    record.setMember("quality", present->quality);
    if (present->timeMs != neverSampled)
        record.setMember("time", QDateTime::fromMSecsSinceEpoch(present->timeMs, Qt::UTC));
    if (!present->hasValue)
        return record;
    const QuorixValue value =
        present->isAnalog ? QuorixValue(present->value) : QuorixValue(static_cast<qint32>(present->value));
    record.setMember(DataFieldInfo::currentValueMember, value);
    if (Korvane::isPointObjectType(key.type))
        return record;
    record.setMember("commState", value);
    const bool isUnit = key.type == ScadaObjectType::RtuObject;
    const bool isStopped = isUnit && (present->tagMarks & ValueMark::ScanInhibited) != 0;
    record.setMember(isUnit ? "scanState" : "driverState", isStopped ? QuorixValue(qint32(0)) : value);
    return record;
}

void RuntimeDatabase::queueExpiry(Family& family, std::size_t index)
{
    Present& present = family.present[index];
    m_expiries.push({present.timeMs + present.staleAfterMs, &family, index});
    present.isQueued = true;
}

std::vector<ObjectKey> RuntimeDatabase::takeStale(qint64 nowMs)
{
    std::vector<ObjectKey> stale;
    while (!m_expiries.empty() && m_expiries.top().timeMs <= nowMs) {
        const Expiry due = m_expiries.top();
        m_expiries.pop();
        Present& present = due.family->present[due.index];
        present.isQueued = false;
        if (present.isHeldByHand)
            continue;
        if (present.timeMs + present.staleAfterMs > nowMs) {
            queueExpiry(*due.family, due.index);
            continue;
        }
        const qint32 before = present.quality;
        const bool wasOnLine = isOnLine(present);
        const Object& object = due.family->objects[due.index];
        const qint64 expiredMs = std::max(due.timeMs, present.timeMs + present.staleAfterMs);
        present.quality |= ValueMark::Stale;
        noteCommunication({object.type, object.id}, present.hasValue, wasOnLine, expiredMs);
        if (present.isWatched)
            tellMarks(present, present.limitMarks, before, expiredMs);
        if (present.quality == before)
            continue;
        stale.push_back({object.type, object.id});
    }
    return stale;
}

bool RuntimeDatabase::setCommunicationFailed(ObjectKey key, bool failed, qint64 nowMs)
{
    Present* present = findPresent(key);
    if (!present || ((present->quality & ValueMark::CommunicationFailed) != 0) == failed)
        return false;
    const qint32 before = present->quality;
    const bool wasOnLine = isOnLine(*present);
    present->quality ^= ValueMark::CommunicationFailed;
    noteCommunication(key, present->hasValue, wasOnLine, nowMs);
    if (present->isWatched)
        tellMarks(*present, present->limitMarks, before, nowMs);
    if (present->statistics)
        present->statistics->setFailed(failed, nowMs, m_calendar);
    return true;
}

QVariant RuntimeDatabase::fieldValue(ObjectKey key, DataCode::DataField field) const
{
    const Object* found = object(key);
    if (!found)
        return {};
    const Object& object = *found;
    switch (field) {
    case DataCode::DataField::PointName:
        return object.name;
    case DataCode::DataField::StationName:
        return text(object.station);
    case DataCode::DataField::FullName:
        return object.station.isEmpty() ? object.name : object.station + QLatin1Char('.') + object.name;
    case DataCode::DataField::Description:
        return text(object.description);
    case DataCode::DataField::DisplayName:
        return text(object.displayName);
    case DataCode::DataField::LowLowLimit:
        return limit(findPresent(key)->lowLow);
    case DataCode::DataField::LowLimit:
        return limit(findPresent(key)->low);
    case DataCode::DataField::HighLimit:
        return limit(findPresent(key)->high);
    case DataCode::DataField::HighHighLimit:
        return limit(findPresent(key)->highHigh);
    case DataCode::DataField::CommOnlineTime:
    case DataCode::DataField::CommOfflineTime:
        return communicationTime({object.type, object.id}, field == DataCode::DataField::CommOnlineTime);
    default:
        return presentField(object, field);
    }
}

QVariant RuntimeDatabase::presentField(const Object& object, DataCode::DataField field) const
{
    const Present& present = *findPresent({object.type, object.id});
    if (!present.statistics || !isFieldOf(field, object.type, DataFieldInfo::Supplier::RuntimeDatabase))
        return {};
    if (field != DataCode::DataField::ValueWithUnit && field != DataCode::DataField::StatusName)
        return present.statistics->fieldValue(field, now(), m_calendar);
    if (!present.hasValue)
        return {};
    if (field == DataCode::DataField::StatusName) {
        const auto state = static_cast<qint32>(present.value);
        const QString name = object.states.value(state);
        return name.isEmpty() ? QString::number(state) : name;
    }
    const QString value = valueText(present.value, object.decimals);
    return object.unit.isEmpty() ? value : value + QLatin1Char(' ') + object.unit;
}

QVariant RuntimeDatabase::historyValue(ObjectKey key, DataCode::DataField field) const
{
    const Object* found = object(key);
    if (!found || !isFieldOf(field, found->type, DataFieldInfo::Supplier::History))
        return {};
    const Present* present = findPresent(key);
    return present->statistics ? present->statistics->fieldValue(field, now(), m_calendar) : QVariant();
}

QByteArray RuntimeDatabase::state(ObjectKey key) const
{
    const Present* present = findPresent(key);
    if (!present || present->timeMs == neverSampled)
        return {};
    QByteArray bytes;
    ByteWriter writer(bytes);
    writer.put(stateLayout).put(present->timeMs).put(present->quality).put(quint8(present->hasValue));
    writer.put(present->value).put(present->statisticsSinceMs);
    return bytes + present->statistics->toBytes();
}

bool RuntimeDatabase::restore(ObjectKey key, const QByteArray& state)
{
    Present* present = findPresent(key);
    ByteReader reader(state);
    const auto layout = reader.take<quint8>();
    if (!present || layout < 1 || layout > stateLayout)
        return false;
    const auto timeMs = reader.take<qint64>();
    const auto quality = reader.take<qint32>();
    const bool hasValue = reader.take<quint8>() != 0;
    const auto value = reader.take<double>();
    const qint64 sinceMs = layout == 1 ? never : reader.take<qint64>();
    const bool isTimeGood = timeMs >= earliestTimeMs && timeMs <= latestTimeMs;
    const bool isValueGood = std::isfinite(present->isAnalog ? value : stateOf(value));
    if (reader.isShort() || !isTimeGood || !isValueGood || !statisticsOf(*present, sinceMs).fromBytes(reader.rest()))
        return false;
    present->timeMs = timeMs;
    present->quality = quality;
    present->hasValue = hasValue;
    present->value = value;
    present->statisticsSinceMs = sinceMs;
    present->limitMarks = 0;
    if (hasValue && (quality & ValueMark::Invalid) == 0)
        setLimitMarks(*present);
    return true;
}

void RuntimeDatabase::forgetValues()
{
    for (Family* one : {&m_points, &m_rtus, &m_channels}) {
        for (Present& present : one->present) {
            present.timeMs = neverSampled;
            present.quality = ValueMark::Invalid | (present.quality & ValueMark::CommunicationFailed);
            present.limitMarks = 0;
            present.hasValue = false;
            present.isReportDue = present.isWatched;
            present.changedMs = never;
            present.statisticsSinceMs = never;
            present.statistics.reset();
        }
        std::fill(one->communication.begin(), one->communication.end(), Communication());
    }
}

void RuntimeDatabase::interrupt(ObjectKey key, qint64 timeMs)
{
    Present* present = findPresent(key);
    if (!present || present->timeMs == neverSampled)
        return;
    present->quality |= ValueMark::Stale;
    present->statistics->interrupt(timeMs, m_calendar);
}

ObjectKey RuntimeDatabase::findPoint(QStringView name) const
{
    return findByName(ScadaObjectType::Point, name);
}

std::vector<PointDirectory::Station> RuntimeDatabase::stations() const
{
    std::vector<Station> all;
    QHash<QString, std::size_t> places;
    for (const Family* one : {&m_points, &m_rtus, &m_channels}) {
        for (const Object& object : one->objects) {
            const auto place = places.constFind(object.station);
            const std::size_t station = place == places.constEnd() ? all.size() : *place;
            if (station == all.size()) {
                places.insert(object.station, station);
                all.push_back({object.station, {}});
            }
            all[station].objects.push_back({{object.type, object.id}, object.name, object.description});
        }
    }
    return all;
}
