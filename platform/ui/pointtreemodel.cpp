#include "platform/ui/pointtreemodel.h"

#include "platform/data/datalinkinfo.h"
#include "platform/ui/kvpointmimedata.h"

#include <QLocale>
#include <QStringMatcher>

#include <algorithm>
#include <numeric>
#include <utility>

using Korvane::BrowseType;
using Korvane::ScadaObjectType;

namespace {

Korvane::BrowseTypeFlag browseTypesOf(ScadaObjectType type)
{
    switch (type) {
    case ScadaObjectType::DigitalPoint:
        return BrowseType::DigitalPoints;
    case ScadaObjectType::AnalogPoint:
        return BrowseType::AnalogPoints;
    case ScadaObjectType::Point:
        return BrowseType::DigitalPoints | BrowseType::AnalogPoints;
    case ScadaObjectType::RtuObject:
        return BrowseType::Units;
    case ScadaObjectType::ChannelObject:
        return BrowseType::Lines;
    case ScadaObjectType::NoObject:
    case ScadaObjectType::ApplicationProperty:
        break;
    }
    return {};
}

// Between tag and description where a filter looks: no text has it, so none matches across it.
constexpr QChar separator(0xffff);

QString tagOf(const PointDirectory::Entry& object)
{
    return Korvane::tagPrefix(object.key.type) + object.name;
}

bool isMeant(ObjectKey wanted, ObjectKey listed)
{
    const bool isEitherKind = wanted.type == ScadaObjectType::Point && Korvane::isPointObjectType(listed.type);
    return wanted.id == listed.id && (isEitherKind || wanted.type == listed.type);
}

} // namespace

PointTreeModel::PointTreeModel(std::vector<PointDirectory::Station> stations, Korvane::BrowseTypeFlag types,
                               QObject* parent)
    : QAbstractItemModel(parent)
{
    m_stations.reserve(stations.size());
    for (PointDirectory::Station& station : stations)
        addStation(station, types);
    showFiltered();
    m_objectCount = m_shownCount;
}

PointTreeModel::~PointTreeModel() = default;

void PointTreeModel::addStation(PointDirectory::Station& given, Korvane::BrowseTypeFlag types)
{
    std::vector<PointDirectory::Entry>& objects = given.objects;
    const auto isLeftOut = [types](const PointDirectory::Entry& object) {
        return !(browseTypesOf(object.key.type) & types);
    };
    objects.erase(std::remove_if(objects.begin(), objects.end(), isLeftOut), objects.end());
    if (objects.empty())
        return;

    Station station{given.name, std::move(objects), {}, {}, {}};
    station.ends.reserve(station.objects.size());
    for (const PointDirectory::Entry& object : station.objects) {
        station.searched += (tagOf(object) + separator + object.description).toCaseFolded();
        station.ends.push_back(station.searched.size());
    }
    m_stations.push_back(std::move(station));
}

void PointTreeModel::setFilter(const QString& text)
{
    const QString folded = text.trimmed().toCaseFolded();
    if (folded == m_filter)
        return;
    beginResetModel();
    m_filter = folded;
    showFiltered();
    endResetModel();
}

void PointTreeModel::showFiltered()
{
    m_shownStations.clear();
    m_shownCount = 0;
    const QStringMatcher matcher(m_filter);
    for (std::size_t i = 0; i < m_stations.size(); ++i) {
        filterStation(m_stations[i], matcher);
        if (m_stations[i].shown.empty())
            continue;
        m_shownStations.push_back(i);
        m_shownCount += static_cast<int>(m_stations[i].shown.size());
    }
}

void PointTreeModel::filterStation(Station& station, const QStringMatcher& matcher) const
{
    if (station.name.toCaseFolded().contains(m_filter)) { // an empty one, too
        station.shown.resize(station.objects.size());
        std::iota(station.shown.begin(), station.shown.end(), 0);
        return;
    }
    station.shown.clear();
    int begin = 0;
    for (std::size_t i = 0; i < station.ends.size(); ++i) {
        const int end = station.ends[i];
        if (matcher.indexIn(station.searched.constData() + begin, end - begin) >= 0)
            station.shown.push_back(static_cast<int>(i));
        begin = end;
    }
}

const PointTreeModel::Station& PointTreeModel::stationAt(int row) const
{
    return m_stations[m_shownStations[static_cast<std::size_t>(row)]];
}

