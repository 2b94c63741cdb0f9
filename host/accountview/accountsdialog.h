#pragma once

#include "host/accounts/databasemanager.h"
#include "host/hostexport.h"

#include <QDialog>
#include <QList>
#include <QSet>

#include <functional>
#include <memory>

namespace Ui {
class AccountsDialog;
}

/// The user accounts in a table, which an administrator adds to, changes, locks and removes. Every change goes to the
/// database at once, and is refused unless the user who is logged on then is an administrator.
class KORVANE_HOST_EXPORT AccountsDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(AccountsDialog)

public:
    /// \param accounts, manager not owned, must outlive the dialog
    AccountsDialog(AccountDatabase& accounts, DatabaseManager& manager, QWidget* parent = nullptr);
    ~AccountsDialog() override;

    /// Reads the accounts anew; the account that was chosen stays so.
    void refresh();

private:
    using Result = tl::expected<void, QString>;

    void fillRow(int row, const EUserAccount& account);
    const EUserAccount* chosen() const;
    void enableButtons();
    /// Makes a change if the user may, and shows what came of it.
    Result change(const std::function<Result()>& make);
    void add();
    void changeChosen();
    void setPasswordOfChosen();
    void lockChosen();
    void removeChosen();

    std::unique_ptr<Ui::AccountsDialog> m_form;
    AccountDatabase& m_accounts;
    DatabaseManager& m_manager;
    QList<EUserAccount> m_shown; ///< by row
    QSet<qint32> m_locked;       ///< numbers
};
