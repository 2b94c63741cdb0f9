#pragma once

#include "host/shapes/operableshape.h"

#include <QString>

#include <optional>

/// A field to write into. What is or was written is "Text", and shows before all; else it is the value, and else, in
/// grey, the placeholder. "Active" draws a strong frame and a caret behind the text.
///
/// Tells on: onTextChanged(text) at every change by the operator, "Text" having it already; onReturnPressed() when he
/// is done.
class KORVANE_HOST_EXPORT InputField : public OperableShape
{
public:
    InputField() : OperableShape({130, 32}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

    /// What is or was written.
    QString text() const { return m_text; }
    /// What the operator began with when he wrote last.
    QString textBefore() const { return m_textBefore; }
    /// The text as it is shown, without the placeholder.
    QString shownText() const;
    /// Where the text lies: the field without its unit.
    QRectF textArea() const;

    /// The operator begins to write; until endEditing() an editor lies over textArea().
    void beginEditing();
    /// What is written is \p text now.
    void write(const QString& text);
    /// Nothing more is written.
    void endEditing();
    /// The operator takes back what he wrote since beginEditing(), which is a change again.
    void takeBack();
    /// The operator is done with writing: "Text" is \p text, if he wrote anything.
    void enter(const QString& text);
    /// What the operator entered is not so after all: \p text takes the place of \p entered, unless another text is there
    /// by now. What he writes meanwhile stays.
    void replace(const QString& entered, const QString& text);

private:
    void setText(const QString& text);

    QString m_text;
    QString m_textBefore; ///< what the operator began with
    std::optional<double> m_value;
    int m_decimals = -1; ///< -1: as many as needed, at most 6 digits in all
    QString m_placeholder = QStringLiteral("--");
    QString m_unit;
    bool m_isActive = false;
    bool m_isEdited = false;
    bool m_isTyped = false; ///< the operator changed something since he began
};
