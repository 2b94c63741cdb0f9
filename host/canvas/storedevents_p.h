#pragma once

#include "host/canvas/eventactions.h"
#include "host/canvas/jsonvalues_p.h"

#include <QString>

/// How event actions stand in page files: an object with the numbers "trigger" and "type", and a script as "script", an
/// array of its lines, which people can read and compare; settings of another form as "data", in base64.
namespace StoredEvents {

struct Read
{
    EventActions::Entry entry;
    QString problem; ///< why the action could not be loaded; empty when it could
};

/// Never fails: an action that can't be loaded is kept as it stands.
Read read(const rapidjson::Value& stored);

/// The members that \p action has by itself.
void writeMembers(JsonValues::Writer& writer, const ScadaEventActionInterface& action);

} // namespace StoredEvents
