#include "apps/runtime/tagdock.h"

#include "host/inspection/tagtablemodel.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QVBoxLayout>

#include <algorithm>

TagDock::TagDock(const RuntimeDatabase& database, QWidget* parent)
    : QDockWidget(tr("Tags of the page"), parent), m_database(database)
{
    setObjectName(QStringLiteral("tags"));
    m_filter.setPlaceholderText(tr("Filter: any text of any column"));
    m_filter.setClearButtonEnabled(true);
    m_filtered.setFilterKeyColumn(-1);
    m_filtered.setFilterCaseSensitivity(Qt::CaseInsensitive);
    connect(&m_filter, &QLineEdit::textChanged, &m_filtered, &QSortFilterProxyModel::setFilterFixedString);
    m_table.setModel(&m_filtered);
    m_table.setSortingEnabled(true);
    m_table.sortByColumn(0, Qt::AscendingOrder);
    m_table.setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table.verticalHeader()->hide();
    m_table.horizontalHeader()->setStretchLastSection(true);
    auto* copy = new QAction(tr("Copy"), &m_table);
    copy->setShortcut(QKeySequence::Copy);
    copy->setShortcutContext(Qt::WidgetShortcut);
    connect(copy, &QAction::triggered, this, &TagDock::copySelection);
    m_table.addAction(copy);
    m_table.setContextMenuPolicy(Qt::ActionsContextMenu);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(&m_filter);
    layout->addWidget(&m_table);
    setWidget(content);
}

TagDock::~TagDock() = default;

void TagDock::showPage(const Page* page)
{
    m_filtered.setSourceModel(nullptr);
    m_model.reset();
    if (!page)
        return;
    m_model = std::make_unique<TagTableModel>(*page, m_database);
    m_filtered.setSourceModel(m_model.get());
    m_table.resizeColumnsToContents();
}

void TagDock::refresh()
{
    if (m_model && isVisible())
        m_model->refresh();
}

void TagDock::copySelection()
{
    QModelIndexList rows = m_table.selectionModel()->selectedRows();
    std::sort(rows.begin(), rows.end());
    QString text;
    for (const QModelIndex& row : qAsConst(rows)) {
        QStringList cells;
        for (int column = 0; column < m_filtered.columnCount(); ++column)
            cells.append(row.sibling(row.row(), column).data().toString());
        text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    QApplication::clipboard()->setText(text);
}
