#include "platform/data/tagresolution.h"

#include "platform/data/datafieldinfo.h"
#include "platform/data/pointdirectory.h"
#include "platform/data/scadaruntimeinterface.h"

#include <QStringView>

#include <algorithm>
#include <limits>
#include <optional>

namespace Korvane {

namespace {

/// A tag string taken apart; the views look into the text that was parsed.
struct TagParts
{
    ScadaObjectType family = ScadaObjectType::NoObject; ///< NoObject for constants and the empty text
    QStringView name;
    const DataFieldInfo* field = nullptr;
    std::optional<quint32> id; ///< set when the name is "#" and digits
};

/// Whether \p character can stand in a text that QString::toDouble takes: digits, signs, point, exponent, the letters
/// of "nan" and "inf", and blanks.
bool isOfNumbers(QChar character)
{
    switch (character.unicode()) {
    case u'+':
    case u'-':
    case u'.':
    case u'\u2212': // the minus sign of typesetters
        return true;
    default:
        break;
    }
    const auto lower = static_cast<ushort>(character.unicode() | 0x20);
    if ((lower >= u'0' && lower <= u'9') || lower == u'a' || lower == u'e' || lower == u'f' || lower == u'i' ||
        lower == u'n')
        return true;
    return character.isSpace();
}

bool isConstant(const QString& text)
{
    // Most tags are told from numbers by their first characters, without toDouble's copy of the text.
    if (!std::all_of(text.begin(), text.end(), isOfNumbers))
        return false;
    bool ok = false;
    text.toDouble(&ok);
    return ok;
}

std::optional<quint32> idFromName(QStringView name)
{
    if (name.size() < 2 || name.front() != QLatin1Char('#'))
        return std::nullopt;
    quint64 id = 0;
    for (const QChar digit : name.mid(1)) {
        if (digit < QLatin1Char('0') || digit > QLatin1Char('9'))
            return std::nullopt;
        id = id * 10 + static_cast<quint64>(digit.unicode() - u'0');
        if (id > std::numeric_limits<quint32>::max())
            return std::nullopt;
    }
    return static_cast<quint32>(id);
}

void takePrefix(TagParts& parts)
{
    for (const ScadaObjectType type :
         {ScadaObjectType::RtuObject, ScadaObjectType::ChannelObject, ScadaObjectType::ApplicationProperty}) {
        const QString prefix = tagPrefix(type);
        if (parts.name.startsWith(prefix)) {
            parts.family = type;
            parts.name = parts.name.mid(prefix.size());
            return;
        }
    }
}

void takeField(TagParts& parts)
{
    const auto behindColon = std::find(parts.name.rbegin(), parts.name.rend(), QLatin1Char(':')).base();
    if (behindColon == parts.name.begin())
        return;
    parts.field = DataFieldInfo::find(QStringView(behindColon, parts.name.end()));
    if (parts.field)
        parts.name = QStringView(parts.name.begin(), behindColon - 1);
}

TagParts parse(const QString& tag)
{
    TagParts parts;
    parts.name = tag;
    if (tag.isEmpty() || isConstant(tag))
        return parts;

    parts.family = ScadaObjectType::Point;
    if (parts.name.front() == QLatin1Char('@'))
        takePrefix(parts);
    takeField(parts);
    if (parts.family != ScadaObjectType::ApplicationProperty) // properties have names alone
        parts.id = idFromName(parts.name);
    return parts;
}

bool belongsToFamily(ObjectKey key, ScadaObjectType family)
{
    if (!key.isValid())
        return false;
    return family == ScadaObjectType::Point ? isPointObjectType(key.type) : key.type == family;
}

ObjectKey findInRuntime(const TagParts& parts, const ScadaRuntimeInterface& runtime)
{
    if (parts.family == ScadaObjectType::ApplicationProperty)
        return {};
    return parts.id ? runtime.findById(parts.family, static_cast<qint32>(*parts.id))
                    : runtime.findByName(parts.family, parts.name);
}

ObjectKey findByTextAlone(const TagParts& parts)
{
    if (parts.id) {
        const auto id = static_cast<qint32>(*parts.id);
        if (parts.family != ScadaObjectType::Point)
            return {parts.family, id};
        const ScadaObjectType byRange = pointTypeOfId(id);
        return {byRange == ScadaObjectType::NoObject ? ScadaObjectType::Point : byRange, id};
    }
    const PointDirectory* directory = PointDirectory::registered();
    if (directory && parts.family == ScadaObjectType::Point)
        return directory->findPoint(parts.name);
    return {};
}

} // namespace

DataLinkInfo resolveFromString(const QString& tag, const ScadaRuntimeInterface* runtime)
{
    const TagParts parts = parse(tag);
    DataLinkInfo link;
    link.type = parts.family;
    // A tag that is all name shares its text with the link.
    link.name = parts.name.size() == tag.size() ? tag : parts.name.toString();
    if (parts.family == ScadaObjectType::NoObject)
        return link;

    if (parts.field)
        link.field = dtFieldToString(parts.field->field);
    const ObjectKey found = runtime ? findInRuntime(parts, *runtime) : findByTextAlone(parts);
    // An answer of another family would give the link another prefix, and absoluteName() another object.
    if (belongsToFamily(found, parts.family)) {
        link.type = found.type;
        link.id = found.id;
    }
    return link;
}

DataLinkInfo quickResolveFromString(const QString& tag)
{
    return resolveFromString(tag, nullptr);
}

bool isAddressableName(const QString& name, ScadaObjectType type)
{
    if (name.isEmpty() || type == ScadaObjectType::NoObject)
        return false;
    if (isPointObjectType(type) && name.startsWith(QLatin1Char('@')))
        return false;
    const QString tag = tagPrefix(type) + name;
    const TagParts parts = parse(tag);
    return parts.family != ScadaObjectType::NoObject && !parts.field && !parts.id;
}

} // namespace Korvane
