#pragma once

#include "platform/data/quorixdata.h"
#include "platform/data/scadaobjecttype.h"

#include <tsl/robin_map.h>

/// One middleware batch: records by 32-bit object id. Ids of the three families are independent of each other.
///
/// An empty point map means one thing only: the data source failed. A source that has nothing to report sends no batch.
///
/// The maps are flat hash maps with the id as its own hash: ids of a plant run in blocks, which then fill the table
/// without a collision.
struct MwDataDepartment
{
    struct IdHash
    {
        std::size_t operator()(quint32 id) const noexcept { return id; }
    };
    using Records = tsl::robin_map<quint32, QuorixData, IdHash>;

    Records points;   ///< digital, analog and not yet known points
    Records rtus;     ///< remote terminal units
    Records channels; ///< communication lines

    /// The map that holds records of objects of \p type; null for a type that batches carry no records of.
    const Records* recordsOf(Korvane::ScadaObjectType type) const
    {
        if (Korvane::isPointObjectType(type))
            return &points;
        if (type == Korvane::ScadaObjectType::RtuObject)
            return &rtus;
        return type == Korvane::ScadaObjectType::ChannelObject ? &channels : nullptr;
    }

    /// The record of one object; null when the batch has none.
    const QuorixData* find(Korvane::ScadaObjectType type, qint32 id) const
    {
        const Records* records = recordsOf(type);
        if (!records)
            return nullptr;
        const auto found = records->find(static_cast<quint32>(id));
        return found == records->end() ? nullptr : &found->second;
    }
};
