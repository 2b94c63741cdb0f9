#include "host/runtime/pointlist.h"

#include "host/sources/csvfile.h"
#include "platform/data/tagresolution.h"

#include <QHash>
#include <QTextCodec>

#include <tsl/robin_map.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

namespace {

using Korvane::ScadaObjectType;
using Object = RuntimeDatabase::Object;

enum Column : std::size_t {
    IdColumn,
    NameColumn,
    KindColumn,
    UnitColumn,
    DescriptionColumn,
    DisplayNameColumn,
    StationColumn,
    LowLowColumn,
    LowColumn,
    HighColumn,
    HighHighColumn,
    HysteresisColumn,
    DecimalsColumn,
    ScaleLowColumn,
    ScaleHighColumn,
    StatesColumn,
    AbnormalStateColumn,
    StaleAfterColumn,
    AddressColumn,
    AreaColumn,
    LowLowSeverityColumn, // from here on in the order of ScadaAlarm::Cause
    LowSeverityColumn,
    HighSeverityColumn,
    HighHighSeverityColumn,
    StateSeverityColumn,
    RateSeverityColumn,
    QualitySeverityColumn,
    CommunicationSeverityColumn,
    RateLimitColumn,
    OnDelayColumn,
    OffDelayColumn,
    LatchingColumn,
    AlarmMessageColumn,
};

constexpr std::array<const char*, 33> columnNames = {
    "id",
    "name",
    "kind",
    "unit",
    "description",
    "display_name",
    "station",
    "low_low",
    "low",
    "high",
    "high_high",
    "hysteresis",
    "decimals",
    "scale_low",
    "scale_high",
    "states",
    "abnormal_state",
    "stale_after",
    "address",
    "area",
    "low_low_severity",
    "low_severity",
    "high_severity",
    "high_high_severity",
    "state_severity",
    "rate_severity",
    "quality_severity",
    "communication_severity",
    "rate_limit",
    "on_delay",
    "off_delay",
    "latching",
    "alarm_message",
};

constexpr std::array<Column, 3> neededColumns = {IdColumn, NameColumn, KindColumn};

struct TextColumn
{
    Column column;
    QString Object::*text;
};

constexpr std::array<TextColumn, 7> textColumns = {{
    {NameColumn, &Object::name},
    {UnitColumn, &Object::unit},
    {DescriptionColumn, &Object::description},
    {DisplayNameColumn, &Object::displayName},
    {StationColumn, &Object::station},
    {AddressColumn, &Object::address},
    {AreaColumn, &Object::area},
}};

struct NumberColumn
{
    Column column;
    double Object::*number;
};

constexpr std::array<NumberColumn, 7> numberColumns = {{
    {LowLowColumn, &Object::lowLow},
    {LowColumn, &Object::low},
    {HighColumn, &Object::high},
    {HighHighColumn, &Object::highHigh},
    {HysteresisColumn, &Object::hysteresis},
    {ScaleLowColumn, &Object::scaleLow},
    {ScaleHighColumn, &Object::scaleHigh},
}};

struct Kind
{
    const char* name;
    ScadaObjectType type;
    qint32 firstId;
    qint32 lastId;
    int family; ///< objects of one family share ids and names
};

constexpr qint32 anyId = std::numeric_limits<qint32>::max();

constexpr std::array<Kind, 4> kinds = {{
    {"digital", ScadaObjectType::DigitalPoint, Korvane::firstDigitalPointId, Korvane::lastDigitalPointId, 0},
    {"analog", ScadaObjectType::AnalogPoint, Korvane::firstAnalogPointId, Korvane::lastAnalogPointId, 0},
    {"unit", ScadaObjectType::RtuObject, 1, anyId, 1},
    {"line", ScadaObjectType::ChannelObject, 1, anyId, 2},
}};

/// The first must stand below the second, or at it.
struct Order
{
    NumberColumn lower;
    NumberColumn upper;
    bool mayBeEqual;
};

constexpr NumberColumn lowLow = numberColumns[0];
constexpr NumberColumn low = numberColumns[1];
constexpr NumberColumn high = numberColumns[2];
constexpr NumberColumn highHigh = numberColumns[3];

// Each pair, since any of them may be missing.
constexpr std::array<Order, 7> orders = {{
    {lowLow, low, true},
    {low, high, false},
    {high, highHigh, true},
    {lowLow, high, false},
    {low, highHigh, false},
    {lowLow, highHigh, false},
    {numberColumns[5], numberColumns[6], true},
}};

constexpr std::size_t noField = std::string_view::npos;

/// Why a line is left out, and the field that shows it, if it is one.
struct Refusal
{
    QString text;
    std::size_t field = noField;
};

/// Nothing when \p text is not UTF-8.
std::optional<QString> fromUtf8(std::string_view text)
{
    const bool isAscii = std::none_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; });
    if (isAscii)
        return QString::fromLatin1(text.data(), int(text.size()));
    static QTextCodec* const codec = QTextCodec::codecForName("UTF-8");
    QTextCodec::ConverterState state(QTextCodec::IgnoreHeader);
    const QString read = codec->toUnicode(text.data(), int(text.size()), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0)
        return std::nullopt;
    return read;
}

