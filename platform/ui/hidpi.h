#pragma once

#include "platform/platformexport.h"

#include <QPixmap>
#include <QString>

class QWidget;

/// Pictures at the resolution of the screen that they are shown on.
class KORVANE_PLATFORM_EXPORT HiDPI
{
public:
    HiDPI() = delete;

    /// The icon of that path, as ":/KVC/image/plus", as large as tool buttons show icons (their style decides), with the
    /// device pixels of \p widget's screen; of the primary screen for null.
    /// \returns a null pixmap when there is no such picture.
    static QPixmap dpiScaledPixmap(const QString& resourcePath, const QWidget* widget);
};
