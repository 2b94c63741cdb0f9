#include "host/accounts/databasemanager.h"

#include "host/accounts/passwordhash_p.h"

#include <QElapsedTimer>

#include <algorithm>
#include <utility>

namespace {

using Failed = tl::unexpected<QString>;
using std::chrono::milliseconds;

DatabaseManager::Clock monotonicClock()
{
    QElapsedTimer timer;
    timer.start();
    return [timer] { return timer.elapsed(); };
}

/// A name under which failures are counted: of names that are too long for any account, no more than tells that.
QString countedName(const QString& user)
{
    return user.left(AccountDatabase::longestName + 1);
}

milliseconds refusalAfter(int failures)
{
    if (failures <= DatabaseManager::freeFailures)
        return {};
    constexpr int mostDoublings = 16; // far beyond the longest, far below an overflow
    const int doublings = std::min(failures - DatabaseManager::freeFailures - 1, mostDoublings);
    return std::min<milliseconds>(DatabaseManager::firstRefusal * (1 << doublings), DatabaseManager::longestRefusal);
}

/// Whole seconds, rounded up: after these an attempt is taken.
QString secondsText(milliseconds duration)
{
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(duration + milliseconds(999));
    return QString::number(seconds.count());
}

AccountEvent sessionEvent(AccountEvent::Kind kind, const EUserAccount& account, const QString& text)
{
    AccountEvent event;
    event.kind = kind;
    event.account = account.name;
    event.number = account.number;
    event.user = account.name;
    event.text = text;
    return event;
}

} // namespace

DatabaseManager::DatabaseManager(AccountDatabase& accounts, Clock clock, Verifier verifier, QObject* parent)
    : QObject(parent),
      m_accounts(accounts),
      m_clock(clock ? std::move(clock) : monotonicClock()),
      m_verifier(verifier ? std::move(verifier) : Verifier(&PasswordHash::verify))
{
}

DatabaseManager::~DatabaseManager()
{
    if (m_current && m_recorder) // whoever would be told of a failure may be gone
        static_cast<void>(m_recorder(sessionEvent(Kind::LogOff, *m_current, tr("the program ended"))));
}

void DatabaseManager::setSecured(bool secured)
{
    m_isSecured = secured;
    if (!secured)
        endSession(tr("user security was turned off"));
}

QString DatabaseManager::currentUserId()
{
    return m_current ? m_current->name : QString();
}

bool DatabaseManager::checkCurrentUserPassword(const QString& password)
{
    if (!m_isSecured)
        return true;
    if (!m_current || !check(Kind::CheckPassword, QString(m_current->name), password))
        return false;
    return m_current.has_value(); // the check may have logged him off
}

bool DatabaseManager::checkUserPassword(const QString& user, const QString& password, QString& message)
{
    const auto checked = check(Kind::CheckPassword, user, password);
    if (!checked)
        message = checked.error();
    return checked.has_value();
}

tl::expected<void, QString> DatabaseManager::logOn(const QString& user, const QString& password)
{
    if (!m_isSecured)
        return Failed(tr("This project has no user security."));
    if (auto checked = check(Kind::LogOn, user, password); !checked)
        return checked;
    const auto found = m_accounts.find(user);
    if (!found)
        return refuse(Kind::LogOn, user, found.error());
    if (!*found) // removed since the check
        return refuse(Kind::LogOn, user, tr("The user name or the password is wrong."));
    endSession(tr("another log-on took its place"));
    record(sessionEvent(Kind::LogOn, **found, {}));
    m_current = **found;
    Q_EMIT loggedOn(QString(m_current->name)); // whoever hears of it may end the session
    return {};
}

void DatabaseManager::logOff()
{
    endSession({});
}

void DatabaseManager::endSession(const QString& why)
{
    if (!m_current)
        return;
    const EUserAccount leaving = *m_current;
    m_current.reset();
    record(sessionEvent(Kind::LogOff, leaving, why));
    Q_EMIT loggedOff(leaving.name);
}

void DatabaseManager::record(const AccountEvent& event)
{
    if (!m_recorder)
        return;
    if (const auto recorded = m_recorder(event); !recorded)
        Q_EMIT problemFound(recorded.error());
}

