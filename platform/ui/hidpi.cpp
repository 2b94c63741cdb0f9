#include "platform/ui/hidpi.h"

#include <QApplication>
#include <QFileInfo>
#include <QPainter>
#include <QScreen>
#include <QStyle>
#include <QSvgRenderer>
#include <QWidget>
#include <QtMath>

QPixmap HiDPI::dpiScaledPixmap(const QString& resourcePath, const QWidget* widget)
{
    if (!QFileInfo(resourcePath).isFile())
        return {};
    QSvgRenderer drawing(resourcePath);
    if (!drawing.isValid())
        return {};
    drawing.setAspectRatioMode(Qt::KeepAspectRatio);

    const QStyle* style = widget ? widget->style() : QApplication::style();
    const qreal ratio = widget ? widget->devicePixelRatioF() : QGuiApplication::primaryScreen()->devicePixelRatio();
    // What QToolButton takes outside a tool bar.
    const int side = qCeil(style->pixelMetric(QStyle::PM_ButtonIconSize, nullptr, widget) * ratio);
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawing.render(&painter);
    painter.end();
    picture.setDevicePixelRatio(ratio);
    return picture;
}
