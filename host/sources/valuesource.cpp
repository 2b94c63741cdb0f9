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

bool ValueSource::takesCommands(ObjectKey) const
{
    return false;
}

bool ValueSource::readAgain(ObjectKey)
{
    return false;
}

tl::expected<void, QString> ValueSource::reconnect(qint64)
{
    return tl::make_unexpected(QStringLiteral("%1 has no connection that could be opened again").arg(description()));
}

void ValueSource::write(const Command& command)
{
    Q_EMIT commandAnswered(command.requestId, QStringLiteral("%1 takes no commands").arg(description()));
}