Failed DatabaseManager::refuse(Kind kind, const QString& user, const QString& text)
{
    AccountEvent event;
    event.kind = kind;
    event.account = countedName(user);
    if (kind == Kind::LogOn) // nobody else asked for that
        event.user = event.account;
    event.isDone = false;
    event.text = text;
    record(event);
    return Failed(text);
}

std::optional<EUserAccount> DatabaseManager::account(const QString& user) const
{
    const auto found = m_accounts.find(user);
    return found ? *found : std::nullopt;
}

tl::expected<void, QString> DatabaseManager::changePassword(const QString& oldPassword, const QString& newPassword)
{
    if (!m_current)
        return Failed(tr("Nobody is logged on."));
    const QString user = m_current->name;
    if (auto checked = check(Kind::CheckPassword, user, oldPassword); !checked)
        return checked;
    if (!m_current) // logged off by the check: that name is another account's now
        return Failed(tr("Nobody is logged on."));
    return m_accounts.setPassword(user, newPassword);
}

milliseconds DatabaseManager::refusal(const QString& user) const
{
    const auto failures = m_failures.constFind(countedName(user));
    if (!m_isSecured || failures == m_failures.constEnd())
        return {};
    return milliseconds(std::max<qint64>(0, failures->refusedUntilMs - m_clock()));
}

bool DatabaseManager::may(AccountRole role, const QString& area) const
{
    return !m_isSecured || (m_current && may(*m_current, role, area));
}

bool DatabaseManager::may(const EUserAccount& account, AccountRole role, const QString& area)
{
    const auto own = accountRoleOf(account.role);
    const bool isInArea = area.isEmpty() || account.areas.isEmpty() || account.areas.contains(area);
    return own && *own >= role && isInArea;
}

tl::expected<void, QString> DatabaseManager::check(Kind kind, const QString& user, const QString& password)
{
    if (!m_isSecured)
        return {};
    if (const milliseconds left = refusal(user); left.count() > 0) {
        const QString text = tr("Too many wrong passwords: try again in %1 s.").arg(secondsText(left));
        if (std::exchange(m_failures[countedName(user)].isRefusalRecorded, true))
            return Failed(text); // or whoever tries on and on would fill the disk
        return refuse(kind, user, text);
    }
    if (const auto compared = compare(user, password); !compared)
        return refuse(kind, user, compared.error());
    return {};
}

/// One hash is computed whether there is such a user or not.
tl::expected<void, QString> DatabaseManager::compare(const QString& user, const QString& password)
{
    const auto secret = m_accounts.secret(user);
    if (!secret)
        return Failed(secret.error());
    const auto isRight = m_verifier(secret->hash, password);
    if (!isRight)
        return Failed(isRight.error());
    if (m_current && m_current->name == user)
        refreshCurrent(*secret);
    if (!secret->isKnown || !*isRight) {
        noteFailure(user);
        return Failed(tr("The user name or the password is wrong."));
    }
    if (secret->isLocked)
        return Failed(tr("This user is locked."));
    m_failures.remove(countedName(user));
    m_proofs[user] = ++m_newestProof;
    return {};
}

/// Ends the session of an account that is no more, also when another one has its name now.
void DatabaseManager::refreshCurrent(const AccountDatabase::Secret& secret)
{
    const auto found = m_accounts.find(m_current->name);
    if (!found)
        return;
    if (!*found || (*found)->number != m_current->number || secret.isLocked)
        endSession(tr("the account was removed or locked"));
    else
        m_current = **found;
}

tl::expected<void, QString> DatabaseManager::refresh()
{
    if (!m_current)
        return {};
    const auto secret = m_accounts.secret(m_current->name);
    if (!secret)
        return Failed(secret.error());
    refreshCurrent(*secret);
    return {};
}

void DatabaseManager::noteFailure(const QString& user)
{
    const QString name = countedName(user);
    if (m_failures.size() >= mostNames && !m_failures.contains(name))
        dropOldestFailures();
    Failures& failures = m_failures[name];
    failures.lastMs = m_clock();
    ++failures.count;
    failures.refusedUntilMs = failures.lastMs + refusalAfter(failures.count).count();
    failures.isRefusalRecorded = false;
}

void DatabaseManager::dropOldestFailures()
{
    const auto isOlder = [](const Failures& one, const Failures& other) { return one.lastMs < other.lastMs; };
    m_failures.erase(std::min_element(m_failures.begin(), m_failures.end(), isOlder));
}
