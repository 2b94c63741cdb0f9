#pragma once

#include "host/hostexport.h"
#include "host/scripting/scriptevent.h"

#include <QObject>

class CanvasView;
class PageScripts;
class QKeyEvent;
class QMouseEvent;
class Shape;

/// Turns what the operator does over a page's view into the events of its scripts. Takes nothing from the view: it
/// scrolls, zooms and selects as ever.
class KORVANE_HOST_EXPORT PageInput : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(PageInput)

public:
    /// \param view its parent too
    /// \param scripts of the view's page; not owned, must outlive this
    PageInput(CanvasView& view, PageScripts& scripts);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void press(const QMouseEvent& event);
    void doubleClick(const QMouseEvent& event);
    void release(const QMouseEvent& event);
    void move(const QMouseEvent& event);
    void leave();
    void pressKey(const QKeyEvent& event);
    ScriptEvent scriptEvent(const QMouseEvent& event) const;

    CanvasView& m_view;
    PageScripts& m_scripts;
    Shape* m_pressed = nullptr; ///< that the left button went down on; null for the page too
    Shape* m_hovered = nullptr; ///< under the pointer
    Shape* m_keyed = nullptr;   ///< pressed last: keys come to it
    QPoint m_pressedAt;
    QPoint m_movedAt;
    bool m_isPressed = false;
    bool m_isHovering = false; ///< the pointer is over the view
    bool m_isClick = false;    ///< if the button goes up where it went down
};
