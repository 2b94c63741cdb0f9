#pragma once

#include "host/accounts/accountevent.h"
#include "host/control/auditlog.h"
#include "host/hostexport.h"

#include <QString>

#include <tl/expected.hpp>

#include <functional>

/// Writes what happens to user accounts into a project's audit log: with the machine's time, and into the file also while a
/// recording plays, since the accounts are those of the plant all the same. The file is opened, or made, by the first line,
/// and by each further one where that failed. GUI thread only.
class KORVANE_HOST_EXPORT AccountLog
{
public:
    /// \param fileName of the audit log
    /// \param workplace stands in every line
    /// \param user who is logged on; where nobody is, or it is not given, lines name the machine's user
    AccountLog(const QString& fileName, const QString& workplace, std::function<QString()> user = {});
    Q_DISABLE_COPY(AccountLog)

    /// \returns why the line could not be written, naming the file
    [[nodiscard]] tl::expected<void, QString> record(AccountEvent event);

private:
    QString m_fileName;
    QString m_workplace;
    std::function<QString()> m_user;
    AuditLog m_log;
};
