#include "host/accountview/changepassworddialog.h"

#include "host/accountview/newpasswordfields_p.h"
#include "ui_changepassworddialog.h"

#include <QPushButton>

ChangePasswordDialog::ChangePasswordDialog(DatabaseManager& manager, QWidget* parent)
    : QDialog(parent), m_form(std::make_unique<Ui::ChangePasswordDialog>()), m_manager(manager)
{
    m_form->setupUi(this);
    m_form->userLabel->setText(m_manager.currentUserId());
    m_password = new NewPasswordFields(m_form->passwordEdit, m_form->repeatedEdit, m_form->hintLabel, this);
    connect(m_form->oldEdit, &QLineEdit::textEdited, this, &ChangePasswordDialog::enableOk);
    connect(m_password, &NewPasswordFields::changed, this, &ChangePasswordDialog::enableOk);
    enableOk();
}

ChangePasswordDialog::~ChangePasswordDialog() = default;

void ChangePasswordDialog::enableOk()
{
    m_form->messageLabel->clear();
    m_form->buttonBox->button(QDialogButtonBox::Ok)->setEnabled(m_password->isComplete());
}

void ChangePasswordDialog::accept()
{
    if (!m_form->buttonBox->button(QDialogButtonBox::Ok)->isEnabled())
        return;
    const auto changed = m_manager.changePassword(m_form->oldEdit->text(), m_password->password());
    m_form->oldEdit->clear();
    if (!changed) {
        m_form->messageLabel->setText(changed.error());
        m_form->oldEdit->setFocus();
        return;
    }
    m_password->clear();
    QDialog::accept();
}
