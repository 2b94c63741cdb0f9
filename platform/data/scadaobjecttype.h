#pragma once

#include <QtGlobal>

namespace Korvane {

/// What kind of object a tag names. The numbers stand in stored pages and are fixed; a stored record can hold any other
/// 32-bit number, which then names no known kind.
enum class ScadaObjectType : qint32 {
    NoObject = -1,           ///< no database object: a constant or an empty tag
    DigitalPoint = 0,        ///< two-state point
    AnalogPoint = 1,         ///< measured point
    RtuObject = 2,           ///< remote terminal unit or device, prefix "@R::"
    ChannelObject = 3,       ///< communication line, prefix "@C::"
    Point = 6,               ///< a point whose kind is not known yet
    ApplicationProperty = 7, ///< property of the application, prefix "@::"
};

/// Point ids by range: both bounds belong to it.
constexpr qint32 firstDigitalPointId = 100001;
constexpr qint32 lastDigitalPointId = 199999;
constexpr qint32 firstAnalogPointId = 200001;
constexpr qint32 lastAnalogPointId = 2999999;

/// True for the kinds whose values come in a batch's point map: digital, analog and not yet known points.
constexpr bool isPointObjectType(ScadaObjectType type) noexcept
{
    return type == ScadaObjectType::DigitalPoint || type == ScadaObjectType::AnalogPoint ||
           type == ScadaObjectType::Point;
}

/// The kind of point that the range of \p id stands for; NoObject for an id in neither range.
constexpr ScadaObjectType pointTypeOfId(qint32 id) noexcept
{
    if (id >= firstAnalogPointId && id <= lastAnalogPointId)
        return ScadaObjectType::AnalogPoint;
    if (id >= firstDigitalPointId && id <= lastDigitalPointId)
        return ScadaObjectType::DigitalPoint;
    return ScadaObjectType::NoObject;
}

} // namespace Korvane
