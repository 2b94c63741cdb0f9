#include "host/summary/summarycentralwidget.h"

#include "host/alarmview/elidedlabel_p.h"
#include "host/summary/summaryfilterbar_p.h"
#include "host/summary/summarytable_p.h"

#include <QAction>
#include <QHeaderView>
#include <QMessageBox>
#include <QSet>
#include <QToolBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {

QStringList sorted(const QSet<QString>& names)
{
    QStringList list = names.values();
    std::sort(list.begin(), list.end(),
              [](const QString& a, const QString& b) { return a.compare(b, Qt::CaseInsensitive) < 0; });
    return list;
}

} // namespace

SummaryCentralWidget::SummaryCentralWidget(const RuntimeDatabase& database, const QTimeZone& zone)
    : m_model(database, zone),
      m_filter(new SummaryFilterBar(this)),
      m_table(new SummaryTable(m_model, tr("Points"), this)), // behind the filter for the Tab key
      m_tools(new QToolBar(this)),
      m_status(new ElidedLabel(this))
{
    m_table->setObjectName(QStringLiteral("summaryTable"));
    m_table->setWidths({22, 30, 13, 11, 13, 8, 22, 20, 8, 8, 8, 8, 10, 10, 10, 12, 10});
    m_table->hideColumn(SummaryColumns::Unit); // stands behind the value
    m_table->enableSorting();
    m_status->setObjectName(QStringLiteral("summaryStatus"));
    addActions();
    addSearchKey();
    lay();
    connect(m_filter, &SummaryFilterBar::changed, this, [this] { m_model.setFilter(m_filter->filter()); });
    connect(m_table, &QAbstractItemView::activated, this, &SummaryCentralWidget::activate);
    connect(m_table->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            &SummaryCentralWidget::updateActions);
    connect(m_table, &SummaryTable::exportAdvanced, this, [this](int written, int all) {
        m_exported = written;
        m_toExport = all;
        updateActions();
        updateStatus();
    });
    connect(&m_model, &QAbstractItemModel::modelReset, this, &SummaryCentralWidget::gatherChoices);
    connect(&m_model, &SummaryModel::stateChanged, this, [this] {
        updateActions();
        updateStatus();
    });
    updateActions();
}

SummaryCentralWidget::~SummaryCentralWidget()
{
    delete m_table; // before the model that it shows
}

/// \param name for tests and style sheets
QAction* SummaryCentralWidget::add(const QString& name, const QString& text, const QString& toolTip,
                                   const QKeySequence& shortcut, const std::function<void()>& act)
{
    auto* action = new QAction(text, this);
    action->setObjectName(name);
    action->setShortcut(shortcut);
    action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    const QString keysText = shortcut.toString(QKeySequence::NativeText);
    action->setToolTip(keysText.isEmpty() ? toolTip : tr("%1 (%2)", "what it does (keys)").arg(toolTip, keysText));
    connect(action, &QAction::triggered, this, act);
    m_tools->addAction(action);
    m_table->addAction(action);
    return action;
}

void SummaryCentralWidget::addActions()
{
    // The table itself takes the Return key.
    m_open =
        add(QStringLiteral("goToPage"), tr("Go to page"), tr("Show the page of the point"), {}, [this] { activate(); });
    add(QStringLiteral("refresh"), tr("Refresh"), tr("Filter and sort by what is there now"), QKeySequence::Refresh,
        [this] { m_model.refresh(); });
    m_copy =
        add(QStringLiteral("copy"), tr("Copy"), tr("Copy the rows selected"), QKeySequence::Copy, [this] { copy(); });
    m_export = add(QStringLiteral("export"), tr("Export..."), tr("Write what is shown to a file"), Qt::CTRL + Qt::Key_E,
                   [this] { m_table->askForExport(); });
    add(QStringLiteral("columns"), tr("Columns..."), tr("Choose the columns that are shown"), {},
        [this] { m_table->offerColumns(); });
    m_table->setContextMenuPolicy(Qt::ActionsContextMenu);
    m_tools->setToolButtonStyle(Qt::ToolButtonTextOnly);
}

void SummaryCentralWidget::addSearchKey()
{
    auto* search = new QAction(this);
    search->setShortcut(QKeySequence::Find);
    search->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    connect(search, &QAction::triggered, m_filter, &SummaryFilterBar::search);
    addAction(search);
}

void SummaryCentralWidget::lay()
{
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(4);
    layout->addWidget(m_tools);
    layout->addWidget(m_filter);
    layout->addWidget(m_table, 1);
    layout->addWidget(m_status);
}

QByteArray SummaryCentralWidget::columns() const
{
    return m_table->horizontalHeader()->saveState();
}

void SummaryCentralWidget::restoreColumns(const QByteArray& columns)
{
    m_table->horizontalHeader()->restoreState(columns);
    if (m_table->shownColumns().isEmpty()) // would give no title to click on
        m_table->showColumn(SummaryColumns::Name);
}

QSize SummaryCentralWidget::sizeHint() const
{
    return {fontMetrics().averageCharWidth() * 170, fontMetrics().height() * 36};
}

void SummaryCentralWidget::showEvent(QShowEvent* event)
{
    ScadaSummaryCenteralWidgetInterface::showEvent(event);
    m_model.setActive(true);
}

void SummaryCentralWidget::hideEvent(QHideEvent* event)
{
    m_model.setActive(false);
    ScadaSummaryCenteralWidgetInterface::hideEvent(event);
}

void SummaryCentralWidget::gatherChoices()
{
    QSet<QString> stations;
    QSet<QString> areas;
    for (const ObjectKey point : m_model.points()) {
        const RuntimeDatabase::Object* object = m_model.database().object(point);
        stations.insert(object->station);
        areas.insert(object->area);
    }
    m_filter->setChoices(sorted(stations), sorted(areas));
    m_model.setFilter(m_filter->filter());
}

void SummaryCentralWidget::copy()
{
    if (m_table->copySelection())
        return;
    auto* box = new QMessageBox(QMessageBox::Information, tr("Copy"),
                                tr("At most %n row(s) can be copied at once. Export writes any number to a file.",
                                   nullptr, SummaryTable::mostCopied),
                                QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->open();
}

void SummaryCentralWidget::activate()
{
    const QModelIndex current = m_table->currentIndex();
    if (current.isValid())
        Q_EMIT objectActivated(m_model.point(current.row()));
}

void SummaryCentralWidget::updateActions()
{
    const bool isAnySelected = m_table->selectionModel()->hasSelection();
    m_open->setEnabled(isAnySelected);
    m_copy->setEnabled(isAnySelected);
    m_export->setEnabled(!m_table->isExporting());
}

void SummaryCentralWidget::updateStatus()
{
    const auto all = static_cast<int>(m_model.points().size());
    QStringList texts{tr("%1 of %n point(s)", nullptr, all).arg(m_model.rowCount()), stateText()};
    if (m_toExport > 0)
        texts.append(tr("%1 of %2 points written").arg(m_exported).arg(m_toExport));
    texts.removeAll({});
    m_status->setFullText(texts.join(QStringLiteral("; ")));
}

QString SummaryCentralWidget::stateText() const
{
    if (m_model.isArranging())
        return tr("being sorted");
    return m_model.isOrderHeld() ? tr("rows stay in place while so many are selected") : QString();
}
