#pragma once

#include "scada/scadaexport.h"

#include <QDialog>
#include <QString>

#include <memory>

class KorvaneCoreInterface;

namespace Ui {
class ControlConfirm;
}

/// Asks the user who is logged on to confirm a command with the password, before it is sent. In a project without user
/// security nothing is asked for, and Ok accepts.
///
/// Run it with exec() and send the command on QDialog::Accepted alone. It knows no password: the host's database manager
/// does, and whatever policy there is against guessing.
class KORVANE_SCADA_EXPORT ControlConfirm : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(ControlConfirm)

public:
    /// \param core has a database manager and a project manager; not owned, must outlive the dialog
    /// \param command the command's text, for the user's eyes
    ControlConfirm(QWidget* parent, KorvaneCoreInterface* core, const QString& command);
    ~ControlConfirm() override;

public Q_SLOTS:
    /// Accepts when the password is right, else says that it is not and keeps asking. Kept: without user security it
    /// accepts first and then checks all the same, so that a host that refuses the empty password has it said once.
    void slotOk();

private:
    std::unique_ptr<Ui::ControlConfirm> m_ui;
    KorvaneCoreInterface* m_core;
};
