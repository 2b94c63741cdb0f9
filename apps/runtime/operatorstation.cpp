#include "apps/runtime/operatorstation.h"

#include "apps/runtime/operationdock.h"
#include "host/accountview/accountsdialog.h"
#include "host/accountview/changepassworddialog.h"
#include "host/accountview/firstaccountdialog.h"
#include "host/accountview/logondialog.h"
#include "host/operating/commandtext.h"
#include "host/operating/pageoperations.h"
#include "host/operating/pointtips.h"
#include "host/runtime/livesystem.h"
#include "host/summary/summarywindow.h"

#include <QAction>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>

namespace {

/// The keys of the window's actions, and those that open its menus.
QList<QKeySequence> keysOf(const QMainWindow& window)
{
    QList<QKeySequence> keys;
    for (const QAction* action : window.actions())
        keys += action->shortcuts();
    for (const QAction* menu : window.menuBar()->actions())
        keys.append(QKeySequence::mnemonic(menu->text()));
    keys.removeAll(QKeySequence());
    return keys;
}

} // namespace

OperatorStation::OperatorStation(LiveSystem& system, QMainWindow& window)
    : m_system(system),
      m_window(window),
      m_confirmer({system.core(), system.control().manager(), system.control().accounts(), system.database()}, &window),
      m_banner(new OperationBanner(&window)),
      m_operations(new OperationDock(system, &window)),
      m_user(new QLabel(&window))
{
    window.addDockWidget(Qt::BottomDockWidgetArea, m_operations);
    m_operations->hide();
    m_user->setTextFormat(Qt::PlainText);
    m_user->setObjectName(QStringLiteral("user"));
    system.control().path().setConfirmer(&m_confirmer);
    connect(&system.control().manager(), &RuntimeManager::remoteControlFinished, this, &OperatorStation::tellEnd);
    for (const auto changed : {&DatabaseManager::loggedOn, &DatabaseManager::loggedOff}) {
        connect(&system.control().users(), changed, this, [this] {
            showSession();
            Q_EMIT sessionChanged();
        });
    }
}

OperatorStation::~OperatorStation()
{
    m_system.control().path().setConfirmer(nullptr);
    delete m_summary;
}

void OperatorStation::fillMenu(QMenu& menu)
{
    if (m_system.project().isSecured) {
        menu.addAction(tr("&Log on..."), this, &OperatorStation::logOn, QKeySequence(Qt::CTRL + Qt::Key_L));
        m_logOff = menu.addAction(tr("Log o&ff"), this, [this] { m_system.control().manager().endSession(); });
        m_changePassword = menu.addAction(tr("Change &password..."), this, &OperatorStation::changePassword);
        m_accounts = menu.addAction(tr("User &accounts..."), this, &OperatorStation::editAccounts);
        menu.addSeparator();
    }
    m_showSummary =
        menu.addAction(tr("&Summary of all points"), this, &OperatorStation::showSummary, QKeySequence(Qt::Key_F8));
    QAction* operations = m_operations->toggleViewAction();
    operations->setText(tr("&Operations"));
    operations->setShortcut(Qt::Key_F12);
    menu.addAction(operations);
    showSession();
}

void OperatorStation::attach(CanvasView& view, const Page& page)
{
    auto* operations = new PageOperations(
        view, page,
        {m_system.control().manager(), m_system.database(), [this] { return !m_isPaused; }, keysOf(m_window)});
    connect(operations, &PageOperations::refused, m_banner, &OperationBanner::showFailed);
    for (const QString& problem : operations->problems())
        m_system.addProblem(problem);
    new PointTips(view, page, m_system.database());
}

void OperatorStation::begin()
{
    if (!m_system.project().isSecured)
        return;
    const auto accounts = m_system.control().accounts().allUserAccounts();
    if (accounts.isOk() && accounts.list.isEmpty()) {
        FirstAccountDialog dialog(m_system.control().accounts(), &m_window);
        dialog.exec();
    }
    logOn();
}

void OperatorStation::logOn()
{
    LogOnDialog dialog(m_system.control().users(), m_system.control().users().currentUserId(), &m_window);
    dialog.exec();
}

void OperatorStation::changePassword()
{
    ChangePasswordDialog dialog(m_system.control().users(), &m_window);
    dialog.exec();
}

void OperatorStation::editAccounts()
{
    AccountsDialog dialog(m_system.control().accounts(), m_system.control().users(), &m_window);
    dialog.exec();
    m_system.control().refreshSession();
}

void OperatorStation::showSession()
{
    const auto& account = m_system.control().users().currentAccount();
    if (m_logOff)
        m_logOff->setEnabled(account.has_value());
    if (m_changePassword)
        m_changePassword->setEnabled(account.has_value());
    if (m_accounts)
        m_accounts->setEnabled(m_system.control().users().may(AccountRole::Administrator, {}));
    // What the plant does is for those who are logged on.
    const bool isSomebodyHere = account || !m_system.project().isSecured;
    m_operations->toggleViewAction()->setEnabled(isSomebodyHere);
    if (m_showSummary)
        m_showSummary->setEnabled(isSomebodyHere);
    if (!isSomebodyHere) {
        m_operations->hide();
        delete m_summary;
    }
    m_user->setVisible(m_system.project().isSecured);
    m_user->setText(account ? tr("%1 (%2)", "user, role").arg(account->name, account->role)
                            : tr("Nobody is logged on"));
}

void OperatorStation::showSummary()
{
    if (!m_summary) {
        const Project& project = m_system.project();
        const QTimeZone zone =
            project.timeZone.isEmpty() ? QTimeZone::systemTimeZone() : QTimeZone(project.timeZone.toLatin1());
        m_summary = new SummaryWindow(m_system.database(), zone);
        connect(m_summary, &SummaryWindow::objectActivated, this, &OperatorStation::pageRequested);
        connect(&m_system.dataService(), &DataService::objectsChanged, m_summary, &SummaryWindow::noteChanged);
    }
    m_summary->show();
    m_summary->raise();
    m_summary->activateWindow();
}

void OperatorStation::tellEnd(const ScadaOperationMessage& message)
{
    const QString text = QStringLiteral("%1 - %2").arg(CommandText::command(message, m_system.database()),
                                                       CommandText::outcome(message));
    if (message.outcome == ScadaOperationMessage::Outcome::Done)
        m_banner->showDone(text);
    else
        m_banner->showFailed(text);
}
