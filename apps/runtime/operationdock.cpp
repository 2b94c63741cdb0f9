#include "apps/runtime/operationdock.h"

#include "host/operating/commandtext.h"
#include "host/runtime/livesystem.h"

#include <QHeaderView>

namespace {

enum Column { Time, User, Command, Outcome, Reason, ColumnCount };

} // namespace

OperationDock::OperationDock(LiveSystem& system, QWidget* parent)
    : QDockWidget(tr("Operations"), parent), m_system(system), m_table(0, ColumnCount, this)
{
    setObjectName(QStringLiteral("operations"));
    m_table.setHorizontalHeaderLabels({tr("Time"), tr("User"), tr("Command"), tr("Outcome"), tr("Reason")});
    m_table.horizontalHeader()->setStretchLastSection(true);
    m_table.verticalHeader()->hide();
    m_table.setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table.setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table.setWordWrap(false);
    const int character = m_table.fontMetrics().averageCharWidth();
    m_table.setColumnWidth(Time, 22 * character);
    m_table.setColumnWidth(User, 16 * character);
    m_table.setColumnWidth(Command, 48 * character);
    m_table.setColumnWidth(Outcome, 40 * character);
    setWidget(&m_table);
    fill();
    connect(&system.control().manager(), &RuntimeManager::remoteControlFinished, this,
            [this](const ScadaOperationMessage& message) {
                insert(0, message);
                if (m_table.rowCount() > mostRows)
                    m_table.removeRow(mostRows);
            });
}

void OperationDock::fill()
{
    const QDateTime now = m_system.core().scadaCoreInterface()->currentTime();
    const auto messages = m_system.control().manager().operations(now.addYears(-1), now.addDays(1), mostRows);
    for (const ScadaOperationMessage& message : messages) {
        if (message.isFinished())
            insert(m_table.rowCount(), message);
    }
}

void OperationDock::insert(int row, const ScadaOperationMessage& message)
{
    m_table.insertRow(row);
    const auto set = [&](Column column, const QString& text) {
        auto* item = new QTableWidgetItem(text);
        item->setToolTip(text.toHtmlEscaped());
        m_table.setItem(row, column, item);
    };
    const QString user =
        message.secondUser.isEmpty() ? message.user : tr("%1 and %2").arg(message.user, message.secondUser);
    set(Time, QLocale().toString(message.time.toLocalTime(), QLocale::ShortFormat));
    set(User, user);
    set(Command, CommandText::command(message, m_system.database()));
    set(Outcome, CommandText::outcome(message));
    set(Reason, message.reason);
}
