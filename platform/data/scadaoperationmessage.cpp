#include "platform/data/scadaoperationmessage.h"

#include <tuple>

bool ScadaOperationMessage::isEqual(const ScadaOperationMessage& other) const
{
    const auto members = [](const ScadaOperationMessage& message) {
        return std::tie(message.requestId, message.operation, message.outcome, message.objectType, message.objectId,
                        message.tag, message.value, message.before, message.user, message.secondUser, message.reason,
                        message.text, message.time);
    };
    return members(*this) == members(other);
}
