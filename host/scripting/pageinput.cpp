#include "host/scripting/pageinput.h"

#include "host/canvas/canvasview.h"
#include "host/scripting/pagescripts.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

namespace {

using Korvane::TriggerType;

// Keys that only change what other keys mean.
bool isModifier(int key)
{
    return key == Qt::Key_Shift || key == Qt::Key_Control || key == Qt::Key_Alt || key == Qt::Key_Meta ||
           key == Qt::Key_AltGr || key == Qt::Key_Super_L || key == Qt::Key_Super_R || key == Qt::Key_CapsLock ||
           key == Qt::Key_NumLock || key == Qt::Key_ScrollLock || key == Qt::Key_unknown || key == 0;
}

} // namespace

PageInput::PageInput(CanvasView& view, PageScripts& scripts) : QObject(&view), m_view(view), m_scripts(scripts)
{
    view.installEventFilter(this);
    view.viewport()->installEventFilter(this);
    connect(&view, &CanvasView::zoomChanged, this, [this] { m_scripts.noteZoom(m_view.zoom()); });
}

bool PageInput::eventFilter(QObject* watched, QEvent* event)
{
    // While the view is being destroyed the pointer still leaves it, and it is no view any more.
    if (!qobject_cast<CanvasView*>(parent()))
        return false;
    if (watched == &m_view) {
        if (event->type() == QEvent::KeyPress)
            pressKey(*static_cast<QKeyEvent*>(event));
        return false;
    }
    switch (event->type()) {
    case QEvent::MouseButtonPress:
        press(*static_cast<QMouseEvent*>(event));
        break;
    case QEvent::MouseButtonDblClick:
        doubleClick(*static_cast<QMouseEvent*>(event));
        break;
    case QEvent::MouseButtonRelease:
        release(*static_cast<QMouseEvent*>(event));
        break;
    case QEvent::MouseMove:
        move(*static_cast<QMouseEvent*>(event));
        break;
    case QEvent::Leave:
        leave();
        break;
    default:
        break;
    }
    return false;
}

ScriptEvent PageInput::scriptEvent(const QMouseEvent& event) const
{
    return {m_view.toPage(event.pos()), event.button(), event.modifiers(), 0, {}};
}

void PageInput::press(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton)
        return;
    m_pressedAt = event.pos();
    m_isPressed = true;
    m_isClick = true;
    m_pressed = m_scripts.targetAt(m_view.toPage(event.pos()));
    m_keyed = m_pressed;
    m_scripts.fire(TriggerType::MousePress, m_pressed, scriptEvent(event));
}

// Comes in place of the second press. The release that follows is no click of its own.
void PageInput::doubleClick(const QMouseEvent& event)
{
    if (event.button() != Qt::LeftButton)
        return;
    m_isPressed = true;
    m_isClick = false;
    m_pressed = m_scripts.targetAt(m_view.toPage(event.pos()));
    m_scripts.fire(TriggerType::MouseDoubleClick, m_pressed, scriptEvent(event));
}

void PageInput::release(const QMouseEvent& event)
{
    Shape* const target = m_scripts.targetAt(m_view.toPage(event.pos()));
    if (event.button() == Qt::RightButton)
        m_scripts.fire(TriggerType::MouseRightButtonRelease, target, scriptEvent(event));
    if (event.button() != Qt::LeftButton || !m_isPressed)
        return;
    m_isPressed = false;
    // As with buttons, the release comes to what was pressed, wherever the pointer is by then.
    m_scripts.fire(TriggerType::MouseRelease, m_pressed, scriptEvent(event));
    if (m_isClick && target == m_pressed)
        m_scripts.click(m_pressed, scriptEvent(event));
}

void PageInput::move(const QMouseEvent& event)
{
    m_movedAt = event.pos();
    if (m_isPressed && (event.pos() - m_pressedAt).manhattanLength() >= QApplication::startDragDistance())
        m_isClick = false; // the page is dragged
    Shape* const target = m_scripts.targetAt(m_view.toPage(event.pos()));
    if (m_isHovering && target == m_hovered)
        return;
    if (m_isHovering)
        m_scripts.fire(TriggerType::MouseLeave, m_hovered, scriptEvent(event));
    m_isHovering = true;
    m_hovered = target;
    m_scripts.fire(TriggerType::MouseHover, target, scriptEvent(event));
}

void PageInput::leave()
{
    ScriptEvent event;
    event.position = m_view.toPage(m_movedAt); // where it was last: the pointer is somewhere else by now
    if (m_isHovering)
        m_scripts.fire(TriggerType::MouseLeave, m_hovered, event);
    m_isHovering = false;
    m_hovered = nullptr;
}

// Keys come to the shape that has the keyboard, else to that pressed last, and to the page.
void PageInput::pressKey(const QKeyEvent& event)
{
    if (isModifier(event.key()))
        return;
    ScriptEvent script;
    script.modifiers = event.modifiers();
    script.key = event.key();
    script.text = event.text();
    Shape* const target = m_view.focusedShape() ? m_view.focusedShape() : m_keyed;
    if (target)
        m_scripts.fire(TriggerType::KeyPress, target, script);
    m_scripts.fire(TriggerType::KeyPress, nullptr, script);
}
