#pragma once

#include <QString>

#include <cstddef>

/// Names of the functions in a script that the runtime calls on events of objects on a page. Scripts are written
/// against them. The constants are made while compiling, one of each for the whole library.
namespace ScriptHandlerNames {

template <std::size_t size>
constexpr QLatin1String text(const char (&letters)[size])
{
    return QLatin1String(letters, static_cast<int>(size) - 1);
}

/// A white that a comparison tells from plain white.
inline constexpr QLatin1String nearlyWhite = text("#FFFFFE");

inline constexpr QLatin1String onLoad = text("onLoad");
inline constexpr QLatin1String onClick = text("onClick");
inline constexpr QLatin1String onDoubleClick = text("onDoubleClick");
inline constexpr QLatin1String onMouseEnter = text("onMouseEnter");
inline constexpr QLatin1String onMouseLeave = text("onMouseLeave");
inline constexpr QLatin1String onReturnPressed = text("onReturnPressed");
inline constexpr QLatin1String onTextChanged = text("onTextChanged");
inline constexpr QLatin1String onXIndexSelected = text("onXIndexSelected");
inline constexpr QLatin1String onZoomLevelChanged = text("onZoomLevelChanged");
inline constexpr QLatin1String onCurrentIndexChanged = text("onCurrentIndexChanged");
inline constexpr QLatin1String onRowDataRequest = text("onRowDataRequest");
inline constexpr QLatin1String onItemClicked = text("onItemClicked");
inline constexpr QLatin1String onItemDoubleClicked = text("onItemDoubleClicked");
inline constexpr QLatin1String onGraphClicked = text("onGraphClicked");
inline constexpr QLatin1String onDataLoaded = text("onDataLoaded");
inline constexpr QLatin1String onDateChanged = text("onDateChanged");
inline constexpr QLatin1String onPointValueChanged = text("onPointValueChanged");
inline constexpr QLatin1String onLogon = text("onLogon");
inline constexpr QLatin1String onLogout = text("onLogout");

} // namespace ScriptHandlerNames
