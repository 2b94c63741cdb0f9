#include "host/accounts/accountsettings.h"

#include <QDir>
#include <QJsonObject>

namespace {

/// Reads members and remembers the first that is wrong.
class Members
{
public:
    explicit Members(const QJsonObject& object) : m_object(object) {}

    bool has(const char* name) const { return m_object.contains(QLatin1String(name)); }
    QString text(const char* name)
    {
        const QJsonValue value = m_object.value(QLatin1String(name));
        if (!value.isUndefined() && !value.isString())
            refuse(name, QStringLiteral("must be a text"));
        else if (value.toString().contains(QChar::Null))
            refuse(name, QStringLiteral("must be a text without NUL"));
        return value.toString();
    }
    QString neededText(const char* name)
    {
        QString read = text(name);
        if (read.isEmpty())
            refuse(name, QStringLiteral("is missing"));
        return read;
    }
    int port(int otherwise)
    {
        constexpr int highest = 65535;
        const QJsonValue value = m_object.value(QLatin1String("port"));
        const int port = value.toInt(value.isUndefined() ? otherwise : 0);
        if (port < 1 || port > highest)
            refuse("port", QStringLiteral("must be a whole number from 1 to %1").arg(highest));
        return port;
    }
    void refuse(const char* name, const QString& reason)
    {
        if (m_problem.isEmpty())
            m_problem = QStringLiteral("\"accounts\": \"%1\" %2").arg(QLatin1String(name), reason);
    }
    QString problem() const { return m_problem; }

private:
    QJsonObject m_object;
    QString m_problem;
};

void readServer(AccountSettings& settings, Members& members, const QString& folder)
{
    settings.driver = AccountSettings::Driver::PostgreSql;
    settings.host = members.neededText("host");
    settings.port = members.port(settings.port);
    settings.database = members.neededText("database");
    settings.user = members.neededText("user");
    const QString passwordFile = members.text("passwordFile");
    if (!passwordFile.isEmpty())
        settings.passwordFile = QDir(folder).absoluteFilePath(passwordFile);
}

/// A server's members without its driver would be passed over, and the accounts sought in the wrong place.
void readFile(AccountSettings& settings, Members& members, const QString& folder)
{
    for (const char* name : {"host", "port", "database", "user", "passwordFile"}) {
        if (members.has(name))
            members.refuse(name, QStringLiteral("needs \"driver\": \"QPSQL\""));
    }
    settings.fileName = QDir(folder).absoluteFilePath(QStringLiteral("accounts.db"));
}

} // namespace

tl::expected<AccountSettings, QString> AccountSettings::read(const QJsonObject& stored, const QString& folder)
{
    AccountSettings settings;
    Members members(stored);
    const QString driver = members.text("driver");
    if (members.has("password"))
        members.refuse("password", QStringLiteral("must not stand in a project: name a file by \"passwordFile\""));
    if (driver == QLatin1String("QPSQL"))
        readServer(settings, members, folder);
    else if (driver.isEmpty() || driver == QLatin1String("QSQLITE"))
        readFile(settings, members, folder);
    else
        members.refuse("driver", QStringLiteral("must be \"QSQLITE\" or \"QPSQL\""));
    if (!members.problem().isEmpty())
        return tl::make_unexpected(members.problem());
    return settings;
}
