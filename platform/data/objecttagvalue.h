#pragma once

#include "platform/data/datacode.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/scadaobjecttype.h"
#include "platform/platformexport.h"

#include <QMap>
#include <QVariant>

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

    /// Kind of the bound object.
    Korvane::ScadaObjectType objectKind() const { return m_kind; }

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
    bool isMMDataAcceptable() const { return recordMember() != nullptr; }

    /// Whether the bound field is one that the dispatcher fills (from the runtime database or the history), for the
    /// object \p pointId that this is bound to.
    bool isDBAcceptable(int pointId) const { return pointId == m_pid && !isMMDataAcceptable(); }

    /// Takes the value of the bound field from \p record, which must not be null and is only read; a record without it
    /// leaves the value as it was. To be called where isMMDataAcceptable() holds; otherwise it does nothing.
    /// \returns whether the value is another one now, as isSameValue has it.
    bool setMMValue(const QuorixData* record);

    /// How often values in this program were bound to another object or field, for caches by id. GUI thread only.
    static quint64 bindingChanges() { return s_bindingChanges; }

protected:
    /// To be called by whoever sets the id otherwise than by setLinkData.
    static void countBindingChange() { ++s_bindingChanges; }

    qint32 m_pid = 0;
    Korvane::ScadaObjectType m_kind = Korvane::ScadaObjectType::NoObject;
    QVariant m_value;
    QMap<DataCode::DataField, QVariant> m_fieldValues;
    const DataFieldInfo* m_field = nullptr;

private:
    static quint64 s_bindingChanges;

    const char* recordMember() const { return m_field ? m_field->recordMember : DataFieldInfo::currentValueMember; }
};
