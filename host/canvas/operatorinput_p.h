#pragma once

#include "host/canvas/inplaceediting.h"

#include <QPointF>

#include <vector>

class CanvasView;
class Shape;
class ShapeInput;

/// Hands what an operator does on a view to the shapes of its page, and knows which of them has the keyboard.
class OperatorInput
{
public:
    /// \param view not owned, must outlive this
    explicit OperatorInput(CanvasView& view);

    /// The shape that keys go to; null for none.
    Shape* focused() const { return m_focused; }
    void setFocused(Shape* shape);
    /// Moves the focus to the next shape that takes it, from the bottom up.
    /// \returns false, with nothing moved, behind the last one
    bool moveFocus(bool isForward);
    /// Moves the focus to the first or the last shape; to none when there is none.
    void enter(bool isForward);
    bool isEditing() const { return m_editing.shape(); }

    /// The left button went down over \p shape (null: over none), or for the second time.
    void press(Shape* shape, bool isSecond, const QPointF& page);
    /// It went up over \p shape, at \p page.
    void release(Shape* shape, const QPointF& page);
    /// \returns false when the wheel is left to the page
    bool turnWheel(Shape* shape, int angle);
    /// Whether a key goes to the focused shape rather than to a shortcut.
    bool wantsKey(int key) const;
    /// \returns false when the focused shape has no use for it
    bool pressKey(int key, bool isRepeated);

    /// Before the page is drawn anew: shapes get what they draw.
    void prepare();
    /// After the view or shapes changed.
    void follow();
    /// The page has other shapes or layers now.
    void rearrange();
    void endEditing() { m_editing.close(); }

private:
    std::vector<Shape*> focusChain() const;

    CanvasView& m_view;
    InPlaceEditing m_editing;
    Shape* m_focused = nullptr;
    Shape* m_pressed = nullptr;
    Shape* m_wheeled = nullptr;
    int m_angle = 0;                ///< of the wheel, that made no whole row yet
    std::vector<Shape*> m_operable; ///< all shapes that an operator can work with
    bool m_isCollected = false;     ///< m_operable is right
    bool m_isSecondClick = false;
};
