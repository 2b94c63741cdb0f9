#include "host/canvas/operatorinput_p.h"

#include "host/canvas/canvas.h"
#include "host/canvas/canvasview.h"
#include "host/shapes/shapeinput.h"

#include <QApplication>
#include <QWheelEvent>

#include <algorithm>
#include <utility>

namespace {

bool opensEditors(int key)
{
    return key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space || key == Qt::Key_F2;
}

bool canHaveFocus(Shape& shape)
{
    const ShapeInput* input = shape.usableInput();
    return input && input->takesFocus();
}

} // namespace

OperatorInput::OperatorInput(CanvasView& view) : m_view(view), m_editing(view)
{
}

void OperatorInput::setFocused(Shape* shape)
{
    if (shape == m_focused)
        return;
    m_focused = shape;
    m_view.viewport()->update();
}

std::vector<Shape*> OperatorInput::focusChain() const
{
    std::vector<Shape*> chain = m_view.canvas().shapes();
    chain.erase(std::remove_if(chain.begin(), chain.end(), [](Shape* shape) { return !canHaveFocus(*shape); }),
                chain.end());
    return chain;
}

bool OperatorInput::moveFocus(bool isForward)
{
    m_editing.close();
    std::vector<Shape*> chain = focusChain();
    if (!isForward)
        std::reverse(chain.begin(), chain.end());
    auto next = std::find(chain.begin(), chain.end(), m_focused);
    next = next == chain.end() ? chain.begin() : std::next(next);
    if (next == chain.end())
        return false;
    setFocused(*next);
    m_view.ensureSeen(**next);
    return true;
}

void OperatorInput::enter(bool isForward)
{
    setFocused(nullptr);
    moveFocus(isForward);
}

void OperatorInput::press(Shape* shape, bool isSecond, const QPointF& page)
{
    m_pressed = shape;
    m_isSecondClick = isSecond;
    ShapeInput* input = shape && isSecond ? shape->usableInput() : nullptr;
    if (input)
        input->doubleClick(shape->mapFromScene(page));
}

void OperatorInput::release(Shape* shape, const QPointF& page)
{
    const bool isFirstClick = std::exchange(m_pressed, nullptr) == shape && !m_isSecondClick;
    if (!isFirstClick)
        return;
    setFocused(shape && canHaveFocus(*shape) ? shape : nullptr);
    ShapeInput* input = shape ? shape->usableInput() : nullptr;
    if (!input)
        return;
    m_editing.open(*shape);
    input->click(shape->mapFromScene(page));
}

bool OperatorInput::turnWheel(Shape* shape, int angle)
{
    if (shape != m_wheeled)
        m_angle = 0;
    m_wheeled = shape;
    ShapeInput* input = shape ? shape->usableInput() : nullptr;
    if (!input)
        return false;
    m_angle += angle * QApplication::wheelScrollLines();
    const int rows = m_angle / QWheelEvent::DefaultDeltasPerStep;
    m_angle -= rows * QWheelEvent::DefaultDeltasPerStep;
    return input->turnWheel(-rows);
}

bool OperatorInput::wantsKey(int key) const
{
    return m_focused && opensEditors(key) && InPlaceEditing::canEdit(*m_focused);
}

// A key that is held opens one editor, not one after the other.
bool OperatorInput::pressKey(int key, bool isRepeated)
{
    ShapeInput* input = m_focused ? m_focused->usableInput() : nullptr;
    if (!input)
        return false;
    if (input->pressKey(key))
        return true;
    if (!wantsKey(key))
        return false;
    if (isRepeated)
        return true;
    m_view.ensureSeen(*m_focused);
    m_editing.open(*m_focused);
    return true;
}

void OperatorInput::prepare()
{
    if (!m_isCollected) {
        m_operable = m_view.canvas().shapes();
        m_operable.erase(
            std::remove_if(m_operable.begin(), m_operable.end(), [](Shape* shape) { return !shape->input(); }),
            m_operable.end());
        m_isCollected = true;
    }
    for (std::size_t place = 0; place < m_operable.size(); ++place) { // a script may rearrange the page
        Shape& shape = *m_operable[place];
        const auto* layer = shape.layer();
        if (shape.isVisible() && (!layer || layer->isVisible()))
            shape.input()->prepare();
    }
}

void OperatorInput::follow()
{
    m_editing.follow();
    if (m_focused && !canHaveFocus(*m_focused))
        setFocused(nullptr);
}

void OperatorInput::rearrange()
{
    m_isCollected = false;
    m_editing.close();
    follow();
}
