#pragma once

#include "platform/platformexport.h"

#include <vector>

class DataServiceInterface;
class ObjectTagValue;
class ScadaRuntimeInterface;
struct MwDataDepartment;

/// Collects values, then fills them all from a batch, the runtime database and the data service.
///
/// Made for one round: register, dispatch, forget. It owns nothing; without a registered value it costs nothing.
class KORVANE_PLATFORM_EXPORT DataDispatcher
{
public:
    /// \param value not owned, must live until dispatch() is done; registered twice it is filled twice
    void addTagValue(ObjectTagValue* value);

    /// Fills every registered value, in the order of registration, from whoever supplies its field:
    /// - the middleware record: from \p batch; an object that is not in it keeps its value;
    /// - the runtime database: what \p runtime holds, invalid where it holds none;
    /// - the history: what \p service knows, likewise.
    /// With null for a supplier its values stay.
    void dispatch(const MwDataDepartment& batch, ScadaRuntimeInterface* runtime, DataServiceInterface* service) const;

private:
    std::vector<ObjectTagValue*> m_values;
};
