#include "host/runtime/pointlist.h"

#include "host/runtime/alarmcolumns_p.h"
#include "host/runtime/controlcolumns_p.h"
#include "host/runtime/pointline_p.h"
#include "host/sources/csvfile.h"
#include "platform/data/tagresolution.h"

#include <QHash>

#include <tsl/robin_map.h>

#include <algorithm>
#include <array>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

namespace {

using namespace PointColumns;
using Korvane::ScadaObjectType;
using Object = RuntimeDatabase::Object;
using Refusal = PointLine::Refusal;
using Refused = PointLine::Refused;

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

/// Which bounds are out of their order; empty when none are.
QString crossing(const Object& object)
{
    for (const Order& order : orders) {
        const double lower = object.*order.lower.number;
        const double upper = object.*order.upper.number;
        // Comparing with a limit that is not there is false.
        if (lower > upper || (!order.mayBeEqual && lower == upper)) {
            return QStringLiteral("%1 %2 must %3 %4 %5")
                .arg(QLatin1String(PointColumns::names[order.lower.column]), QString::number(lower),
                     order.mayBeEqual ? QStringLiteral("not be above") : QStringLiteral("be below"),
                     QLatin1String(PointColumns::names[order.upper.column]), QString::number(upper));
        }
    }
    return {};
}

/// Reads one list.
class Reader
{
public:
    explicit Reader(const QString& path) : m_path(path) {}

    tl::expected<PointList::Result, QString> read();

private:
    tl::expected<void, QString> readHeader();
    void addColumn(std::size_t field, const QString& name);
    tl::expected<Object, Refusal> readObject();
    Refused readIdentity(Object& object);
    Refused readTexts(Object& object);
    Refused readNumbers(Object& object);
    Refused readStates(Object& object);
    Refused readRest(Object& object);
    Refused findTwin(const Object& object);

    void addProblem(const Refusal& refused);

    QString m_path;
    CsvFile m_file{CsvReader::LineBreaks::AllowedInQuotes};
    QStringList m_header;
    PointLine m_line{m_file.record()};
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
        addColumn(field, QString::fromUtf8(names[field].data(), int(names[field].size())).toLower());
    for (const Column needed : neededColumns) {
        if (!m_line.hasColumn(needed)) {
            return tl::make_unexpected(
                QStringLiteral("%1: the header names no column \"%2\"; needed are id, name and kind")
                    .arg(csvPlace(m_path, m_file.record().line()), QLatin1String(PointColumns::names[needed])));
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
    const auto known = std::find_if(PointColumns::names.begin(), PointColumns::names.end(),
                                    [&name](const char* column) { return name == QLatin1String(column); });
    const QString place = csvPlace(m_path, m_file.record().line(), field, name);
    if (known == PointColumns::names.end()) {
        m_result.problems.append(QStringLiteral("%1: a list of points has no such column, it is ignored").arg(place));
        return;
    }
    if (!m_line.setField(static_cast<Column>(known - PointColumns::names.begin()), field))
        m_result.problems.append(QStringLiteral("%1: the column comes twice, this one is ignored").arg(place));
}

void Reader::addProblem(const Refusal& refused)
{
    const qint64 line = m_file.record().line();
    QString text = refused.field == PointLine::noField
                       ? csvPlace(m_path, line)
                       : csvPlace(m_path, line, refused.field, m_header.value(int(refused.field)));
    if (const std::string_view name = m_line.textOf(NameColumn); !name.empty())
        text += QStringLiteral(", object ") + csvQuoted(name);
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
    using Step = Refused (Reader::*)(Object&);
    for (const Step step :
         {&Reader::readTexts, &Reader::readIdentity, &Reader::readNumbers, &Reader::readStates, &Reader::readRest}) {
        if (auto refused = (this->*step)(object))
            return tl::make_unexpected(std::move(*refused));
    }
    if (auto refused = findTwin(object))
        return tl::make_unexpected(std::move(*refused));
    return object;
}

Refused Reader::readTexts(Object& object)
{
    for (const TextColumn& column : textColumns) {
        if (auto refused = m_line.readText(column.column, object.*column.text))
            return refused;
    }
    return std::nullopt;
}

Refused Reader::readIdentity(Object& object)
{
    const QString name = m_line.lowerCaseOf(KindColumn);
    const auto kind =
        std::find_if(kinds.begin(), kinds.end(), [&name](const Kind& k) { return name == QLatin1String(k.name); });
    if (kind == kinds.end()) {
        return m_line.refusal(
            KindColumn,
            QStringLiteral("%1 is no kind: digital, analog, unit or line").arg(csvQuoted(m_line.textOf(KindColumn))));
    }
    object.type = kind->type;
    const auto id = PointLine::wholeNumber(m_line.textOf(IdColumn), kind->firstId, kind->lastId);
    if (!id) {
        const QString range = kind->lastId == anyId ? QStringLiteral("from %1 on").arg(kind->firstId)
                                                    : QStringLiteral("%1 to %2").arg(kind->firstId).arg(kind->lastId);
        return m_line.refusal(
            IdColumn,
            QStringLiteral("%1 is no id of kind %2: %3").arg(csvQuoted(m_line.textOf(IdColumn)), name, range));
    }
    object.id = *id;
    if (!Korvane::isAddressableName(object.name, object.type)) {
        return m_line.refusal(
            NameColumn, QStringLiteral("no tag could reach this name: it is empty, a number, \"#\" with an id, begins "
                                       "with \"@\" or ends in \":\" and a field"));
    }
    return std::nullopt;
}

Refused Reader::readNumbers(Object& object)
{
    for (const NumberColumn& column : numberColumns) {
        if (auto refused = m_line.readNumber(column.column, object.*column.number))
            return refused;
    }
    if (object.hysteresis < 0)
        return m_line.refusal(HysteresisColumn, QStringLiteral("the hysteresis is negative"));
    if (const QString crossed = crossing(object); !crossed.isEmpty())
        return Refusal{crossed};
    if (auto refused = m_line.readInteger(DecimalsColumn, 15, object.decimals))
        return refused;
    return m_line.readDuration(StaleAfterColumn, object.staleAfter);
}

Refused Reader::readStates(Object& object)
{
    QString states;
    if (auto refused = m_line.readText(StatesColumn, states))
        return refused;
    if (!states.isEmpty())
        object.states = states.split(QLatin1Char('|'));
    return m_line.readInteger(AbnormalStateColumn, object.states.isEmpty() ? anyId : object.states.size() - 1,
                              object.abnormalState);
}

Refused Reader::readRest(Object& object)
{
    auto refused = readAlarmColumns(m_line, object);
    return refused ? refused : readControlColumns(m_line, object);
}

/// Refuses an id or name that an object of the same family took before, else keeps them.
Refused Reader::findTwin(const Object& object)
{
    const auto kind = std::find_if(kinds.begin(), kinds.end(), [&](const Kind& k) { return k.type == object.type; });
    Family& family = m_families[std::size_t(kind->family)];
    if (const auto twin = family.lineOfId.find(object.id); twin != family.lineOfId.end())
        return m_line.refusal(IdColumn, QStringLiteral("line %1 has this id already").arg(twin->second));
    if (const auto twin = family.lineOfName.constFind(object.name); twin != family.lineOfName.constEnd())
        return m_line.refusal(NameColumn, QStringLiteral("line %1 has this name already").arg(*twin));
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

QByteArray PointList::empty()
{
    QByteArrayList header;
    for (const char* name : PointColumns::names)
        header.append(name);
    return header.join(',') + '\n';
}
