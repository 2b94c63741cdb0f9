#include "host/summary/summarymodel.h"

#include "host/alarmview/alarmcells_p.h"
#include "host/summary/pointmarks_p.h"
#include "host/summary/summaryarrangement_p.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/quorixdata.h"
#include "platform/ui/kvpointmimedata.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>

namespace {

void prepare(QTimer& timer, int ms)
{
    timer.setSingleShot(true);
    timer.setInterval(ms);
}

std::size_t at(int place)
{
    return static_cast<std::size_t>(place);
}

} // namespace

SummaryModel::SummaryModel(const RuntimeDatabase& database, const QTimeZone& zone, QObject* parent)
    : QAbstractTableModel(parent), m_database(database), m_zone(zone), m_ranks(std::make_unique<SummaryRanks>(database))
{
    prepare(m_sliceTimer, 0);
    prepare(m_showTimer, gatheringMs);
    prepare(m_orderTimer, orderMs);
    connect(&m_sliceTimer, &QTimer::timeout, this, &SummaryModel::arrangeOn);
    connect(&m_showTimer, &QTimer::timeout, this, &SummaryModel::tellChanged);
    connect(&m_orderTimer, &QTimer::timeout, this, &SummaryModel::applyChanges);
}

SummaryModel::~SummaryModel() = default;

int SummaryModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int SummaryModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : SummaryColumns::ColumnCount;
}

QVariant SummaryModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return QAbstractTableModel::headerData(section, orientation, role);
    if (role == Qt::DisplayRole)
        return SummaryColumns::title(section);
    if (role == Qt::ToolTipRole && section == SummaryColumns::Time)
        return tr("Time zone: %1").arg(QString::fromLatin1(m_zone.id()));
    return QAbstractTableModel::headerData(section, orientation, role);
}

Qt::ItemFlags SummaryModel::flags(const QModelIndex& index) const
{
    const Qt::ItemFlags usual = QAbstractTableModel::flags(index);
    return index.isValid() ? usual | Qt::ItemIsDragEnabled | Qt::ItemNeverHasChildren : usual;
}

QVariant SummaryModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const ObjectKey shown = point(index.row());
    switch (role) {
    case Qt::DisplayRole:
        return SummaryColumns::text(m_database, shown, index.column(), m_zone);
    case ValueRole:
        return SummaryColumns::value(m_database, shown, index.column());
    case Qt::ToolTipRole:
        return AlarmCells::plainToolTip(SummaryColumns::text(m_database, shown, index.column(), m_zone));
    default:
        return appearance(shown, index.column(), role);
    }
}

