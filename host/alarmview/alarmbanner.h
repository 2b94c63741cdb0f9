#pragma once

#include "host/hostexport.h"
#include "scada/records/alarmdatainfo.h"

#include <QFrame>
#include <QTimer>

#include <memory>

class AlarmDesk;
class AlarmManager;
class ElidedLabel;
class QPushButton;
class WaitingAlarms;
struct AlarmTransition;

/// One line at the foot of the main window: of the alarms that wait for an operator the newest one of the highest severity,
/// and how many alarms stand of each severity.
class KORVANE_HOST_EXPORT AlarmBanner : public QFrame
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmBanner)

public:
    /// \param manager, desk not owned, must outlive the banner
    AlarmBanner(AlarmManager& manager, AlarmDesk& desk, QWidget* parent = nullptr);
    ~AlarmBanner() override;

    /// Takes the colours of the severities.
    void setPresentation(const AlarmDataInfo& presentation);
    /// Says something of alarms at large, such as that there is no sound; nothing with an empty text.
    void setNotice(const QString& notice);
    /// Reads everything anew: for alarms that the manager was given without telling of each.
    void reload();

Q_SIGNALS:
    /// The user wants the sound to end.
    void silenceRequested();
    /// The user wants to see the alarm list.
    void listRequested();

private:
    void buildContent();
    void take(const AlarmTransition& transition);
    void refresh();
    QString countsText() const;

    AlarmManager& m_manager;
    AlarmDesk& m_desk;
    AlarmDataInfo m_presentation;
    std::unique_ptr<WaitingAlarms> m_alarms;
    quint64 m_shown = 0; ///< number of the alarm that is written
    QTimer m_timer;      ///< gathers changes
    ElidedLabel* m_alarm = nullptr;
    ElidedLabel* m_counts = nullptr;
    ElidedLabel* m_notice = nullptr;
    QPushButton* m_acknowledge = nullptr;
};
