#include "platform/data/datadispatcher.h"

#include "platform/data/datafieldinfo.h"
#include "platform/data/dataserviceinterface.h"
#include "platform/data/mwdatadepartment.h"
#include "platform/data/objecttagvalue.h"
#include "platform/data/scadaruntimeinterface.h"

void DataDispatcher::addTagValue(ObjectTagValue* value)
{
    m_values.push_back(value);
}

void DataDispatcher::dispatch(const MwDataDepartment& batch, ScadaRuntimeInterface* runtime,
                              DataServiceInterface* service) const
{
    for (ObjectTagValue* value : m_values) {
        const ObjectKey object{value->objectKind(), value->getPid()};
        if (value->isMMDataAcceptable()) {
            if (const QuorixData* record = batch.find(object.type, object.id))
                value->setMMValue(record);
            continue;
        }
        const DataFieldInfo& field = *value->field(); // only a bound field is supplied by someone else
        if (field.supplier() == DataFieldInfo::Supplier::History) {
            if (service)
                value->setValue(service->historyValue(object, field.field));
        } else if (runtime) {
            value->setValue(runtime->fieldValue(object, field.field));
        }
    }
}
