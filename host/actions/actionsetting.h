#pragma once

#include "host/shapes/shapeproperty.h"

#include <QLatin1String>
#include <QVariant>

class TagAction;

/// One setting of a kind of tag action: how it is read, set and stored.
struct ActionSetting
{
    QLatin1String name;
    QVariant (*read)(const TagAction& action) = nullptr;
    /// False, with nothing changed, for a value that the setting can't have.
    bool (*write)(TagAction& action, const QVariant& value) = nullptr;
};

namespace ActionSettings {

template <auto member>
struct MemberOf;
template <typename Action, typename Value, Value Action::*member>
struct MemberOf<member>
{
    static QVariant read(const TagAction& action)
    {
        return QVariant::fromValue(static_cast<const Action&>(action).*member);
    }
    static bool write(TagAction& action, const QVariant& value)
    {
        return ShapeProperties::convert(value, static_cast<Action&>(action).*member);
    }
};

/// A setting that is a member of the action.
template <auto member>
constexpr ActionSetting of(const char* name)
{
    return {QLatin1String(name), &MemberOf<member>::read, &MemberOf<member>::write};
}

} // namespace ActionSettings
