#pragma once

#include "scada/scadaexport.h"

#include <QDialog>
#include <QString>

#include <memory>

class KorvaneCoreInterface;

namespace Ui {
class UserConfirmDialog;
}

/// Asks a user that the caller names, a second one who must approve perhaps, to confirm a command with the password,
/// before it is sent; in a project without user security too.
///
/// Run it with exec() and send the command on QDialog::Accepted alone. It knows no password: the host's database manager
/// does, and whatever policy there is against guessing.
class KORVANE_SCADA_EXPORT UserConfirmDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(UserConfirmDialog)

public:
    /// \param core has a database manager; not owned, must outlive the dialog
    /// \param command the command's text, for the user's eyes
    /// \param user id of the user whose password is asked for
    UserConfirmDialog(QWidget* parent, KorvaneCoreInterface* core, const QString& command, const QString& user);
    ~UserConfirmDialog() override;

public Q_SLOTS:
    /// Accepts when the password is that of the user, else shows what the host has to say and keeps asking.
    void slotOk();

private:
    std::unique_ptr<Ui::UserConfirmDialog> m_ui;
    KorvaneCoreInterface* m_core;
};
