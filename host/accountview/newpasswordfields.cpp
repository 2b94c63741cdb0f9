#include "host/accountview/newpasswordfields_p.h"

#include "host/accounts/accountdatabase.h"
#include "host/accounts/passwordhash_p.h"

#include <QLabel>
#include <QLineEdit>

NewPasswordFields::NewPasswordFields(QLineEdit* password, QLineEdit* repeated, QLabel* hintLabel, QObject* parent)
    : QObject(parent), m_password(password), m_repeated(repeated), m_hint(hintLabel)
{
    const auto follow = [this] {
        m_hint->setText(hint());
        Q_EMIT changed();
    };
    connect(m_password, &QLineEdit::textChanged, this, follow);
    connect(m_repeated, &QLineEdit::textChanged, this, follow);
    m_hint->setText(hint());
}

QString NewPasswordFields::password() const
{
    return m_password->text();
}

bool NewPasswordFields::isComplete() const
{
    return PasswordHash::lengthOf(password()) == PasswordHash::Length::Good && m_repeated->text() == password();
}

void NewPasswordFields::clear()
{
    m_password->clear();
    m_repeated->clear();
    m_password->setFocus();
}

QString NewPasswordFields::hint() const
{
    constexpr int good = 12;
    switch (PasswordHash::lengthOf(password())) {
    case PasswordHash::Length::TooShort:
        return tr("The password needs %1 characters at least.").arg(AccountDatabase::shortestPassword);
    case PasswordHash::Length::TooLong:
        return tr("The password is too long.");
    case PasswordHash::Length::Good:
        break;
    }
    if (!m_repeated->text().isEmpty() && m_repeated->text() != password())
        return tr("The two passwords differ.");
    if (password().size() < good)
        return tr("Short: %1 characters or more are safer.").arg(good);
    return tr("Good length.");
}
