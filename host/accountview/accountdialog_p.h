#pragma once

#include "platform/database/euseraccount.h"

#include <QDialog>
#include <QString>

#include <tl/expected.hpp>

#include <functional>
#include <memory>

class NewPasswordFields;

namespace Ui {
class AccountDialog;
}

/// Asks an administrator for what is to be known of one account. It is left with OK only when the caller took that.
class AccountDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(AccountDialog)

public:
    enum class Purpose {
        Add,         ///< everything
        Change,      ///< role and areas
        SetPassword, ///< nothing but the password
    };
    /// Takes the account as it was given, with what was changed.
    /// \returns why it is refused, for the user's eyes
    using Taker = std::function<tl::expected<void, QString>(const EUserAccount& account, const QString& password)>;

    AccountDialog(Purpose purpose, const EUserAccount& account, Taker taker, QWidget* parent);
    ~AccountDialog() override;

    void accept() override;

private:
    void hideRow(QWidget* field);
    void enableOk();
    QStringList areas() const;

    std::unique_ptr<Ui::AccountDialog> m_form;
    NewPasswordFields* m_password;
    Purpose m_purpose;
    EUserAccount m_account;
    Taker m_taker;
};