QVariant SummaryModel::appearance(ObjectKey shown, int column, int role) const
{
    switch (role) {
    case Qt::TextAlignmentRole:
        return static_cast<int>((SummaryColumns::isNumber(column) ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    case Qt::ForegroundRole:
        if (!PointMarks(m_database.presentRecord(shown)).isUnreliable())
            return {};
        return QGuiApplication::palette().brush(QPalette::Disabled, QPalette::Text);
    case Qt::FontRole: {
        const bool isJudged = column == SummaryColumns::Value || column == SummaryColumns::Marks;
        if (!isJudged || PointMarks(m_database.presentRecord(shown)).limit == 0)
            return {};
        QFont font;
        font.setBold(true);
        return font;
    }
    default:
        return {};
    }
}

QStringList SummaryModel::mimeTypes() const
{
    return {KVPointMimeData::format()};
}

QMimeData* SummaryModel::mimeData(const QModelIndexList& indexes) const
{
    const RuntimeDatabase::Object* object =
        indexes.isEmpty() ? nullptr : m_database.object(point(indexes.constFirst().row()));
    if (!object)
        return nullptr;
    return new KVPointMimeData({object->type, object->id, object->name, object->name, object->description, {}});
}

int SummaryModel::rowOf(ObjectKey key) const
{
    const auto found = m_places.find(key.id);
    return found == m_places.end() || m_points[at(found->second)] != key ? -1 : m_rowOf[at(found->second)];
}

std::vector<ObjectKey> SummaryModel::shownPoints() const
{
    std::vector<ObjectKey> shown;
    shown.reserve(m_rows.size());
    for (const int place : m_rows)
        shown.push_back(m_points[at(place)]);
    return shown;
}

void SummaryModel::sort(int column, Qt::SortOrder order)
{
    m_column = column;
    m_isDescending = order == Qt::DescendingOrder;
    refresh();
}

void SummaryModel::setFilter(const SummaryFilter& filter)
{
    m_filter = filter;
    refresh();
}

void SummaryModel::setActive(bool isActive)
{
    if (m_isActive == isActive)
        return;
    m_isActive = isActive;
    if (isActive) {
        if (m_points.size() != m_database.count(Korvane::ScadaObjectType::Point))
            reload();
        startArranging();
        return;
    }
    m_arrangement.reset();
    m_sliceTimer.stop();
    m_showTimer.stop();
    m_orderTimer.stop();
    m_firstChanged = -1;
    m_lastChanged = -1;
    takePending();
}

void SummaryModel::setOrderHeld(bool isHeld)
{
    if (m_isHeld == isHeld)
        return;
    m_isHeld = isHeld;
    orderSoon();
    Q_EMIT stateChanged();
}

void SummaryModel::refresh()
{
    if (m_isActive)
        startArranging();
}

void SummaryModel::reload()
{
    beginResetModel();
    m_arrangement.reset();
    m_points = m_database.objects(Korvane::ScadaObjectType::Point);
    m_places.clear();
    m_places.reserve(m_points.size());
    for (std::size_t place = 0; place < m_points.size(); ++place)
        m_places.emplace(m_points[place].id, static_cast<int>(place));
    m_rows.clear();
    m_pending.clear();
    m_rowOf.assign(m_points.size(), -1);
    m_keys.assign(m_points.size(), 0);
    m_scope.assign(m_points.size(), false);
    m_isPending.assign(m_points.size(), false);
    m_ranks->clear();
    endResetModel();
}

void SummaryModel::startArranging()
{
    takePending(); // all are read anew
    m_arrangement =
        std::make_unique<SummaryArrangement>(m_database, m_points, *m_ranks, m_filter, m_column, m_isDescending);
    m_sliceTimer.start();
    Q_EMIT stateChanged();
}

void SummaryModel::arrangeOn()
{
    ++m_figures.slices;
    m_figures.longestRead = std::max(m_figures.longestRead, m_arrangement->advance());
    if (m_arrangement->isDone())
        endArranging();
    else
        m_sliceTimer.start();
}

void SummaryModel::endArranging()
{
    Rows rows = m_arrangement->takeRows();
    m_keys = m_arrangement->takeKeys();
    m_scope = m_arrangement->takeScope();
    m_arrangement.reset();
    apply(std::move(rows));
    orderSoon();
    Q_EMIT stateChanged();
}

void SummaryModel::noteChanged(const std::vector<ObjectKey>& objects)
{
    if (!m_isActive)
        return;
    for (const ObjectKey key : objects) {
        const auto found = m_places.find(key.id);
        if (found == m_places.end() || m_points[at(found->second)] != key)
            continue;
        const int place = found->second;
        if (const int row = m_rowOf[at(place)]; row >= 0) {
            m_firstChanged = m_firstChanged < 0 ? row : std::min(m_firstChanged, row);
            m_lastChanged = std::max(m_lastChanged, row);
        }
        if (isOrderLive() && !m_isPending[at(place)]) {
            m_isPending[at(place)] = true;
            m_pending.push_back(place);
        }
    }
    if (m_firstChanged >= 0 && !m_showTimer.isActive())
        m_showTimer.start();
    orderSoon();
}

void SummaryModel::tellChanged()
{
    const int last = std::min(m_lastChanged, rowCount() - 1);
    if (m_firstChanged >= 0 && m_firstChanged <= last)
        Q_EMIT dataChanged(index(m_firstChanged, 0), index(last, columnCount() - 1));
    m_firstChanged = -1;
    m_lastChanged = -1;
}

void SummaryModel::orderSoon()
{
    if (!m_pending.empty() && !m_isHeld && !m_orderTimer.isActive())
        m_orderTimer.start();
}

void SummaryModel::applyChanges()
{
    m_orderTimer.stop();
    if (m_isHeld || m_arrangement || m_pending.empty())
        return; // what ends the first two takes it up again
    if (m_pending.size() > mostMerged)
        startArranging();
    else
        merge();
}

SummaryModel::Rows SummaryModel::takePending()
{
    Rows taken;
    taken.swap(m_pending);
    for (const int place : taken)
        m_isPending[at(place)] = false;
    return taken;
}

bool SummaryModel::isShown(int place) const
{
    return m_scope[at(place)] &&
           (!m_filter.isLive() || m_filter.acceptsMarks(m_database.presentRecord(m_points[at(place)])));
}

/// Rows that did not change are in order: those that did are merged into them.
void SummaryModel::merge()
{
    ++m_figures.merges;
    m_figures.longestRead = std::max(m_figures.longestRead, static_cast<int>(m_pending.size()));
    Rows others;
    others.reserve(m_rows.size());
    std::copy_if(m_rows.begin(), m_rows.end(), std::back_inserter(others),
                 [this](int place) { return !m_isPending[at(place)]; });
    Rows touched = takePending();
    touched.erase(std::remove_if(touched.begin(), touched.end(), [this](int place) { return !isShown(place); }),
                  touched.end());
    if (!SummaryColumns::isText(m_column)) {
        for (const int place : touched)
            m_keys[at(place)] = SummaryColumns::number(m_database, m_points[at(place)], m_column);
    }
    const SummaryOrder inOrder{&m_keys, m_isDescending};
    std::sort(touched.begin(), touched.end(), inOrder);
    Rows rows;
    rows.reserve(others.size() + touched.size());
    std::merge(others.begin(), others.end(), touched.begin(), touched.end(), std::back_inserter(rows), inOrder);
    apply(std::move(rows));
    Q_EMIT stateChanged();
}

/// Brings the rows about by three steps that views follow: what is new goes to the end, everything moves to its place with what
/// leaves at the end, and the end goes.
void SummaryModel::apply(Rows rows)
{
    if (rows == m_rows)
        return;
    Q_EMIT aboutToArrange();
    std::vector<bool> isStaying(m_points.size(), false);
    Rows added;
    for (const int place : rows) {
        isStaying[at(place)] = true;
        if (m_rowOf[at(place)] < 0)
            added.push_back(place);
    }
    const std::size_t count = rows.size();
    std::copy_if(m_rows.begin(), m_rows.end(), std::back_inserter(rows),
                 [&](int place) { return !isStaying[at(place)]; });
    append(added);
    rearrange(std::move(rows));
    truncate(count);
    Q_EMIT arranged();
}

void SummaryModel::append(const Rows& added)
{
    if (added.empty())
        return;
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(added.size()) - 1);
    for (const int place : added) {
        m_rowOf[at(place)] = rowCount();
        m_rows.push_back(place);
    }
    endInsertRows();
}

void SummaryModel::rearrange(Rows rows)
{
    if (rows == m_rows)
        return;
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    m_rows.swap(rows);
    const Rows& before = rows;
    for (std::size_t row = 0; row < m_rows.size(); ++row)
        m_rowOf[at(m_rows[row])] = static_cast<int>(row);
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex& old : from)
        to.append(index(m_rowOf[at(before[at(old.row())])], old.column()));
    changePersistentIndexList(from, to);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void SummaryModel::truncate(std::size_t count)
{
    if (count == m_rows.size())
        return;
    beginRemoveRows({}, static_cast<int>(count), rowCount() - 1);
    for (std::size_t row = count; row < m_rows.size(); ++row)
        m_rowOf[at(m_rows[row])] = -1;
    m_rows.resize(count);
    endRemoveRows();
}
