#pragma once

#include <QApplication>
#include <QDeadlineTimer>
#include <QTest>
#include <QTimer>

/// Once a modal window of that class is in front, works with it from within its own event loop. Fails the test, and ends
/// whatever modal window is there, where none comes.
template <typename Window, typename Work>
void inDialog(Work work)
{
    auto* wait = new QTimer(QCoreApplication::instance());
    QObject::connect(wait, &QTimer::timeout, wait, [wait, work, deadline = QDeadlineTimer(60000)] {
        auto* window = qobject_cast<Window*>(QApplication::activeModalWidget());
        if (deadline.hasExpired()) {
            wait->deleteLater();
            if (QWidget* modal = QApplication::activeModalWidget())
                modal->close();
            QFAIL("the dialog did not come up");
        }
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
