#pragma once

#include "host/hostexport.h"

#include <QLatin1String>
#include <QString>

#include <optional>

/// The functions of scripts that are called by their names when something happens: handlers.
///
/// A function of such a name becomes a handler when a script that defines it has run: of the shape that the script
/// belongs to, or of the page for a page's script. Its owner is one of the two.
enum class ScriptHandler {
    Load,
    Click,
    DoubleClick,
    MouseEnter,
    MouseLeave,
    ReturnPressed,
    TextChanged,
    XIndexSelected,
    ZoomLevelChanged,
    CurrentIndexChanged,
    RowDataRequest,
    ItemClicked,
    ItemDoubleClicked,
    GraphClicked,
    DataLoaded,
    DateChanged,
    PointValueChanged,
    Logon,
    Logout,
};

constexpr int scriptHandlerCount = static_cast<int>(ScriptHandler::Logout) + 1;

/// How a handler is called.
struct ScriptHandlerInfo
{
    enum class Subject { None, Shape, Canvas };
    /// Which owners' handlers are called.
    enum class Reach {
        Owner,       ///< that of the shape, or of the page, that the event came to
        OwnerOrPage, ///< that of the shape, else the page's
        Everyone,    ///< all that the page and its shapes have
    };

    QLatin1String name;
    /// What stands in front of its other arguments: nothing, the shape or the page it happened to.
    Subject subject = Subject::None;
    Reach reach = Reach::Owner;
    /// Names of all its arguments, joined by commas; empty for none.
    const char* arguments = "";
    int argumentCount = 0;
    const char* meaning = ""; ///< when it is called
};

inline uint qHash(ScriptHandler handler)
{
    return static_cast<uint>(handler);
}

KORVANE_HOST_EXPORT const ScriptHandlerInfo& scriptHandlerInfo(ScriptHandler handler);
/// \returns nothing for a name that is no handler's; case-sensitive.
KORVANE_HOST_EXPORT std::optional<ScriptHandler> scriptHandlerOf(const QString& name);
