#pragma once

#include "host/accounts/accountrole.h"
#include "host/hostexport.h"
#include "platform/core/korvanedatabasemanagerinterface.h"
#include "platform/database/euseraccount.h"

#include <QHash>
#include <QObject>
#include <QString>

#include <tl/expected.hpp>

#include <chrono>
#include <functional>
#include <optional>

class AccountDatabase;

/// The reference host's front to the user accounts: who is logged on at this workplace, and whose password is right.
///
/// While security is off nobody logs on, every check is right, and nothing is counted. While it is on, the failures of
/// each name are counted, be there such an account or not: from the third in a row on, every further attempt under that
/// name is refused at once, right or wrong, for 2 s, then 4 s and so on up to 5 min after each failure; a success ends
/// that. A wrong password costs as much time as an unknown name, and the texts for both are the same. No password is
/// kept or logged.
class KORVANE_HOST_EXPORT DatabaseManager : public QObject, public KorvaneDataBaseManagerInterface
{
    Q_OBJECT
    Q_DISABLE_COPY(DatabaseManager)

public:
    /// Milliseconds from any moment on, never fewer than before.
    using Clock = std::function<qint64()>;

    static constexpr int freeFailures = 2;
    static constexpr std::chrono::seconds firstRefusal{2};
    static constexpr std::chrono::seconds longestRefusal{300};

    /// \param accounts not owned, must outlive the manager
    /// \param clock the system's monotonic clock unless given
    explicit DatabaseManager(AccountDatabase& accounts, Clock clock = {}, QObject* parent = nullptr);
    ~DatabaseManager() override;

    void setSecured(bool secured) { m_isSecured = secured; }
    bool isSecured() const { return m_isSecured; }

    QString currentUserId() override;
    /// False while security is on and nobody is logged on.
    bool checkCurrentUserPassword(const QString& password) override;
    bool checkUserPassword(const QString& user, const QString& password, QString& message) override;

    /// Logs a user on, in place of the one before.
    /// \returns why not, for the user's eyes; the one before stays then.
    [[nodiscard]] tl::expected<void, QString> logOn(const QString& user, const QString& password);
    void logOff();
    /// Who is logged on, as the account was then; nothing while nobody is.
    const std::optional<EUserAccount>& currentAccount() const { return m_current; }
    /// The account of that name as it is now, or nothing.
    std::optional<EUserAccount> account(const QString& user) const;
    /// Gives the account of the current user another password.
    [[nodiscard]] tl::expected<void, QString> changePassword(const QString& oldPassword, const QString& newPassword);

    /// How often a password of \p user was found right: who had it asked for compares before and after, so that nothing
    /// but a right password can stand for one.
    quint64 proofs(const QString& user) const { return m_proofs.value(user); }

    /// Whether the current user has at least \p role, and \p area (empty for none) is among his; true while security is
    /// off.
    bool may(AccountRole role, const QString& area) const;
    /// The same of any account.
    static bool may(const EUserAccount& account, AccountRole role, const QString& area);

Q_SIGNALS:
    void loggedOn(const QString& user);
    void loggedOff(const QString& user);

private:
    struct Failures
    {
        int count = 0;
        qint64 refusedUntilMs = 0;
    };
    tl::expected<void, QString> check(const QString& user, const QString& password);
    void noteFailure(const QString& user);

    AccountDatabase& m_accounts;
    Clock m_clock;
    std::optional<EUserAccount> m_current;
    QHash<QString, Failures> m_failures; ///< by name; of names that failed last
    QHash<QString, quint64> m_proofs;
    bool m_isSecured = true;
};
