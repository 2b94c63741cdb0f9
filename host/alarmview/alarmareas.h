#pragma once

#include "host/hostexport.h"

#include <QHash>
#include <QString>
#include <QStringList>

/// The numbers under which settings of the alarm list name areas of responsibility: those that the project states in its
/// order, from 1, and behind them the others in the order in which alarms of them appeared. 0 stands for no area.
///
/// Settings that are kept should name stated areas only: the number of another may be another area's the next time.
class KORVANE_HOST_EXPORT AlarmAreas
{
public:
    static constexpr int noArea = 0;

    /// \param stated names; empty ones and those stated before have no number of their own
    explicit AlarmAreas(const QStringList& stated = {});

    /// The number of an area, which gets one if it has none yet.
    int take(const QString& name);
    /// The number of an area; noArea for a name that has none.
    int number(const QString& name) const { return m_numbers.value(name, noArea); }
    /// The area of that number; an empty text for a number that stands for none.
    QString name(int number) const { return m_names.value(number - 1); }
    /// All names, from number 1 on.
    const QStringList& names() const { return m_names; }

private:
    QStringList m_names;
    QHash<QString, int> m_numbers;
};
