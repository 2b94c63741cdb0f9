#pragma once

#include "host/shapes/shape.h"
#include "host/shapes/svgdrawing.h"

#include <QString>
#include <QStringList>

#include <memory>

/// A drawing from an SVG file, fitted into the geometry in its own proportions.
///
/// "Source" is a file name below one of the search paths; the first that has it counts. A file may draw states: of its
/// elements with the ids "state0", "state1" and so on only that of "State" is shown, with everything that has no such
/// id. A file that is missing or broken is shown as a marked box with its name.
class KORVANE_HOST_EXPORT SvgSymbol : public Shape
{
public:
    SvgSymbol() : Shape({64, 64}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

    /// The folders that sources are looked up in, for all symbols; none until set. Files are read again, at the next
    /// drawing of each symbol. Qt's resource folders (":/...") do as well.
    static void setSearchPaths(const QStringList& folders);
    static QStringList searchPaths();

private:
    void load() const;

    QString m_source;
    int m_state = 0;

    // What was loaded last, and what for.
    mutable std::shared_ptr<SvgDrawing> m_drawing;
    mutable QString m_loadedSource;
    mutable int m_loadedState = 0;
    mutable int m_loadedPaths = 0; ///< which setting of the search paths; 0 for none
};