QString lowerCase(std::string_view text)
{
    return QString::fromUtf8(text.data(), int(text.size())).toLower();
}

/// A whole number within bounds.
std::optional<int> wholeNumber(std::string_view text, int lowest, int highest)
{
    const auto number = csvNumber(text, false);
    if (!number || *number < lowest || *number > highest || std::floor(*number) != *number)
        return std::nullopt;
    return int(*number);
}

/// Which bounds are out of their order; empty when none are.
QString crossing(const Object& object)
{
    for (const Order& order : orders) {
        const double lower = object.*order.lower.number;
        const double upper = object.*order.upper.number;
        // Comparing with a limit that is not there is false.
        if (lower > upper || (!order.mayBeEqual && lower == upper)) {
            return QStringLiteral("%1 %2 must %3 %4 %5")
                .arg(QLatin1String(columnNames[order.lower.column]), QString::number(lower),
                     order.mayBeEqual ? QStringLiteral("not be above") : QStringLiteral("be below"),
                     QLatin1String(columnNames[order.upper.column]), QString::number(upper));
        }
    }
    return {};
}

/// Reads one list.
class Reader
{
public:
    explicit Reader(const QString& path) : m_path(path) { m_fields.fill(noField); }

    tl::expected<PointList::Result, QString> read();

private:
    tl::expected<void, QString> readHeader();
    void addColumn(std::size_t field, const QString& name);
    tl::expected<Object, Refusal> readObject();
    std::optional<Refusal> readIdentity(Object& object);
    std::optional<Refusal> readTexts(Object& object);
    std::optional<Refusal> readNumbers(Object& object);
    std::optional<Refusal> readStates(Object& object);
    std::optional<Refusal> readAlarm(Object& object);
    std::optional<Refusal> readSeverities(Object& object) const;
    std::optional<Refusal> findTwin(const Object& object);
    std::optional<Refusal> readDuration(Column column, std::chrono::milliseconds& duration) const;
    std::optional<Refusal> readNumber(Column column, double& number) const;
    std::optional<Refusal> readInteger(Column column, int highest, int& number) const;

    bool hasColumn(Column column) const { return m_fields[column] != noField; }
    std::string_view textOf(Column column) const;
    Refusal refusal(Column column, const QString& text) const { return {text, m_fields[column]}; }
    void addProblem(const Refusal& refused);

    QString m_path;
    CsvFile m_file{CsvReader::LineBreaks::AllowedInQuotes};
    QStringList m_header;
    std::array<std::size_t, columnNames.size()> m_fields = {}; ///< by column
    PointList::Result m_result;

    struct Family
    {
        tsl::robin_map<qint32, qint64> lineOfId;
        QHash<QString, qint64> lineOfName;
    };
    std::array<Family, 3> m_families;
};

