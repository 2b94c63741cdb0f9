#include "host/alarmview/alarmtable_p.h"

#include "host/alarmview/alarmcsv.h"

#include <QFileDialog>
#include <QHeaderView>
#include <QMenu>
#include <QMessageBox>

#include <algorithm>
#include <limits>

AlarmTable::AlarmTable(QAbstractItemModel& model, const QString& name, QWidget* parent) : QTableView(parent)
{
    setAccessibleName(name);
    setModel(&model);
    setSelectionBehavior(SelectRows);
    setSelectionMode(ExtendedSelection);
    setVerticalScrollMode(ScrollPerItem);
    setHorizontalScrollMode(ScrollPerPixel);
    setWordWrap(false);
    setTabKeyNavigation(false); // Tab leaves the table
    setShowGrid(false);
    setCornerButtonEnabled(false);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setMinimumSectionSize(0);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    horizontalHeader()->setSectionsMovable(true);
    horizontalHeader()->setHighlightSections(false);
    horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    horizontalHeader()->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(horizontalHeader(), &QWidget::customContextMenuRequested, this, &AlarmTable::openColumnsMenu);
    connect(horizontalHeader(), &QHeaderView::sectionMoved, this, [this] {
        if (!m_isPlacing)
            Q_EMIT columnsChanged();
    });
}

AlarmTable::~AlarmTable() = default;

void AlarmTable::enableSorting()
{
    horizontalHeader()->setSortIndicator(-1, Qt::AscendingOrder);
    setSortingEnabled(true);
}

void AlarmTable::setWidths(const QVector<int>& letters)
{
    QFont bold = font(); // what waits for an operator is written so
    bold.setBold(true);
    const int letter = QFontMetrics(bold).horizontalAdvance(QLatin1Char('0'));
    for (int column = 0; column < letters.size(); ++column)
        setColumnWidth(column, letters[column] * letter + 12);
}

void AlarmTable::placeColumns(const QMap<int, int>& places)
{
    QVector<int> columns;
    for (int column = 0; column < model()->columnCount(); ++column)
        columns.append(column);
    const auto placeOf = [&](int column) { return places.value(column, std::numeric_limits<int>::max()); };
    std::stable_sort(columns.begin(), columns.end(), [&](int a, int b) { return placeOf(a) < placeOf(b); });
    // A list without columns would say nothing, and give no title to click on.
    const bool hidesAll = std::all_of(columns.begin(), columns.end(), [&](int column) { return placeOf(column) <= 0; });
    m_isPlacing = true;
    for (int place = 0; place < columns.size(); ++place) {
        horizontalHeader()->moveSection(horizontalHeader()->visualIndex(columns[place]), place);
        setColumnHidden(columns[place], placeOf(columns[place]) <= 0 && !hidesAll);
    }
    m_isPlacing = false;
}

QMap<int, int> AlarmTable::columnPlaces() const
{
    QMap<int, int> places;
    for (int column = 0; column < model()->columnCount(); ++column)
        places.insert(column, 0);
    const QVector<int> shown = shownColumns();
    for (int place = 0; place < shown.size(); ++place)
        places.insert(shown[place], place + 1);
    return places;
}

QVector<int> AlarmTable::shownColumns() const
{
    QVector<int> columns;
    for (int place = 0; place < horizontalHeader()->count(); ++place) {
        const int column = horizontalHeader()->logicalIndex(place);
        if (!isColumnHidden(column))
            columns.append(column);
    }
    return columns;
}

void AlarmTable::openColumnsMenu(const QPoint& place)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->setObjectName(QStringLiteral("columnsMenu"));
    addColumnActions(menu);
    menu->popup(horizontalHeader()->viewport()->mapToGlobal(place));
}

void AlarmTable::offerColumns()
{
    openColumnsMenu({});
}

void AlarmTable::addColumnActions(QMenu* menu)
{
    if (isSortingEnabled()) {
        menu->addAction(tr("Usual order"), this, [this] { sortByColumn(-1, Qt::AscendingOrder); });
        menu->addSeparator();
    }
    const QVector<int> shown = shownColumns();
    for (int column = 0; column < model()->columnCount(); ++column) {
        QAction* action = menu->addAction(model()->headerData(column, Qt::Horizontal).toString());
        action->setCheckable(true);
        action->setChecked(!isColumnHidden(column));
        action->setEnabled(shown != QVector<int>{column}); // one stays
        connect(action, &QAction::toggled, this, [this, column](bool isOn) {
            setColumnHidden(column, !isOn);
            Q_EMIT columnsChanged();
        });
    }
}

void AlarmTable::askForExport()
{
    auto* dialog = new QFileDialog(this, tr("Export"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    dialog->setNameFilter(tr("Separated text (*.csv)"));
    dialog->setDefaultSuffix(QStringLiteral("csv"));
    connect(dialog, &QFileDialog::fileSelected, this, &AlarmTable::exportTo);
    dialog->open();
}

bool AlarmTable::exportTo(const QString& fileName)
{
    const auto written = AlarmCsv::write(fileName, *model(), shownColumns());
    if (!written)
        tellExportFailed(written.error());
    return written.has_value();
}

void AlarmTable::tellExportFailed(const QString& problem)
{
    auto* box = new QMessageBox(QMessageBox::Warning, tr("Export"), problem, QMessageBox::Ok, this);
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText); // the file's name is somebody else's
    box->open();
}
