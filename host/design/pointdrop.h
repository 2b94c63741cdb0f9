#pragma once

#include "host/hostexport.h"
#include "platform/data/broweriteminfo.h"

#include <QObject>
#include <QPoint>
#include <QRubberBand>
#include <QString>

class CanvasView;
class DesignDocument;
class QDragMoveEvent;
class QDropEvent;
class Shape;

/// Lets points be dropped on the view of a page that is edited, as KVPointMimeData.
///
/// On a shape a point takes the place of the one that it shows; one that is bound to several asks which by a menu. A
/// shape without a binding gets the one that suits it. Elsewhere on the page, and on shapes that show no value, as the
/// panel behind others, a read-out is made. A frame shows which it will be. Anything else is refused.
class KORVANE_HOST_EXPORT PointDrop : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(PointDrop)

public:
    /// \param view of the document's page
    /// \param document neither is owned, both must outlive this
    PointDrop(CanvasView& view, DesignDocument& document, QObject* parent = nullptr);
    ~PointDrop() override;

Q_SIGNALS:
    /// \p shape was bound, or made.
    void dropped(Shape* shape);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void move(QDragMoveEvent& event);
    void drop(QDropEvent& event);
    bool isOnPage(QPoint place) const;
    Shape* shapeFor(QPoint place) const;
    void bind(Shape& shape, const Korvane::BrowerItemInfo& item);
    void ask(Shape& shape, const Korvane::BrowerItemInfo& item, QPoint place);

    CanvasView& m_view;
    DesignDocument& m_document;
    QRubberBand* m_frame; ///< the viewport's
};
