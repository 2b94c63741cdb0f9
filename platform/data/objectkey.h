#pragma once

#include "platform/data/scadaobjecttype.h"

#include <QHashFunctions>

/// Kind and id under which a database object is found: the answer of a look-up by name.
struct ObjectKey
{
    Korvane::ScadaObjectType type = Korvane::ScadaObjectType::NoObject;
    qint32 id = 0; ///< 0 stands for no object

    constexpr bool isValid() const noexcept { return id != 0; }

    friend constexpr bool operator==(ObjectKey a, ObjectKey b) noexcept { return a.type == b.type && a.id == b.id; }
    friend constexpr bool operator!=(ObjectKey a, ObjectKey b) noexcept { return !(a == b); }
};

inline uint qHash(ObjectKey key, uint seed = 0) noexcept
{
    return qHash(qMakePair(static_cast<qint32>(key.type), key.id), seed);
}
