#include "host/summary/summarytable_p.h"

#include "host/summary/summaryexport_p.h"

#include <QApplication>
#include <QClipboard>
#include <QDrag>
#include <QMimeData>
#include <QScrollBar>

#include <algorithm>

SummaryTable::SummaryTable(SummaryModel& model, const QString& name, QWidget* parent)
    : AlarmTable(model, name, parent), m_model(model)
{
    setEditTriggers(NoEditTriggers);
    setDragEnabled(true);
    setDragDropMode(DragOnly);
    connect(&model, &SummaryModel::aboutToArrange, this, &SummaryTable::notePlace);
    connect(&model, &SummaryModel::arranged, this, &SummaryTable::keepPlace);
    connect(selectionModel(), &QItemSelectionModel::selectionChanged, this, &SummaryTable::heedSelection);
}

SummaryTable::~SummaryTable() = default;

int SummaryTable::selectedCount() const
{
    int count = 0;
    for (const QItemSelectionRange& range : selectionModel()->selection())
        count += range.height();
    return count;
}

QVector<int> SummaryTable::selectedRows() const
{
    QVector<int> rows;
    for (const QItemSelectionRange& range : selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row)
            rows.append(row);
    }
    std::sort(rows.begin(), rows.end());
    return rows;
}

void SummaryTable::heedSelection()
{
    m_model.setOrderHeld(selectedCount() > mostMoved);
}

bool SummaryTable::copySelection() const
{
    if (selectedCount() > mostCopied)
        return false;
    QString text;
    for (const int row : selectedRows()) {
        QStringList cells;
        for (const int column : shownColumns())
            cells.append(m_model.index(row, column).data().toString());
        text += cells.join(QLatin1Char('\t')) + QLatin1Char('\n');
    }
    QApplication::clipboard()->setText(text);
    return true;
}

QVector<int> SummaryTable::exportedColumns() const
{
    QVector<int> columns = shownColumns();
    if (!columns.contains(SummaryColumns::Unit) && columns.contains(SummaryColumns::Value))
        columns.insert(columns.indexOf(SummaryColumns::Value) + 1, SummaryColumns::Unit);
    return columns;
}

bool SummaryTable::exportTo(const QString& fileName)
{
    if (m_export)
        return false;
    m_export = new SummaryExport(m_model.database(), m_model.shownPoints(), exportedColumns(), fileName, this);
    connect(m_export, &SummaryExport::advanced, this, &SummaryTable::exportAdvanced);
    connect(m_export, &SummaryExport::finished, this, &SummaryTable::endExport);
    const auto started = m_export->start();
    if (started)
        Q_EMIT exportAdvanced(0, m_model.rowCount());
    else
        endExport(started.error());
    return started.has_value();
}

void SummaryTable::endExport(const QString& problem)
{
    m_export->deleteLater();
    m_export = nullptr;
    if (!problem.isEmpty())
        tellExportFailed(problem);
    Q_EMIT exportAdvanced(0, 0);
}

/// One point goes with a drag: the one under the pointer.
void SummaryTable::startDrag(Qt::DropActions actions)
{
    QMimeData* point = m_model.mimeData({currentIndex()});
    if (!point)
        return;
    auto* drag = new QDrag(this);
    drag->setMimeData(point);
    drag->exec(actions, Qt::CopyAction);
}

void SummaryTable::notePlace()
{
    const QModelIndex current = currentIndex();
    m_place = -1;
    if (!current.isValid())
        return;
    if (visualRect(current).intersects(viewport()->rect()) || !isVisible())
        m_place = current.row() - verticalScrollBar()->value();
    if (const int count = selectedCount(); count > mostMoved && count < m_model.rowCount())
        selectionModel()->setCurrentIndex(current, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
}

void SummaryTable::keepPlace()
{
    const QModelIndex current = currentIndex();
    if (m_place < 0 || !current.isValid())
        return;
    executeDelayedItemsLayout();
    updateGeometries(); // the range to scroll in
    verticalScrollBar()->setValue(current.row() - m_place);
}
