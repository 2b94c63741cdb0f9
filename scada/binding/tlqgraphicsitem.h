#pragma once

#include "scada/scadaexport.h"

#include <QColor>
#include <QGraphicsItem>
#include <QRectF>
#include <QString>

/// The quality overlay of a tag action: one short stroke across its shape for each mark that the bound value carries
/// (tag, limit, quality), and a thicker red one when the data source has failed.
///
/// Made as a child of the shape's graphics item, in whose coordinates it lies and with which it dies. Its setters
/// schedule no repaint and announce no change of geometry: whoever calls them updates the scene. It takes no input.
class KORVANE_SCADA_EXPORT TlqGraphicsItem : public QGraphicsItem
{
public:
    explicit TlqGraphicsItem(QGraphicsItem* parent);
    ~TlqGraphicsItem() override;

    /// The area of the shape.
    void setRect(const QRectF& rect) { m_rect = rect; }

    /// Sets which marks are shown, from the low eight bits of each code: T of 0x0F, L of 0x1F, Q of 0x6D (0x02, 0x10
    /// and 0x80 alone draw no mark). The source-failed state stays.
    void setTlq(int tag, int limit, int quality);
    /// Shows or hides the source-failed stroke; the marks stay.
    void setSourceFail(bool fail);
    /// Whether no mark is shown; the source-failed stroke does not count.
    bool isNoTLQ() const;
    /// Everything that paint() shows as one number, for whoever repaints only what changed; 0 for nothing.
    int shownState() const { return m_state; }

    QRectF boundingRect() const override { return m_rect; }
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* widget) override;

private:
    enum StateBit : quint8 { TagShown = 0x01, LimitShown = 0x02, QualityShown = 0x04, SourceFailed = 0x08 };

    bool isHiddenByLayer() const;

    QColor m_color; // kept for the item, not painted with
    QString m_text; // kept empty, not painted
    QRectF m_rect;
    quint8 m_state = 0; ///< StateBit
};
