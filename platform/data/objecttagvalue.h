#pragma once

#include "platform/data/datacode.h"
#include "platform/data/scadaobjecttype.h"
#include "platform/platformexport.h"

#include <QMap>
#include <QVariant>

struct DataFieldInfo;
class QuorixData;

namespace Korvane {
struct DataLinkInfo;
}

/// The value side of a tag reference: which object and field it is bound to, and the last value received for it.
///
/// A default value is bound to nothing (kind NoObject, id 0) and holds no value. One that was never given a field
/// stands for the object's current value.
class KORVANE_PLATFORM_EXPORT ObjectTagValue
{
public:
    ObjectTagValue();
    ObjectTagValue(const ObjectTagValue& other);
    ObjectTagValue& operator=(const ObjectTagValue& other);
    ~ObjectTagValue();

    /// Id of the bound object, 0 when unknown.
    qint32 getPid() const { return m_pid; }

    const QVariant& value() const { return m_value; }
    void setValue(const QVariant& value) { m_value = value; }

    /// The bound field; null for the current value.
    const DataFieldInfo* field() const { return m_field; }

    /// Values of further fields of the same object, kept here by whoever reads them together with the current one;
    /// invalid for a field never set.
    QVariant fieldValue(DataCode::DataField field) const { return m_fieldValues.value(field); }
    void setFieldValue(DataCode::DataField field, const QVariant& value) { m_fieldValues.insert(field, value); }

    /// Binds to the object and field of \p link: kind, id (0 included, so that a name that resolves to nothing never
    /// goes on receiving the object before it) and field. An unknown field name binds the current value. The value
    /// stays, but for a constant link, which sets it to its number.
    void setLinkData(const Korvane::DataLinkInfo& link);

    /// Whether the bound field is one that a middleware record supplies.
    bool isMMDataAcceptable() const;

    /// Whether the bound field is one that the runtime database supplies, for the object \p pointId that this is bound
    /// to.
    bool isDBAcceptable(int pointId) const;

    /// Takes the value of the bound field from \p record; a record without it leaves the value as it was. \p record must not be null and is
    /// only read. To be called where isMMDataAcceptable() holds; otherwise it does nothing.
    void setMMValue(const QuorixData* record);

protected:
    qint32 m_pid = 0;
    Korvane::ScadaObjectType m_kind = Korvane::ScadaObjectType::NoObject;
    QVariant m_value;
    QMap<DataCode::DataField, QVariant> m_fieldValues;
    const DataFieldInfo* m_field = nullptr;
};
