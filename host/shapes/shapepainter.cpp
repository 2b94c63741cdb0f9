#include "host/shapes/shapepainter.h"

#include "host/shapes/textpainter.h"

#include <QFont>
#include <QFontMetricsF>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <map>

namespace {

constexpr double lineHeight = 1.2; // of the family, in sizes
constexpr double spill = 2;        // by which a line may overlap its rectangle; it is blank there for the most part
const QChar ellipsis(0x2026);

/// Where a painter's units lie among the device's pixels.
class PixelGrid
{
public:
    explicit PixelGrid(const QPainter& painter) : m_transform(painter.deviceTransform()) {}

    bool isUsable() const
    {
        return m_transform.type() <= QTransform::TxScale && m_transform.m11() > 0 &&
               m_transform.m11() == m_transform.m22();
    }
    double scale() const { return m_transform.m11(); }
    QPointF toDevice(const QPointF& point) const { return m_transform.map(point); }
    QPointF fromDevice(double x, double y) const
    {
        return {(x - m_transform.dx()) / scale(), (y - m_transform.dy()) / scale()};
    }

private:
    QTransform m_transform;
};

QRectF onWholePixels(const PixelGrid& grid, const QRectF& rect)
{
    if (!grid.isUsable())
        return rect;
    const QPointF topLeft = grid.toDevice(rect.topLeft());
    const QPointF bottomRight = grid.toDevice(rect.bottomRight());
    const double left = std::round(topLeft.x());
    const double top = std::round(topLeft.y());
    return {grid.fromDevice(left, top), grid.fromDevice(std::max(std::round(bottomRight.x()), left + 1),
                                                        std::max(std::round(bottomRight.y()), top + 1))};
}

// Fills whole pixels of the device: several times faster than an outline, and the same to the pixel.
class PixelFiller
{
public:
    explicit PixelFiller(QPainter& painter)
        : m_painter(painter),
          m_before(painter.worldTransform()),
          m_wasAntialiased(painter.testRenderHint(QPainter::Antialiasing))
    {
        m_painter.setWorldTransform(m_before * painter.deviceTransform().inverted());
        m_painter.setRenderHint(QPainter::Antialiasing, false);
    }
    ~PixelFiller()
    {
        m_painter.setRenderHint(QPainter::Antialiasing, m_wasAntialiased);
        m_painter.setWorldTransform(m_before);
    }
    Q_DISABLE_COPY(PixelFiller)

    void fillFrame(const QRect& outer, int width, const QColor& fill, const QColor& line)
    {
        const QRect inner = outer.adjusted(width, width, -width, -width);
        if (width > 0 && fill.isValid() && fill.alpha() == 255) {
            m_painter.fillRect(outer, line);
            m_painter.fillRect(inner, fill);
            return;
        }
        if (fill.isValid())
            m_painter.fillRect(inner, fill);
        if (width <= 0)
            return;
        m_painter.fillRect(QRect(outer.left(), outer.top(), outer.width(), width), line);
        m_painter.fillRect(QRect(outer.left(), inner.bottom() + 1, outer.width(), width), line);
        m_painter.fillRect(QRect(outer.left(), inner.top(), width, inner.height()), line);
        m_painter.fillRect(QRect(inner.right() + 1, inner.top(), width, inner.height()), line);
    }

private:
    QPainter& m_painter;
    QTransform m_before;
    bool m_wasAntialiased;
};

} // namespace

void ShapePainter::drawText(const QRectF& rect, Qt::Alignment alignment, TextStyle style, const QColor& color,
                            const QString& text) const
{
    if (text.isEmpty() || !color.isValid() || rect.isEmpty())
        return;
    style.pixelSize =
        std::clamp(style.pixelSize, 1, std::max(1, static_cast<int>((rect.height() + 2 * spill) / lineHeight)));
    if (m_texts && m_texts->draw(m_painter, rect, alignment, style, color, text))
        return;
    QString shown = text;
    if (textWidth(style, text) > rect.width()) {
        shown = QFontMetricsF(font(style)).elidedText(text, Qt::ElideRight, rect.width());
        if (shown.isEmpty() || textWidth(style, shown) > rect.width()) { // not even the dots fit
            shown = ellipsis;
            style.pixelSize = std::clamp(static_cast<int>(rect.width()), 1, style.pixelSize);
        }
    }
    m_painter.setFont(font(style));
    m_painter.setPen(color);
    m_painter.drawText(rect, static_cast<int>(alignment) | Qt::TextSingleLine | Qt::TextDontClip, shown);
}

