#include "host/operating/dialogconfirmer.h"

#include "host/accounts/accountdatabase.h"
#include "host/accounts/databasemanager.h"
#include "host/operating/commandtext.h"
#include "host/runtime/runtimedatabase.h"
#include "host/runtime/runtimemanager.h"
#include "scada/widgets/controlconfirm.h"
#include "scada/widgets/userconfirmdialog.h"

#include <QDialog>
#include <QInputDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QTextDocument>

DialogConfirmer::DialogConfirmer(const Services& services, QWidget* window) : m_services(services), m_window(window)
{
}

DialogConfirmer::~DialogConfirmer() = default;

// The command as it stands, whatever texts the list of points has: a label takes some for markup.
QString DialogConfirmer::commandOf(const ScadaOperationMessage& request) const
{
    const QString command = CommandText::command(request, m_services.database);
    return Qt::mightBeRichText(command) ? Qt::convertFromPlainText(command) : command;
}

// A question about a request that has ended meanwhile is none.
void DialogConfirmer::closeWith(const ScadaOperationMessage& request, QDialog& dialog) const
{
    QObject::connect(&m_services.manager, &RuntimeManager::remoteControlFinished, &dialog,
                     [&dialog, id = request.requestId](const ScadaOperationMessage& ended) {
                         if (ended.requestId == id)
                             dialog.reject();
                     });
}

bool DialogConfirmer::confirm(const ScadaOperationMessage& request)
{
    ControlConfirm dialog(m_window, &m_services.core, commandOf(request));
    dialog.adjustSize(); // the command has to be read as a whole
    closeWith(request, dialog);
    dialog.findChild<QLineEdit*>(QStringLiteral("password"))->setFocus(); // it waits for nothing else
    return dialog.exec() == QDialog::Accepted;
}

QString DialogConfirmer::chooseSecond(const ScadaOperationMessage& request, const QString& command) const
{
    const RuntimeDatabase::Object* object = m_services.database.object({request.objectType, request.objectId});
    QStringList names;
    for (const EUserAccount& account : m_services.accounts.allUserAccounts().list) {
        if (account.name != request.user && DatabaseManager::may(account, object->control.role, object->area))
            names.append(account.name);
    }
    if (names.isEmpty()) {
        QMessageBox::warning(m_window, tr("Second person"),
                             tr("%1\n\nNo other user may confirm this command.").arg(command));
        return {};
    }
    bool isChosen = false;
    const QString chosen = QInputDialog::getItem(
        m_window, tr("Second person"), tr("%1\n\nWho confirms this command besides %2?").arg(command, request.user),
        names, 0, false, &isChosen);
    return isChosen ? chosen : QString();
}

void DialogConfirmer::askSecond(const ScadaOperationMessage& request)
{
    const QString command = CommandText::command(request, m_services.database);
    const QString second = chooseSecond(request, command);
    if (!second.isEmpty()) {
        UserConfirmDialog dialog(m_window, &m_services.core, commandOf(request), second);
        dialog.adjustSize();
        closeWith(request, dialog);
        if (dialog.exec() == QDialog::Accepted && m_services.manager.confirm(request.requestId, second))
            return;
    }
    m_services.manager.cancel(request.requestId);
}
