#pragma once

#include <QtGlobal>

namespace Korvane {

/// What makes an event action run. The numbers stand in stored pages and are fixed, gaps and order included; a stored
/// action can hold any other 32-bit number, which then names no known event.
enum class TriggerType : qint32 {
    None = 0,
    MouseRelease = 1,
    MouseDoubleClick = 2,
    MouseHover = 3, ///< the pointer came onto the object
    MouseLeave = 4,
    KeyPress = 5,
    CanvasLoad = 6,
    CanvasUnload = 7,
    MousePress = 8,
    MouseRightButtonRelease = 10,
    ObjectLoading = 13,
};

} // namespace Korvane
