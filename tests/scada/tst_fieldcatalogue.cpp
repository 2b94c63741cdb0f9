#include "platform/data/datafieldinfo.h"
#include "scada/binding/objecttarget.h"
#include "tests/support/testruntime.h"

#include <QtTest>

using DataCode::DataField;
Q_DECLARE_METATYPE(DataCode::DataField)

using FieldList = ObjectTarget::FieldList;
using Korvane::ScadaObjectType;

namespace {

// clang-format off
const FieldList digitalRows = {
    {DataField(0), QStringLiteral("Current Value")},
    {DataField(2), QStringLiteral("Point Name")},
    {DataField(30006), QStringLiteral("Point Description")},
    {DataField(30007), QStringLiteral("DisplayName")},
    {DataField(4), QStringLiteral("Station Name")},
    {DataField(5), QStringLiteral("Full Name")},
    {DataField(3), QStringLiteral("Status Name")},
    {DataField(42), QStringLiteral("On Count in this hour")},
    {DataField(43), QStringLiteral("Off Count in this hour")},
    {DataField(44), QStringLiteral("On Duration in this hour")},
    {DataField(45), QStringLiteral("Off Duration in this hour")},
    {DataField(6), QStringLiteral("On Count in this day")},
    {DataField(7), QStringLiteral("Off Count in this day")},
    {DataField(8), QStringLiteral("On Duration in this day")},
    {DataField(9), QStringLiteral("Off Duration in this day")},
    {DataField(14), QStringLiteral("On Count in this month")},
    {DataField(15), QStringLiteral("Off Count in this month")},
    {DataField(16), QStringLiteral("On Duration in this month")},
    {DataField(17), QStringLiteral("Off Duration in this month")},
    {DataField(72), QStringLiteral("On Count in this year")},
    {DataField(73), QStringLiteral("Off Count in this year")},
    {DataField(74), QStringLiteral("On Duration in this year")},
    {DataField(75), QStringLiteral("Off Duration in this year")},
    {DataField(10), QStringLiteral("Total On Count")},
    {DataField(11), QStringLiteral("Total Off Count")},
    {DataField(12), QStringLiteral("Total On Duration")},
    {DataField(13), QStringLiteral("Total Off Duration")},
    {DataField(76), QStringLiteral("Update Time")},
};

const FieldList analogRows = {
    {DataField(0), QStringLiteral("Current Value")},
    {DataField(1), QStringLiteral("Current Value with Unit")},
    {DataField(2), QStringLiteral("Point Name")},
    {DataField(30006), QStringLiteral("Point Description")},
    {DataField(30007), QStringLiteral("DisplayName")},
    {DataField(4), QStringLiteral("Station Name")},
    {DataField(5), QStringLiteral("Full Name")},
    {DataField(18), QStringLiteral("Time Maximum Value")},
    {DataField(19), QStringLiteral("Time Minimum Value")},
    {DataField(20), QStringLiteral("Time Avarge Value")},
    {DataField(21), QStringLiteral("Time accumulated Value")},
    {DataField(23), QStringLiteral("Time Maximum Time")},
    {DataField(22), QStringLiteral("Time Minimum Time")},
    {DataField(24), QStringLiteral("Today Maximum Value")},
    {DataField(25), QStringLiteral("Today Minimum Value")},
    {DataField(26), QStringLiteral("Today Avarge Value")},
    {DataField(27), QStringLiteral("Today accumulated Value")},
    {DataField(29), QStringLiteral("Today Maximum Time")},
    {DataField(28), QStringLiteral("Today Minimum Time")},
    {DataField(46), QStringLiteral("Maximum Value of Week")},
    {DataField(47), QStringLiteral("Minimum Value of Week")},
    {DataField(48), QStringLiteral("Avarge Value of Week")},
    {DataField(49), QStringLiteral("Accumulated Value of Week")},
    {DataField(51), QStringLiteral("Maximum Value Time of Week")},
    {DataField(50), QStringLiteral("Minimum Value Time of Week")},
    {DataField(30), QStringLiteral("Month Maximum Value")},
    {DataField(31), QStringLiteral("Month Minimum Value")},
    {DataField(32), QStringLiteral("Month Avarge Value")},
    {DataField(33), QStringLiteral("Month accumulated Value")},
    {DataField(35), QStringLiteral("Month Maximum Time")},
    {DataField(34), QStringLiteral("Month Minimum Time")},
    {DataField(66), QStringLiteral("Year Maximum Value")},
    {DataField(67), QStringLiteral("Year Minimum Value")},
    {DataField(68), QStringLiteral("Year Avarge Value")},
    {DataField(69), QStringLiteral("Year accumulated Value")},
    {DataField(71), QStringLiteral("Year Maximum Time")},
    {DataField(70), QStringLiteral("Year Minimum Time")},
    {DataField(36), QStringLiteral("Total Maximum Value")},
    {DataField(37), QStringLiteral("Total Minimum Value")},
    {DataField(38), QStringLiteral("Total Avarge Value")},
    {DataField(39), QStringLiteral("Total accumulated Value")},
    {DataField(41), QStringLiteral("Total Maximum Time")},
    {DataField(40), QStringLiteral("Total Minimum Time")},
    {DataField(30000), QStringLiteral("HiHi")},
    {DataField(30002), QStringLiteral("Hi")},
    {DataField(30001), QStringLiteral("LowLow")},
    {DataField(30003), QStringLiteral("Low")},
    {DataField(76), QStringLiteral("Update Time")},
};

const FieldList rtuRows = {
    {DataField(93), QStringLiteral("Comm State")},
    {DataField(94), QStringLiteral("Scan State")},
    {DataField(76), QStringLiteral("Latest Scan Time")},
    {DataField(95), QStringLiteral("Today Comm. Ratio")},
    {DataField(96), QStringLiteral("Total Comm. Ratio")},
    {DataField(97), QStringLiteral("Comm. Online Time")},
    {DataField(98), QStringLiteral("Comm. Offline Time")},
};

const FieldList channelRows = {
    {DataField(93), QStringLiteral("Comm State")},
    {DataField(99), QStringLiteral("Driver State")},
    {DataField(97), QStringLiteral("Comm. Online Time")},
    {DataField(98), QStringLiteral("Comm. Offline Time")},
};

const FieldList generalRows = {
    {DataField(0), QStringLiteral("Current Value")},
    {DataField(1), QStringLiteral("Current Value with Unit")},
    {DataField(2), QStringLiteral("Point Name")},
    {DataField(30006), QStringLiteral("Point Description")},
    {DataField(30007), QStringLiteral("DisplayName")},
    {DataField(4), QStringLiteral("Station Name")},
    {DataField(5), QStringLiteral("Full Name")},
    {DataField(3), QStringLiteral("Status Name")},
    {DataField(30000), QStringLiteral("HiHi")},
    {DataField(30002), QStringLiteral("Hi")},
    {DataField(30001), QStringLiteral("LowLow")},
    {DataField(30003), QStringLiteral("Low")},
    {DataField(18), QStringLiteral("Time Maximum Value")},
    {DataField(19), QStringLiteral("Time Minimum Value")},
    {DataField(20), QStringLiteral("Time Avarge Value")},
    {DataField(21), QStringLiteral("Time accumulated Value")},
    {DataField(23), QStringLiteral("Time Maximum Time")},
    {DataField(22), QStringLiteral("Time Minimum Time")},
    {DataField(24), QStringLiteral("Today Maximum Value")},
    {DataField(25), QStringLiteral("Today Minimum Value")},
    {DataField(26), QStringLiteral("Today Avarge Value")},
    {DataField(27), QStringLiteral("Today accumulated Value")},
    {DataField(29), QStringLiteral("Today Maximum Time")},
    {DataField(28), QStringLiteral("Today Minimum Time")},
    {DataField(46), QStringLiteral("Maximum Value of Week")},
    {DataField(47), QStringLiteral("Minimum Value of Week")},
    {DataField(48), QStringLiteral("Avarge Value of Week")},
    {DataField(49), QStringLiteral("Accumulated Value of Week")},
    {DataField(51), QStringLiteral("Maximum Value Time of Week")},
    {DataField(50), QStringLiteral("Minimum Value Time of Week")},
    {DataField(30), QStringLiteral("Month Maximum Value")},
    {DataField(31), QStringLiteral("Month Minimum Value")},
    {DataField(32), QStringLiteral("Month Avarge Value")},
    {DataField(33), QStringLiteral("Month accumulated Value")},
    {DataField(35), QStringLiteral("Month Maximum Time")},
    {DataField(34), QStringLiteral("Month Minimum Time")},
    {DataField(66), QStringLiteral("Year Maximum Value")},
    {DataField(67), QStringLiteral("Year Minimum Value")},
    {DataField(68), QStringLiteral("Year Avarge Value")},
    {DataField(69), QStringLiteral("Year accumulated Value")},
    {DataField(71), QStringLiteral("Year Maximum Time")},
    {DataField(70), QStringLiteral("Year Minimum Time")},
    {DataField(36), QStringLiteral("Total Maximum Value")},
    {DataField(37), QStringLiteral("Total Minimum Value")},
    {DataField(38), QStringLiteral("Total Avarge Value")},
    {DataField(39), QStringLiteral("Total accumulated Value")},
    {DataField(41), QStringLiteral("Total Maximum Time")},
    {DataField(40), QStringLiteral("Total Minimum Time")},
    {DataField(42), QStringLiteral("On Count in this hour")},
    {DataField(43), QStringLiteral("Off Count in this hour")},
    {DataField(44), QStringLiteral("On Duration in this hour")},
    {DataField(45), QStringLiteral("Off Duration in this hour")},
    {DataField(6), QStringLiteral("On Count in this day")},
    {DataField(7), QStringLiteral("Off Count in this day")},
    {DataField(8), QStringLiteral("On Duration in this day")},
    {DataField(9), QStringLiteral("Off Duration in this day")},
    {DataField(14), QStringLiteral("On Count in this month")},
    {DataField(15), QStringLiteral("Off Count in this month")},
    {DataField(16), QStringLiteral("On Duration in this month")},
    {DataField(17), QStringLiteral("Off Duration in this month")},
    {DataField(72), QStringLiteral("On Count in this year")},
    {DataField(73), QStringLiteral("Off Count in this year")},
    {DataField(74), QStringLiteral("On Duration in this year")},
    {DataField(75), QStringLiteral("Off Duration in this year")},
    {DataField(10), QStringLiteral("Total On Count")},
    {DataField(11), QStringLiteral("Total Off Count")},
    {DataField(12), QStringLiteral("Total On Duration")},
    {DataField(13), QStringLiteral("Total Off Duration")},
    {DataField(76), QStringLiteral("Update Time")},
};

const FieldList pointDataRows = {
    {DataField(0), QStringLiteral("Current Value")},
    {DataField(18), QStringLiteral("Time Maximum Value")},
    {DataField(19), QStringLiteral("Time Minimum Value")},
    {DataField(20), QStringLiteral("Time Avarge Value")},
    {DataField(21), QStringLiteral("Time accumulated Value")},
    {DataField(24), QStringLiteral("Today Maximum Value")},
    {DataField(25), QStringLiteral("Today Minimum Value")},
    {DataField(26), QStringLiteral("Today Avarge Value")},
    {DataField(27), QStringLiteral("Today accumulated Value")},
    {DataField(46), QStringLiteral("Maximum Value of Week")},
    {DataField(47), QStringLiteral("Minimum Value of Week")},
    {DataField(48), QStringLiteral("Avarge Value of Week")},
    {DataField(49), QStringLiteral("Accumulated Value of Week")},
    {DataField(51), QStringLiteral("Maximum Value Time of Week")},
    {DataField(50), QStringLiteral("Minimum Value Time of Week")},
    {DataField(30), QStringLiteral("Month Maximum Value")},
    {DataField(31), QStringLiteral("Month Minimum Value")},
    {DataField(32), QStringLiteral("Month Avarge Value")},
    {DataField(33), QStringLiteral("Month accumulated Value")},
    {DataField(66), QStringLiteral("Year Maximum Value")},
    {DataField(67), QStringLiteral("Year Minimum Value")},
    {DataField(68), QStringLiteral("Year Avarge Value")},
    {DataField(69), QStringLiteral("Year accumulated Value")},
    {DataField(71), QStringLiteral("Year Maximum Time")},
    {DataField(70), QStringLiteral("Year Minimum Time")},
    {DataField(36), QStringLiteral("Total Maximum Value")},
    {DataField(37), QStringLiteral("Total Minimum Value")},
    {DataField(38), QStringLiteral("Total Avarge Value")},
    {DataField(39), QStringLiteral("Total accumulated Value")},
    {DataField(42), QStringLiteral("On Count in this hour")},
    {DataField(43), QStringLiteral("Off Count in this hour")},
    {DataField(44), QStringLiteral("On Duration in this hour")},
    {DataField(45), QStringLiteral("Off Duration in this hour")},
    {DataField(6), QStringLiteral("On Count in this day")},
    {DataField(7), QStringLiteral("Off Count in this day")},
    {DataField(8), QStringLiteral("On Duration in this day")},
    {DataField(9), QStringLiteral("Off Duration in this day")},
    {DataField(14), QStringLiteral("On Count in this month")},
    {DataField(15), QStringLiteral("Off Count in this month")},
    {DataField(16), QStringLiteral("On Duration in this month")},
    {DataField(17), QStringLiteral("Off Duration in this month")},
    {DataField(72), QStringLiteral("On Count in this year")},
    {DataField(73), QStringLiteral("Off Count in this year")},
    {DataField(74), QStringLiteral("On Duration in this year")},
    {DataField(75), QStringLiteral("Off Duration in this year")},
    {DataField(10), QStringLiteral("Total On Count")},
    {DataField(11), QStringLiteral("Total Off Count")},
    {DataField(12), QStringLiteral("Total On Duration")},
    {DataField(13), QStringLiteral("Total Off Duration")},
    {DataField(76), QStringLiteral("Update Time")},
};

const FieldList dataLinkRows = {
    {DataField(0), QStringLiteral("Current Value")},
    {DataField(100007), QStringLiteral("Past Moment Value")},
    {DataField(100004), QStringLiteral("Past Accumulated Value")},
    {DataField(100003), QStringLiteral("Past Mean Value")},
    {DataField(100001), QStringLiteral("Past Max Value")},
    {DataField(100002), QStringLiteral("Past Min Value")},
    {DataField(18), QStringLiteral("Time Maximum Value")},
    {DataField(19), QStringLiteral("Time Minimum Value")},
    {DataField(20), QStringLiteral("Time Avarge Value")},
    {DataField(21), QStringLiteral("Time accumulated Value")},
    {DataField(24), QStringLiteral("Today Maximum Value")},
    {DataField(25), QStringLiteral("Today Minimum Value")},
    {DataField(26), QStringLiteral("Today Avarge Value")},
    {DataField(27), QStringLiteral("Today accumulated Value")},
    {DataField(46), QStringLiteral("Maximum Value of Week")},
    {DataField(47), QStringLiteral("Minimum Value of Week")},
    {DataField(48), QStringLiteral("Avarge Value of Week")},
    {DataField(49), QStringLiteral("Accumulated Value of Week")},
    {DataField(51), QStringLiteral("Maximum Value Time of Week")},
    {DataField(50), QStringLiteral("Minimum Value Time of Week")},
    {DataField(30), QStringLiteral("Month Maximum Value")},
    {DataField(31), QStringLiteral("Month Minimum Value")},
    {DataField(32), QStringLiteral("Month Avarge Value")},
    {DataField(33), QStringLiteral("Month accumulated Value")},
    {DataField(66), QStringLiteral("Year Maximum Value")},
    {DataField(67), QStringLiteral("Year Minimum Value")},
    {DataField(68), QStringLiteral("Year Avarge Value")},
    {DataField(69), QStringLiteral("Year accumulated Value")},
    {DataField(71), QStringLiteral("Year Maximum Time")},
    {DataField(70), QStringLiteral("Year Minimum Time")},
    {DataField(36), QStringLiteral("Total Maximum Value")},
    {DataField(37), QStringLiteral("Total Minimum Value")},
    {DataField(38), QStringLiteral("Total Avarge Value")},
    {DataField(39), QStringLiteral("Total accumulated Value")},
};

// clang-format on

FieldList listOf(const QString& tag)
{
    return ObjectTarget::getPointFieldInformationByTagString(tag);
}

} // namespace

