#pragma once

#include "host/hostexport.h"
#include "host/shapes/shape.h"
#include "platform/core/stratelinterface.h"

#include <QByteArray>
#include <QString>

#include <memory>
#include <vector>

/// A layer of a page: shapes that are shown and hidden together. Changed through its page, which is told to draw.
class KORVANE_HOST_EXPORT Layer : public StratelInterface
{
public:
    explicit Layer(const QString& name) : m_name(name) {}

    QString name() const { return m_name; }
    bool isVisible() const override { return m_isVisible; }
    bool areMarksShown() const override { return m_areMarksShown; }

    /// The layer's shapes from the bottom up, owned by the layer.
    const std::vector<std::unique_ptr<Shape>>& shapes() const { return m_shapes; }

    /// The stored members that this program does not know, as the text of a JSON object; empty without one. Kept for
    /// saving.
    const QByteArray& unknownMembers() const { return m_unknownMembers; }
    void setUnknownMembers(const QByteArray& members) { m_unknownMembers = members; }

private:
    friend class Canvas;

    QString m_name;
    QByteArray m_unknownMembers;
    std::vector<std::unique_ptr<Shape>> m_shapes;
    bool m_isVisible = true;
    bool m_areMarksShown = true;
};
