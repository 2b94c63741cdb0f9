#pragma once

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMouseEvent>

/// Moves the pointer off a button that is held down: it comes up without having been clicked.
inline void dragOff(QAbstractButton& button)
{
    const QPoint outside(-50, -50);
    QMouseEvent move(QEvent::MouseMove, outside, button.mapToGlobal(outside), Qt::NoButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&button, &move);
}
