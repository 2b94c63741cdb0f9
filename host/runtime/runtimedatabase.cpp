#include "host/runtime/runtimedatabase.h"

#include "platform/data/tagresolution.h"

#include <cmath>
#include <utility>

namespace {

using Korvane::ScadaObjectType;

bool isKept(ScadaObjectType type)
{
    return type == ScadaObjectType::DigitalPoint || type == ScadaObjectType::AnalogPoint ||
           type == ScadaObjectType::RtuObject || type == ScadaObjectType::ChannelObject;
}

bool isIdOfType(qint32 id, ScadaObjectType type)
{
    return Korvane::isPointObjectType(type) ? Korvane::pointTypeOfId(id) == type : id > 0;
}

QString idRange(ScadaObjectType type)
{
    const auto range = [](qint32 first, qint32 last) { return QStringLiteral("%1 to %2").arg(first).arg(last); };
    switch (type) {
    case ScadaObjectType::DigitalPoint:
        return range(Korvane::firstDigitalPointId, Korvane::lastDigitalPointId);
    case ScadaObjectType::AnalogPoint:
        return range(Korvane::firstAnalogPointId, Korvane::lastAnalogPointId);
    default:
        return QStringLiteral("1 upwards");
    }
}

QVariant text(const QString& value)
{
    return value.isEmpty() ? QVariant() : QVariant(value);
}

QVariant limit(double value)
{
    return std::isnan(value) ? QVariant() : QVariant(value);
}

} // namespace

RuntimeDatabase::RuntimeDatabase() = default;
RuntimeDatabase::~RuntimeDatabase() = default;

const RuntimeDatabase::Family* RuntimeDatabase::family(ScadaObjectType type) const
{
    if (Korvane::isPointObjectType(type))
        return &m_points;
    if (type == ScadaObjectType::RtuObject)
        return &m_rtus;
    return type == ScadaObjectType::ChannelObject ? &m_channels : nullptr;
}

RuntimeDatabase::Family* RuntimeDatabase::family(ScadaObjectType type)
{
    return const_cast<Family*>(std::as_const(*this).family(type));
}

void RuntimeDatabase::reserve(ScadaObjectType type, std::size_t count)
{
    Family* objects = family(type);
    if (!objects)
        return;
    objects->objects.reserve(count);
    objects->byName.reserve(count);
    objects->byId.reserve(count);
}

tl::expected<void, QString> RuntimeDatabase::add(const Object& object)
{
    const auto refused = [&object](const QString& reason) {
        return tl::make_unexpected(
            QStringLiteral("%1 (id %2): %3").arg(object.name, QString::number(object.id), reason));
    };
    if (!isKept(object.type))
        return refused(QStringLiteral("kind %1 is no point, unit or line").arg(static_cast<int>(object.type)));
    if (!isIdOfType(object.id, object.type))
        return refused(QStringLiteral("the id is outside the range of its kind, %1").arg(idRange(object.type)));
    if (!Korvane::isAddressableName(object.name, object.type)) {
        return refused(
            QStringLiteral("no tag could reach this name: it is empty, a number, \"#\" with an id, begins with "
                           "\"@\" or ends in \":\" and a field"));
    }
    Family& objects = *family(object.type);
    if (objects.byId.contains(object.id))
        return refused(QStringLiteral("the id is taken by %1").arg(objects.objects[objects.byId.at(object.id)].name));
    if (objects.byName.contains(QStringView(object.name)))
        return refused(QStringLiteral("the name is taken by id %1").arg(findByName(object.type, object.name).id));

    const std::size_t index = objects.objects.size();
    objects.objects.push_back(object);
    objects.byName.emplace(QStringView(objects.objects.back().name), ObjectKey{object.type, object.id});
    objects.byId.emplace(object.id, index);
    return {};
}

std::size_t RuntimeDatabase::count(ScadaObjectType type) const
{
    const Family* objects = family(type);
    return objects ? objects->objects.size() : 0;
}

ObjectKey RuntimeDatabase::findByName(ScadaObjectType type, QStringView name) const
{
    const Family* objects = family(type);
    if (!objects)
        return {};
    const auto found = objects->byName.find(name);
    return found == objects->byName.end() ? ObjectKey{} : found->second;
}

const RuntimeDatabase::Object* RuntimeDatabase::findObject(ScadaObjectType type, qint32 id) const
{
    const Family* objects = family(type);
    if (!objects)
        return nullptr;
    const auto found = objects->byId.find(id);
    return found == objects->byId.end() ? nullptr : &objects->objects[found->second];
}

ObjectKey RuntimeDatabase::findById(ScadaObjectType type, qint32 id) const
{
    const Object* object = findObject(type, id);
    return object ? ObjectKey{object->type, id} : ObjectKey{};
}

QVariant RuntimeDatabase::fieldValue(ObjectKey key, DataCode::DataField field) const
{
    const Object* found = findObject(key.type, key.id);
    if (!found)
        return {};
    const Object& object = *found;
    switch (field) {
    case DataCode::DataField::PointName:
        return object.name;
    case DataCode::DataField::StationName:
        return text(object.station);
    case DataCode::DataField::FullName:
        return object.station.isEmpty() ? object.name : object.station + QLatin1Char('.') + object.name;
    case DataCode::DataField::Description:
        return text(object.description);
    case DataCode::DataField::DisplayName:
        return text(object.displayName);
    case DataCode::DataField::LowLowLimit:
        return limit(object.lowLow);
    case DataCode::DataField::LowLimit:
        return limit(object.low);
    case DataCode::DataField::HighLimit:
        return limit(object.high);
    case DataCode::DataField::HighHighLimit:
        return limit(object.highHigh);
    default:
        return {};
    }
}

ObjectKey RuntimeDatabase::findPoint(QStringView name) const
{
    return findByName(ScadaObjectType::Point, name);
}
