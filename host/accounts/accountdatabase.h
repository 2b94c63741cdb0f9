#pragma once

#include "host/accounts/accountrole.h"
#include "host/accounts/accountsettings.h"
#include "host/hostexport.h"
#include "platform/database/useraccountdatabase.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <optional>

/// The user accounts of a project: table SYSTEM_USER_ACCOUNT (NUMBER, NAME, ROLE, AREAS), which may be read by whoever
/// lists accounts, and the passwords' hashes in a table of their own, which never leave this class's room.
///
/// A connection that was lost is opened again by the next operation; until that succeeds each operation tells why it
/// failed, within a second or two, and changes nothing. Every value is bound, never part of an SQL text. GUI thread
/// only.
class KORVANE_HOST_EXPORT AccountDatabase : public UserAccountDatabase
{
public:
    static constexpr int longestName = 64;
    static constexpr int shortestPassword = 8;
    static constexpr int longestPassword = 1024; ///< in UTF-8 bytes

    AccountDatabase();
    ~AccountDatabase() override;

    /// Opens the database and makes the tables that are missing; what was open is closed.
    [[nodiscard]] tl::expected<void, QString> open(const AccountSettings& settings);
    void close();
    bool isOpen() const { return !m_connection.isEmpty(); }

    EntityMultiResult<EUserAccount> allUserAccounts() const override;
    /// Accounts by the one query that leaves the server: "select * from SYSTEM_USER_ACCOUNT", in any case of letters and
    /// spacing; any other is refused.
    tl::expected<QList<EUserAccount>, QString> query(const QString& sql) const;
    /// Nothing when there is no such account; names are compared as they are, case included.
    tl::expected<std::optional<EUserAccount>, QString> find(const QString& name) const;

    /// Adds an account and gives it the next number, which was never given before.
    /// \returns the number, or why it was refused: the name is taken, empty, too long or has a control character, NUL
    /// or blanks around it; the password is too short or too long; the role is none.
    [[nodiscard]] tl::expected<qint32, QString> add(const EUserAccount& account, const QString& password);
    /// Changes role and areas of the account with that number; its name stays.
    [[nodiscard]] tl::expected<void, QString> change(const EUserAccount& account);
    [[nodiscard]] tl::expected<void, QString> remove(const QString& name);
    [[nodiscard]] tl::expected<void, QString> setPassword(const QString& name, const QString& password);
    /// Keeps an account from logging on, or lets it again.
    [[nodiscard]] tl::expected<void, QString> setLocked(const QString& name, bool locked);
    tl::expected<bool, QString> isLocked(const QString& name) const;

    /// What is known of an account's password; the hash of an account that there is not is one that no password has,
    /// which costs as long to compare.
    struct Secret
    {
        QByteArray hash;
        bool isKnown = false;
        bool isLocked = false;
    };
    tl::expected<Secret, QString> secret(const QString& name) const;

private:
    QString m_connection; ///< name of the Qt connection; empty while closed
    AccountSettings m_settings;
};
