#include "host/checking/tagcheck.h"

#include "host/runtime/runtimedatabase.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/tagresolution.h"

using Korvane::ScadaObjectType;

std::optional<TagCheck::Found> TagCheck::run(const QString& tag, const RuntimeDatabase& database)
{
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(tag, &database);
    if (link.type == ScadaObjectType::NoObject || link.type == ScadaObjectType::ApplicationProperty)
        return std::nullopt;
    if (link.id != 0) {
        const DataFieldInfo* field = DataFieldInfo::find(link.field);
        if (!field || field->isFieldOf(link.type))
            return std::nullopt;
        return Found{"missing-field",
                     QStringLiteral("\"%1\": objects of this kind have no field \"%2\"").arg(tag, link.field)};
    }
    const int colon = tag.lastIndexOf(QLatin1Char(':'));
    const QString owner = tag.left(colon);
    if (colon > 0 && !owner.endsWith(QLatin1Char(':')) && Korvane::resolveFromString(owner, &database).id != 0)
        return Found{"missing-field", QStringLiteral("\"%1\": there is no field \"%2\"").arg(tag, tag.mid(colon + 1))};
    return Found{"unknown-tag", QStringLiteral("\"%1\" names no known object").arg(tag)};
}
