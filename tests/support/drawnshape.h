#pragma once

#include "host/shapes/shape.h"
#include "host/shapes/shapepainter.h"

#include <QImage>
#include <QPainter>
#include <QRect>

#include <cmath>
#include <cstdlib>

/// A shape's picture on a transparent ground that reaches \p around units beyond its bounding rectangle.
inline QImage drawn(const Shape& shape, double scale = 1, TextPainter* texts = nullptr, double around = 40)
{
    const QRectF area = shape.boundingRect().adjusted(-around, -around, around, around);
    QImage image(int(std::ceil(area.width() * scale)), int(std::ceil(area.height() * scale)),
                 QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    painter.translate(-area.topLeft());
    shape.draw(ShapePainter(painter, texts));
    return image;
}

/// The smallest rectangle that holds every pixel of \p image that was touched.
inline QRect inkOf(const QImage& image)
{
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        int first = 0;
        while (first < image.width() && line[first] == 0)
            ++first;
        int last = image.width() - 1;
        while (last > first && line[last] == 0)
            --last;
        if (first < image.width())
            ink |= QRect(QPoint(first, y), QPoint(last, y));
    }
    return ink;
}

/// How much two pictures of one size differ without their colours, on a grey ground: the mean over all pixels, 0 to 255.
inline double greyDifference(const QImage& one, const QImage& other)
{
    const auto grey = [](const QImage& image) {
        QImage ground(image.size(), QImage::Format_RGB32);
        ground.fill(QColor(0xe8, 0xec, 0xef));
        QPainter(&ground).drawImage(0, 0, image);
        return ground;
    };
    const QImage first = grey(one);
    const QImage second = grey(other);
    double sum = 0;
    for (int y = 0; y < first.height(); ++y) {
        for (int x = 0; x < first.width(); ++x)
            sum += std::abs(qGray(first.pixel(x, y)) - qGray(second.pixel(x, y)));
    }
    return sum / (double(first.width()) * first.height());
}
