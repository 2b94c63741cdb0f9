#pragma once

#include "host/alarms/alarmannunciator.h"
#include "host/alarmview/alarmbanner.h"
#include "host/alarmview/alarmlistwindow.h"
#include "host/alarmview/alarmpopup.h"

#include <QDockWidget>
#include <QObject>

class LiveSystem;
class QMainWindow;
class QMenu;
struct Page;

/// The operator's side of the alarms in the runtime's window: the list in a dock, the line at the window's foot, popups, and
/// what is heard.
class AlarmStation : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmStation)

public:
    /// \param system not owned, must outlive the station
    /// \param window gets the dock, hidden, and owns it and the line
    /// \param isSilent whether nothing is heard until the user switches it on
    AlarmStation(LiveSystem& system, QMainWindow& window, bool isSilent);
    ~AlarmStation() override;

    /// The line, to be laid out by the window.
    AlarmBanner* banner() { return m_banner; }
    /// Adds what the user can do about alarms at large.
    void fillMenu(QMenu& menu);
    /// \param page whose alarms can be acknowledged at once; null for none
    void setPage(const Page* page);
    /// Silences what is heard until the next alarm.
    void silence();

Q_SIGNALS:
    /// The user wants to see an object.
    void pageRequested(ObjectKey object);

private:
    void prepareVoice();
    void heedSession();
    void showList();
    void loadFilter();
    void keepFilter(const QString& text) const;

    LiveSystem& m_system;
    AlarmAnnunciator m_annunciator;
    QDockWidget* m_dock;
    AlarmListWindow* m_list;
    AlarmBanner* m_banner;
    AlarmPopup m_popup;
};