tl::expected<PointList::Result, QString> Reader::read()
{
    if (auto ready = m_file.open(m_path).and_then([this] { return readHeader(); }); !ready)
        return tl::make_unexpected(ready.error());
    while (true) {
        const auto next = m_file.next();
        if (!next)
            return tl::make_unexpected(next.error());
        if (*next == CsvReader::Result::Ended)
            return std::move(m_result);
        if (*next == CsvReader::Result::Skipped) {
            m_result.problems.append(
                QStringLiteral("%1: %2").arg(csvPlace(m_path, m_file.record().line()), m_file.record().problem()));
            continue;
        }
        if (auto object = readObject())
            m_result.objects.push_back(std::move(*object));
        else
            addProblem(object.error());
    }
}

tl::expected<void, QString> Reader::readHeader()
{
    const auto next = m_file.next();
    if (!next)
        return tl::make_unexpected(next.error());
    if (*next == CsvReader::Result::Ended)
        return tl::make_unexpected(QStringLiteral("%1: has no header line").arg(m_path));
    if (*next == CsvReader::Result::Skipped) {
        return tl::make_unexpected(
            QStringLiteral("%1: %2").arg(csvPlace(m_path, m_file.record().line()), m_file.record().problem()));
    }
    const std::vector<std::string_view>& names = m_file.record().fields();
    for (std::size_t field = 0; field < names.size(); ++field)
        addColumn(field, lowerCase(names[field]));
    for (const Column needed : neededColumns) {
        if (!hasColumn(needed)) {
            return tl::make_unexpected(
                QStringLiteral("%1: the header names no column \"%2\"; needed are id, name and kind")
                    .arg(csvPlace(m_path, m_file.record().line()), QLatin1String(columnNames[needed])));
        }
    }
    return {};
}

void Reader::addColumn(std::size_t field, const QString& name)
{
    m_header.append(name);
    // Spreadsheets pad lines with columns that have no name.
    if (name.isEmpty())
        return;
    const auto known = std::find_if(columnNames.begin(), columnNames.end(),
                                    [&name](const char* column) { return name == QLatin1String(column); });
    const QString place = csvPlace(m_path, m_file.record().line(), field, name);
    if (known == columnNames.end()) {
        m_result.problems.append(QStringLiteral("%1: a list of points has no such column, it is ignored").arg(place));
        return;
    }
    std::size_t& kept = m_fields[std::size_t(known - columnNames.begin())];
    if (kept == noField)
        kept = field;
    else
        m_result.problems.append(QStringLiteral("%1: the column comes twice, this one is ignored").arg(place));
}

std::string_view Reader::textOf(Column column) const
{
    return hasColumn(column) ? m_file.record().fields()[m_fields[column]] : std::string_view();
}

void Reader::addProblem(const Refusal& refused)
{
    const qint64 line = m_file.record().line();
    QString text = refused.field == noField ? csvPlace(m_path, line)
                                            : csvPlace(m_path, line, refused.field, m_header.value(int(refused.field)));
    if (m_fields[NameColumn] < m_file.record().fields().size() && !textOf(NameColumn).empty())
        text += QStringLiteral(", object ") + csvQuoted(textOf(NameColumn));
    m_result.problems.append(text + QStringLiteral(": ") + refused.text);
}

tl::expected<Object, Refusal> Reader::readObject()
{
    const std::size_t count = m_file.record().fields().size();
    if (count != std::size_t(m_header.size())) {
        return tl::make_unexpected(Refusal{QStringLiteral("the line has %1 columns, the header %2")
                                               .arg(QString::number(count), QString::number(m_header.size()))});
    }
    Object object;
    using Step = std::optional<Refusal> (Reader::*)(Object&);
    for (const Step step :
         {&Reader::readTexts, &Reader::readIdentity, &Reader::readNumbers, &Reader::readStates, &Reader::readAlarm}) {
        if (auto refused = (this->*step)(object))
            return tl::make_unexpected(std::move(*refused));
    }
    if (auto refused = findTwin(object))
        return tl::make_unexpected(std::move(*refused));
    return object;
}

std::optional<Refusal> Reader::readTexts(Object& object)
{
    for (const TextColumn& column : textColumns) {
        const auto text = fromUtf8(textOf(column.column));
        if (!text)
            return refusal(column.column, QStringLiteral("%1 is not UTF-8").arg(csvQuoted(textOf(column.column))));
        object.*column.text = *text;
    }
    return std::nullopt;
}

