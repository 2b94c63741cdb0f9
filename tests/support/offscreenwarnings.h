#pragma once

#include <QString>
#include <QtGlobal>

/// Drops what Qt's offscreen platform says about the screen that it does not have ("This plugin does not support
/// raise()"); every other message goes its way. Call it in initTestCase(): QtTest's own handler is in place by then.
inline void dropOffscreenWarnings()
{
    static QtMessageHandler next = nullptr;
    next = qInstallMessageHandler([](QtMsgType type, const QMessageLogContext& context, const QString& message) {
        if (!message.startsWith(QLatin1String("This plugin does not support ")))
            next(type, context, message);
    });
}
