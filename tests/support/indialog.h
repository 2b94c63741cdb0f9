#pragma once

#include <QApplication>
#include <QTimer>

/// Once a modal window of that class is in front, works with it from within its own event loop.
template <typename Window, typename Work>
void inDialog(Work work)
{
    auto* wait = new QTimer(QCoreApplication::instance());
    QObject::connect(wait, &QTimer::timeout, wait, [wait, work] {
        auto* window = qobject_cast<Window*>(QApplication::activeModalWidget());
        // Off screen nobody gives a window the keyboard back.
        const bool isManaged = QGuiApplication::platformName() == QLatin1String("xcb");
        if (!window || (isManaged && QApplication::activeWindow() != window))
            return;
        wait->stop();
        wait->deleteLater();
        work(*window);
    });
    wait->start(5);
}
