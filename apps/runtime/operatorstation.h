#pragma once

#include "apps/runtime/operationbanner.h"
#include "host/operating/dialogconfirmer.h"
#include "platform/data/objectkey.h"

#include <QLabel>
#include <QObject>
#include <QPointer>

class CanvasView;
class LiveSystem;
class OperationDock;
class QMainWindow;
class QMenu;
class SummaryWindow;
struct Page;

/// The operator's side of operating in the runtime's window: who is logged on, confirmations, what became of commands,
/// the summary of all points.
class OperatorStation : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(OperatorStation)

public:
    /// \param system not owned, must outlive the station
    /// \param window gets the dock, hidden, and owns it, the banner and the label
    OperatorStation(LiveSystem& system, QMainWindow& window);
    ~OperatorStation() override;

    /// The line that says what became of commands, to be laid out by the window.
    OperationBanner* banner() { return m_banner; }
    /// Says who is logged on.
    QLabel* userLabel() { return m_user; }
    /// Adds what the user can do about his session, and the windows about operating.
    void fillMenu(QMenu& menu);
    /// Lets the operator work with a page in its view, both of which must go before the station.
    void attach(CanvasView& view, const Page& page);
    /// Whether clicks on pages are for something else than the plant.
    void setPaused(bool paused) { m_isPaused = paused; }
    /// Asks for the first account of a project that has none, then for a user to log on.
    void begin();

Q_SIGNALS:
    /// Another user is logged on, or nobody.
    void sessionChanged();
    /// The user wants to see an object.
    void pageRequested(ObjectKey object);

private:
    void logOn();
    void changePassword();
    void editAccounts();
    void showSession();
    void showSummary();
    void tellEnd(const ScadaOperationMessage& message);

    LiveSystem& m_system;
    QMainWindow& m_window;
    DialogConfirmer m_confirmer;
    OperationBanner* m_banner;
    OperationDock* m_operations;
    QLabel* m_user;
    QAction* m_logOff = nullptr;
    QAction* m_changePassword = nullptr;
    QAction* m_accounts = nullptr;
    QAction* m_showSummary = nullptr;
    QPointer<SummaryWindow> m_summary;
    bool m_isPaused = false;
};
