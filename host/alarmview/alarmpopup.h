#pragma once

#include "host/hostexport.h"
#include "platform/data/objectkey.h"
#include "scada/records/alarmdatainfo.h"

#include <QFrame>
#include <QTimer>

#include <memory>

class AlarmDesk;
class AlarmManager;
class QLabel;
class QPushButton;
class WaitingAlarms;
struct AlarmTransition;

/// A small window of its own that says of a new alarm, where its severity is set to do so: the newest one, and how many
/// others. It takes nobody's keyboard, and goes when none of its alarms waits for an operator any more.
class KORVANE_HOST_EXPORT AlarmPopup : public QFrame
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmPopup)

public:
    /// \param manager, desk not owned, must outlive the popup
    /// \param parent window above which it shows
    AlarmPopup(AlarmManager& manager, AlarmDesk& desk, QWidget* parent = nullptr);
    ~AlarmPopup() override;

    /// Takes which severities show a popup, and their colours; alarms that stand already stay as they are.
    void setPresentation(const AlarmDataInfo& presentation);

Q_SIGNALS:
    /// The user wants to see the object of an alarm.
    void pageRequested(ObjectKey object);

protected:
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void buildContent();
    void take(const AlarmTransition& transition);
    bool announces(const AlarmTransition& transition) const;
    void refresh();
    void place();
    void acknowledge();
    void goToPage();

    AlarmManager& m_manager;
    AlarmDesk& m_desk;
    AlarmDataInfo m_presentation;
    std::unique_ptr<WaitingAlarms> m_alarms;
    quint64 m_shown = 0; ///< number of the alarm that is written
    QTimer m_timer;      ///< of what one pass of the event loop brings
    QLabel* m_headline = nullptr;
    QLabel* m_message = nullptr;
    QLabel* m_more = nullptr;
    QPushButton* m_acknowledge = nullptr;
    QPushButton* m_goToPage = nullptr;
    QPushButton* m_close = nullptr;
};
