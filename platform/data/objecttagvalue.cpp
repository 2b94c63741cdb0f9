#include "platform/data/objecttagvalue.h"

#include "platform/data/datafieldinfo.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/quorixdata.h"

namespace {

const char* recordMember(const DataFieldInfo* field)
{
    static const char* const currentValue = DataFieldInfo::find(DataCode::DataField::Value)->recordMember;
    return field ? field->recordMember : currentValue;
}

} // namespace

ObjectTagValue::ObjectTagValue() = default;
ObjectTagValue::ObjectTagValue(const ObjectTagValue& other) = default;
ObjectTagValue& ObjectTagValue::operator=(const ObjectTagValue& other) = default;
ObjectTagValue::~ObjectTagValue() = default;

void ObjectTagValue::setLinkData(const Korvane::DataLinkInfo& link)
{
    m_kind = link.type;
    m_pid = link.id;
    m_field = link.field.isEmpty() ? nullptr : DataFieldInfo::find(QStringView(link.field));
    if (link.type != Korvane::ScadaObjectType::NoObject)
        return;
    bool isNumber = false;
    const double number = link.name.toDouble(&isNumber);
    if (isNumber)
        m_value = number;
}

bool ObjectTagValue::isMMDataAcceptable() const
{
    return recordMember(m_field) != nullptr;
}

bool ObjectTagValue::isDBAcceptable(int pointId) const
{
    return pointId == m_pid && !isMMDataAcceptable();
}

void ObjectTagValue::setMMValue(const QuorixData* record)
{
    const char* member = recordMember(m_field);
    const QuorixValue* value = member ? record->GetValue(member) : nullptr;
    if (value)
        m_value = value->toVariant();
}