void ShapePainter::drawFrame(const QRectF& rect, const QColor& fill, const QColor& line, double lineWidth,
                             double radius) const
{
    const double widest = std::min(rect.width(), rect.height());
    const double width = line.isValid() ? std::min(crispWidth(lineWidth), widest) : 0;
    if (!fill.isValid() && width <= 0)
        return;
    if (2 * width >= widest) { // the lines meet: nothing is left between them
        drawFrame(rect, line, QColor(), 0, radius);
        return;
    }
    const PixelGrid grid(m_painter);
    if (radius <= 0 && grid.isUsable()) {
        const QRectF device = QRectF(grid.toDevice(rect.topLeft()), grid.toDevice(rect.bottomRight()));
        const QPoint topLeft(qRound(device.left()), qRound(device.top()));
        const QSize size(std::max(qRound(device.right()) - topLeft.x(), 1),
                         std::max(qRound(device.bottom()) - topLeft.y(), 1));
        PixelFiller(m_painter).fillFrame({topLeft, size}, qRound(width * grid.scale()), fill, line);
        return;
    }
    const double half = width / 2;
    const QRectF outline = onWholePixels(grid, rect).adjusted(half, half, -half, -half);
    m_painter.setPen(width > 0 ? QPen(line, width, Qt::SolidLine, Qt::FlatCap, Qt::MiterJoin) : QPen(Qt::NoPen));
    m_painter.setBrush(fill.isValid() ? QBrush(fill) : QBrush(Qt::NoBrush));
    const double curve = std::clamp(radius - half, 0.0, widest / 2);
    if (radius > 0)
        m_painter.drawRoundedRect(outline, curve, curve);
    else
        m_painter.drawRect(outline);
}

void ShapePainter::drawRule(const QPointF& from, const QPointF& to, const QColor& color, double width) const
{
    if (!color.isValid() || width <= 0)
        return;
    m_painter.setPen(QPen(color, crispWidth(width), Qt::SolidLine, Qt::FlatCap));
    m_painter.drawLine(crisp(from, width), crisp(to, width));
}

double ShapePainter::crispWidth(double width) const
{
    const PixelGrid grid(m_painter);
    if (width <= 0 || !grid.isUsable())
        return std::max(width, 0.0);
    return std::max(std::round(width * grid.scale()), 1.0) / grid.scale();
}

QPointF ShapePainter::crisp(const QPointF& point, double width) const
{
    const PixelGrid grid(m_painter);
    if (!grid.isUsable())
        return point;
    const bool isOdd = std::fmod(std::max(std::round(width * grid.scale()), 1.0), 2) == 1;
    const double middle = isOdd ? 0.5 : 0; // of a pixel
    const QPointF device = grid.toDevice(point);
    return grid.fromDevice(std::round(device.x() - middle) + middle, std::round(device.y() - middle) + middle);
}

const QFont& ShapePainter::font(TextStyle style)
{
    static std::map<std::pair<int, bool>, QFont> fonts;
    const auto [place, isNew] = fonts.try_emplace({style.pixelSize, style.isBold});
    if (isNew) {
        QFont& font = place->second;
        font.setFamily(QStringLiteral("DejaVu Sans"));
        font.setStyleHint(QFont::SansSerif);
        font.setPixelSize(std::max(style.pixelSize, 1));
        font.setBold(style.isBold);
        font.setHintingPreference(QFont::PreferNoHinting); // widths grow in step with the zoom
    }
    return place->second;
}

double ShapePainter::textWidth(TextStyle style, const QString& text)
{
    return QFontMetricsF(font(style)).horizontalAdvance(text);
}
