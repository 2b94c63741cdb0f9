#pragma once

#include "host/accounts/accountdatabase.h"
#include "host/hostexport.h"

#include <QDialog>

#include <memory>

class NewPasswordFields;

namespace Ui {
class FirstAccountDialog;
}

/// Asks for the first administrator of a project with user security that has no account yet, and adds him. Nothing is
/// filled in beforehand. It is left with OK only when the account was added.
class KORVANE_HOST_EXPORT FirstAccountDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(FirstAccountDialog)

public:
    /// \param accounts open; not owned, must outlive the dialog
    explicit FirstAccountDialog(AccountDatabase& accounts, QWidget* parent = nullptr);
    ~FirstAccountDialog() override;

    void accept() override;

private:
    void enableOk();
    tl::expected<void, QString> add();

    std::unique_ptr<Ui::FirstAccountDialog> m_form;
    NewPasswordFields* m_password;
    AccountDatabase& m_accounts;
};
