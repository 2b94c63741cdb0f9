#include "scada/widgets/controlconfirm.h"

#include "platform/core/korvanecoreinterface.h"
#include "platform/core/korvanedatabasemanagerinterface.h"
#include "scada/hub/korvaneprojectmanagerinterface.h"
#include "ui_controlconfirm.h"

#include <QMessageBox>

ControlConfirm::ControlConfirm(QWidget* parent, KorvaneCoreInterface* core, const QString& command)
    : QDialog(parent), m_ui(std::make_unique<Ui::ControlConfirm>()), m_core(core)
{
    m_ui->setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &ControlConfirm::slotOk);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &ControlConfirm::reject);

    m_ui->id->setText(core->databaseManager()->currentUserId());
    m_ui->value->setText(command);
    if (!core->projectManager()->isSecurityEnabled()) {
        m_ui->id->setEnabled(false);
        m_ui->password->setEnabled(false);
    }
}

ControlConfirm::~ControlConfirm() = default;

void ControlConfirm::slotOk()
{
    if (!m_core->projectManager()->isSecurityEnabled())
        accept(); // kept: and goes on
    if (m_core->databaseManager()->checkCurrentUserPassword(m_ui->password->text()))
        accept();
    else
        QMessageBox::warning(this, tr("Failed"), tr("Invaild Password"), QMessageBox::Ok); // kept: spelled so
}
