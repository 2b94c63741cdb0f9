#include "host/operating/pointtips.h"

#include "host/canvas/canvas.h"
#include "host/canvas/canvasview.h"
#include "host/canvas/page.h"
#include "host/runtime/runtimedatabase.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/tagresolution.h"
#include "scada/binding/objecttarget.h"
#include "scada/binding/scadatagactioninterface.h"
#include "scada/widgets/pointtooltipwidget.h"

#include <QHelpEvent>
#include <QMouseEvent>

PointTips::PointTips(CanvasView& view, const Page& page, const RuntimeDatabase& database)
    : QObject(&view), m_view(view), m_page(page), m_database(database)
{
    view.viewport()->installEventFilter(this);
}

PointTips::~PointTips()
{
    hide();
}

QList<QPair<QString, QString>> PointTips::pointsOf(const Shape& shape) const
{
    QList<QPair<QString, QString>> points;
    const auto add = [&](ObjectKey key) {
        const RuntimeDatabase::Object* object = m_database.object(key);
        if (!object)
            return;
        const QPair<QString, QString> point(Korvane::tagPrefix(object->type) + object->name, object->description);
        if (!points.contains(point))
            points.append(point);
    };
    for (ScadaTagActionInterface* action : m_page.actions->actionsOf(&shape)) {
        QList<ObjectTarget*> targets;
        action->collectTargets(targets);
        for (const ObjectTarget* target : qAsConst(targets))
            add({target->objectKind(), target->getPid()});
    }
    if (const Operation* operation = m_page.operations.of(&shape)) {
        const Korvane::DataLinkInfo link = Korvane::resolveFromString(operation->tag, &m_database);
        add({link.type, link.id});
    }
    return points;
}

bool PointTips::eventFilter(QObject*, QEvent* event)
{
    if (event->type() == QEvent::ToolTip)
        return show(*static_cast<QHelpEvent*>(event));
    if (event->type() == QEvent::MouseMove && m_tip) {
        const auto* move = static_cast<QMouseEvent*>(event);
        if (m_view.canvas().shapeAt(m_view.toPage(move->pos())) != m_shape)
            hide();
    }
    return false;
}

// One tip at a time: they don't go by themselves when the pointer moves on within the page.
bool PointTips::show(const QHelpEvent& event)
{
    const Shape* shape = m_view.canvas().shapeAt(m_view.toPage(event.pos()));
    if (m_tip && shape == m_shape)
        return true;
    hide();
    if (!shape || !shape->toolTip().isEmpty())
        return false;
    const auto points = pointsOf(*shape);
    if (points.isEmpty())
        return false;
    m_shape = shape;
    m_tip = points.size() == 1 ? PointToolTipWidget::showTip(points.constFirst().first, points.constFirst().second,
                                                             event.globalPos(), m_view.viewport())
                               : PointToolTipWidget::showTip(points, event.globalPos(), m_view.viewport());
    return true;
}

void PointTips::hide()
{
    if (m_tip)
        m_tip->close();
    m_shape = nullptr;
}
