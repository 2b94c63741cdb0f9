#include "host/design/pointdrop.h"

#include "host/canvas/canvas.h"
#include "host/canvas/canvasview.h"
#include "host/design/designdocument.h"
#include "platform/ui/kvpointmimedata.h"

#include <QDropEvent>
#include <QMenu>
#include <QTimer>

namespace {

const KVPointMimeData* pointOf(const QDropEvent& event)
{
    return qobject_cast<const KVPointMimeData*>(event.mimeData());
}

QString tagOf(const KVPointMimeData& point)
{
    return point.text(); // tag and field
}

} // namespace

PointDrop::PointDrop(CanvasView& view, DesignDocument& document, QObject* parent)
    : QObject(parent),
      m_view(view),
      m_document(document),
      m_frame(new QRubberBand(QRubberBand::Rectangle, view.viewport()))
{
    view.setAcceptDrops(true);
    view.viewport()->installEventFilter(this);
}

PointDrop::~PointDrop() = default;

bool PointDrop::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::DragEnter:
        // Also beside the page: what is refused here hears of no move onto it.
        event->setAccepted(pointOf(static_cast<QDropEvent&>(*event)));
        return true;
    case QEvent::DragMove:
        move(static_cast<QDragMoveEvent&>(*event));
        return true;
    case QEvent::DragLeave:
        m_frame->hide();
        return true;
    case QEvent::Drop:
        m_frame->hide();
        drop(static_cast<QDropEvent&>(*event));
        return true;
    default:
        return QObject::eventFilter(watched, event);
    }
}

bool PointDrop::isOnPage(QPoint place) const
{
    return QRectF(QPointF(), m_view.canvas().size()).contains(m_view.toPage(place));
}

// Null for the page itself.
Shape* PointDrop::shapeFor(QPoint place) const
{
    Shape* shape = m_view.canvas().shapeAt(m_view.toPage(place));
    return shape && m_document.canBind(*shape) ? shape : nullptr;
}

void PointDrop::move(QDragMoveEvent& event)
{
    const KVPointMimeData* point = pointOf(event);
    if (!point || !isOnPage(event.pos())) {
        m_frame->hide();
        event.ignore();
        return;
    }
    const Shape* shape = shapeFor(event.pos());
    m_frame->setGeometry(shape
                             ? m_view.viewportRect(*shape)
                             : m_view.viewportRect(m_document.readOutPlace(tagOf(*point), m_view.toPage(event.pos()))));
    m_frame->show();
    event.setDropAction(Qt::CopyAction);
    event.accept(); // for this place only: the next may be another
}

void PointDrop::drop(QDropEvent& event)
{
    const KVPointMimeData* point = pointOf(event);
    if (!point || !isOnPage(event.pos())) {
        event.ignore();
        return;
    }
    event.setDropAction(Qt::CopyAction);
    event.accept();
    Shape* shape = shapeFor(event.pos());
    if (!shape) {
        Q_EMIT dropped(&m_document.addReadOut(tagOf(*point), m_view.toPage(event.pos())));
        return;
    }
    const bool isTrend = m_document.canAddBinding(*shape) && !m_document.bindings(*shape).empty();
    if (m_document.boundObjects(*shape).size() > 1 || isTrend)
        ask(*shape, point->getData(), m_view.viewport()->mapToGlobal(event.pos()));
    else
        bind(*shape, point->getData());
}

void PointDrop::bind(Shape& shape, const Korvane::BrowerItemInfo& item)
{
    const QStringList objects = m_document.boundObjects(shape);
    if (objects.isEmpty())
        m_document.addBinding(shape, item);
    else
        m_document.replaceObject(shape, objects.first(), item);
    Q_EMIT dropped(&shape);
}

// Comes up when the drag is over, which the drop is still a part of.
void PointDrop::ask(Shape& shape, const Korvane::BrowerItemInfo& item, QPoint place)
{
    auto* menu = new QMenu(&m_view);
    menu->setObjectName(QStringLiteral("bindings"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(tr("Show %1 instead of").arg(item.tag))->setEnabled(false);
    menu->addSeparator();
    for (const QString& object : m_document.boundObjects(shape)) {
        menu->addAction(QString(object).replace(QLatin1Char('&'), QLatin1String("&&")), this,
                        [this, &shape, object, item] {
                            m_document.replaceObject(shape, object, item);
                            Q_EMIT dropped(&shape);
                        });
    }
    if (m_document.canAddBinding(shape)) {
        menu->addSeparator();
        menu->addAction(tr("As another curve"), this, [this, &shape, item] {
            m_document.addBinding(shape, item);
            Q_EMIT dropped(&shape);
        });
    }
    QTimer::singleShot(0, menu, [menu, place] { menu->popup(place); });
}
