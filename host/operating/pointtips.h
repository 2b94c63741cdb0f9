#pragma once

#include "host/hostexport.h"

#include <QList>
#include <QObject>
#include <QPair>
#include <QPointer>
#include <QString>

class CanvasView;
class PointToolTipWidget;
class QHelpEvent;
class RuntimeDatabase;
class Shape;
struct Page;

/// Shows which points stand behind the shape under the pointer. A tip that the engineer wrote for the shape goes first.
class KORVANE_HOST_EXPORT PointTips : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(PointTips)

public:
    /// \param view of the page; its parent too
    /// \param page, database must outlive this
    PointTips(CanvasView& view, const Page& page, const RuntimeDatabase& database);
    ~PointTips() override;

    /// Names and descriptions of the points behind a shape, each once: those it shows, then the one it operates.
    QList<QPair<QString, QString>> pointsOf(const Shape& shape) const;

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool show(const QHelpEvent& event);
    void hide();

    CanvasView& m_view;
    const Page& m_page;
    const RuntimeDatabase& m_database;
    const Shape* m_shape = nullptr; ///< that the tip is of
    QPointer<PointToolTipWidget> m_tip;
};
