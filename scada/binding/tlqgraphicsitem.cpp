#include "scada/binding/tlqgraphicsitem.h"

#include "platform/core/korvanefunction.h"
#include "platform/core/stratelinterface.h"
#include "platform/core/tesselinterface.h"
#include "platform/data/valuemarks.h"

#include <QPainter>
#include <QPen>

namespace {

// Which bits of a code draw its mark. Quality bits for "substituted", "estimated" and "test" are left out on purpose.
constexpr int tagMask =
    ValueMark::ControlInhibited | ValueMark::AlarmInhibited | ValueMark::ScanInhibited | ValueMark::InformationTag;
constexpr int limitMask = ValueMark::BelowLow | ValueMark::AboveHigh | ValueMark::BelowLowLow |
                          ValueMark::AboveHighHigh | ValueMark::Abnormal;
constexpr int qualityMask = ValueMark::Invalid | ValueMark::Stale | ValueMark::CommunicationFailed |
                            ValueMark::OutOfRange | ValueMark::Oscillating;
static_assert(tagMask == 0x0F && limitMask == 0x1F && qualityMask == 0x6D, "kept: hosts send these bits");

constexpr qreal sourceFailWidth = 2.0; // in item units: it scales with the view, the cosmetic strokes don't

} // namespace

TlqGraphicsItem::TlqGraphicsItem(QGraphicsItem* parent) : QGraphicsItem(parent)
{
    setFlag(ItemIsMovable, false);
    setFlag(ItemIsSelectable, false);
    setFlag(ItemIsFocusable, false);
    setFlag(ItemStacksBehindParent, false);
}

TlqGraphicsItem::~TlqGraphicsItem() = default;

void TlqGraphicsItem::setTlq(int tag, int limit, int quality)
{
    const int shown = ((tag & tagMask) ? TagShown : 0) | ((limit & limitMask) ? LimitShown : 0) |
                      ((quality & qualityMask) ? QualityShown : 0);
    m_state = static_cast<quint8>((m_state & SourceFailed) | shown);
    m_text.clear();
}

void TlqGraphicsItem::setSourceFail(bool fail)
{
    m_state = static_cast<quint8>(fail ? m_state | SourceFailed : m_state & ~SourceFailed);
}

bool TlqGraphicsItem::isNoTLQ() const
{
    return (m_state & (TagShown | LimitShown | QualityShown)) == 0;
}

bool TlqGraphicsItem::isHiddenByLayer() const
{
    TesselInterface* shape = KorvaneFunction::GraphicsItemToTessel(parentItem());
    const StratelInterface* layer = shape ? shape->layer() : nullptr;
    return layer && (!layer->isVisible() || !layer->areMarksShown());
}

void TlqGraphicsItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (isHiddenByLayer())
        return;

    painter->save();
    painter->setBrush(Qt::NoBrush);
    painter->setRenderHint(QPainter::Antialiasing, false);
    QPen pen;
    pen.setWidth(0);
    pen.setJoinStyle(Qt::MiterJoin);

    QLineF stroke(m_rect.left(), m_rect.center().y(), m_rect.right(), m_rect.center().y());
    bool isUsed = false;
    const auto draw = [&](const QColor& color) {
        pen.setColor(color);
        painter->setPen(pen);
        if (isUsed)
            stroke.translate(0, 1);
        painter->drawLine(stroke);
    };
    if (m_state & TagShown) {
        draw(QColor(Qt::cyan));
        isUsed = true;
    }
    if (m_state & LimitShown) {
        draw(QColor(Qt::magenta));
        isUsed = true;
    }
    if (m_state & QualityShown)
        draw(QColor(Qt::yellow)); // kept: the stroke does not count as used, so a failed source is drawn onto it
    if (m_state & SourceFailed) {
        pen.setWidthF(sourceFailWidth);
        draw(QColor(Qt::red));
    }
    painter->restore();
}
