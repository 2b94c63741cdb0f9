#include "platform/data/mwdatadepartment.h"
#include "platform/data/quorixdata.h"
#include "tests/support/allocationcounter.h"

#include <QtTest>

class tst_QuorixData : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshRecordHasNoMember_data() { memberNames(); }
    void aFreshRecordHasNoMember()
    {
        QFETCH(QByteArray, name);
        QVERIFY(!QuorixData().GetValue(name.constData()));
    }

    void aMemberIsSetReplacedAndTakenOut_data() { memberNames(); }
    void aMemberIsSetReplacedAndTakenOut()
    {
        QFETCH(QByteArray, name);
        QuorixData record;
        record.setMember(name.constData(), QuorixValue()); // taking out what is not there changes nothing
        QVERIFY(!record.GetValue(name.constData()));
        record.setMember(name.constData(), QuorixValue(1));
        QCOMPARE(record.GetValue(name.constData())->toInt32(), 1);
        record.setMember(name.constData(), QuorixValue(2));
        QCOMPARE(record.GetValue(name.constData())->toInt32(), 2);
        record.setMember(name.constData(), QuorixValue());
        QVERIFY(!record.GetValue(name.constData()));
    }

    void membersStandApart()
    {
        const char* const names[] = {"value", "tag", "limit", "quality", "time", "commState", "driverState"};
        QuorixData record;
        int number = 0;
        for (const char* name : names)
            record.setMember(name, QuorixValue(++number));
        number = 0;
        for (const char* name : names)
            QCOMPARE(record.GetValue(name)->toInt32(), ++number);
        QVERIFY(!record.GetValue("Value"));
        QVERIFY(!record.GetValue("val"));
        QVERIFY(!record.GetValue(""));
    }

    void changingACopyLeavesTheOriginal()
    {
        QuorixData original;
        original.setMember("value", QuorixValue(1));
        original.setMember("commState", QuorixValue(1));
        QuorixData copy = original;
        copy.setMember("value", QuorixValue(2));
        copy.setMember("commState", QuorixValue(2));
        QCOMPARE(original.GetValue("value")->toInt32(), 1);
        QCOMPARE(original.GetValue("commState")->toInt32(), 1);
        QCOMPARE(copy.GetValue("value")->toInt32(), 2);
        QCOMPARE(copy.GetValue("commState")->toInt32(), 2);
    }

    void isSmallAndCopiesWithoutAllocating()
    {
        QVERIFY(sizeof(QuorixData) <= 96);
        QuorixData record;
        record.setMember("value", QuorixValue(12.5));
        record.setMember("tag", QuorixValue(1));
        record.setMember("limit", QuorixValue(2));
        record.setMember("quality", QuorixValue(0));
        record.setMember("time", QuorixValue(QDateTime::fromMSecsSinceEpoch(1, Qt::UTC)));
        const AllocationCounter counter;
        const QuorixData copy = record;
        const QuorixValue* value = copy.GetValue("value");
        const std::size_t count = counter.count();
        QCOMPARE(count, std::size_t(0));
        QCOMPARE(value->toDouble(), 12.5);
    }

    void aBatchKeepsTheFamiliesApart()
    {
        MwDataDepartment batch;
        batch.points[5].setMember("value", QuorixValue(1));
        batch.rtus[5].setMember("value", QuorixValue(2));
        QCOMPARE(batch.points.at(5).GetValue("value")->toInt32(), 1);
        QCOMPARE(batch.rtus.at(5).GetValue("value")->toInt32(), 2);
        QVERIFY(batch.channels.empty());
        QVERIFY(batch.points.find(0xFFFFFFFF) == batch.points.end());
    }

private:
    static void memberNames()
    {
        QTest::addColumn<QByteArray>("name");
        for (const char* name : {"value", "tag", "limit", "quality", "time", "commState", "", "value "})
            QTest::addRow("\"%s\"", name) << QByteArray(name);
    }
};

QTEST_GUILESS_MAIN(tst_QuorixData)
#include "tst_quorixdata.moc"
