#include "host/accountview/accountsdialog.h"

#include "host/accountview/accountdialog_p.h"
#include "host/accountview/roletexts_p.h"
#include "ui_accountsdialog.h"

#include <QHeaderView>
#include <QMessageBox>

namespace {

enum Column { Number, Name, Role, Areas, State };

QTableWidgetItem* item(const QString& text)
{
    auto* made = new QTableWidgetItem(text);
    made->setFlags(Qt::ItemIsSelectable | Qt::ItemIsEnabled);
    return made;
}

} // namespace

AccountsDialog::AccountsDialog(AccountDatabase& accounts, DatabaseManager& manager, QWidget* parent)
    : QDialog(parent), m_form(std::make_unique<Ui::AccountsDialog>()), m_accounts(accounts), m_manager(manager)
{
    m_form->setupUi(this);
    m_form->accountTable->setColumnCount(State + 1);
    m_form->accountTable->setHorizontalHeaderLabels({tr("No."), tr("Name"), tr("Role"), tr("Areas"), tr("State")});
    QHeaderView* header = m_form->accountTable->horizontalHeader();
    header->setSectionResizeMode(QHeaderView::ResizeToContents);
    header->setSectionResizeMode(Areas, QHeaderView::Stretch);
    connect(m_form->accountTable, &QTableWidget::itemSelectionChanged, this, &AccountsDialog::enableButtons);
    connect(m_form->accountTable, &QTableWidget::itemDoubleClicked, this, &AccountsDialog::changeChosen);
    connect(m_form->addButton, &QPushButton::clicked, this, &AccountsDialog::add);
    connect(m_form->changeButton, &QPushButton::clicked, this, &AccountsDialog::changeChosen);
    connect(m_form->passwordButton, &QPushButton::clicked, this, &AccountsDialog::setPasswordOfChosen);
    connect(m_form->lockButton, &QPushButton::clicked, this, &AccountsDialog::lockChosen);
    connect(m_form->removeButton, &QPushButton::clicked, this, &AccountsDialog::removeChosen);
    refresh();
}

AccountsDialog::~AccountsDialog() = default;

void AccountsDialog::refresh()
{
    const EUserAccount* before = chosen();
    const qint32 number = before ? before->number : 0;
    const auto all = m_accounts.allUserAccounts();
    const auto locked = m_accounts.lockedAccounts();
    m_form->messageLabel->setText(all.isOk() && !locked ? locked.error() : all.error);
    m_shown = all.list;
    m_locked = locked.value_or(QSet<qint32>());
    QTableWidget* table = m_form->accountTable;
    table->clearContents();
    table->setRowCount(m_shown.size());
    table->clearSelection();
    for (int row = 0; row < m_shown.size(); ++row) {
        fillRow(row, m_shown.at(row));
        if (m_shown.at(row).number == number)
            table->selectRow(row);
    }
    enableButtons();
}

void AccountsDialog::fillRow(int row, const EUserAccount& account)
{
    const bool isLocked = m_locked.contains(account.number);
    QTableWidget* table = m_form->accountTable;
    table->setItem(row, Number, item(QString::number(account.number)));
    table->setItem(row, Name, item(account.name));
    table->setItem(row, Role, item(roleText(account.role)));
    table->setItem(row, Areas, item(account.areas.isEmpty() ? tr("all") : account.areas.join(QStringLiteral(", "))));
    table->setItem(row, State, item(isLocked ? tr("locked") : QString()));
}

const EUserAccount* AccountsDialog::chosen() const
{
    const QList<QTableWidgetItem*> items = m_form->accountTable->selectedItems();
    const int row = items.isEmpty() ? -1 : items.first()->row();
    return row >= 0 && row < m_shown.size() ? &m_shown.at(row) : nullptr;
}

void AccountsDialog::enableButtons()
{
    const EUserAccount* account = chosen();
    for (QPushButton* button : {m_form->changeButton, m_form->passwordButton, m_form->lockButton, m_form->removeButton})
        button->setEnabled(account != nullptr);
    const bool isLocked = account && m_locked.contains(account->number);
    m_form->lockButton->setText(isLocked ? tr("Un&lock") : tr("&Lock"));
}

AccountsDialog::Result AccountsDialog::change(const std::function<Result()>& make)
{
    if (!m_manager.may(AccountRole::Administrator, {}))
        return tl::make_unexpected(tr("Only an administrator may do that."));
    auto made = make();
    if (made)
        refresh();
    return made;
}

void AccountsDialog::add()
{
    const auto take = [this](const EUserAccount& account, const QString& password) {
        return change([&] { return m_accounts.add(account, password).map([](qint32) {}); });
    };
    EUserAccount usual;
    usual.role = accountRoleName(AccountRole::Viewer); // more is to be chosen
    auto* dialog = new AccountDialog(AccountDialog::Purpose::Add, usual, take, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void AccountsDialog::changeChosen()
{
    const EUserAccount* account = chosen();
    if (!account)
        return;
    const auto take = [this](const EUserAccount& changed, const QString&) {
        return change([&] { return m_accounts.change(changed); });
    };
    auto* dialog = new AccountDialog(AccountDialog::Purpose::Change, *account, take, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void AccountsDialog::setPasswordOfChosen()
{
    const EUserAccount* account = chosen();
    if (!account)
        return;
    const auto take = [this](const EUserAccount& changed, const QString& password) {
        return change([&] { return m_accounts.setPassword(changed.name, password); });
    };
    auto* dialog = new AccountDialog(AccountDialog::Purpose::SetPassword, *account, take, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

void AccountsDialog::lockChosen()
{
    const EUserAccount* account = chosen();
    if (!account)
        return;
    // As the button says, whoever may have changed it since.
    const bool toBeLocked = !m_locked.contains(account->number);
    const auto done = change([&] { return m_accounts.setLocked(QString(account->name), toBeLocked); });
    if (!done)
        m_form->messageLabel->setText(done.error());
}

void AccountsDialog::removeChosen()
{
    const EUserAccount* account = chosen();
    if (!account)
        return;
    auto* question =
        new QMessageBox(QMessageBox::Question, tr("Remove user"),
                        tr("Remove user \"%1\"? A new user of that name would be another one.").arg(account->name),
                        QMessageBox::Yes | QMessageBox::No, this);
    question->setTextFormat(Qt::PlainText);
    question->setDefaultButton(QMessageBox::No);
    question->setAttribute(Qt::WA_DeleteOnClose);
    connect(question, &QMessageBox::finished, this, [this, name = account->name](int answer) {
        if (answer != QMessageBox::Yes)
            return;
        if (const auto done = change([&] { return m_accounts.remove(name); }); !done)
            m_form->messageLabel->setText(done.error());
    });
    question->open();
}
