#include "host/shapes/curvelegend.h"

#include "host/shapes/curvemark.h"

#include <algorithm>

namespace {

constexpr double gap = 3; // between number, mark and name
constexpr double columnGap = 12;
constexpr double rowHeight = 1.35; // in font sizes

} // namespace

QRectF CurveLegend::draw(const ShapePainter& canvas, const QRectF& area, const std::vector<Entry>& entries,
                         int fontSize, const QColor& textColor, double kept)
{
    const int count = static_cast<int>(entries.size());
    const double height = fontSize * rowHeight;
    const int mostRows = static_cast<int>((area.height() - kept) / height / 2);
    if (count == 0 || mostRows < 1)
        return area;
    const double badge = badgeSize(fontSize);
    const double before = badge + gap + CurveMark::size + gap;
    double widest = 0;
    for (const Entry& entry : entries)
        widest = std::max(widest, ShapePainter::textWidth({fontSize}, entry.name) + 1);
    const double wanted = before + widest + columnGap;
    const int fitting = std::clamp(static_cast<int>(area.width() / wanted), 1, count);
    const int columns = std::max(fitting, (count + mostRows - 1) / mostRows);
    const int rows = (count + columns - 1) / columns;
    const double width = std::min(wanted, area.width() / columns);

    for (int curve = 0; curve < count; ++curve) {
        const Entry& entry = entries[std::size_t(curve)];
        const int row = curve / columns;
        const int column = curve % columns;
        const QRectF item(area.left() + column * width, area.top() + row * height, width, height);
        const double middle = item.center().y();
        CurveMark::drawBadge(canvas, curve, {item.left(), middle - badge / 2, badge, badge}, fontSize, entry.color);
        CurveMark::draw(canvas.painter(), curve, {item.left() + badge + gap + CurveMark::size / 2, middle},
                        entry.color);
        canvas.drawText(item.adjusted(before, 0, -gap, 0), Qt::AlignLeft | Qt::AlignVCenter, {fontSize}, textColor,
                        entry.name);
    }
    return area.adjusted(0, rows * height + gap, 0, 0);
}

double CurveLegend::badgeSize(int fontSize)
{
    return fontSize * 1.2;
}

void CurveLegend::drawBadges(const ShapePainter& canvas, const QRectF& column, std::vector<Badge> badges, int fontSize)
{
    const double size = badgeSize(fontSize);
    const double distance = size + 1;
    const double top = column.top() + size / 2;
    double lowest = std::max(top, column.bottom() - size / 2);
    for (Badge& badge : badges)
        badge.y = std::clamp(badge.y, top, lowest);
    std::stable_sort(badges.begin(), badges.end(), [](const Badge& a, const Badge& b) { return a.y < b.y; });
    for (std::size_t i = 1; i < badges.size(); ++i)
        badges[i].y = std::max(badges[i].y, badges[i - 1].y + distance);
    for (std::size_t i = badges.size(); i-- > 0; lowest = badges[i].y - distance) // back up from the lower edge
        badges[i].y = std::min(badges[i].y, lowest);
    for (const Badge& badge : badges) {
        const double y = std::max(badge.y, top); // too many for the height lie one over the other
        CurveMark::drawBadge(canvas, badge.curve, {column.left(), y - size / 2, size, size}, fontSize, badge.color);
    }
}
