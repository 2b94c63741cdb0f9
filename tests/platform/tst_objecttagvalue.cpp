#include "platform/data/datafieldinfo.h"
#include "platform/data/datalinkinfo.h"
#include "platform/data/objecttagvalue.h"
#include "platform/data/quorixdata.h"

#include <QtTest>

#include <type_traits>

using DataCode::DataField;
using Korvane::DataLinkInfo;
using Korvane::ScadaObjectType;

static_assert(!std::is_polymorphic_v<ObjectTagValue>);

namespace {

struct Inspected : ObjectTagValue
{
    ScadaObjectType kind() const { return m_kind; }
};

DataLinkInfo link(ScadaObjectType type, qint32 id, const char* name, const char* field = "")
{
    return {type, id, QString::fromLatin1(name), QString::fromLatin1(field)};
}

} // namespace

class tst_ObjectTagValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isBoundToNothingAtFirst()
    {
        const Inspected value;
        QCOMPARE(value.getPid(), 0);
        QCOMPARE(value.kind(), ScadaObjectType::NoObject);
        QVERIFY(!value.value().isValid());
        QVERIFY(!value.field());
        QVERIFY(!value.fieldValue(DataField::HighLimit).isValid());
    }

    void aLinkSetsKindIdAndField()
    {
        Inspected value;
        value.setValue(3);
        value.setLinkData(link(ScadaObjectType::AnalogPoint, 200001, "PUMP", "HighLimit"));
        QCOMPARE(value.getPid(), 200001);
        QCOMPARE(value.kind(), ScadaObjectType::AnalogPoint);
        QCOMPARE(value.field(), DataFieldInfo::find(DataField::HighLimit));
        QCOMPARE(value.value(), QVariant(3));
    }

    void aNameThatResolvesToNothingSetsIdZero()
    {
        Inspected value;
        value.setLinkData(link(ScadaObjectType::AnalogPoint, 200001, "PUMP", "HighLimit"));
        value.setLinkData(link(ScadaObjectType::Point, 0, "GONE"));
        QCOMPARE(value.getPid(), 0);
        QCOMPARE(value.kind(), ScadaObjectType::Point);
        QVERIFY(!value.field());
    }

    void aConstantLinkSetsTheValue()
    {
        ObjectTagValue value;
        value.setLinkData(link(ScadaObjectType::NoObject, 0, "12.5"));
        QCOMPARE(value.value(), QVariant(12.5));
        QCOMPARE(value.value().userType(), int(QMetaType::Double));
        value.setLinkData(link(ScadaObjectType::NoObject, 0, ""));
        QCOMPARE(value.value(), QVariant(12.5));
    }

    void aNumberAsAPointsNameSetsNoValue()
    {
        ObjectTagValue value;
        value.setLinkData(link(ScadaObjectType::RtuObject, 1, "12.5"));
        QVERIFY(!value.value().isValid());
    }

    void acceptance_data()
    {
        QTest::addColumn<QString>("field");
        QTest::addColumn<bool>("record");
        QTest::addColumn<bool>("database");
        QTest::newRow("never given a field") << "" << true << false;
        QTest::newRow("current value") << "Value" << true << false;
        QTest::newRow("time of the record") << "UpdateTime" << true << false;
        QTest::newRow("limit") << "HighLimit" << false << true;
        QTest::newRow("statistic") << "TodayMaximum" << false << true;
        QTest::newRow("state of a line") << "DriverState" << true << false;
        QTest::newRow("unknown field") << "Nothing" << true << false;
    }
    void acceptance()
    {
        QFETCH(QString, field);
        ObjectTagValue value;
        value.setLinkData({ScadaObjectType::AnalogPoint, 200001, QStringLiteral("PUMP"), field});
        QTEST(value.isMMDataAcceptable(), "record");
        QTEST(value.isDBAcceptable(200001), "database");
        QVERIFY(!value.isDBAcceptable(200002));
    }

    void aRecordSuppliesTheBoundField()
    {
        const QDateTime time = QDateTime::fromMSecsSinceEpoch(1234567, Qt::UTC);
        QuorixData record;
        record.setMember("value", QuorixValue(7.5));
        record.setMember("time", QuorixValue(time));

        ObjectTagValue value;
        QVERIFY(value.setMMValue(&record));
        QCOMPARE(value.value(), QVariant(7.5));
        QVERIFY(!value.setMMValue(&record));
        value.setLinkData(link(ScadaObjectType::AnalogPoint, 200001, "PUMP", "UpdateTime"));
        value.setMMValue(&record);
        QCOMPARE(value.value(), QVariant(time));
        value.setLinkData(link(ScadaObjectType::ChannelObject, 1, "COM1", "DriverState"));
        value.setMMValue(&record); // the record lacks it
        QCOMPARE(value.value(), QVariant(time));
        value.setLinkData(link(ScadaObjectType::AnalogPoint, 200001, "PUMP", "HighLimit"));
        value.setMMValue(&record); // the runtime database supplies it
        QCOMPARE(value.value(), QVariant(time));
    }

    void bindingAnewIsCounted()
    {
        ObjectTagValue value;
        ObjectTagValue other;
        const quint64 before = ObjectTagValue::bindingChanges();
        value.setValue(1);
        QCOMPARE(ObjectTagValue::bindingChanges(), before);
        value.setLinkData(link(ScadaObjectType::AnalogPoint, 200001, "PUMP"));
        QCOMPARE(ObjectTagValue::bindingChanges(), before + 1);
        other = value;
        QCOMPARE(ObjectTagValue::bindingChanges(), before + 2);
    }

    void copiesCarryEverything()
    {
        Inspected original;
        original.setLinkData(link(ScadaObjectType::AnalogPoint, 200001, "PUMP", "HighLimit"));
        original.setValue(1.5);
        original.setFieldValue(DataField::LowLimit, 0.5);
        const Inspected copy = original;
        Inspected assigned;
        assigned = original;
        for (const Inspected* other : {&copy, static_cast<const Inspected*>(&assigned)}) {
            QCOMPARE(other->getPid(), 200001);
            QCOMPARE(other->kind(), ScadaObjectType::AnalogPoint);
            QCOMPARE(other->field(), original.field());
            QCOMPARE(other->value(), QVariant(1.5));
            QCOMPARE(other->fieldValue(DataField::LowLimit), QVariant(0.5));
        }
    }
};

QTEST_GUILESS_MAIN(tst_ObjectTagValue)
#include "tst_objecttagvalue.moc"
