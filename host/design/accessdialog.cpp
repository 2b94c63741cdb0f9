#include "host/design/accessdialog.h"

#include "scada/widgets/canvasaccessrightsettingwidget.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QListWidget>
#include <QVBoxLayout>

AccessDialog::AccessDialog(KorvaneCoreInterface& core, const PageAccess& access, QWidget* parent)
    : QDialog(parent), m_access(access), m_rights(new CanvasAccessRightSettingWidget(this))
{
    setWindowTitle(tr("Access rights"));
    m_rights->init(&core);
    m_rights->setData(access.isProtected ? 1 : 0, access.users);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_rights);
    if (!hasAccounts()) {
        auto* hint = new QLabel(tr("No user accounts are known: who may open the page stays as it is."));
        hint->setWordWrap(true);
        layout->addWidget(hint);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

AccessDialog::~AccessDialog() = default;

bool AccessDialog::hasAccounts() const
{
    return m_rights->findChild<QListWidget*>()->count() > 0;
}

// A list that is empty, since no accounts can be reached perhaps, says nothing about the page's users.
PageAccess AccessDialog::access() const
{
    return {m_rights->useSecurity() != 0, hasAccounts() ? m_rights->selectedUsers() : m_access.users};
}
