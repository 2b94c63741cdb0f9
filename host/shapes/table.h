#pragma once

#include "host/shapes/operableshape.h"

#include <QHash>
#include <QRectF>
#include <QString>
#include <QStringList>

class Table;

/// Supplies the texts of a table that don't stand in its own "Rows".
class KORVANE_HOST_EXPORT TableRows
{
public:
    virtual ~TableRows();
    /// The cells of a row that comes into view, one text a column; fewer leave cells blank. Asked once for each row,
    /// until Table::invalidateRows(). May do anything to the table.
    /// \param row from 0 to the table's row count - 1
    virtual QStringList tableRow(Table& table, int row) = 0;
};

/// Rows of texts in columns, one row of them selected. Only the rows in view are asked for and drawn, so a table may
/// have a million.
///
/// A column stands for each of "Columns", which are its headings; without headings there is one column. The first rows
/// are those of "Rows", their cells joined by tabs; there are as many rows as "Rows" has, or "RowCount" if that is more,
/// and the others come from TableRows. "FirstRow" is the first in view; where it is beyond the last that can stand there,
/// that one is. "SelectedRow" is -1 for none.
///
/// Tells on: onItemClicked(cells, column) when the operator clicked a row or pressed Space; onItemDoubleClicked() for a
/// double click; both for Return. Arrow keys move selection and column, the wheel the rows.
class KORVANE_HOST_EXPORT Table : public OperableShape
{
public:
    static constexpr int mostRows = 1000000;
    static constexpr int mostColumns = 100; ///< further ones are not shown

    Table() : OperableShape({360, 200}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

    /// Where rows come from; null for nowhere: they are blank. Rows known so far are forgotten.
    /// \param rows not owned; set null before it goes
    void setRows(TableRows* rows);
    /// Has all rows in view asked for once more.
    void invalidateRows();

    int rowCount() const;
    int columnCount() const;
    /// The row that is drawn at the top.
    int firstShownRow() const;
    /// Rows for which there is room.
    int roomForRows() const { return layout().rows; }
    /// Where a cell is drawn; empty for one that is not in view.
    QRectF cellRect(int row, int column) const;
    /// The texts of a row, as far as they are known.
    QStringList cells(int row) const;

    void click(const QPointF& place) override;
    void doubleClick(const QPointF& place) override;
    bool turnWheel(int rows) override;
    bool pressKey(int key) override;
    void prepare() override;

private:
    struct Layout
    {
        QRectF header; ///< empty for none
        QRectF body;   ///< where the rows are
        QRectF bar;    ///< says where in the table the rows in view lie; empty where all are
        double rowHeight = 0;
        int rows = 0;
    };
    Layout layout() const;
    static QRectF thumbIn(const Layout& layout, int first, int count);
    QColor markColor() const;
    void drawHeader(const ShapePainter& painter, const Layout& layout) const;
    void drawRow(const ShapePainter& painter, const Layout& layout, int row) const;
    void drawTexts(const ShapePainter& painter, const QRectF& row, const QStringList& texts, bool isHeading) const;

    bool isKnown(int row) const { return row < m_texts.size() || m_known.contains(row); }
    void ask(int row);
    void forgetRowsOutside(int first, int end);
    int rowAt(const Layout& layout, const QPointF& place) const;
    void scrollTo(int row);
    void select(int row);
    void moveColumn(int columns);
    void clickSelected();

    QStringList m_columns;
    QStringList m_texts; ///< of the rows that stand in the page
    QHash<int, QStringList> m_known;
    TableRows* m_rows = nullptr;
    int m_rowCount = 0;
    int m_firstRow = 0;
    int m_selectedRow = -1;
    int m_column = 0; ///< in which the operator is
    bool m_isAsking = false;
};
