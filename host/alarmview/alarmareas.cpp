#include "host/alarmview/alarmareas.h"

AlarmAreas::AlarmAreas(const QStringList& stated)
{
    for (const QString& name : stated)
        take(name);
}

int AlarmAreas::take(const QString& name)
{
    if (name.isEmpty())
        return noArea;
    const auto known = m_numbers.constFind(name);
    if (known != m_numbers.constEnd())
        return *known;
    m_names.append(name);
    m_numbers.insert(name, m_names.size());
    return m_names.size();
}
