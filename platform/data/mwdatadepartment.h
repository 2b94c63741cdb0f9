#pragma once

#include "platform/data/quorixdata.h"

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
};
