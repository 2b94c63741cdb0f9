#include "platform/data/objecttagvalue.h"

#include "platform/data/datalinkinfo.h"
#include "platform/data/quorixdata.h"
#include "platform/data/samevalue.h"

#include <utility>

quint64 ObjectTagValue::s_bindingChanges = 0;

ObjectTagValue::ObjectTagValue() = default;
ObjectTagValue::ObjectTagValue(const ObjectTagValue& other) = default;
ObjectTagValue& ObjectTagValue::operator=(const ObjectTagValue& other)
{
    if (this == &other)
        return *this;
    m_pid = other.m_pid;
    m_kind = other.m_kind;
    m_value = other.m_value;
    m_fieldValues = other.m_fieldValues;
    m_field = other.m_field;
    countBindingChange();
    return *this;
}
ObjectTagValue::~ObjectTagValue() = default;

void ObjectTagValue::setLinkData(const Korvane::DataLinkInfo& link)
{
    countBindingChange();
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

bool ObjectTagValue::setMMValue(const QuorixData* record)
{
    const char* member = recordMember();
    const QuorixValue* value = member ? record->GetValue(member) : nullptr;
    if (!value)
        return !isSameValue(m_value, m_value); // NaN is never the same, not even left alone
    QVariant next = value->toVariant();
    const bool isChanged = !isSameValue(next, m_value);
    m_value = std::move(next);
    return isChanged;
}
