#pragma once

#include "host/accounts/accountevent.h"
#include "host/accounts/accountrole.h"
#include "host/accounts/accountsettings.h"
#include "host/hostexport.h"
#include "platform/database/useraccountdatabase.h"

#include <QByteArray>
#include <QCoreApplication>
#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

#include <functional>
#include <optional>
#include <utility>

class AccountTables;

/// The user accounts of a project: table SYSTEM_USER_ACCOUNT (NUMBER, NAME, ROLE, AREAS), which may be read by whoever
/// lists accounts, and the passwords' hashes in a table of their own, which never leave this class's room.
///
/// A connection that was lost, or that could not be made at first, is made by the next operation; until that succeeds
/// each operation tells why it failed, within a second or two, and changes nothing. (Where a server is lost just as it
/// ends a change, nobody can know whether it was made: the error says that it was not, and asking again tells.) A change
/// is on the disk when the operation ends. Several workplaces may use one database. Every value is bound, never part of
/// an SQL text. GUI thread only.
///
/// One administrator at least can always log on: the last one who is not locked can't be removed, locked or given
/// another role.
class KORVANE_HOST_EXPORT AccountDatabase : public UserAccountDatabase
{
    Q_DECLARE_TR_FUNCTIONS(AccountDatabase)

public:
    static constexpr int longestName = 64;
    static constexpr int shortestPassword = 8;   ///< in UTF-8 bytes of its composed form (NFC)
    static constexpr int longestPassword = 1024; ///< as above

    AccountDatabase();
    ~AccountDatabase() override;

    /// Opens the database and makes the tables that are missing; what was open is closed. An SQLite file that is not
    /// there is made, for its owner's eyes only.
    /// \returns why it can't be used now. The settings are kept: every further operation tries again.
    [[nodiscard]] tl::expected<void, QString> open(const AccountSettings& settings);
    void close();
    /// Whether there is a database to ask, be it within reach just now or not.
    bool isOpen() const { return !m_connection.isEmpty(); }

    /// Who accounts for each change of an account, just before it comes into force: where that fails it is not made. A
    /// change that the database refuses behind that is accounted for once more, as one that was not done. Nobody unless set.
    void setRecorder(AccountRecorder recorder) { m_recorder = std::move(recorder); }

    /// An account whose areas can't be read is an error, since no areas would stand for all.
    EntityMultiResult<EUserAccount> allUserAccounts() const override;
    /// Accounts by the one query that leaves the server: "select * from SYSTEM_USER_ACCOUNT", in any case of letters and
    /// spacing, with a semicolon or without; any other is refused.
    tl::expected<QList<EUserAccount>, QString> query(const QString& sql) const;
    /// Nothing when there is no such account; names are compared as they are, case included.
    tl::expected<std::optional<EUserAccount>, QString> find(const QString& name) const;

    /// Adds an account and gives it the next number, which was never given before.
    /// \returns the number, or why it was refused: the name is taken, empty, too long or has a control character, NUL
    /// or blanks around it; the password is too short or too long; the role is none; an area is empty or no text.
    [[nodiscard]] tl::expected<qint32, QString> add(const EUserAccount& account, const QString& password);
    /// Changes role and areas of the account with that number; its name stays.
    [[nodiscard]] tl::expected<void, QString> change(const EUserAccount& account);
    [[nodiscard]] tl::expected<void, QString> remove(const QString& name);
    [[nodiscard]] tl::expected<void, QString> setPassword(const QString& name, const QString& password);
    /// Keeps an account from logging on, or lets it again.
    [[nodiscard]] tl::expected<void, QString> setLocked(const QString& name, bool locked);
    /// \returns an error when there is no such account
    tl::expected<bool, QString> isLocked(const QString& name) const;
    /// Numbers of all accounts that are kept from logging on.
    tl::expected<QSet<qint32>, QString> lockedAccounts() const;

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
    /// \returns what it did
    using Change = std::function<tl::expected<AccountEvent, QString>(const AccountTables&)>;
    tl::expected<AccountTables, QString> tables() const;
    tl::expected<void, QString> changeAll(const Change& change);
    tl::expected<void, QString> record(const AccountEvent& event) const;

    QString m_connection; ///< name of the Qt connection; empty while closed
    AccountSettings m_settings;
    AccountRecorder m_recorder;
};
