#include "host/alarmview/elidedlabel_p.h"

#include "host/alarmview/alarmcells_p.h"

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
}

ElidedLabel::~ElidedLabel() = default;

void ElidedLabel::setFullText(const QString& text)
{
    m_text = text.simplified();
    setAccessibleName(m_text);
    updateGeometry();
    elide();
}

QSize ElidedLabel::sizeHint() const
{
    ensurePolished();
    return {fontMetrics().horizontalAdvance(m_text) + 2, QLabel::sizeHint().height()};
}

QSize ElidedLabel::minimumSizeHint() const
{
    return {0, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::resizeEvent(QResizeEvent* event)
{
    QLabel::resizeEvent(event);
    elide();
}

void ElidedLabel::elide()
{
    const QString shown = fontMetrics().elidedText(m_text, Qt::ElideRight, contentsRect().width());
    setText(shown);
    setToolTip(shown == m_text ? QString() : AlarmCells::plainToolTip(m_text));
}
