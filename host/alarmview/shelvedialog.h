#pragma once

#include "host/alarms/alarmmanager.h"
#include "host/hostexport.h"

#include <QDateTime>
#include <QDialog>
#include <QString>

#include <memory>

class QRadioButton;

namespace Ui {
class ShelveDialog;
}

/// Asks why alarms are put away, and until when: shelved for a time, or out of service without one. The dialog is left with
/// OK only with a reason and a time that is still to come.
class KORVANE_HOST_EXPORT ShelveDialog : public QDialog
{
    Q_OBJECT
    Q_DISABLE_COPY(ShelveDialog)

public:
    enum class Purpose {
        Shelve,       ///< for a time
        OutOfService, ///< until it is ended
    };

    /// \param what names what it is about, for the user's eyes
    /// \param clock gives the present time in UTC
    ShelveDialog(Purpose purpose, const QString& what, AlarmManager::Clock clock, QWidget* parent = nullptr);
    ~ShelveDialog() override;

    /// As the user wrote it, without blanks around it.
    QString reason() const;
    /// End of the shelving in UTC: from now on while the dialog is open, fixed once it was left with OK.
    QDateTime until() const;

    void accept() override;

private:
    QDateTime chosenEnd() const;
    void check();

    std::unique_ptr<Ui::ShelveDialog> m_form;
    Purpose m_purpose;
    AlarmManager::Clock m_clock;
    QDateTime m_until;
};
