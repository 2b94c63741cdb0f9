#include "platform/data/datalinkinfo.h"

namespace Korvane {

QString tagPrefix(ScadaObjectType type)
{
    switch (type) {
    case ScadaObjectType::RtuObject:
        return QStringLiteral("@R::");
    case ScadaObjectType::ChannelObject:
        return QStringLiteral("@C::");
    case ScadaObjectType::ApplicationProperty:
        return QStringLiteral("@::");
    default:
        return {};
    }
}

QString DataLinkInfo::absoluteName() const
{
    QString tag = tagPrefix(type) + name;
    if (!field.isEmpty())
        tag += QLatin1Char(':') + field;
    return tag;
}

} // namespace Korvane
