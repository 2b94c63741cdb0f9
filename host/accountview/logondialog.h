#pragma once

#include "host/accounts/databasemanager.h"
#include "host/hostexport.h"

#include <QDialog>
#include <QString>
#include <QTimer>

#include <memory>

namespace Ui {
class LogOnDialog;
}

/// Asks for a user's name and password and logs him on; it is left with OK only when that succeeded. While attempts under
/// the name are refused, it says for how long.
class KORVANE_HOST_EXPORT LogOnDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(LogOnDialog)

public:
    /// \param manager not owned, must outlive the dialog
    /// \param user who is likely to log on; empty when unknown
    explicit LogOnDialog(DatabaseManager& manager, const QString& user = {}, QWidget* parent = nullptr);
    ~LogOnDialog() override;

    void accept() override;

private:
    void showState();

    std::unique_ptr<Ui::LogOnDialog> m_form;
    DatabaseManager& m_manager;
    QString m_failure; ///< why the last attempt failed, until something is typed
    QTimer m_refusal;  ///< runs while attempts are refused
};
