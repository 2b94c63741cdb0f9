#include "host/alarmview/alarmlistmodel.h"

#include "host/alarmview/alarmcells_p.h"

#include <QFont>

#include <algorithm>

AlarmListModel::AlarmListModel(AlarmManager& manager, AlarmAreas areas, QObject* parent)
    : QAbstractTableModel(parent), m_manager(manager), m_areas(std::move(areas))
{
    m_timer.setSingleShot(true);
    m_timer.setInterval(gatheringMs);
    connect(&m_timer, &QTimer::timeout, this, &AlarmListModel::applyChanges);
    connect(&manager, &AlarmManager::transitioned, this, &AlarmListModel::take);
    reload();
}

AlarmListModel::~AlarmListModel() = default;

int AlarmListModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int AlarmListModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : AlarmListOrder::ColumnCount;
}

QVariant AlarmListModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    const QString titles[AlarmListOrder::ColumnCount] = {
        tr("Severity"),     tr("Raised"),          tr("State"),         tr("Area"),      tr("Tag"),
        tr("Message"),      tr("Value"),           tr("Limit"),         tr("Cause"),     tr("Returned"),
        tr("Acknowledged"), tr("Acknowledged by"), tr("Shelved until"), tr("Shelved by")};
    return section >= 0 && section < AlarmListOrder::ColumnCount ? titles[section] : QVariant();
}

QVariant AlarmListModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Item& item = *m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return AlarmCells::text(AlarmListOrder::value(item, index.column()));
    case ValueRole:
        return AlarmListOrder::value(item, index.column());
    case IdRole:
        return item.alarm.id;
    case Qt::ToolTipRole:
        return AlarmCells::plainToolTip(toolTip(item));
    default:
        return decoration(item, index.column(), role);
    }
}

QVariant AlarmListModel::decoration(const Item& item, int column, int role) const
{
    switch (role) {
    case Qt::TextAlignmentRole:
        return static_cast<int>(AlarmCells::alignment(AlarmListOrder::value(item, column)));
    case Qt::ForegroundRole: {
        const QColor color = m_presentation.severityData(item.alarm.severity).textColor;
        return color.isValid() ? QVariant(color) : QVariant();
    }
    case Qt::BackgroundRole:
        return item.alarm.isUnacknowledged() ? QVariant(AlarmCells::waitingBackground()) : QVariant();
    case Qt::FontRole: {
        if (!item.alarm.isUnacknowledged())
            return {};
        QFont font;
        font.setBold(true);
        return font;
    }
    default:
        return {};
    }
}

QString AlarmListModel::toolTip(const Item& item) const
{
    QStringList lines{item.alarm.message};
    const AlarmManager::Exclusion exclusion = m_manager.exclusion(item.alarm.object());
    if (!item.shelf.reason.isEmpty())
        lines.append(tr("Shelved: %1").arg(item.shelf.reason));
    if (!exclusion.suppressionReason.isEmpty())
        lines.append(tr("Suppressed: %1").arg(exclusion.suppressionReason));
    if (!exclusion.serviceReason.isEmpty())
        lines.append(tr("Out of service: %1").arg(exclusion.serviceReason));
    lines.removeAll({});
    return lines.join(QLatin1Char('\n'));
}

void AlarmListModel::setPresentation(const AlarmDataInfo& presentation)
{
    m_presentation = presentation;
    if (!m_rows.empty())
        Q_EMIT dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1), {Qt::ForegroundRole});
}

void AlarmListModel::take(const AlarmTransition& transition)
{
    if (transition.alarm.id == 0)
        return;
    m_pending.push_back(transition.alarm.id);
    if (!m_timer.isActive())
        m_timer.start();
}

void AlarmListModel::applyChanges()
{
    m_timer.stop();
    if (m_pending.empty())
        return;
    const Rows touched = readPending();
    show(touched);
    dropEnded(touched);
    Q_EMIT changed();
}

/// Every alarm that changed, as it is now; those that ended are in state Normal.
AlarmListModel::Rows AlarmListModel::readPending()
{
    std::sort(m_pending.begin(), m_pending.end());
    m_pending.erase(std::unique(m_pending.begin(), m_pending.end()), m_pending.end());
    Rows touched;
    touched.reserve(m_pending.size());
    for (const quint64 id : m_pending) {
        const ScadaAlarm alarm = m_manager.alarm(id);
        const auto known = m_items.find(id);
        const bool isKnown = known != m_items.end();
        if (alarm.id == 0 && !isKnown)
            continue; // came and went
        Item* item = isKnown ? known->second.get() : (m_items[id] = std::make_unique<Item>()).get();
        leave(*item);
        if (alarm.id == 0)
            item->alarm.state = ScadaAlarm::State::Normal;
        else
            read(*item, alarm);
        touched.push_back(item);
    }
    m_pending.clear();
    return touched;
}

void AlarmListModel::read(Item& item, const ScadaAlarm& alarm)
{
    item.alarm = alarm;
    item.shelf = m_manager.shelf(alarm.id);
    item.area = m_areas.take(alarm.area);
    item.raisedMs = alarm.raised.toMSecsSinceEpoch();
    item.isInScope = m_filter.acceptsInAnyState(alarm, item.area);
    if (item.isInScope)
        ++m_counts[static_cast<std::size_t>(alarm.state)];
}

/// Takes an item out of the counts.
void AlarmListModel::leave(Item& item)
{
    if (item.isInScope)
        --m_counts[static_cast<std::size_t>(item.alarm.state)];
    item.isInScope = false;
}

