#include "scada/widgets/userconfirmdialog.h"

#include "platform/core/korvanecoreinterface.h"
#include "platform/core/korvanedatabasemanagerinterface.h"
#include "ui_userconfirmdialog.h"

#include <QMessageBox>

UserConfirmDialog::UserConfirmDialog(QWidget* parent, KorvaneCoreInterface* core, const QString& command,
                                     const QString& user)
    : QDialog(parent), m_ui(std::make_unique<Ui::UserConfirmDialog>()), m_core(core)
{
    m_ui->setupUi(this);
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &UserConfirmDialog::slotOk);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &UserConfirmDialog::reject);

    m_ui->id->setText(user);
    m_ui->UserText->setText(command);
    m_ui->password->setFocus(Qt::ActiveWindowFocusReason);
}

UserConfirmDialog::~UserConfirmDialog() = default;

void UserConfirmDialog::slotOk()
{
    QString message;
    if (m_core->databaseManager()->checkUserPassword(m_ui->id->text(), m_ui->password->text(), message))
        accept();
    else
        QMessageBox::warning(this, tr("Failed"), message, QMessageBox::Ok);
}
