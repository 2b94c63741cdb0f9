#include "host/shapes/textpainter.h"

#include <QFontMetricsF>
#include <QtMath>

#include <cmath>

namespace {

constexpr ushort firstCharacter = 0x20;
constexpr ushort lastCharacter = 0x7E;
constexpr int characterCount = lastCharacter - firstCharacter + 1;
constexpr int mostSets = 64; // styles times colours; more than a page uses at once
constexpr int padding = 2;   // glyphs may reach beyond their advance by a little

bool isPlain(const QString& text)
{
    for (const QChar character : text) {
        if (character.unicode() < firstCharacter || character.unicode() > lastCharacter)
            return false;
    }
    return true;
}

} // namespace

/// The glyphs of one style in one colour at one scale, drawn when first needed.
struct TextPainter::GlyphSet
{
    struct Glyph
    {
        QImage image;
        double advance = -1; ///< in device pixels; negative: not measured yet
    };

    GlyphSet(TextStyle style, const QColor& glyphColor, double glyphScale) : color(glyphColor), scale(glyphScale)
    {
        font = ShapePainter::font(style);
        font.setPixelSize(std::max(1, qRound(style.pixelSize * scale)));
        font.setHintingPreference(QFont::PreferDefaultHinting);
        font.setStyleStrategy(QFont::PreferAntialias);
        font.setKerning(false);
        const QFontMetricsF metrics(ShapePainter::font(style)); // the line lies where plain drawing has it
        ascent = metrics.ascent() * scale;
        height = metrics.height() * scale;
    }

    Glyph& measured(QChar character)
    {
        Glyph& glyph = glyphs[character.unicode() - firstCharacter];
        if (glyph.advance < 0)
            glyph.advance = std::round(QFontMetricsF(font).horizontalAdvance(character));
        return glyph;
    }

    const Glyph& drawn(QChar character)
    {
        Glyph& glyph = measured(character);
        if (!glyph.image.isNull() || character == QLatin1Char(' '))
            return glyph;
        glyph.image = QImage(qCeil(glyph.advance) + 2 * padding, qCeil(height) + 2 * padding,
                             QImage::Format_ARGB32_Premultiplied);
        glyph.image.fill(Qt::transparent);
        QPainter painter(&glyph.image);
        painter.setFont(font);
        painter.setPen(color);
        painter.drawText(QPointF(padding, padding + qRound(ascent)), QString(character));
        return glyph;
    }

    QFont font;
    QColor color;
    double scale;
    double ascent = 0;
    double height = 0;
    std::array<Glyph, characterCount> glyphs;
};

TextPainter::TextPainter() = default;
TextPainter::~TextPainter() = default;

TextPainter::GlyphSet* TextPainter::glyphs(TextStyle style, const QColor& color, double scale)
{
    if (scale != m_scale) {
        m_sets.clear();
        m_last = nullptr;
        m_scale = scale;
    }
    const quint64 key = quint64(color.rgba()) << 32 | quint64(quint32(style.pixelSize) << 1 | quint32(style.isBold));
    if (m_last && key == m_lastKey)
        return m_last;
    auto found = m_sets.find(key);
    if (found == m_sets.end()) {
        if (m_sets.size() >= mostSets)
            m_sets.clear();
        found = m_sets.insert(key, std::make_shared<GlyphSet>(style, color, scale));
    }
    m_last = found->get();
    m_lastKey = key;
    return m_last;
}

bool TextPainter::draw(QPainter& painter, const QRectF& rect, Qt::Alignment alignment, TextStyle style,
                       const QColor& color, const QString& text)
{
    const QTransform& transform = painter.deviceTransform();
    if (transform.type() > QTransform::TxScale || transform.m11() != transform.m22() || transform.m11() <= 0 ||
        !isPlain(text))
        return false;
    GlyphSet& set = *glyphs(style, color, transform.m11());
    double width = 0;
    for (const QChar character : text)
        width += set.measured(character).advance;
    const QRectF box = transform.mapRect(rect);
    if (width > box.width() + 1) // a pixel's worth is rounding, no overflow
        return false;

    double x = box.left();
    if (alignment & Qt::AlignRight)
        x = box.right() - width;
    else if (alignment & Qt::AlignHCenter)
        x = box.center().x() - width / 2;
    double y = box.top();
    if (alignment & Qt::AlignBottom)
        y = box.bottom() - set.height;
    else if (alignment & Qt::AlignVCenter)
        y = box.center().y() - set.height / 2;

    const QTransform before = painter.worldTransform();
    painter.setWorldTransform(before * transform.inverted()); // device pixels, whatever stands between
    QPoint place(qRound(x) - padding, qRound(y + set.ascent) - qRound(set.ascent) - padding);
    for (const QChar character : text) {
        const GlyphSet::Glyph& glyph = set.drawn(character);
        if (!glyph.image.isNull())
            painter.drawImage(place, glyph.image);
        place.rx() += static_cast<int>(glyph.advance);
    }
    painter.setWorldTransform(before);
    return true;
}

int TextPainter::glyphCount() const
{
    int count = 0;
    for (const auto& set : m_sets) {
        for (const GlyphSet::Glyph& glyph : set->glyphs)
            count += glyph.image.isNull() ? 0 : 1;
    }
    return count;
}
