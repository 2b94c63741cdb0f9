#pragma once

#include "host/shapes/palette.h"
#include "host/shapes/shape.h"

#include <QColor>
#include <QString>

#include <vector>

/// Equipment with states: valve, pump, breaker.
///
/// A state shows by fill and by form, so that it can be told without colours: at rest (closed, stopped, open contact)
/// the body is filled with the dark OffColor, at work (open, running, closed contact) with the light OnColor, between
/// both half and half, and a part of the body stands otherwise, which the subclasses describe. A fault is always
/// crossed out; a state that is none of these is drawn dashed, with a question mark.
class KORVANE_HOST_EXPORT StateSymbol : public Shape
{
public:
    void draw(const ShapePainter& painter) const final;

protected:
    enum class Look { Off, On, Between, Fault, Unknown };

    explicit StateSymbol(const QSizeF& size) : Shape(size) {}

    /// State, OnColor, OffColor, FaultColor, LineColor, Label, TextColor and FontSize.
    static std::vector<ShapeProperty> symbolProperties();

    /// Draws the body and what tells its state into \p box, a square; the cross and the question mark come on top.
    /// \param line width of its lines
    virtual void drawBody(const ShapePainter& painter, const QRectF& box, Look look, double line) const = 0;

    /// Fills of the first and the second half of the body; equal but for Between.
    QColor firstFill(Look look) const;
    QColor secondFill(Look look) const;
    QColor onColor() const { return m_onColor; }
    QColor offColor() const { return m_offColor; }
    QColor lineColor() const { return m_lineColor; }
    /// A pen for the body's lines, dashed for an unknown state.
    QPen linePen(Look look, double line) const;

private:
    Look look() const;

    int m_state = 0; ///< 0 off, 1 on, 2 between, 3 fault; all others are unknown
    QColor m_onColor = Palette::light;
    QColor m_offColor = Palette::dark;
    QColor m_faultColor = Palette::alarm;
    QColor m_lineColor = Palette::ink;
    QString m_label;
    QColor m_textColor = Palette::ink;
    int m_fontSize = 12;
};
