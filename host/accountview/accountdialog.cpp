#include "host/accountview/accountdialog_p.h"

#include "host/accountview/newpasswordfields_p.h"
#include "host/accountview/roletexts_p.h"
#include "ui_accountdialog.h"

#include <QPushButton>

#include <utility>

AccountDialog::AccountDialog(Purpose purpose, const EUserAccount& account, Taker taker, QWidget* parent)
    : QDialog(parent),
      m_form(std::make_unique<Ui::AccountDialog>()),
      m_purpose(purpose),
      m_account(account),
      m_taker(std::move(taker))
{
    m_form->setupUi(this);
    m_form->nameEdit->setText(account.name);
    for (const AccountRole role : accountRoles)
        m_form->roleBox->addItem(roleText(accountRoleName(role)), accountRoleName(role));
    m_form->roleBox->setCurrentIndex(m_form->roleBox->findData(account.role));
    m_form->areasEdit->setPlainText(account.areas.join(QLatin1Char('\n')));
    m_password = new NewPasswordFields(m_form->passwordEdit, m_form->repeatedEdit, m_form->hintLabel, this);

    m_form->nameEdit->setEnabled(purpose == Purpose::Add);
    if (purpose == Purpose::Change) {
        setWindowTitle(tr("Change user"));
        for (QWidget* field :
             std::initializer_list<QWidget*>{m_form->passwordEdit, m_form->repeatedEdit, m_form->hintLabel})
            hideRow(field);
    } else if (purpose == Purpose::SetPassword) {
        setWindowTitle(tr("Set password"));
        for (QWidget* field : std::initializer_list<QWidget*>{m_form->roleBox, m_form->areasEdit, m_form->areasHint})
            hideRow(field);
    }
    connect(m_form->nameEdit, &QLineEdit::textChanged, this, &AccountDialog::enableOk);
    connect(m_form->roleBox, &QComboBox::currentTextChanged, this, &AccountDialog::enableOk);
    connect(m_form->areasEdit, &QPlainTextEdit::textChanged, this, &AccountDialog::enableOk);
    connect(m_password, &NewPasswordFields::changed, this, &AccountDialog::enableOk);
    enableOk();
}

AccountDialog::~AccountDialog() = default;

void AccountDialog::hideRow(QWidget* field)
{
    field->hide();
    if (QWidget* caption = m_form->formLayout->labelForField(field))
        caption->hide();
}

void AccountDialog::enableOk()
{
    m_form->messageLabel->clear();
    const bool isPasswordGood = m_purpose == Purpose::Change || m_password->isComplete();
    const bool isRoleChosen = m_form->roleBox->currentIndex() >= 0;
    m_form->buttonBox->button(QDialogButtonBox::Ok)
        ->setEnabled(!m_form->nameEdit->text().isEmpty() && isRoleChosen && isPasswordGood);
}

/// An area may hold a line break, which would make two of it here: what was not touched stays.
QStringList AccountDialog::areas() const
{
    const QString text = m_form->areasEdit->toPlainText();
    if (text == m_account.areas.join(QLatin1Char('\n')))
        return m_account.areas;
    QStringList areas;
    const QStringList lines = text.split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const QString area = line.trimmed();
        if (!area.isEmpty() && !areas.contains(area))
            areas.append(area);
    }
    return areas;
}

void AccountDialog::accept()
{
    if (!m_form->buttonBox->button(QDialogButtonBox::Ok)->isEnabled())
        return;
    EUserAccount account = m_account;
    account.name = m_form->nameEdit->text();
    account.role = m_form->roleBox->currentData().toString();
    account.areas = areas();
    if (const auto taken = m_taker(account, m_password->password()); !taken) {
        m_form->messageLabel->setText(taken.error());
        return;
    }
    m_password->clear();
    QDialog::accept();
}
