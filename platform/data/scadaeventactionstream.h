#pragma once

#include "platform/core/triggertype.h"

#include <QByteArray>

/// A stored event action: the event that runs it, which kind of action it is, and its settings as bytes.
class ScadaEventActionStream
{
public:
    ScadaEventActionStream() = default;

    /// Any 32-bit number: a stored page can claim any trigger.
    Korvane::TriggerType trigger() const { return m_trigger; }
    void setTrigger(Korvane::TriggerType trigger) { m_trigger = trigger; }

    /// The number of the kind of action, as its type() gives it; 0 before one was written.
    int type() const { return m_type; }
    void setType(int type) { m_type = type; }

    /// The action's settings, in the action's own form.
    const QByteArray& data() const { return m_data; }
    void setData(const QByteArray& data) { m_data = data; }

private:
    Korvane::TriggerType m_trigger = Korvane::TriggerType::None;
    int m_type = 0;
    QByteArray m_data;
};
