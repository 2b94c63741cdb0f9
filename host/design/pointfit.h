#pragma once

#include "host/hostexport.h"
#include "host/runtime/runtimedatabase.h"

#include <QString>
#include <QVariantMap>

#include <memory>
#include <optional>

class Shape;
class TagAction;

/// What suits a shape that is to show a point: which tag action, with which settings, and what the shape itself takes
/// from the point, as unit, decimals and scale.
struct KORVANE_HOST_EXPORT PointFit
{
    int type = 0; ///< TagAction::Type
    QVariantMap settings = {};
    QVariantMap properties = {};

    /// What suits \p shape for \p tag: a trend its curve at \p place, a symbol its state, what has a value the number, a
    /// read-out the name of a digital point's state, a label the text.
    /// \param runtime where the tag's object is looked up; an unknown one suits as one without unit and scale
    /// \returns nothing for a shape that shows no single value by itself.
    static std::optional<PointFit> of(const Shape& shape, const QString& tag, const RuntimeDatabase& runtime,
                                      int place = 0);

    /// The action that suits, for \p tag.
    std::unique_ptr<TagAction> makeAction(Shape& shape, const QString& tag) const;
    /// The properties that \p shape takes on when it showed what \p before suits: those that it has from there. What was
    /// drawn otherwise stays.
    QVariantMap propertiesAfter(const Shape& shape, const PointFit& before) const;
    void applySettings(TagAction& action) const;
    /// Whether \p action is as this suits, but for its tags.
    bool isHeldBy(const TagAction& action) const;

    /// A new read-out for \p tag, at the corner of the page and without a name, as large as what it may show.
    static std::unique_ptr<Shape> makeReadOut(const QString& tag, const RuntimeDatabase& runtime);

    /// The object that \p tag names; null for none.
    static const RuntimeDatabase::Object* objectOf(const QString& tag, const RuntimeDatabase& runtime);
};
