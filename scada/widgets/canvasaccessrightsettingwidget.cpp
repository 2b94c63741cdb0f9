#include "scada/widgets/canvasaccessrightsettingwidget.h"

#include "platform/core/korvanecoreinterface.h"
#include "platform/data/dataserviceinterface.h"
#include "scada/hub/korvanescadacoreinterface.h"
#include "ui_canvasaccessrightsettingwidget.h"

#include <QSet>

namespace {

constexpr int numberRole = Qt::UserRole;

QList<EUserAccount> accountsFor(KorvaneCoreInterface& core)
{
    DataServiceInterface* service = core.scadaCoreInterface()->controller();
    if (!service)
        return EUserAccount::allUserAccount().list;
    QList<EUserAccount> accounts;
    service->queryUserAccounts(QStringLiteral("select * from SYSTEM_USER_ACCOUNT"), accounts);
    return accounts;
}

void addAccount(QListWidget& list, const EUserAccount& account)
{
    auto* item = new QListWidgetItem(account.name);
    item->setData(numberRole, account.number);
    item->setCheckState(Qt::Unchecked);
    list.addItem(item);
}

int numberOf(const QListWidgetItem& item)
{
    return item.data(numberRole).toInt();
}

} // namespace

CanvasAccessRightSettingWidget::CanvasAccessRightSettingWidget(QWidget* parent)
    : QWidget(parent), m_ui(std::make_unique<Ui::CanvasAccessRightSettingWidget>())
{
    m_ui->setupUi(this);
}

CanvasAccessRightSettingWidget::~CanvasAccessRightSettingWidget() = default;

void CanvasAccessRightSettingWidget::init(KorvaneCoreInterface* core)
{
    m_core = core;
    for (const EUserAccount& account : accountsFor(*m_core))
        addAccount(*m_ui->listWidget, account);
    connectForm();
}

void CanvasAccessRightSettingWidget::connectForm()
{
    connect(m_ui->userPagePermission, &QCheckBox::toggled, m_ui->groupBox, &QGroupBox::setEnabled);
    connect(m_ui->selectAll, &QPushButton::released, this, &CanvasAccessRightSettingWidget::selectUser);
    connect(m_ui->clearAll, &QPushButton::released, this, &CanvasAccessRightSettingWidget::selectUser);
}

void CanvasAccessRightSettingWidget::setData(qint8 useSecurity, const QList<int>& users)
{
    m_ui->userPagePermission->setChecked(useSecurity != 0);
    m_ui->groupBox->setEnabled(useSecurity != 0); // also when the mark was right already, or nothing is connected yet

    const QSet<int> chosen(users.begin(), users.end());
    for (int row = 0; row < m_ui->listWidget->count(); ++row) {
        QListWidgetItem* item = m_ui->listWidget->item(row);
        item->setCheckState(chosen.contains(numberOf(*item)) ? Qt::Checked : Qt::Unchecked);
    }
}

qint8 CanvasAccessRightSettingWidget::useSecurity() const
{
    return m_ui->userPagePermission->isChecked() ? 1 : 0;
}

QList<int> CanvasAccessRightSettingWidget::selectedUsers() const
{
    QList<int> users;
    for (int row = 0; row < m_ui->listWidget->count(); ++row) {
        const QListWidgetItem* item = m_ui->listWidget->item(row);
        if (item->checkState() == Qt::Checked)
            users.append(numberOf(*item));
    }
    return users;
}

void CanvasAccessRightSettingWidget::selectUser()
{
    const Qt::CheckState state = sender() == m_ui->clearAll ? Qt::Unchecked : Qt::Checked;
    for (int row = 0; row < m_ui->listWidget->count(); ++row)
        m_ui->listWidget->item(row)->setCheckState(state);
}