const PointDirectory::Entry* PointTreeModel::objectAt(const QModelIndex& index) const
{
    const QModelIndex station = parent(index);
    if (!station.isValid())
        return nullptr;
    const Station& its = stationAt(station.row());
    return &its.objects[static_cast<std::size_t>(its.shown[static_cast<std::size_t>(index.row())])];
}

Korvane::BrowerItemInfo PointTreeModel::item(const QModelIndex& index) const
{
    const PointDirectory::Entry* object = objectAt(index);
    if (!object)
        return {};
    return {object->key.type, object->key.id, tagOf(*object), object->name, object->description, {}};
}

QModelIndex PointTreeModel::indexOf(ObjectKey key) const
{
    for (int row = 0; row < rowCount(); ++row) {
        const Station& station = stationAt(row);
        const auto found = std::find_if(station.shown.begin(), station.shown.end(), [&](int place) {
            return isMeant(key, station.objects[static_cast<std::size_t>(place)].key);
        });
        if (found != station.shown.end())
            return index(static_cast<int>(found - station.shown.begin()), Name, index(row, Name));
    }
    return {};
}

bool PointTreeModel::contains(ObjectKey key) const
{
    return std::any_of(m_stations.begin(), m_stations.end(), [key](const Station& station) {
        return std::any_of(station.objects.begin(), station.objects.end(),
                           [key](const PointDirectory::Entry& object) { return isMeant(key, object.key); });
    });
}

// The internal number of a station is 0, that of an object its station's row and 1.
QModelIndex PointTreeModel::index(int row, int column, const QModelIndex& parent) const
{
    if (!hasIndex(row, column, parent))
        return {};
    return createIndex(row, column, parent.isValid() ? static_cast<quintptr>(parent.row()) + 1 : quintptr(0));
}

QModelIndex PointTreeModel::parent(const QModelIndex& child) const
{
    if (!child.isValid() || child.internalId() == 0)
        return {};
    return createIndex(static_cast<int>(child.internalId() - 1), Name, quintptr(0));
}

int PointTreeModel::rowCount(const QModelIndex& parent) const
{
    if (!parent.isValid())
        return static_cast<int>(m_shownStations.size());
    if (parent.internalId() != 0 || parent.column() != Name)
        return 0;
    return static_cast<int>(stationAt(parent.row()).shown.size());
}

int PointTreeModel::columnCount(const QModelIndex&) const
{
    return ColumnCount;
}

QVariant PointTreeModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    if (const PointDirectory::Entry* object = objectAt(index))
        return objectCell(*object, index.column());
    return stationCell(stationAt(index.row()), index.column());
}

QVariant PointTreeModel::stationCell(const Station& station, int column) const
{
    if (column == Name)
        return station.name.isEmpty() ? tr("(no station)") : station.name;
    if (column != Description)
        return {};
    const QLocale locale;
    const QString all = locale.toString(static_cast<qulonglong>(station.objects.size()));
    if (station.shown.size() == station.objects.size())
        return tr("%1 in all", "objects of a station").arg(all);
    return tr("%1 of %2", "objects of a station")
        .arg(locale.toString(static_cast<qulonglong>(station.shown.size())), all);
}

QVariant PointTreeModel::objectCell(const PointDirectory::Entry& object, int column)
{
    switch (column) {
    case Name:
        return tagOf(object);
    case Description:
        return object.description;
    case Kind:
        switch (object.key.type) {
        case ScadaObjectType::DigitalPoint:
            return tr("Digital point");
        case ScadaObjectType::AnalogPoint:
            return tr("Analog point");
        case ScadaObjectType::RtuObject:
            return tr("Unit");
        case ScadaObjectType::ChannelObject:
            return tr("Line");
        default:
            return tr("Point");
        }
    case Number:
        return object.key.id;
    default:
        return {};
    }
}

QVariant PointTreeModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractItemModel::headerData(section, orientation, role);
    const QString titles[ColumnCount] = {tr("Name"), tr("Description"), tr("Kind"), tr("Number")};
    return section >= 0 && section < ColumnCount ? titles[section] : QVariant();
}

Qt::ItemFlags PointTreeModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags flags = QAbstractItemModel::flags(index);
    return objectAt(index) ? flags | Qt::ItemIsDragEnabled : flags;
}

QStringList PointTreeModel::mimeTypes() const
{
    return {KVPointMimeData::format()};
}

QMimeData* PointTreeModel::mimeData(const QModelIndexList& indexes) const
{
    for (const QModelIndex& index : indexes) {
        if (objectAt(index))
            return new KVPointMimeData(item(index));
    }
    return nullptr;
}
