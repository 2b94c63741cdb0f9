#include "host/canvas/pagepicture.h"

#include "host/canvas/canvas.h"
#include "host/canvas/pagerenderer.h"
#include "host/shapes/shapeinput.h"
#include "host/shapes/shapepainter.h"

#include <QFileInfo>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <QSvgGenerator>

namespace {

constexpr int unitsPerInch = 96;
constexpr double pointsPerUnit = 72.0 / unitsPerInch;

tl::unexpected<QString> failed(const QString& fileName, const QString& reason)
{
    return tl::make_unexpected(QStringLiteral("%1: can't be written: %2").arg(fileName, reason));
}

bool draw(QPaintDevice& device, const Canvas& canvas, double zoom)
{
    QPainter painter;
    if (!painter.begin(&device))
        return false;
    painter.fillRect(QRectF(QPointF(), canvas.size() * zoom), canvas.background());
    for (Shape* shape : canvas.shapes())
        PagePicture::drawShape(painter, *shape, QTransform::fromScale(zoom, zoom), nullptr);
    return painter.end();
}

bool drawPdf(QIODevice& file, const Canvas& canvas, double zoom)
{
    QPdfWriter writer(&file);
    writer.setTitle(canvas.title());
    writer.setResolution(unitsPerInch);
    writer.setPageSize(
        QPageSize(canvas.size() * zoom * pointsPerUnit, QPageSize::Point, canvas.title(), QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF());
    return draw(writer, canvas, zoom);
}

bool drawSvg(QIODevice& file, const Canvas& canvas, double zoom)
{
    QSvgGenerator generator;
    generator.setOutputDevice(&file);
    generator.setTitle(canvas.title());
    generator.setResolution(unitsPerInch);
    generator.setSize((canvas.size() * zoom).toSize());
    generator.setViewBox(QRectF(QPointF(), canvas.size() * zoom));
    return draw(generator, canvas, zoom);
}

template <typename Draw>
tl::expected<void, QString> writeVectors(const Canvas& canvas, const QString& fileName, double zoom, const Draw& draw)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || !draw(file, canvas, zoom) || !file.commit())
        return failed(fileName, file.errorString());
    return {};
}

tl::expected<void, QString> writeImage(Canvas& canvas, const QString& fileName, double zoom)
{
    constexpr int mostPixels = 32767; // that painting can count in
    const QSize size = (canvas.size() * zoom).toSize();
    if (size.width() > mostPixels || size.height() > mostPixels)
        return failed(fileName, QStringLiteral("the picture would have more than %1 pixels a side").arg(mostPixels));
    PageRenderer renderer(canvas);
    renderer.setView(size, zoom, {});
    renderer.render();
    if (!renderer.image().save(fileName))
        return failed(fileName, QStringLiteral("no such folder, no right to write there, or no format of images"));
    return {};
}

} // namespace

void PagePicture::drawShape(QPainter& painter, Shape& shape, const QTransform& view, TextPainter* texts)
{
    const StratelInterface* layer = shape.layer();
    if (!shape.isVisible() || (layer && !layer->isVisible()))
        return;
    painter.setWorldTransform(shape.rotation() == 0 ? QTransform::fromTranslate(shape.x(), shape.y()) * view
                                                    : shape.sceneTransform() * view);
    if (painter.opacity() != shape.opacity())
        painter.setOpacity(shape.opacity());
    painter.setRenderHint(QPainter::Antialiasing);
    shape.draw(ShapePainter(painter, texts));
    for (QGraphicsItem* overlay : shape.childItems()) {
        if (overlay->isVisible())
            overlay->paint(&painter, nullptr, nullptr);
    }
}

tl::expected<void, QString> PagePicture::write(Canvas& canvas, const QString& fileName, double zoom)
{
    for (Shape* shape : canvas.shapes()) {
        if (ShapeInput* input = shape->input())
            input->prepare(); // as a view does before it draws
    }
    const QString suffix = QFileInfo(fileName).suffix().toLower();
    if (suffix == QLatin1String("pdf"))
        return writeVectors(canvas, fileName, zoom, &drawPdf);
    return suffix == QLatin1String("svg") ? writeVectors(canvas, fileName, zoom, &drawSvg)
                                          : writeImage(canvas, fileName, zoom);
}
