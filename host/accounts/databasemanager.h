#pragma once

#include "host/accounts/accountdatabase.h"
#include "host/accounts/accountevent.h"
#include "host/accounts/accountrole.h"
#include "host/hostexport.h"
#include "platform/core/korvanedatabasemanagerinterface.h"
#include "platform/database/euseraccount.h"

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QString>

#include <tl/expected.hpp>

#include <chrono>
#include <functional>
#include <optional>
#include <utility>

/// The reference host's front to the user accounts: who is logged on at this workplace, and whose password is right.
///
/// While security is off nobody logs on, every check is right, and nothing is counted. While it is on, the failures of
/// each name are counted, be there such an account or not: from the third in a row on, every further attempt under that
/// name is refused at once, right or wrong, for 2 s, then 4 s and so on up to 5 min after each failure; a success ends
/// that. A wrong password costs as much time as an unknown name, and the texts for both are the same; that an account is
/// locked learns only who knows its password. A database that can't be asked is no failure of the user. No password is
/// kept or logged, and nothing waits: the counts live in this process, for the 10,000 names that failed last.
///
/// Each check of the user who is logged on looks at his account anew: his rights are as it says then, and he is logged off
/// when it was removed or locked in the meantime.
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
    static constexpr int mostNames = 10000; ///< whose failures are counted

    /// Whether a hash is that of a password, or why that can't be told.
    using Verifier = std::function<tl::expected<bool, QString>(const QByteArray& hash, const QString& password)>;

    /// \param accounts not owned, must outlive the manager
    /// \param clock the system's monotonic clock unless given
    /// \param verifier of Argon2id texts unless given; called once for every check that is not refused
    explicit DatabaseManager(AccountDatabase& accounts, Clock clock = {}, Verifier verifier = {},
                             QObject* parent = nullptr);
    ~DatabaseManager() override;

    /// Who accounts for log-ons, log-offs and every password that was not taken; nobody unless set. Of attempts that are
    /// refused at once, the first of each span is accounted for. What can't be is done all the same, and told. Called until
    /// the manager is gone: its end is a log-off.
    void setRecorder(AccountRecorder recorder) { m_recorder = std::move(recorder); }

    /// Turned off, it logs off who is logged on.
    void setSecured(bool secured);
    bool isSecured() const { return m_isSecured; }

    QString currentUserId() override;
    /// False while security is on and nobody is logged on.
    bool checkCurrentUserPassword(const QString& password) override;
    bool checkUserPassword(const QString& user, const QString& password, QString& message) override;

    /// Logs a user on, in place of the one before.
    /// \returns why not, for the user's eyes; the one before stays then. Nobody logs on while security is off.
    [[nodiscard]] tl::expected<void, QString> logOn(const QString& user, const QString& password);
    void logOff();
    /// For how long every attempt under that name is still refused; 0 when it is not.
    std::chrono::milliseconds refusal(const QString& user) const;
    /// Who is logged on, as the account was when he was last checked; nothing while nobody is.
    const std::optional<EUserAccount>& currentAccount() const { return m_current; }
    /// Looks the account of who is logged on up anew: his rights are as it says now, and he is logged off when it was
    /// removed or locked.
    /// \returns why the database can't be asked; his rights stay as they were then.
    tl::expected<void, QString> refresh();
    /// The account of that name as it is now, or nothing.
    std::optional<EUserAccount> account(const QString& user) const;
    /// Gives the account of the current user another password.
    [[nodiscard]] tl::expected<void, QString> changePassword(const QString& oldPassword, const QString& newPassword);

    /// Passwords that were found right are numbered from 1: the newest number given. Who has a password asked for looks
    /// before and after, so that nothing but a right password can stand for one.
    quint64 newestProof() const { return m_newestProof; }
    /// Number of the newest right password of \p user; 0 before the first.
    quint64 proofOf(const QString& user) const { return m_proofs.value(user); }

    /// Whether the current user has at least \p role, and \p area (empty for none) is among his; true while security is
    /// off.
    bool may(AccountRole role, const QString& area) const;
    /// The same of any account.
    static bool may(const EUserAccount& account, AccountRole role, const QString& area);

Q_SIGNALS:
    void loggedOn(const QString& user);
    void loggedOff(const QString& user);
    void problemFound(const QString& text);

private:
    struct Failures
    {
        int count = 0;
        qint64 lastMs = 0;
        qint64 refusedUntilMs = 0;
        bool isRefusalRecorded = false; ///< of the present span
    };
    using Kind = AccountEvent::Kind;

    tl::expected<void, QString> check(Kind kind, const QString& user, const QString& password);
    tl::expected<void, QString> compare(const QString& user, const QString& password);
    tl::unexpected<QString> refuse(Kind kind, const QString& user, const QString& text);
    void record(const AccountEvent& event);
    void endSession(const QString& why);
    void noteFailure(const QString& user);
    void dropOldestFailures();
    void refreshCurrent(const AccountDatabase::Secret& secret);

    AccountDatabase& m_accounts;
    Clock m_clock;
    Verifier m_verifier;
    AccountRecorder m_recorder;
    std::optional<EUserAccount> m_current;
    QHash<QString, Failures> m_failures; ///< by name; of names that failed last
    QHash<QString, quint64> m_proofs;
    quint64 m_newestProof = 0;
    bool m_isSecured = true;
};
