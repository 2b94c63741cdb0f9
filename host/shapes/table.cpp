#include "host/shapes/table.h"

#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"

#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>

namespace {

constexpr double rowHeights = 1.7; // of a row, in font sizes
constexpr double barWidth = 8;
constexpr double leastForBar = 40; // width
constexpr double leastThumb = 12;
constexpr int mostKept = 4096; // rows that were asked for; when there are more, those out of view go

} // namespace

TableRows::~TableRows() = default;

const ShapeClass& Table::staticClass()
{
    using namespace ShapeProperties;
    static const ShapeClass self = {
        QLatin1String("Table"),
        withOperable({
            of<&Table::m_columns>("Columns"),
            of<&Table::m_texts>("Rows"),
            of<&Table::m_rowCount, 0, mostRows>("RowCount"),
            of<&Table::m_firstRow, 0, mostRows>("FirstRow"),
            of<&Table::m_selectedRow, -1, mostRows>("SelectedRow"),
        }),
        [] { return std::unique_ptr<Shape>(new Table); },
    };
    return self;
}

void Table::setRows(TableRows* rows)
{
    if (rows == m_rows)
        return;
    m_rows = rows;
    invalidateRows();
}

void Table::invalidateRows()
{
    m_known.clear();
    changed();
}

int Table::rowCount() const
{
    return std::clamp(m_texts.size(), m_rowCount, mostRows);
}

int Table::columnCount() const
{
    return std::clamp(m_columns.size(), 1, mostColumns);
}

int Table::firstShownRow() const
{
    return std::clamp(m_firstRow, 0, std::max(0, rowCount() - layout().rows));
}

QStringList Table::cells(int row) const
{
    if (row < 0 || row >= rowCount())
        return {};
    return row < m_texts.size() ? m_texts.at(row).split(QLatin1Char('\t')) : m_known.value(row);
}

Table::Layout Table::layout() const
{
    Layout found;
    found.rowHeight = std::ceil(fontSize() * rowHeights);
    QRectF inner = geometry().adjusted(1, 1, -1, -1);
    if (inner.isEmpty())
        return found;
    if (!m_columns.isEmpty() && inner.height() >= 2 * found.rowHeight) {
        found.header = inner;
        found.header.setHeight(found.rowHeight);
        inner.setTop(found.header.bottom());
    }
    found.rows = static_cast<int>(inner.height() / found.rowHeight);
    found.body = inner;
    if (rowCount() > found.rows && inner.width() >= leastForBar) {
        found.body.setRight(inner.right() - barWidth);
        found.bar = QRectF(found.body.topRight(), inner.bottomRight());
    }
    return found;
}

QRectF Table::thumbIn(const Layout& layout, int first, int count)
{
    const double height = std::clamp(layout.bar.height() * layout.rows / count, leastThumb, layout.bar.height());
    const double share = double(first) / std::max(1, count - layout.rows);
    return {layout.bar.left() + 1, layout.bar.top() + (layout.bar.height() - height) * share, layout.bar.width() - 2,
            height};
}

QRectF Table::cellRect(int row, int column) const
{
    const Layout at = layout();
    const int place = row - firstShownRow();
    if (place < 0 || place >= at.rows || row >= rowCount() || column < 0 || column >= columnCount())
        return {};
    const double width = at.body.width() / columnCount();
    return {at.body.left() + column * width, at.body.top() + place * at.rowHeight, width, at.rowHeight};
}

void Table::draw(const ShapePainter& canvas) const
{
    canvas.drawFrame(geometry(), drawnFill(), QColor());
    const Layout at = layout();
    const int first = firstShownRow();
    const int end = std::min(rowCount(), first + at.rows);
    for (int row = first; row < end; ++row)
        drawRow(canvas, at, row);
    const double width = at.body.width() / columnCount();
    for (int column = 1; column < columnCount(); ++column) {
        const double x = at.body.left() + column * width;
        canvas.drawRule({x, at.body.top()}, {x, at.body.top() + (end - first) * at.rowHeight}, Palette::plate);
    }
    const QRectF cell = cellRect(m_selectedRow, std::min(m_column, columnCount() - 1));
    if (columnCount() > 1 && !cell.isEmpty())
        canvas.drawFrame(cell, QColor(), markColor());
    if (!at.header.isEmpty())
        drawHeader(canvas, at);
    if (!at.bar.isEmpty() && at.bar.height() > leastThumb) {
        canvas.drawFrame(at.bar, Palette::light, QColor());
        canvas.drawFrame(thumbIn(at, first, rowCount()), isEnabled() ? Palette::hairline : Palette::plate, QColor());
    }
    canvas.drawFrame(geometry(), QColor(), drawnLine());
}

QColor Table::markColor() const
{
    return isEnabled() ? Palette::value : Palette::hairline;
}

void Table::drawHeader(const ShapePainter& canvas, const Layout& at) const
{
    canvas.drawFrame(at.header, isEnabled() ? Palette::plate : Palette::light, QColor());
    drawTexts(canvas, {at.body.left(), at.header.top(), at.body.width(), at.header.height()}, m_columns, true);
    canvas.drawRule(at.header.bottomLeft(), at.header.bottomRight(), drawnLine());
}

