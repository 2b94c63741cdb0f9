#pragma once

#include "host/hostexport.h"
#include "platform/data/scadaobjecttype.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// Another name for an object, and what becomes of whatever names it. Whole names only: an object whose name begins or ends
/// in the same way is another one.
struct KORVANE_HOST_EXPORT ObjectRename
{
    Korvane::ScadaObjectType type = Korvane::ScadaObjectType::Point; ///< any kind of the object's family
    QString before;                                                  ///< bare names
    QString after;

    /// The new text of a tag string that names the object, with its prefix and field.
    /// \returns nothing for a tag of anything else, also of the object by its id.
    std::optional<QString> tag(const QString& tag) const;
    /// A tag record of that version, with the new name; nothing where it names something else or can't be read.
    std::optional<QByteArray> targetRecord(const QByteArray& record, quint32 version) const;
    /// Likewise of a condition's record, on both sides.
    std::optional<QByteArray> conditionRecord(const QByteArray& record, quint32 version) const;
};
