#include "host/scriptediting/linenumberarea_p.h"

#include "host/scriptediting/scriptcolours_p.h"
#include "host/scriptediting/scripteditor.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QTextBlock>

namespace {

constexpr int gap = 6; ///< pixels beside the numbers

} // namespace

LineNumberArea::LineNumberArea(ScriptEditor& editor) : QWidget(&editor), m_editor(editor)
{
    setObjectName(QStringLiteral("lineNumbers"));
}

LineNumberArea::~LineNumberArea() = default;

QSize LineNumberArea::sizeHint() const
{
    const int digits = qMax(2, QString::number(m_editor.blockCount()).size());
    return {2 * gap + digits * m_editor.fontMetrics().horizontalAdvance(QLatin1Char('9')), 0};
}

QRect LineNumberArea::placeOf(const QTextBlock& line) const
{
    const QRectF place = m_editor.blockBoundingGeometry(line).translated(m_editor.contentOffset());
    return {0, qRound(place.top()), width(), qRound(place.bottom()) - qRound(place.top())};
}

void LineNumberArea::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    const ScriptColours colours(m_editor.palette());
    painter.fillRect(event->rect(), colours.margin());
    painter.setFont(m_editor.font());
    const QTextBlock current = m_editor.textCursor().block();
    for (QTextBlock line = m_editor.firstVisibleBlock(); line.isValid(); line = line.next()) {
        const QRect place = placeOf(line);
        if (place.top() > event->rect().bottom())
            return;
        const int number = line.blockNumber() + 1;
        if (number == m_editor.errorLine())
            painter.fillRect(place, colours.errorLine());
        else if (line == current)
            painter.fillRect(place, colours.currentLine());
        painter.setPen(line == current ? colours.text() : colours.faintText());
        painter.drawText(place.adjusted(0, 0, -gap, 0), Qt::AlignRight | Qt::AlignVCenter, QString::number(number));
    }
}

void LineNumberArea::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton)
        return;
    m_editor.setFocus(Qt::MouseFocusReason);
    const QTextBlock line = lineAt(event->pos().y());
    m_firstSelected = line.blockNumber();
    selectTo(line);
}

void LineNumberArea::mouseMoveEvent(QMouseEvent* event)
{
    if (event->buttons() & Qt::LeftButton)
        selectTo(lineAt(event->pos().y()));
}

void LineNumberArea::wheelEvent(QWheelEvent* event)
{
    QCoreApplication::sendEvent(m_editor.viewport(), event);
}

QTextBlock LineNumberArea::lineAt(int y) const
{
    return m_editor.cursorForPosition({0, y}).block();
}

void LineNumberArea::selectTo(const QTextBlock& line)
{
    const QTextBlock first = m_editor.document()->findBlockByNumber(m_firstSelected);
    const bool isUpward = line.blockNumber() < m_firstSelected;
    QTextCursor cursor(isUpward ? line : first);
    const int begin = cursor.position();
    const QTextBlock& last = isUpward ? first : line;
    cursor.setPosition(last.position() + last.length() - 1);
    cursor.movePosition(QTextCursor::NextBlock); // so that a cut takes the line whole; the last one has none behind
    const int end = cursor.position();
    cursor.setPosition(isUpward ? end : begin);
    cursor.setPosition(isUpward ? begin : end, QTextCursor::KeepAnchor);
    m_editor.setTextCursor(cursor);
}