class tst_FieldCatalogue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listsByKind_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<FieldList>("rows");
        QTest::addColumn<int>("count");
        QTest::newRow("digital point") << 0 << digitalRows << 28;
        QTest::newRow("analog point") << 1 << analogRows << 48;
        QTest::newRow("unit") << 2 << rtuRows << 7;
        QTest::newRow("line") << 3 << channelRows << 4;
        QTest::newRow("no kind: the general list") << -1 << generalRows << 69;
        QTest::newRow("unknown kind: the general list") << 5 << generalRows << 69;
        QTest::newRow("point of unknown kind: the general list") << 6 << generalRows << 69;
        QTest::newRow("property: the general list") << 7 << generalRows << 69;
    }
    void listsByKind()
    {
        QFETCH(int, kind);
        QFETCH(FieldList, rows);
        QFETCH(int, count);
        QCOMPARE(rows.size(), count);
        QCOMPARE(ObjectTarget::getFieldInformationByType(ScadaObjectType(kind)), rows);
    }

    void historyFieldsOfAPoint()
    {
        QCOMPARE(pointDataRows.size(), 50);
        QCOMPARE(ObjectTarget::getPointDataFieldInformation(), pointDataRows);
    }

    void fieldsOfADataLinkItem()
    {
        QCOMPARE(dataLinkRows.size(), 34);
        QCOMPARE(ObjectTarget::getDataLinkItemFieldInformation(), dataLinkRows);
    }

    void listsByTag_data()
    {
        QTest::addColumn<QString>("tag");
        QTest::addColumn<FieldList>("rows");
        QTest::newRow("before the digital range") << "#100000" << generalRows;
        QTest::newRow("first digital id") << "#100001" << digitalRows;
        QTest::newRow("last digital id") << "#199999" << digitalRows;
        QTest::newRow("between the ranges") << "#200000" << generalRows;
        QTest::newRow("first analog id") << "#200001" << analogRows;
        QTest::newRow("last analog id") << "#2999999" << analogRows;
        QTest::newRow("behind the analog range") << "#3000000" << generalRows;
        QTest::newRow("with a field") << "#200001:HighLimit" << analogRows;
        QTest::newRow("a name without an id") << "PUMP" << generalRows;
        QTest::newRow("a constant") << "12.5" << generalRows;
        QTest::newRow("empty") << "" << generalRows;
        QTest::newRow("the id decides, not the kind of the prefix") << "@R::#200001" << analogRows;
    }
    void listsByTag()
    {
        QFETCH(QString, tag);
        QTEST(listOf(tag), "rows");
    }

    void aNameInTheDirectoryGivesItsPointsList()
    {
        TestRuntime directory;
        directory.add(ScadaObjectType::DigitalPoint, 100001, QStringLiteral("VALVE"));
        PointDirectory::registerDirectory(&directory);
        QCOMPARE(listOf(QStringLiteral("VALVE")), digitalRows);
        PointDirectory::registerDirectory(nullptr);
        QCOMPARE(listOf(QStringLiteral("VALVE")), generalRows);
    }

    void twoCallsGiveIndependentLists()
    {
        FieldList first = ObjectTarget::getFieldInformationByType(ScadaObjectType::ChannelObject);
        const FieldList second = ObjectTarget::getFieldInformationByType(ScadaObjectType::ChannelObject);
        QCOMPARE(first, second);
        first.removeFirst();
        first[0].second.clear();
        QCOMPARE(second, channelRows);
        QCOMPARE(ObjectTarget::getFieldInformationByType(ScadaObjectType::ChannelObject), channelRows);
    }

    void theFieldTableSaysTheSame_data()
    {
        QTest::addColumn<int>("kind");
        QTest::newRow("digital point") << 0;
        QTest::newRow("analog point") << 1;
        QTest::newRow("unit") << 2;
        QTest::newRow("line") << 3;
    }
    void theFieldTableSaysTheSame()
    {
        QFETCH(int, kind);
        QSet<int> offered;
        for (const auto& [field, name] : ObjectTarget::getFieldInformationByType(ScadaObjectType(kind)))
            offered.insert(static_cast<int>(field));
        QSet<int> known;
        for (const DataFieldInfo* entry : DataFieldInfo::all()) {
            const bool isPast = entry->field >= DataField::PastMaximum; // offered for data-link items alone
            if (!isPast && entry->isFieldOf(ScadaObjectType(kind)))
                known.insert(static_cast<int>(entry->field));
        }
        QCOMPARE(known, offered);
    }
};

QTEST_GUILESS_MAIN(tst_FieldCatalogue)
#include "tst_fieldcatalogue.moc"
