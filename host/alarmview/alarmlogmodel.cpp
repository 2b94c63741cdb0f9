#include "host/alarmview/alarmlogmodel.h"

#include "host/alarms/alarmtexts.h"
#include "host/alarmview/alarmcells_p.h"

#include <algorithm>

namespace {

bool isSameLine(const AlarmTransition& a, const AlarmTransition& b)
{
    return a.number == b.number;
}

/// What only lines of an alarm have: an event, or what happened to an object without one, has none of it.
QVariant ofAlarm(const AlarmTransition& line, const QVariant& value)
{
    return line.alarm.id != 0 ? value : QVariant();
}

} // namespace

AlarmLogModel::AlarmLogModel(QObject* parent) : QAbstractTableModel(parent)
{
}

AlarmLogModel::~AlarmLogModel() = default;

int AlarmLogModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_lines.size());
}

int AlarmLogModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QVariant AlarmLogModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return QAbstractTableModel::headerData(section, orientation, role);
    const QString titles[ColumnCount] = {tr("Time"),    tr("What"),   tr("Severity"), tr("Area"),  tr("Tag"),
                                         tr("Message"), tr("State"),  tr("Value"),    tr("Limit"), tr("Cause"),
                                         tr("User"),    tr("Reason"), tr("Until")};
    return section >= 0 && section < ColumnCount ? titles[section] : QVariant();
}

QVariant AlarmLogModel::data(const QModelIndex& index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const AlarmTransition& line = m_lines[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
        return AlarmCells::text(value(line, index.column()));
    case AlarmCsv::ValueRole:
        return value(line, index.column());
    case Qt::ToolTipRole:
        return AlarmCells::plainToolTip(AlarmCells::text(value(line, index.column())));
    case Qt::TextAlignmentRole:
        return static_cast<int>(AlarmCells::alignment(value(line, index.column())));
    default:
        return {};
    }
}

QVariant AlarmLogModel::value(const AlarmTransition& line, int column)
{
    switch (column) {
    case Time:
        return line.time;
    case Kind:
        return AlarmTexts::kind(line.kind);
    case Severity:
        return ofAlarm(line, line.alarm.severity);
    case Area:
        return line.alarm.area;
    case Tag:
        return AlarmTexts::tag(line.alarm);
    case Message:
        return line.alarm.message;
    case State:
        return ofAlarm(line, AlarmTexts::state(line.alarm.state));
    case Value:
        return line.alarm.value;
    case Limit:
        return line.alarm.limit;
    case Cause:
        return ofAlarm(line, AlarmTexts::cause(line.alarm.cause));
    case User:
        return line.user;
    case Reason:
        return line.reason;
    case Until:
        return line.until.isValid() ? QVariant(line.until) : QVariant();
    default:
        return {};
    }
}

/// How many of \p lines stand before the first one that is shown; all of them when what follows is something else.
std::size_t AlarmLogModel::newLinesBefore(const std::vector<AlarmTransition>& lines) const
{
    if (m_lines.empty())
        return lines.size();
    const auto known = std::find_if(lines.begin(), lines.end(),
                                    [this](const AlarmTransition& line) { return isSameLine(line, m_lines.front()); });
    const auto count = static_cast<std::size_t>(lines.end() - known);
    const bool goesOn = count <= m_lines.size() && std::equal(known, lines.end(), m_lines.begin(), isSameLine);
    return goesOn ? static_cast<std::size_t>(known - lines.begin()) : lines.size();
}

void AlarmLogModel::setLines(std::vector<AlarmTransition> lines)
{
    const std::size_t added = newLinesBefore(lines);
    if (added == lines.size()) {
        beginResetModel();
        m_lines = std::move(lines);
        endResetModel();
        return;
    }
    const std::size_t kept = lines.size() - added;
    if (kept < m_lines.size()) {
        beginRemoveRows({}, static_cast<int>(kept), rowCount() - 1);
        m_lines.resize(kept);
        endRemoveRows();
    }
    if (added > 0) {
        beginInsertRows({}, 0, static_cast<int>(added) - 1);
        m_lines = std::move(lines);
        endInsertRows();
    }
}
