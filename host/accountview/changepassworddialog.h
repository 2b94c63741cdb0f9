#pragma once

#include "host/accounts/databasemanager.h"
#include "host/hostexport.h"

#include <QDialog>

#include <memory>

class NewPasswordFields;

namespace Ui {
class ChangePasswordDialog;
}

/// Lets the user who is logged on give himself another password. It is left with OK only when that was done.
class KORVANE_HOST_EXPORT ChangePasswordDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(ChangePasswordDialog)

public:
    /// \param manager not owned, must outlive the dialog
    explicit ChangePasswordDialog(DatabaseManager& manager, QWidget* parent = nullptr);
    ~ChangePasswordDialog() override;

    void accept() override;

private:
    void enableOk();

    std::unique_ptr<Ui::ChangePasswordDialog> m_form;
    NewPasswordFields* m_password;
    DatabaseManager& m_manager;
};
