#pragma once

#include <QColor>

/// The colours that shapes have until others are set: greys for what is always there, colour only where it means
/// something. Text in ink reads on paper, light and plate alike (contrast above 4.5 to 1).
namespace Palette {

inline constexpr QColor ink{0x1b, 0x26, 0x31};      ///< texts
inline constexpr QColor outline{0x5d, 0x6d, 0x7e};  ///< lines of equipment; grey texts on paper
inline constexpr QColor hairline{0x8a, 0x97, 0xa3}; ///< frames
inline constexpr QColor plate{0xd5, 0xdb, 0xe1};    ///< surfaces
inline constexpr QColor light{0xf4, 0xf6, 0xf8};    ///< equipment at work
inline constexpr QColor dark{0x4a, 0x57, 0x64};     ///< equipment at rest
inline constexpr QColor paper{0xff, 0xff, 0xff};    ///< behind numbers
inline constexpr QColor value{0x4f, 0x7c, 0xac};    ///< measured values
inline constexpr QColor alarm{0xc0, 0x39, 0x2b};    ///< values beyond a limit, faults

/// Ink or paper, whichever reads better on \p background.
inline QColor readableOn(const QColor& background)
{
    return qGray(background.rgb()) < 0x80 ? paper : ink;
}

/// The colour that lies \p share (0..1) of the way from \p from to \p to.
inline QColor mixed(const QColor& from, const QColor& to, double share)
{
    const auto mix = [share](double a, double b) { return a + (b - a) * share; };
    return QColor::fromRgbF(mix(from.redF(), to.redF()), mix(from.greenF(), to.greenF()), mix(from.blueF(), to.blueF()),
                            mix(from.alphaF(), to.alphaF()));
}

/// The colour of a line or text of something that is switched off; no colour stays none.
inline QColor paler(const QColor& color)
{
    return color.isValid() ? mixed(color, paper, 0.38) : color;
}

} // namespace Palette
