#include "host/alarmview/alarmlistorder.h"

#include "host/alarms/alarmtexts.h"

#include <cmath>

namespace {

using Item = AlarmListOrder::Item;

template <typename T>
int compared(const T& a, const T& b)
{
    return a < b ? -1 : (b < a ? 1 : 0);
}

int compared(const QString& a, const QString& b)
{
    const int without = a.compare(b, Qt::CaseInsensitive);
    return without != 0 ? without : a.compare(b);
}

/// What is not there comes before everything.
int compared(const QDateTime& a, const QDateTime& b)
{
    if (!a.isValid() || !b.isValid())
        return compared(a.isValid(), b.isValid());
    return compared(a.toMSecsSinceEpoch(), b.toMSecsSinceEpoch());
}

/// A value as something that sorts: nothing, then numbers, then texts.
struct Sortable
{
    explicit Sortable(const QVariant& value)
    {
        if (!value.isValid())
            return;
        bool isNumber = false;
        number = value.toDouble(&isNumber);
        rank = isNumber && !std::isnan(number) ? 1 : 2;
        if (rank == 2)
            text = value.toString();
    }
    int rank = 0;
    double number = 0;
    QString text;
};

int compared(const QVariant& a, const QVariant& b)
{
    const Sortable left(a);
    const Sortable right(b);
    if (left.rank != right.rank)
        return compared(left.rank, right.rank);
    return left.rank == 1 ? compared(left.number, right.number) : compared(left.text, right.text);
}

int comparedIn(int column, const Item& a, const Item& b)
{
    switch (column) {
    case AlarmListOrder::Severity:
        return compared(a.alarm.severity, b.alarm.severity);
    case AlarmListOrder::Raised:
        return compared(a.raisedMs, b.raisedMs);
    case AlarmListOrder::State:
        return compared(a.alarm.state, b.alarm.state);
    case AlarmListOrder::Area:
        return compared(a.alarm.area, b.alarm.area);
    case AlarmListOrder::Tag:
        return compared(a.alarm.tag, b.alarm.tag);
    case AlarmListOrder::Message:
        return compared(a.alarm.message, b.alarm.message);
    case AlarmListOrder::Value:
        return compared(a.alarm.value, b.alarm.value);
    case AlarmListOrder::Limit:
        return compared(a.alarm.limit, b.alarm.limit);
    case AlarmListOrder::Cause:
        return compared(a.alarm.cause, b.alarm.cause);
    case AlarmListOrder::Returned:
        return compared(a.alarm.returned, b.alarm.returned);
    case AlarmListOrder::Acknowledged:
        return compared(a.alarm.acknowledged, b.alarm.acknowledged);
    case AlarmListOrder::AcknowledgedBy:
        return compared(a.alarm.acknowledgedBy, b.alarm.acknowledgedBy);
    case AlarmListOrder::ShelvedUntil:
        return compared(a.shelf.until, b.shelf.until);
    case AlarmListOrder::ShelvedBy:
        return compared(a.shelf.user, b.shelf.user);
    default:
        return 0;
    }
}

bool comesFirst(const Item& a, const Item& b)
{
    if (a.alarm.isUnacknowledged() != b.alarm.isUnacknowledged())
        return a.alarm.isUnacknowledged();
    if (a.alarm.severity != b.alarm.severity)
        return a.alarm.severity > b.alarm.severity;
    return a.raisedMs != b.raisedMs ? a.raisedMs > b.raisedMs : a.alarm.id > b.alarm.id;
}

QVariant valueOf(const QDateTime& time)
{
    return time.isValid() ? QVariant(time) : QVariant();
}

} // namespace

void AlarmListOrder::set(int column, Qt::SortOrder order)
{
    m_column = column;
    m_isDescending = order == Qt::DescendingOrder;
}

bool AlarmListOrder::operator()(const Item* a, const Item* b) const
{
    const int inColumn = comparedIn(m_column, *a, *b);
    if (inColumn != 0)
        return m_isDescending ? inColumn > 0 : inColumn < 0;
    return comesFirst(*a, *b);
}

QVariant AlarmListOrder::value(const Item& item, int column)
{
    const ScadaAlarm& alarm = item.alarm;
    switch (column) {
    case Severity:
        return alarm.severity;
    case Raised:
        return valueOf(alarm.raised);
    case State:
        return AlarmTexts::state(alarm.state);
    case Area:
        return alarm.area;
    case Tag:
        return alarm.tag;
    case Message:
        return alarm.message;
    case Value:
        return alarm.value;
    case Limit:
        return alarm.limit;
    case Cause:
        return AlarmTexts::cause(alarm.cause);
    case Returned:
        return valueOf(alarm.returned);
    case Acknowledged:
        return valueOf(alarm.acknowledged);
    case AcknowledgedBy:
        return alarm.acknowledgedBy;
    case ShelvedUntil:
        return valueOf(item.shelf.until);
    case ShelvedBy:
        return item.shelf.user;
    default:
        return {};
    }
}
