#pragma once

#include "host/hostexport.h"

#include <QRectF>
#include <QString>

#include <memory>

class QPainter;
class QSvgRenderer;

/// One state of an SVG file, parsed once and shared by all that show it.
class KORVANE_HOST_EXPORT SvgDrawing
{
public:
    ~SvgDrawing();

    /// The drawing in the file at \p path without those of its elements with ids "state" and a number that is not
    /// \p state.
    ///
    /// Null when the file can't be read, is larger than 4 MiB or is no SVG. Says nothing about what is wrong with it:
    /// the first call switches off, for the process, the warnings of Qt's SVG parser (category "qt.svg").
    static std::shared_ptr<SvgDrawing> of(const QString& path, int state);
    /// Has files read again when they are next asked for.
    static void forgetAll();

    /// Draws into the middle of \p rect, as large as fits; nothing goes beyond it.
    void draw(QPainter& painter, const QRectF& rect) const;

private:
    explicit SvgDrawing(std::unique_ptr<QSvgRenderer> renderer);

    std::unique_ptr<QSvgRenderer> m_renderer;
};