void Table::drawRow(const ShapePainter& canvas, const Layout& at, int row) const
{
    const QRectF rect(at.body.left(), at.body.top() + (row - firstShownRow()) * at.rowHeight, at.body.width(),
                      at.rowHeight);
    const QColor fill = drawnFill();
    if (row == m_selectedRow)
        canvas.drawFrame(rect, fill.isValid() ? Palette::mixed(fill, markColor(), 0.3) : QColor(), QColor());
    else if (row % 2 == 1 && fill.isValid())
        canvas.drawFrame(rect, Palette::mixed(fill, Palette::ink, 0.05), QColor());
    drawTexts(canvas, rect, cells(row), false);
    if (row == m_selectedRow)
        canvas.drawFrame({rect.left(), rect.top(), std::min(3.0, rect.width() / 4), rect.height()}, markColor(),
                         QColor());
}

void Table::drawTexts(const ShapePainter& canvas, const QRectF& row, const QStringList& texts, bool isHeading) const
{
    const double width = row.width() / columnCount();
    const double side = std::min(inset, width / 8);
    for (int column = 0; column < std::min(columnCount(), texts.size()); ++column)
        canvas.drawText({row.left() + column * width + side, row.top(), width - 2 * side, row.height()},
                        Qt::AlignLeft | Qt::AlignVCenter, {fontSize(), isHeading}, drawnText(), texts.at(column));
}

void Table::prepare()
{
    const int first = firstShownRow();
    const int end = std::min(rowCount(), first + layout().rows);
    forgetRowsOutside(first, end);
    for (int row = first; row < end; ++row)
        ask(row);
}

void Table::ask(int row)
{
    if (!m_rows || m_isAsking || isKnown(row))
        return;
    const QScopedValueRollback asking(m_isAsking, true);
    TableRows* const source = m_rows;
    const QStringList texts = source->tableRow(*this, row);
    if (m_rows != source)
        return;
    m_known.insert(row, texts);
    changed();
}

void Table::forgetRowsOutside(int first, int end)
{
    if (m_known.size() < mostKept)
        return;
    for (auto known = m_known.begin(); known != m_known.end();)
        known = known.key() >= first && known.key() < end ? std::next(known) : m_known.erase(known);
}

int Table::rowAt(const Layout& at, const QPointF& place) const
{
    if (!at.body.contains(place))
        return -1;
    const int line = static_cast<int>((place.y() - at.body.top()) / at.rowHeight);
    const int row = firstShownRow() + line;
    return line < at.rows && row < rowCount() ? row : -1;
}

void Table::scrollTo(int row)
{
    const int before = firstShownRow();
    m_firstRow = std::clamp(row, 0, std::max(0, rowCount() - layout().rows));
    if (m_firstRow != before)
        changed();
}

// Brings the row into view as well.
void Table::select(int row)
{
    row = std::clamp(row, 0, rowCount() - 1);
    if (row != m_selectedRow) {
        m_selectedRow = row;
        changed();
    }
    const int first = firstShownRow();
    scrollTo(std::clamp(first, row - std::max(1, layout().rows) + 1, row));
}

void Table::moveColumn(int columns)
{
    const int column = std::clamp(m_column + columns, 0, columnCount() - 1);
    if (column == m_column)
        return;
    m_column = column;
    changed();
}

void Table::clickSelected()
{
    const int row = m_selectedRow;
    ask(row);
    act(QStringLiteral("onItemClicked"), {cells(row), std::min(m_column, columnCount() - 1)});
}

void Table::click(const QPointF& place)
{
    const Layout at = layout();
    if (at.bar.contains(place)) {
        const bool isAbove = place.y() < thumbIn(at, firstShownRow(), rowCount()).center().y();
        scrollTo(firstShownRow() + (isAbove ? -at.rows : at.rows));
        return;
    }
    const int row = rowAt(at, place);
    if (row < 0)
        return;
    const double width = at.body.width() / columnCount();
    moveColumn(std::clamp(static_cast<int>((place.x() - at.body.left()) / width), 0, columnCount() - 1) - m_column);
    select(row);
    clickSelected();
}

void Table::doubleClick(const QPointF& place)
{
    if (rowAt(layout(), place) >= 0)
        act(QStringLiteral("onItemDoubleClicked"));
}

bool Table::turnWheel(int rows)
{
    const int room = layout().rows;
    if (room == 0 || rowCount() <= room)
        return false;
    scrollTo(firstShownRow() + rows);
    return true;
}

bool Table::pressKey(int key)
{
    const int count = rowCount();
    if (count == 0)
        return false;
    const bool isSelected = m_selectedRow >= 0 && m_selectedRow < count;
    const int page = std::max(1, layout().rows);
    const auto move = [&](int rows) { select(isSelected ? m_selectedRow + rows : firstShownRow()); };
    switch (key) {
    case Qt::Key_Up:
        move(-1);
        return true;
    case Qt::Key_Down:
        move(1);
        return true;
    case Qt::Key_PageUp:
        move(-page);
        return true;
    case Qt::Key_PageDown:
        move(page);
        return true;
    case Qt::Key_Home:
        select(0);
        return true;
    case Qt::Key_End:
        select(count - 1);
        return true;
    case Qt::Key_Left:
        moveColumn(-1);
        return true;
    case Qt::Key_Right:
        moveColumn(1);
        return true;
    case Qt::Key_Space:
        if (isSelected)
            clickSelected();
        return true;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!isSelected)
            return true;
        clickSelected();
        act(QStringLiteral("onItemDoubleClicked"));
        return true;
    default:
        return false;
    }
}
