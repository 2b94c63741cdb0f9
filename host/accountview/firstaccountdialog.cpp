#include "host/accountview/firstaccountdialog.h"

#include "host/accountview/newpasswordfields_p.h"
#include "ui_firstaccountdialog.h"

#include <QPushButton>

FirstAccountDialog::FirstAccountDialog(AccountDatabase& accounts, QWidget* parent)
    : QDialog(parent), m_form(std::make_unique<Ui::FirstAccountDialog>()), m_accounts(accounts)
{
    m_form->setupUi(this);
    m_password = new NewPasswordFields(m_form->passwordEdit, m_form->repeatedEdit, m_form->hintLabel, this);
    connect(m_form->nameEdit, &QLineEdit::textChanged, this, &FirstAccountDialog::enableOk);
    connect(m_password, &NewPasswordFields::changed, this, &FirstAccountDialog::enableOk);
    enableOk();
}

FirstAccountDialog::~FirstAccountDialog() = default;

void FirstAccountDialog::enableOk()
{
    m_form->messageLabel->clear();
    m_form->buttonBox->button(QDialogButtonBox::Ok)
        ->setEnabled(!m_form->nameEdit->text().isEmpty() && m_password->isComplete());
}

void FirstAccountDialog::accept()
{
    if (!m_form->buttonBox->button(QDialogButtonBox::Ok)->isEnabled())
        return;
    if (const auto added = add(); !added) {
        m_form->messageLabel->setText(added.error());
        return;
    }
    m_password->clear();
    QDialog::accept();
}

/// Whoever comes first administers: another workplace may have added someone since.
tl::expected<void, QString> FirstAccountDialog::add()
{
    const auto present = m_accounts.allUserAccounts();
    if (!present.isOk())
        return tl::make_unexpected(present.error);
    if (!present.list.isEmpty())
        return tl::make_unexpected(tr("There is an account by now: ask its user."));
    EUserAccount account;
    account.name = m_form->nameEdit->text();
    account.role = accountRoleName(AccountRole::Administrator);
    return m_accounts.add(account, m_password->password()).map([](qint32) {});
}