std::optional<Refusal> Reader::readIdentity(Object& object)
{
    const QString name = lowerCase(textOf(KindColumn));
    const auto kind =
        std::find_if(kinds.begin(), kinds.end(), [&name](const Kind& k) { return name == QLatin1String(k.name); });
    if (kind == kinds.end()) {
        return refusal(
            KindColumn,
            QStringLiteral("%1 is no kind: digital, analog, unit or line").arg(csvQuoted(textOf(KindColumn))));
    }
    object.type = kind->type;
    const auto id = wholeNumber(textOf(IdColumn), kind->firstId, kind->lastId);
    if (!id) {
        const QString range = kind->lastId == anyId ? QStringLiteral("from %1 on").arg(kind->firstId)
                                                    : QStringLiteral("%1 to %2").arg(kind->firstId).arg(kind->lastId);
        return refusal(IdColumn,
                       QStringLiteral("%1 is no id of kind %2: %3").arg(csvQuoted(textOf(IdColumn)), name, range));
    }
    object.id = *id;
    if (!Korvane::isAddressableName(object.name, object.type)) {
        return refusal(NameColumn,
                       QStringLiteral("no tag could reach this name: it is empty, a number, \"#\" with an id, begins "
                                      "with \"@\" or ends in \":\" and a field"));
    }
    return std::nullopt;
}

/// Leaves \p number as it is when the field is empty.
std::optional<Refusal> Reader::readNumber(Column column, double& number) const
{
    const std::string_view text = textOf(column);
    if (text.empty())
        return std::nullopt;
    const auto read = csvNumber(text, csvHasDecimalComma(m_file.record().separator()));
    if (!read)
        return refusal(column, QStringLiteral("%1 is no number").arg(csvQuoted(text)));
    number = *read;
    return std::nullopt;
}

/// Leaves \p number as it is when the field is empty.
std::optional<Refusal> Reader::readInteger(Column column, int highest, int& number) const
{
    const std::string_view text = textOf(column);
    if (text.empty())
        return std::nullopt;
    const auto read = wholeNumber(text, 0, highest);
    if (!read) {
        return refusal(column, QStringLiteral("%1 is no whole number from 0 to %2").arg(csvQuoted(text)).arg(highest));
    }
    number = *read;
    return std::nullopt;
}

std::optional<Refusal> Reader::readNumbers(Object& object)
{
    for (const NumberColumn& column : numberColumns) {
        if (auto refused = readNumber(column.column, object.*column.number))
            return refused;
    }
    if (object.hysteresis < 0)
        return refusal(HysteresisColumn, QStringLiteral("the hysteresis is negative"));
    if (const QString crossed = crossing(object); !crossed.isEmpty())
        return Refusal{crossed};
    if (auto refused = readInteger(DecimalsColumn, 15, object.decimals))
        return refused;
    return readDuration(StaleAfterColumn, object.staleAfter);
}

/// Seconds, fractions allowed.
std::optional<Refusal> Reader::readDuration(Column column, std::chrono::milliseconds& duration) const
{
    constexpr double longest = 1e9; // their milliseconds fit
    double seconds = 0;
    if (auto refused = readNumber(column, seconds))
        return refused;
    if (seconds < 0 || seconds > longest)
        return refusal(column,
                       QStringLiteral("%1 is not within 0 to 1000000000 seconds").arg(csvQuoted(textOf(column))));
    duration = std::chrono::milliseconds(std::llround(seconds * 1000));
    return std::nullopt;
}

std::optional<Refusal> Reader::readAlarm(Object& object)
{
    AlarmSetting& alarm = object.alarm;
    if (auto refused = readNumber(RateLimitColumn, alarm.rateLimit))
        return refused;
    if (alarm.rateLimit <= 0)
        return refusal(RateLimitColumn, QStringLiteral("the rate limit must be above 0"));
    if (auto refused = readDuration(OnDelayColumn, alarm.onDelay))
        return refused;
    if (auto refused = readDuration(OffDelayColumn, alarm.offDelay))
        return refused;
    int isLatching = 0;
    if (auto refused = readInteger(LatchingColumn, 1, isLatching))
        return refused;
    alarm.isLatching = isLatching == 1;
    const auto message = fromUtf8(textOf(AlarmMessageColumn));
    if (!message)
        return refusal(AlarmMessageColumn,
                       QStringLiteral("%1 is not UTF-8").arg(csvQuoted(textOf(AlarmMessageColumn))));
    alarm.message = *message;
    return readSeverities(object);
}

