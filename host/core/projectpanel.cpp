#include "host/core/projectpanel_p.h"

#include "host/core/projectmanager.h"
#include "ui_projectpanel.h"

#include <QDir>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

namespace {

enum Column { NameColumn, StartColumn };

} // namespace

ProjectPanel::ProjectPanel(ProjectManager& manager, QWidget* parent)
    : QWidget(parent), m_manager(manager), m_form(std::make_unique<Ui::ProjectPanel>())
{
    m_form->setupUi(this);
    m_form->pageTree->setHeaderLabels({tr("Page"), tr("Opens first")});
    m_form->pageTree->header()->setSectionResizeMode(NameColumn, QHeaderView::Stretch);
    m_form->pageTree->header()->setSectionResizeMode(StartColumn, QHeaderView::ResizeToContents);
    connect(m_form->openButton, &QPushButton::clicked, this, [this] {
        settleChanges([this] {
            askFolder(tr("Open project"), [this](const QString& folder) { m_manager.openProject(folder); });
        });
    });
    connect(m_form->newButton, &QPushButton::clicked, this, [this] {
        settleChanges([this] {
            askFolder(tr("Folder of the new project"), [this](const QString& folder) { createIn(folder); });
        });
    });
    connect(m_form->saveButton, &QPushButton::clicked, this, [this] { m_manager.saveProject(); });
    connect(m_form->securityBox, &QCheckBox::clicked, this,
            [this](bool isChecked) { m_manager.setSecurityEnabled(isChecked); });
    connectPages();
    connect(&m_manager, &ProjectManager::changed, this, &ProjectPanel::refresh);
    refresh();
}

ProjectPanel::~ProjectPanel() = default;

void ProjectPanel::connectPages()
{
    connect(m_form->addButton, &QPushButton::clicked, this, [this] {
        askName(tr("Add page"), tr("Name of the new page:"), QString(), [this](const QString& name) {
            if (m_manager.addPage(name))
                selectPage(name);
        });
    });
    connect(m_form->renameButton, &QPushButton::clicked, this, [this] {
        const QString page = selectedPage();
        askName(tr("Rename page"), tr("New name of \"%1\":").arg(page), page, [this, page](const QString& name) {
            if (m_manager.renamePage(page, name))
                selectPage(name);
        });
    });
    connect(m_form->removeButton, &QPushButton::clicked, this, [this] { m_manager.removePage(selectedPage()); });
    connect(m_form->startButton, &QPushButton::clicked, this, [this] { m_manager.setStartPage(selectedPage()); });
    connect(m_form->pageTree, &QTreeWidget::itemSelectionChanged, this, &ProjectPanel::refreshButtons);
}

void ProjectPanel::refresh()
{
    m_manager.setWindowTitle(m_manager.isOpen() ? tr("%1[*] - Project").arg(m_manager.projectName()) : tr("Project"));
    m_manager.setWindowModified(m_manager.isModified());
    m_form->nameEdit->setText(m_manager.projectName());
    m_form->folderEdit->setText(QDir::toNativeSeparators(m_manager.projectFolder()));
    m_form->tickEdit->setText(m_manager.isOpen() ? tr("%1 ms").arg(m_manager.tick().count()) : QString());
    const QString sources = m_manager.sources().join(QStringLiteral(", "));
    m_form->sourceEdit->setText(m_manager.isOpen() && sources.isEmpty() ? tr("simulation (none is named)") : sources);
    const bool willBeSecured = m_manager.setting(QStringLiteral("security")).toBool();
    m_form->securityBox->setChecked(willBeSecured);
    m_form->restartLabel->setText(
        willBeSecured == m_manager.isSecurityEnabled() ? QString() : tr("From the next start of the project."));
    m_form->errorLabel->setText(m_manager.lastError());
    refreshPages();
    refreshButtons();
}

void ProjectPanel::refreshPages()
{
    const QString selected = selectedPage();
    const QString start = m_manager.startPage();
    m_form->pageTree->clear();
    for (const QString& page : m_manager.pages()) {
        auto* item = new QTreeWidgetItem(m_form->pageTree, {page, page == start ? tr("start page") : QString()});
        QFont font = item->font(NameColumn);
        font.setBold(page == start);
        item->setFont(NameColumn, font);
    }
    selectPage(selected);
}

void ProjectPanel::refreshButtons()
{
    const bool isOpen = m_manager.isOpen();
    const QString page = selectedPage();
    m_form->saveButton->setEnabled(m_manager.isModified());
    m_form->securityBox->setEnabled(isOpen);
    m_form->addButton->setEnabled(isOpen);
    m_form->renameButton->setEnabled(!page.isEmpty());
    m_form->removeButton->setEnabled(!page.isEmpty());
    m_form->startButton->setEnabled(!page.isEmpty() && page != m_manager.startPage());
}

QString ProjectPanel::selectedPage() const
{
    const QList<QTreeWidgetItem*> selected = m_form->pageTree->selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text(NameColumn);
}

void ProjectPanel::selectPage(const QString& page)
{
    const QList<QTreeWidgetItem*> found = m_form->pageTree->findItems(page, Qt::MatchExactly, NameColumn);
    if (!found.isEmpty())
        m_form->pageTree->setCurrentItem(found.first());
}

void ProjectPanel::settleChanges(const Then& then)
{
    if (!m_manager.isModified()) {
        then();
        return;
    }
    auto* box = new QMessageBox(QMessageBox::Question, tr("Project"),
                                tr("The project \"%1\" was changed. Save it?").arg(m_manager.projectName()),
                                QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
    box->setTextFormat(Qt::PlainText);
    box->setAttribute(Qt::WA_DeleteOnClose);
    connect(box, &QMessageBox::finished, this, [this, then](int answer) {
        if (answer == QMessageBox::Discard || (answer == QMessageBox::Save && m_manager.saveProject()))
            then();
    });
    box->open();
}

void ProjectPanel::askFolder(const QString& title, const ThenWith& then)
{
    auto* dialog = new QFileDialog(this, title, m_manager.projectFolder());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setFileMode(QFileDialog::Directory);
    dialog->setOption(QFileDialog::ShowDirsOnly);
    connect(dialog, &QFileDialog::fileSelected, this, then);
    dialog->open();
}

void ProjectPanel::askName(const QString& title, const QString& label, const QString& name, const ThenWith& then)
{
    auto* dialog = new QInputDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(title);
    dialog->setLabelText(label);
    dialog->setTextValue(name);
    connect(dialog, &QInputDialog::textValueSelected, this, then);
    dialog->open();
}

void ProjectPanel::createIn(const QString& folder)
{
    askName(tr("New project"), tr("Name of the project:"), QDir(folder).dirName(),
            [this, folder](const QString& name) { m_manager.createProject(folder, name); });
}
