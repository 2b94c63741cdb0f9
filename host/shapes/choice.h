#pragma once

#include "host/shapes/operableshape.h"

#include <QString>
#include <QStringList>

/// A field that shows one of several entries, and opens a list of them. "Index" is -1 for none of them; an entry that
/// there is not shows as nothing.
///
/// Tells on: onCurrentIndexChanged(index) when the operator chose another entry.
class KORVANE_HOST_EXPORT Choice : public OperableShape
{
public:
    Choice() : OperableShape({150, 32}) {}

    static const ShapeClass& staticClass();
    const ShapeClass& shapeClass() const override { return staticClass(); }
    void draw(const ShapePainter& painter) const override;

    const QStringList& items() const { return m_items; }
    int index() const { return m_index; }
    /// The entry that was shown when the operator chose another one last; -1 before.
    int indexBefore() const { return m_indexBefore; }

    /// The operator chose an entry; one that there is not, or the one that is chosen, changes nothing.
    void choose(int index);
    /// What the operator chose is not so after all: shows \p index, unless it shows another entry than \p chosen by now.
    void replace(int chosen, int index);

private:
    QStringList m_items;
    int m_index = -1;
    int m_indexBefore = -1;
};
