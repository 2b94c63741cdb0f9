#include "host/control/accountlog.h"

#include "host/core/machineuser.h"

#include <utility>

AccountLog::AccountLog(const QString& fileName, const QString& workplace, std::function<QString()> user)
    : m_fileName(fileName), m_workplace(workplace), m_user(std::move(user))
{
}

tl::expected<void, QString> AccountLog::record(AccountEvent event)
{
    if (!m_log.isOpen()) {
        if (auto opened = m_log.open(m_fileName); !opened)
            return opened;
    }
    if (event.user.isEmpty() && m_user)
        event.user = m_user();
    if (event.user.isEmpty())
        event.user = machineUser();
    return m_log.append(event, m_workplace, QDateTime::currentDateTimeUtc());
}
