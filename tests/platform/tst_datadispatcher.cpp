#include "platform/data/datadispatcher.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/dataserviceinterface.h"
#include "platform/data/mwdatadepartment.h"
#include "platform/data/objecttagvalue.h"
#include "tests/support/testruntime.h"

#include <QtTest>

using DataCode::DataField;
using Korvane::ScadaObjectType;

namespace {

class TestDataService : public DataServiceInterface
{
public:
    bool queryUserAccounts(const QString&, QList<EUserAccount>&) override { return false; }
    QVariant historyValue(ObjectKey object, DataField field) override
    {
        asked.append({object.id, field});
        return answer;
    }

    QList<QPair<qint32, DataField>> asked;
    QVariant answer = 7.5;
};

ObjectTagValue bound(ScadaObjectType type, qint32 id, const char* field)
{
    ObjectTagValue value;
    value.setLinkData({type, id, QStringLiteral("X"), QString::fromLatin1(field)});
    value.setValue(-1);
    return value;
}

} // namespace

class tst_DataDispatcher : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_batch = {};
        m_batch.points[200001].setMember("value", QuorixValue(1.5));
        m_batch.channels[3].setMember("driverState", QuorixValue(2));
    }

    void eachFieldComesFromItsSupplier()
    {
        TestRuntime runtime;
        runtime.setFieldValue(200001, DataField::HighLimit, 80.0);
        TestDataService service;
        ObjectTagValue current = bound(ScadaObjectType::AnalogPoint, 200001, "");
        ObjectTagValue state = bound(ScadaObjectType::ChannelObject, 3, "DriverState");
        ObjectTagValue limit = bound(ScadaObjectType::AnalogPoint, 200001, "HighLimit");
        ObjectTagValue past = bound(ScadaObjectType::AnalogPoint, 200001, "PastMean");

        DataDispatcher dispatcher;
        for (ObjectTagValue* value : {&current, &state, &limit, &past})
            dispatcher.addTagValue(value);
        dispatcher.dispatch(m_batch, &runtime, &service);
        QCOMPARE(current.value(), QVariant(1.5));
        QCOMPARE(state.value(), QVariant(2));
        QCOMPARE(limit.value(), QVariant(80.0));
        QCOMPARE(past.value(), QVariant(7.5));
        QCOMPARE(service.asked, (QList<QPair<qint32, DataField>>{{200001, DataField::PastMean}}));
    }

    void whatTheDatabaseDoesNotHoldIsInvalid()
    {
        TestRuntime runtime;
        TestDataService service;
        service.answer = QVariant();
        ObjectTagValue limit = bound(ScadaObjectType::AnalogPoint, 200001, "HighLimit");
        ObjectTagValue past = bound(ScadaObjectType::AnalogPoint, 200001, "PastMean");
        DataDispatcher dispatcher;
        dispatcher.addTagValue(&limit);
        dispatcher.addTagValue(&past);
        dispatcher.dispatch(m_batch, &runtime, &service);
        QVERIFY(!limit.value().isValid());
        QVERIFY(!past.value().isValid());
    }

    void withoutASupplierValuesStay()
    {
        ObjectTagValue absent = bound(ScadaObjectType::AnalogPoint, 200002, "");
        ObjectTagValue constant = bound(ScadaObjectType::NoObject, 0, "");
        ObjectTagValue limit = bound(ScadaObjectType::AnalogPoint, 200001, "HighLimit");
        ObjectTagValue past = bound(ScadaObjectType::AnalogPoint, 200001, "PastMean");
        DataDispatcher dispatcher;
        for (ObjectTagValue* value : {&absent, &constant, &limit, &past})
            dispatcher.addTagValue(value);
        dispatcher.dispatch(m_batch, nullptr, nullptr);
        for (const ObjectTagValue* value : {&absent, &constant, &limit, &past})
            QCOMPARE(value->value(), QVariant(-1));
    }

private:
    MwDataDepartment m_batch;
};

QTEST_GUILESS_MAIN(tst_DataDispatcher)
#include "tst_datadispatcher.moc"
