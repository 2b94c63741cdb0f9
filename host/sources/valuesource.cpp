#include "host/sources/valuesource.h"

ValueSource::ValueSource(QObject* parent) : QObject(parent)
{
}

ValueSource::~ValueSource() = default;

void ValueSource::setState(State state, const QString& failure)
{
    m_failure = failure;
    if (m_state == state)
        return;
    m_state = state;
    Q_EMIT stateChanged();
}
