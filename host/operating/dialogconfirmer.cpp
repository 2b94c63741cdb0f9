#include "host/operating/dialogconfirmer.h"

#include "host/accounts/accountdatabase.h"
#include "host/accounts/databasemanager.h"
#include "host/operating/commandtext.h"
#include "host/runtime/runtimedatabase.h"
#include "host/runtime/runtimemanager.h"
#include "scada/widgets/controlconfirm.h"
#include "scada/widgets/userconfirmdialog.h"

#include <QInputDialog>

DialogConfirmer::DialogConfirmer(const Services& services, QWidget* window) : m_services(services), m_window(window)
{
}

DialogConfirmer::~DialogConfirmer() = default;

bool DialogConfirmer::confirm(const ScadaOperationMessage& request)
{
    ControlConfirm dialog(m_window, &m_services.core, CommandText::command(request, m_services.database));
    dialog.adjustSize(); // the command has to be read as a whole
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
    if (names.isEmpty())
        return {};
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
        UserConfirmDialog dialog(m_window, &m_services.core, command, second);
        dialog.adjustSize();
        if (dialog.exec() == QDialog::Accepted && m_services.manager.confirm(request.requestId, second))
            return;
    }
    m_services.manager.cancel(request.requestId);
}