/// Brings the rows into their order by three steps that views follow: what is new goes to the end, everything moves to its
/// place with what leaves at the end, and the end goes.
void AlarmListModel::show(const Rows& touched)
{
    Rows added;
    Rows kept;
    Rows leaving;
    for (Item* item : touched) {
        const bool wasShown = item->row >= 0;
        if (isShown(*item))
            (wasShown ? kept : added).push_back(item);
        else if (wasShown)
            leaving.push_back(item);
    }
    Rows rows = merged(touched);
    const std::size_t count = rows.size();
    rows.insert(rows.end(), leaving.begin(), leaving.end());
    append(added);
    rearrange(std::move(rows));
    truncate(count);
    tellChanged(kept);
}

/// The rows without those of \p touched; found by their places, since looking at each of many items costs more.
AlarmListModel::Rows AlarmListModel::untouched(const Rows& touched) const
{
    std::vector<int> places;
    for (const Item* item : touched) {
        if (item->row >= 0)
            places.push_back(item->row);
    }
    std::sort(places.begin(), places.end());
    Rows others;
    others.reserve(m_rows.size());
    auto from = m_rows.begin();
    for (const int place : places) {
        const auto at = m_rows.begin() + place;
        others.insert(others.end(), from, at);
        from = at + 1;
    }
    others.insert(others.end(), from, m_rows.end());
    return others;
}

/// Rows that did not change are in order: those that did are merged into them.
AlarmListModel::Rows AlarmListModel::merged(const Rows& touched) const
{
    Rows sorted;
    std::copy_if(touched.begin(), touched.end(), std::back_inserter(sorted),
                 [this](const Item* item) { return isShown(*item); });
    std::sort(sorted.begin(), sorted.end(), m_order);
    const Rows others = untouched(touched);
    Rows all;
    all.reserve(others.size() + sorted.size());
    // Few among many: looking for each one's place compares less than going through all.
    auto from = others.begin();
    for (Item* item : sorted) {
        const auto place = std::upper_bound(from, others.end(), item, m_order);
        all.insert(all.end(), from, place);
        all.push_back(item);
        from = place;
    }
    all.insert(all.end(), from, others.end());
    return all;
}

void AlarmListModel::append(const Rows& added)
{
    if (added.empty())
        return;
    const int first = rowCount();
    beginInsertRows({}, first, first + static_cast<int>(added.size()) - 1);
    for (Item* item : added) {
        item->row = rowCount();
        m_rows.push_back(item);
    }
    endInsertRows();
}

void AlarmListModel::rearrange(Rows rows)
{
    if (rows == m_rows)
        return;
    Q_EMIT layoutAboutToBeChanged({}, VerticalSortHint);
    m_rows.swap(rows);
    const Rows& before = rows;
    for (std::size_t row = 0; row < m_rows.size(); ++row)
        m_rows[row]->row = static_cast<int>(row);
    const QModelIndexList from = persistentIndexList();
    QModelIndexList to;
    to.reserve(from.size());
    for (const QModelIndex& old : from)
        to.append(index(before[static_cast<std::size_t>(old.row())]->row, old.column()));
    changePersistentIndexList(from, to);
    Q_EMIT layoutChanged({}, VerticalSortHint);
}

void AlarmListModel::truncate(std::size_t count)
{
    if (count == m_rows.size())
        return;
    beginRemoveRows({}, static_cast<int>(count), rowCount() - 1);
    for (std::size_t row = count; row < m_rows.size(); ++row)
        m_rows[row]->row = -1;
    m_rows.resize(count);
    endRemoveRows();
}

void AlarmListModel::tellChanged(const Rows& kept)
{
    if (kept.empty())
        return;
    const auto [first, last] =
        std::minmax_element(kept.begin(), kept.end(), [](const Item* a, const Item* b) { return a->row < b->row; });
    Q_EMIT dataChanged(index((*first)->row, 0), index((*last)->row, columnCount() - 1));
}

void AlarmListModel::dropEnded(const Rows& touched)
{
    for (const Item* item : touched) {
        if (item->alarm.state == ScadaAlarm::State::Normal)
            m_items.erase(item->alarm.id);
    }
}

void AlarmListModel::reload()
{
    m_timer.stop();
    m_pending.clear();
    beginResetModel();
    m_rows.clear();
    m_items.clear();
    m_counts = {};
    const QList<ScadaAlarm> alarms = m_manager.activeAlarms();
    m_items.reserve(static_cast<std::size_t>(alarms.size()));
    // The oldest first: areas get their numbers as they appeared.
    for (auto alarm = alarms.rbegin(); alarm != alarms.rend(); ++alarm) {
        auto item = std::make_unique<Item>();
        read(*item, *alarm);
        if (isShown(*item))
            m_rows.push_back(item.get());
        m_items[alarm->id] = std::move(item);
    }
    std::sort(m_rows.begin(), m_rows.end(), m_order);
    for (std::size_t row = 0; row < m_rows.size(); ++row)
        m_rows[row]->row = static_cast<int>(row);
    endResetModel();
    Q_EMIT changed();
}

void AlarmListModel::setFilter(const AlarmFilter& filter)
{
    applyChanges();
    m_filter = filter;
    m_counts = {};
    Rows touched;
    for (const auto& [id, item] : m_items) {
        item->isInScope = m_filter.acceptsInAnyState(item->alarm, item->area);
        if (item->isInScope)
            ++m_counts[static_cast<std::size_t>(item->alarm.state)];
        if (isShown(*item) != (item->row >= 0))
            touched.push_back(item.get());
    }
    show(touched);
    Q_EMIT changed();
}

void AlarmListModel::sort(int column, Qt::SortOrder order)
{
    applyChanges();
    m_order.set(column, order);
    Rows rows = m_rows;
    std::sort(rows.begin(), rows.end(), m_order);
    rearrange(std::move(rows));
}
