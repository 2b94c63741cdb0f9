#pragma once

#include "host/hostexport.h"

#include <QPointF>

/// What an operator does with a shape on a live page, by mouse and keyboard. The page's view calls it.
///
/// Places are in the shape's own coordinates. What the operator does is told on by Shape::act(); what a program sets
/// never is.
class KORVANE_HOST_EXPORT ShapeInput
{
public:
    virtual ~ShapeInput();

    /// Whether the operator can do anything with it now.
    virtual bool isEnabled() const { return true; }
    /// Whether the keyboard reaches it.
    virtual bool takesFocus() const { return true; }

    /// The left button was pressed and released over the shape.
    virtual void click(const QPointF& place);
    /// The left button was pressed for the second time; the first click was told of.
    virtual void doubleClick(const QPointF& place);
    /// The wheel was turned over the shape.
    /// \param rows down; negative for up, 0 for a turn that is not yet one
    /// \returns false when the wheel is left to the page
    virtual bool turnWheel(int rows);
    /// A key was pressed, by itself, while the shape has the keyboard focus.
    /// \param key of Qt::Key
    /// \returns false when the shape has no use for it
    virtual bool pressKey(int key);

    /// Called before the page is drawn anew and outside of any painting: here a shape gets what it needs from elsewhere,
    /// which may run a script.
    virtual void prepare();
};
