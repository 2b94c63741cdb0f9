#pragma once

#include "host/accounts/accountdatabase.h"

#include <QSqlDatabase>
#include <QSqlQuery>
#include <QVariant>

/// The tables of the user accounts over an open connection, statement by statement. What is about several statements is in
/// the hands of the caller, who begins a transaction, calls beginChange() and commits.
///
/// Errors that begin with the name of the database are its own, others are refusals.
class AccountTables
{
public:
    /// \param place names the database in errors
    AccountTables(const QSqlDatabase& database, const QString& place) : m_database(database), m_place(place) {}

    static bool isGoodName(const QString& name);

    tl::expected<QList<EUserAccount>, QString> all() const;
    tl::expected<std::optional<EUserAccount>, QString> find(const QString& name) const;
    /// \returns an error when there is no such account
    tl::expected<qint32, QString> numberOf(const QString& name) const;
    /// What an account may, as logs hold it: "operator, areas [\"North\"]".
    struct Rights
    {
        QString name; ///< of the account
        QString text;
    };
    /// Also where the areas can't be read. \returns an error when there is no such account
    tl::expected<Rights, QString> rightsOf(qint32 number) const;
    static QString rightsText(const EUserAccount& account);
    /// Numbers of the accounts that are locked.
    tl::expected<QSet<qint32>, QString> locked() const;
    tl::expected<AccountDatabase::Secret, QString> secret(const QString& name) const;

    /// Makes other workplaces wait with their changes until the transaction ends.
    tl::expected<void, QString> beginChange() const;
    /// Gives the account the next number.
    /// \returns that number; an error when the name is taken
    tl::expected<qint32, QString> insert(const EUserAccount& account, const QByteArray& hash) const;
    tl::expected<void, QString> setRights(const EUserAccount& account) const;
    tl::expected<void, QString> setHash(qint32 number, const QByteArray& hash) const;
    tl::expected<void, QString> setLocked(qint32 number, bool locked) const;
    tl::expected<void, QString> remove(qint32 number) const;
    /// Refuses what would leave no administrator who can log on.
    tl::expected<void, QString> checkOthersAdminister(qint32 number) const;

private:
    tl::expected<QSqlQuery, QString> run(const char* text, const QVariantList& values = {}) const;
    tl::expected<void, QString> write(const char* text, const QVariantList& values) const;
    tl::expected<EUserAccount, QString> accountOf(const QSqlQuery& row) const;

    QSqlDatabase m_database;
    QString m_place;
};
