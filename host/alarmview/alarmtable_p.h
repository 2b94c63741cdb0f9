#pragma once

#include <QMap>
#include <QTableView>
#include <QVector>

class QAction;
class QMenu;

/// A table of alarms or of the log: rows of one height, columns that the user moves, hides and sorts by, and its export.
class AlarmTable : public QTableView
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmTable)

public:
    /// \param model not owned, must outlive the table
    /// \param name as screen readers call it
    AlarmTable(QAbstractItemModel& model, const QString& name, QWidget* parent);
    ~AlarmTable() override;

    /// Lets the user sort by a click on a column's title; back to the model's own order by the titles' menu.
    void enableSorting();
    /// Widths of columns, in letters.
    void setWidths(const QVector<int>& letters);

    /// Places columns: by number 0 for hidden, or the place from the left. Those that \p places does not name follow behind.
    void placeColumns(const QMap<int, int>& places);
    /// The same the other way round, of every column.
    QMap<int, int> columnPlaces() const;
    /// Columns from the left, without those that are hidden.
    QVector<int> shownColumns() const;

    /// Opens the titles' menu: the usual order, and which columns are shown.
    void offerColumns();

    /// Asks for a file and exports to it.
    void askForExport();
    /// Writes what is shown as AlarmCsv; tells the user when that fails.
    virtual bool exportTo(const QString& fileName);

Q_SIGNALS:
    /// The user moved, hid or showed a column.
    void columnsChanged();

protected:
    void tellExportFailed(const QString& problem);

private:
    void openColumnsMenu(const QPoint& place);
    void addColumnActions(QMenu* menu);

    bool m_isPlacing = false; ///< columns, by the program
};
