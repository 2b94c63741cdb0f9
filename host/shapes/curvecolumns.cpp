#include "host/shapes/curvecolumns.h"

#include <QColor>
#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace {

constexpr float infinity = std::numeric_limits<float>::infinity();
constexpr int bandHeight = 64; // rows at a time, so that they stay in the processor's cache
constexpr int steps = 256;     // of coverage

/// The colour's pixel for each coverage of a pixel.
std::array<QRgb, steps> shades(const QColor& color)
{
    std::array<QRgb, steps> pixels{};
    for (int i = 0; i < steps; ++i)
        pixels[std::size_t(i)] =
            qPremultiply(qRgba(color.red(), color.green(), color.blue(), color.alpha() * i / (steps - 1)));
    return pixels;
}

} // namespace

void CurveColumns::reset(int left, int count)
{
    m_left = left;
    m_columns.assign(std::size_t(std::max(count, 0)), {infinity, -infinity});
}

void CurveColumns::add(const QPointF* points, int count)
{
    if (count == 1)
        addStretch(points[0], points[0]);
    for (int i = 1; i < count; ++i)
        addStretch(points[i - 1], points[i]);
}

void CurveColumns::addStretch(const QPointF& from, const QPointF& to)
{
    const double width = to.x() - from.x();
    const double end = m_left + double(m_columns.size());
    if (to.x() < m_left || from.x() >= end)
        return;
    const auto heightAt = [&](double x) { return from.y() + (to.y() - from.y()) * (x - from.x()) / width; };
    const int first = static_cast<int>(std::floor(std::max(from.x(), double(m_left))));
    const int last = static_cast<int>(std::floor(std::min(to.x(), end - 1)));
    for (int x = first; x <= last; ++x) {
        const auto entry = static_cast<float>(x <= from.x() ? from.y() : heightAt(x));
        const auto exit = static_cast<float>(x + 1 >= to.x() ? to.y() : heightAt(x + 1));
        Extent& column = m_columns[std::size_t(x - m_left)];
        column = {std::min({column.top, entry, exit}), std::max({column.bottom, entry, exit})};
    }
}

void CurveColumns::lead(double width)
{
    const double radius = width / 2;
    const int beside = std::clamp(static_cast<int>(std::ceil(radius - 0.5)), 0, 50);
    const int count = static_cast<int>(m_columns.size());
    m_touched.assign(m_columns.size(), {infinity, -infinity});
    for (int distance = -beside; distance <= beside; ++distance) {
        const auto reach = static_cast<float>(std::sqrt(std::max(0.0, radius * radius - double(distance) * distance)));
        for (int x = std::max(0, -distance); x < std::min(count, count - distance); ++x) {
            const int other = x + distance;
            const Extent& column = m_columns[std::size_t(other)];
            Extent& touched = m_touched[std::size_t(x)];
            touched = {std::min(touched.top, column.top - reach), std::max(touched.bottom, column.bottom + reach)};
        }
    }
}

void CurveColumns::draw(QPainter& painter, double width, const QColor& color, int top, int bottom)
{
    lead(width);
    const int count = static_cast<int>(m_touched.size());
    if (count == 0)
        return;
    float highest = infinity;
    float lowest = -infinity;
    for (const Extent& column : m_touched) {
        highest = std::min(highest, column.top);
        lowest = std::max(lowest, column.bottom);
    }
    const int begin = static_cast<int>(std::floor(std::clamp(highest, float(top), float(bottom))));
    const int end = static_cast<int>(std::ceil(std::clamp(lowest, float(top), float(bottom))));

    const std::array<QRgb, steps> pixels = shades(color);
    if (m_band.width() != count)
        m_band = QImage(count, bandHeight, QImage::Format_ARGB32_Premultiplied);
    for (int row = begin; row < end; row += bandHeight) {
        const int rows = std::min(bandHeight, end - row);
        for (int y = 0; y < rows; ++y) {
            auto* line = reinterpret_cast<QRgb*>(m_band.scanLine(y));
            const auto upper = static_cast<float>(row + y);
            for (int x = 0; x < count; ++x) {
                const Extent& column = m_touched[std::size_t(x)];
                const float covered = std::min(column.bottom, upper + 1) - std::max(column.top, upper);
                line[x] = pixels[static_cast<std::size_t>(std::clamp(covered, 0.0F, 1.0F) * (steps - 1))];
            }
        }
        painter.drawImage(QPoint(m_left, row), m_band, QRect(0, 0, count, rows));
    }
}
