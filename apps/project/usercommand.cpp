#include "apps/project/commandline.h"
#include "apps/project/commands.h"
#include "apps/project/output.h"
#include "apps/support/passwordprompt.h"
#include "apps/support/program.h"
#include "host/accounts/accountdatabase.h"
#include "host/control/accountlog.h"
#include "host/core/project.h"

#include <QFile>

namespace {

int ended(const tl::expected<void, QString>& done)
{
    return done ? ExitCode::fine : Output::failed(done.error());
}

QString accountText(const EUserAccount& account, bool isLocked)
{
    const QString areas =
        account.areas.isEmpty() ? QStringLiteral("all areas") : account.areas.join(QStringLiteral(", "));
    return QStringLiteral("%1\t%2\t%3\t%4%5\n")
        .arg(account.number)
        .arg(account.name, account.role, areas, isLocked ? QStringLiteral("\tlocked") : QString());
}

int list(const AccountDatabase& accounts)
{
    const auto all = accounts.allUserAccounts();
    if (!all.isOk())
        return Output::failed(all.error);
    const auto locked = accounts.lockedAccounts();
    if (!locked)
        return Output::failed(locked.error());
    for (const EUserAccount& account : all.list)
        Output::print(accountText(account, locked->contains(account.number)));
    return ExitCode::fine;
}

/// Asked for twice, since it does not show.
tl::expected<QString, QString> newPassword(const QString& name)
{
    auto password = promptForPassword(QStringLiteral("Password of %1: ").arg(name));
    if (!password)
        return password;
    const auto again = promptForPassword(QStringLiteral("The same again: "));
    if (!again || *again != *password)
        return tl::make_unexpected(QStringLiteral("the two passwords differ"));
    return password;
}

EUserAccount accountOf(const CommandLine& line, EUserAccount account)
{
    if (line.isSet("role"))
        account.role = line.value("role");
    if (line.isSet("areas"))
        account.areas = line.value("areas").split(QLatin1Char('|'), Qt::SkipEmptyParts);
    return account;
}

int add(AccountDatabase& accounts, const CommandLine& line, const QString& name)
{
    EUserAccount account;
    account.name = name;
    account.role = accountRoleName(AccountRole::Operator);
    const auto password = newPassword(name);
    if (!password)
        return Output::failed(password.error());
    const auto number = accounts.add(accountOf(line, account), *password);
    if (!number)
        return Output::failed(number.error());
    Output::print(QStringLiteral("%1 has number %2\n").arg(name).arg(*number));
    return ExitCode::fine;
}

int change(AccountDatabase& accounts, const CommandLine& line, const QString& name)
{
    const auto found = accounts.find(name);
    if (!found)
        return Output::failed(found.error());
    if (!*found)
        return Output::failed(QStringLiteral("there is no user \"%1\"").arg(name));
    return ended(accounts.change(accountOf(line, **found)));
}

int setPassword(AccountDatabase& accounts, const QString& name)
{
    const auto password = newPassword(name);
    return password ? ended(accounts.setPassword(name, *password)) : Output::failed(password.error());
}

int act(AccountDatabase& accounts, const CommandLine& line, const QString& what, const QString& name)
{
    if (what == QLatin1String("add"))
        return add(accounts, line, name);
    if (what == QLatin1String("change"))
        return change(accounts, line, name);
    if (what == QLatin1String("password"))
        return setPassword(accounts, name);
    if (what == QLatin1String("remove"))
        return ended(accounts.remove(name));
    if (what == QLatin1String("lock") || what == QLatin1String("unlock"))
        return ended(accounts.setLocked(name, what == QLatin1String("lock")));
    Program::complain(QStringLiteral("there is no \"user %1\"; --help tells more").arg(what));
    return ExitCode::wrongUsage;
}

} // namespace

int Commands::user(const QStringList& arguments)
{
    CommandLine line("user", "Manages the user accounts of a project: add, change, password, remove, lock or unlock a "
                             "user by name. Passwords are asked for and do not show; without a terminal they are the "
                             "next two lines of the input.");
    line.addFlag("list", "Tells number, name, role and areas of every account.", true);
    line.addArgument("what", "add, change, password, remove, lock or unlock");
    line.addArgument("name", "Of the user; case counts.");
    line.addFolder();
    line.addOption("role", "viewer, operator, supervisor, engineer or administrator; of add and change.", "role");
    line.addOption("areas", "Areas of responsibility, joined by bars; empty for all. Of add and change.", "areas");
    if (const auto ended = line.parse(arguments))
        return *ended;
    const auto project = Project::read(line.folder());
    if (!project)
        return Output::failed(project.error());
    const bool isLocal = project->accounts.driver == AccountSettings::Driver::Sqlite;
    if (line.isSet("list") && isLocal && !QFile::exists(project->accounts.fileName))
        return ExitCode::fine; // nobody yet, and no file to be made for that
    AccountLog log(project->operatingFile(), QStringLiteral("project tool"));
    AccountDatabase accounts;
    accounts.setRecorder([&log](const AccountEvent& event) { return log.record(event); });
    if (const auto opened = accounts.open(project->accounts); !opened)
        return Output::failed(opened.error());
    return line.isSet("list") ? list(accounts) : act(accounts, line, line.argument(0), line.argument(1));
}