/// Whether values of the object can be the cause of an alarm.
bool canCause(const Object& object, ScadaAlarm::Cause cause)
{
    switch (cause) {
    case ScadaAlarm::Cause::LowLow:
        return !std::isnan(object.lowLow);
    case ScadaAlarm::Cause::Low:
        return !std::isnan(object.low);
    case ScadaAlarm::Cause::High:
        return !std::isnan(object.high);
    case ScadaAlarm::Cause::HighHigh:
        return !std::isnan(object.highHigh);
    case ScadaAlarm::Cause::StateChange:
        return object.type != ScadaObjectType::AnalogPoint && object.abnormalState >= 0;
    case ScadaAlarm::Cause::RateOfChange:
        return object.type == ScadaObjectType::AnalogPoint && !std::isnan(object.alarm.rateLimit);
    case ScadaAlarm::Cause::Quality:
    case ScadaAlarm::Cause::Communication:
        return true;
    }
    return false;
}

std::optional<Refusal> Reader::readSeverities(Object& object) const
{
    for (std::size_t place = 0; place < AlarmSetting::causeCount; ++place) {
        const auto column = static_cast<Column>(LowLowSeverityColumn + place);
        int severity = -1;
        if (auto refused = readInteger(column, ScadaAlarm::highestSeverity, severity))
            return refused;
        if (severity >= 0 && !canCause(object, static_cast<ScadaAlarm::Cause>(place)))
            return refusal(column, QStringLiteral("the object has no limit or abnormal state for this alarm"));
        if (severity >= 0)
            object.alarm.severities[place] = static_cast<qint8>(severity);
    }
    return std::nullopt;
}

std::optional<Refusal> Reader::readStates(Object& object)
{
    const auto states = fromUtf8(textOf(StatesColumn));
    if (!states)
        return refusal(StatesColumn, QStringLiteral("%1 is not UTF-8").arg(csvQuoted(textOf(StatesColumn))));
    if (!states->isEmpty())
        object.states = states->split(QLatin1Char('|'));
    return readInteger(AbnormalStateColumn, object.states.isEmpty() ? anyId : object.states.size() - 1,
                       object.abnormalState);
}

/// Refuses an id or name that an object of the same family took before, else keeps them.
std::optional<Refusal> Reader::findTwin(const Object& object)
{
    const auto kind = std::find_if(kinds.begin(), kinds.end(), [&](const Kind& k) { return k.type == object.type; });
    Family& family = m_families[std::size_t(kind->family)];
    if (const auto twin = family.lineOfId.find(object.id); twin != family.lineOfId.end())
        return refusal(IdColumn, QStringLiteral("line %1 has this id already").arg(twin->second));
    if (const auto twin = family.lineOfName.constFind(object.name); twin != family.lineOfName.constEnd())
        return refusal(NameColumn, QStringLiteral("line %1 has this name already").arg(*twin));
    const qint64 line = m_file.record().line();
    family.lineOfId.emplace(object.id, line);
    family.lineOfName.insert(object.name, line);
    return std::nullopt;
}

} // namespace

tl::expected<PointList::Result, QString> PointList::read(const QString& path)
{
    return Reader(path).read();
}

tl::expected<QStringList, QString> PointList::load(const QString& path, RuntimeDatabase& database)
{
    const auto list = read(path);
    if (!list)
        return tl::make_unexpected(list.error());
    QStringList problems = list->problems;
    database.reserve(Korvane::ScadaObjectType::Point, list->objects.size());
    for (const Object& object : list->objects) {
        if (const auto added = database.add(object); !added)
            problems.append(QStringLiteral("%1: %2").arg(path, added.error()));
    }
    return problems;
}
