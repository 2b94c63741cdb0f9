#include "platform/data/datafieldinfo.h"

#include <QtTest>

#include <limits>

using DataCode::DataField;
using Korvane::ScadaObjectType;

class tst_DataFieldInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void codesAreTheStoredOnes()
    {
        QVector<int> codes;
        for (const DataFieldInfo* entry : DataFieldInfo::all())
            codes.append(static_cast<int>(entry->field));

        QVector<int> expected;
        const auto append = [&expected](int first, int last) {
            for (int code = first; code <= last; ++code)
                expected.append(code);
        };
        append(0, 51);
        append(66, 76);
        append(93, 99);
        append(30000, 30003);
        append(30006, 30007);
        append(100001, 100004);
        append(100007, 100007);
        QCOMPARE(codes, expected);
    }

    void everyNameGivesItsCodeBack()
    {
        QSet<QString> names;
        for (const DataFieldInfo* entry : DataFieldInfo::all()) {
            const QString name = Korvane::dtFieldToString(entry->field);
            QCOMPARE(name, QString::fromLatin1(entry->name));
            QCOMPARE(Korvane::dtStringToCode(name), entry->field);
            QCOMPARE(DataFieldInfo::find(entry->field), entry);
            QCOMPARE(DataFieldInfo::find(QStringView(name)), entry);
            QVERIFY2(!name.isEmpty() && !name.contains(QLatin1Char(':')), entry->name);
            for (const QChar character : name)
                QVERIFY2(character.unicode() < 0x80, entry->name);
            names.insert(name);
        }
        QCOMPARE(names.size(), static_cast<int>(DataFieldInfo::all().size()));
    }

    void namesOfTheField_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QString>("name");
        QTest::newRow("current value") << 0 << "Value";
        QTest::newRow("high limit") << 30002 << "HighLimit";
        QTest::newRow("maximum of today") << 24 << "TodayMaximum";
        QTest::newRow("mean of a past period, beyond 16 bits") << 100003 << "PastMean";
    }
    void namesOfTheField()
    {
        QFETCH(int, code);
        QFETCH(QString, name);
        QCOMPARE(Korvane::dtFieldToString(DataField(code)), name);
        QCOMPARE(static_cast<int>(Korvane::dtStringToCode(name)), code);
    }

    void unknownNamesGiveMinusOne_data()
    {
        QTest::addColumn<QString>("name");
        QTest::newRow("null") << QString();
        QTest::newRow("empty") << "";
        QTest::newRow("other case") << "value";
        QTest::newRow("beginning of a name") << "HighLimi";
        QTest::newRow("more than a name") << "HighLimits";
        QTest::newRow("blank behind") << "Value ";
        QTest::newRow("not ASCII") << QString::fromUtf8("Välue");
        QTest::newRow("before the first") << "A";
        QTest::newRow("behind the last") << "zzz";
    }
    void unknownNamesGiveMinusOne()
    {
        QFETCH(QString, name);
        QCOMPARE(static_cast<int>(Korvane::dtStringToCode(name)), -1);
        QVERIFY(!DataFieldInfo::find(QStringView(name)));
    }

    void unknownCodesGiveAnEmptyText_data()
    {
        QTest::addColumn<int>("code");
        QTest::newRow("no field") << -1;
        QTest::newRow("gap") << 52;
        QTest::newRow("mark of a constant") << 20000;
        QTest::newRow("past maximum cut to 16 bits") << 34465;
        QTest::newRow("behind the last") << 100008;
        QTest::newRow("least") << std::numeric_limits<int>::min();
    }
    void unknownCodesGiveAnEmptyText()
    {
        QFETCH(int, code);
        QVERIFY(Korvane::dtFieldToString(DataField(code)).isEmpty());
        QVERIFY(!DataFieldInfo::find(DataField(code)));
    }

    void suppliedByTheRecord()
    {
        QStringList supplied;
        for (const DataFieldInfo* entry : DataFieldInfo::all()) {
            QCOMPARE(entry->supplier() == DataFieldInfo::Supplier::Record, entry->recordMember != nullptr);
            if (entry->recordMember)
                supplied.append(QString::fromLatin1(entry->name) + QLatin1Char('=') +
                                QString::fromLatin1(entry->recordMember));
        }
        QCOMPARE(supplied, QStringList({QStringLiteral("Value=value"), QStringLiteral("UpdateTime=time"),
                                        QStringLiteral("CommState=commState"), QStringLiteral("ScanState=scanState"),
                                        QStringLiteral("DriverState=driverState")}));
    }

    void fieldsByKind_data()
    {
        QTest::addColumn<int>("code");
        QTest::addColumn<QList<int>>("kinds");
        QTest::newRow("current value: points") << 0 << QList<int>{0, 1, 6};
        QTest::newRow("high limit: analog points") << 30002 << QList<int>{1, 6};
        QTest::newRow("on count: digital points") << 6 << QList<int>{0, 6};
        QTest::newRow("update time: points and units") << 76 << QList<int>{0, 1, 2, 6};
        QTest::newRow("communication state: units and lines") << 93 << QList<int>{2, 3};
        QTest::newRow("scan state: units") << 94 << QList<int>{2};
        QTest::newRow("driver state: lines") << 99 << QList<int>{3};
    }
    void fieldsByKind()
    {
        QFETCH(int, code);
        QFETCH(QList<int>, kinds);
        QList<int> having;
        for (const int kind : {-1, 0, 1, 2, 3, 4, 5, 6, 7}) {
            if (DataFieldInfo::find(DataField(code))->isFieldOf(ScadaObjectType(kind)))
                having.append(kind);
        }
        QCOMPARE(having, kinds);
    }
};

QTEST_GUILESS_MAIN(tst_DataFieldInfo)
#include "tst_datafieldinfo.moc"
