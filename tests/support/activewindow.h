#pragma once

#include <QApplication>
#include <QTest>
#include <QWidget>

/// Waits until the window manager has given \p window the keyboard. Asks for it again now and then: one that is busy may
/// have left it with nobody.
inline bool becomesActive(QWidget& window)
{
    constexpr int attempts = 10;
    for (int i = 0; i < attempts; ++i) {
        if (QTest::qWaitFor([&window] { return QApplication::activeWindow() == &window; }, 2000))
            return true;
        window.activateWindow();
    }
    return false;
}
