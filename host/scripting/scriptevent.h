#pragma once

#include <QPointF>
#include <QString>
#include <Qt>

/// What a script can learn of the event that runs it, beyond the trigger.
struct ScriptEvent
{
    QPointF position; ///< on the page; of the pointer
    Qt::MouseButton button = Qt::NoButton;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
    int key = 0;  ///< a Qt::Key; 0 without one
    QString text; ///< that the key types; may be empty
};
