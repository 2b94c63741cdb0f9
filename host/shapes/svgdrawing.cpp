#include "host/shapes/svgdrawing.h"

#include <QFile>
#include <QHash>
#include <QLoggingCategory>
#include <QPainter>
#include <QSvgRenderer>
#include <QXmlStreamReader>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cstring>
#include <utility>

namespace {

constexpr qint64 largestFile = 4194304; // 4 MiB
constexpr int mostDrawings = 500;

using Drawings = QHash<std::pair<QString, int>, std::shared_ptr<SvgDrawing>>;

Drawings& loaded()
{
    static Drawings drawings;
    return drawings;
}

QLoggingCategory::CategoryFilter filterBefore = nullptr;

void switchOffParser(QLoggingCategory* category)
{
    if (filterBefore)
        filterBefore(category);
    if (std::strncmp(category->categoryName(), "qt.svg", 6) == 0)
        category->setEnabled(QtWarningMsg, false);
}

void switchOffParserOnce()
{
    static const bool isDone = [] {
        filterBefore = QLoggingCategory::installFilter(switchOffParser);
        return true;
    }();
    Q_UNUSED(isDone)
}

bool isOtherState(const QString& id, int state)
{
    const QLatin1String prefix("state");
    if (!id.startsWith(prefix))
        return false;
    bool isNumber = false;
    const int number = id.midRef(prefix.size()).toInt(&isNumber);
    return isNumber && number != state;
}

/// The document without the elements of other states; empty when it is not well-formed.
QByteArray onlyState(const QByteArray& document, int state)
{
    QXmlStreamReader reader(document);
    reader.setNamespaceProcessing(false); // names go out as they came in
    QByteArray result;
    QXmlStreamWriter writer(&result);
    while (!reader.atEnd()) {
        reader.readNext();
        if (reader.isStartElement() && isOtherState(reader.attributes().value(QLatin1String("id")).toString(), state))
            reader.skipCurrentElement();
        else if (reader.tokenType() != QXmlStreamReader::Invalid && !reader.isDTD())
            writer.writeCurrentToken(reader);
    }
    return reader.hasError() ? QByteArray() : result;
}

} // namespace

SvgDrawing::SvgDrawing(std::unique_ptr<QSvgRenderer> renderer) : m_renderer(std::move(renderer))
{
    m_renderer->setFramesPerSecond(0); // moving drawings stand still: no timer runs for them
    m_renderer->setAspectRatioMode(Qt::KeepAspectRatio);
}

SvgDrawing::~SvgDrawing() = default;

std::shared_ptr<SvgDrawing> SvgDrawing::of(const QString& path, int state)
{
    const auto key = std::pair(path, state);
    const auto known = loaded().constFind(key);
    if (known != loaded().constEnd())
        return *known;
    switchOffParserOnce();
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > largestFile)
        return nullptr;
    const QByteArray document = onlyState(file.readAll(), state);
    if (document.isEmpty())
        return nullptr;
    auto renderer = std::make_unique<QSvgRenderer>();
    if (!renderer->load(document) || renderer->viewBoxF().isEmpty())
        return nullptr;
    std::shared_ptr<SvgDrawing> drawing(new SvgDrawing(std::move(renderer)));
    if (loaded().size() >= mostDrawings)
        forgetAll(); // those in use live on with their symbols
    loaded().insert(key, drawing);
    return drawing;
}

void SvgDrawing::forgetAll()
{
    loaded().clear();
}

void SvgDrawing::draw(QPainter& painter, const QRectF& rect) const
{
    painter.save();
    painter.setClipRect(rect, Qt::IntersectClip);
    m_renderer->render(&painter, rect);
    painter.restore();
}
