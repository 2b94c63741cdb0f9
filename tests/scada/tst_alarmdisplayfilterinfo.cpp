#include "scada/records/alarmdisplayfilterinfo.h"
#include "tests/support/storedjson.h"

#include <QtTest>

static_assert(!std::is_polymorphic_v<AlarmDisplayFilterInfo>);

using Items = QMap<int, int>;

namespace {

constexpr int leastInt = -2147483647 - 1;
constexpr int mostInt = 2147483647;

AlarmDisplayFilterInfo filledInfo()
{
    AlarmDisplayFilterInfo info;
    info.subjectToUserAor = false;
    info.severities = {1, 3};
    info.areas = {7};
    info.displayItems = {{0, 1}, {2, 0}};
    return info;
}

AlarmDisplayFilterInfo withToolBar(AlarmDisplayFilterInfo info)
{
    info.showToolBar = true;
    return info;
}

AlarmDisplayFilterInfo readBy(AlarmDisplayFilterInfo info, const QString& text)
{
    info.fromSettingInfo(text);
    return info;
}

} // namespace

class tst_AlarmDisplayFilterInfo : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDefaultRecord()
    {
        const AlarmDisplayFilterInfo info;
        QVERIFY(info.subjectToUserAor);
        QVERIFY(!info.showToolBar);
        QVERIFY(info.severities.isEmpty() && info.areas.isEmpty() && info.displayItems.isEmpty());
        QCOMPARE(info.toSettingInfo(),
                 json("{'Severity':[],'Aor':[],'SubjectToUserAor':1,'ShowToolBar':0,'DisplayItem':{}}"));
    }

    void copiesHaveEveryField()
    {
        const AlarmDisplayFilterInfo info = withToolBar(filledInfo());
        const AlarmDisplayFilterInfo copy(info);
        AlarmDisplayFilterInfo assigned;
        assigned = info;
        for (const AlarmDisplayFilterInfo& made : {copy, assigned}) {
            QVERIFY(made.isEqual(info));
            QVERIFY(!made.subjectToUserAor && made.showToolBar);
            QCOMPARE(made.severities, QList<int>({1, 3}));
            QCOMPARE(made.areas, QList<int>({7}));
            QCOMPARE(made.displayItems, Items({{0, 1}, {2, 0}}));
        }
    }

    void everyFieldCountsForEquality()
    {
        using Info = AlarmDisplayFilterInfo;
        const Info info = filledInfo();
        const auto isEqualAfter = [&info](auto change) {
            Info other = info;
            change(other);
            return info.isEqual(other) || other.isEqual(info);
        };
        QVERIFY(isEqualAfter([](Info&) {}));
        QVERIFY(!isEqualAfter([](Info& other) { other.subjectToUserAor = true; }));
        QVERIFY(!isEqualAfter([](Info& other) { other.showToolBar = true; }));
        QVERIFY(!isEqualAfter([](Info& other) { other.severities = {3, 1}; }));
        QVERIFY(!isEqualAfter([](Info& other) { other.areas.append(8); }));
        QVERIFY(!isEqualAfter([](Info& other) { other.displayItems[2] = 1; }));
    }

    void theFieldsAsWritten()
    {
        AlarmDisplayFilterInfo info = withToolBar(filledInfo());
        info.subjectToUserAor = true;
        info.areas.clear();
        QCOMPARE(info.toSettingInfo(),
                 json("{'Severity':[1,3],'Aor':[],'SubjectToUserAor':1,'ShowToolBar':1,'DisplayItem':{'0':1,'2':0}}"));

        info = AlarmDisplayFilterInfo();
        info.subjectToUserAor = false;
        info.severities = {9};
        info.areas = {mostInt, leastInt, 0, 0};
        info.displayItems = {{12, mostInt}, {2, 5}, {-1, leastInt}};
        QCOMPARE(info.toSettingInfo(),
                 json("{'Severity':[9],'Aor':[2147483647,-2147483648,0,0],'SubjectToUserAor':0,'ShowToolBar':0,"
                      "'DisplayItem':{'-1':-2147483648,'2':5,'12':2147483647}}"));
    }

    void whatIsWrittenReadsBack()
    {
        for (AlarmDisplayFilterInfo info : {AlarmDisplayFilterInfo(), filledInfo(), withToolBar(filledInfo())}) {
            info.areas += {mostInt, leastInt};
            info.displayItems[leastInt] = mostInt;
            QVERIFY(readBy(AlarmDisplayFilterInfo(), info.toSettingInfo()).isEqual(info));
            QVERIFY(readBy(filledInfo(), info.toSettingInfo()).isEqual(info));
        }
    }

    void theToolBarIsShownUnlessTheTextSaysOtherwise() // kept: older settings don't speak of it
    {
        QVERIFY(readBy(filledInfo(), json("{}")).isEqual(withToolBar(filledInfo())));
        QVERIFY(readBy(filledInfo(), json("{'Other':1}")).isEqual(withToolBar(filledInfo())));
        QVERIFY(readBy(filledInfo(), json("{'ShowToolBar':1}")).isEqual(withToolBar(filledInfo())));
        QVERIFY(readBy(withToolBar(filledInfo()), json("{'ShowToolBar':0}")).isEqual(filledInfo()));
        QVERIFY(readBy(withToolBar(filledInfo()), json("{'ShowToolBar':0},")).isEqual(withToolBar(filledInfo())));
    }

    void onlyTheToolBarIsShown_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("an empty text") << QString();
        QTest::newRow("no JSON") << QStringLiteral("Severity");
        QTest::newRow("an empty array") << json("[]");
        QTest::newRow("an array of settings") << json("[{'Aor':[1],'ShowToolBar':0}]");
        QTest::newRow("a text") << json("'Aor'");
        QTest::newRow("a number") << json("0");
        QTest::newRow("null") << json("null");
        QTest::newRow("true") << json("true");
        QTest::newRow("two roots") << json("{'Aor':[1],'ShowToolBar':0}{}");
        QTest::newRow("a comma too many") << json("{'Aor':[1,],'ShowToolBar':0}");
        QTest::newRow("an escape of half a pair") << json("{'Aor':[1],'\\ud83d':0}");
        QTest::newRow("a NUL inside a text") << json("{'Aor':[1],'") + QChar(0) + json("':0}");
        QTest::newRow("names in another case") << json("{'aor':[1],'SEVERITY':[1],'showToolBar':0,'DisplayItems':{}}");
        QTest::newRow("names with a NUL behind") << json("{'Aor\\u0000':[1],'ShowToolBar\\u0000':0}");
        QTest::newRow("lists that are none")
            << json("{'Severity':5,'Aor':{'0':1},'DisplayItem':[1,2],'Severity':'[1]','Aor':null,'DisplayItem':true}");
        QTest::newRow("arrays, 100,000 deep") << nestedArrays(100000);
        QTest::newRow("objects, 100,000 deep") << nestedObjects(100000);
        QTest::newRow("an object never closed, 100,000 deep") << json("{'ShowToolBar':").repeated(100000);
    }
    void onlyTheToolBarIsShown()
    {
        QFETCH(QString, text);
        QVERIFY(readBy(filledInfo(), text).isEqual(withToolBar(filledInfo())));
    }

    void numbersAsRead_data() // of any JSON value, as every list and item reads it
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<int>("number");
        const auto row = [](const char* name, const char* stored, int number) {
            QTest::newRow(name) << json(stored) << number;
        };
        row("zero", "0", 0);
        row("minus zero", "-0", 0);
        row("the greatest", "2147483647", mostInt);
        row("the least", "-2147483648", leastInt);
        row("2^31 has the least one's bits", "2147483648", leastInt);
        row("2^32 - 1 has those of -1", "4294967295", -1);
        row("2^32 + 5 has those of 5", "4294967301", 5);
        row("-2^32 - 5 has those of -5", "-4294967301", -5);
        row("2^64 - 1 has those of -1", "18446744073709551615", -1);
        row("-2^63 has those of 0", "-9223372036854775808", 0);
        row("a fraction is cut off", "1.9", 1);
        row("a negative one too", "-1.9", -1);
        row("a fraction of less than 1", "-0.5", 0);
        row("an exponent", "1.2e1", 12);
        row("a double at the end of the range", "2147483647.9", mostInt);
        row("a double beyond it stays there", "2147483648.0", mostInt);
        row("a negative one too, beyond", "-3e9", leastInt);
        row("a huge double", "1e300", mostInt);
        row("a double that the parser reads as infinity", "2e308", mostInt);
        row("and as minus infinity", "-2e308", leastInt);
        row("a number beyond 64 bits is a double", "18446744073709551616", mostInt);
        row("a negative one beyond 64 bits", "-9223372036854775809", leastInt);
        row("null", "null", 0);
        row("true", "true", 0);
        row("false", "false", 0);
        row("a text", "'5'", 0);
        row("an array", "[5]", 0);
        row("an object", "{'5':5}", 0);
    }
    void numbersAsRead()
    {
        QFETCH(QString, stored);
        QFETCH(int, number);
        AlarmDisplayFilterInfo expected = withToolBar(filledInfo());
        expected.severities = {number};
        expected.areas = {6, number, 7};
        expected.displayItems = {{5, number}};
        const QString text = json("{'Severity':[%1],'Aor':[6,%1,7],'DisplayItem':{'5':%1}}").arg(stored);
        QVERIFY(readBy(filledInfo(), text).isEqual(expected));
    }

    void flagsAsRead_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<bool>("flag");
        const auto row = [](const char* name, const char* stored, bool flag) {
            QTest::newRow(name) << json(stored) << flag;
        };
        row("0", "0", false);
        row("1", "1", true);
        row("-1", "-1", true);
        row("128", "128", true);
        row("255", "255", true);
        row("256 has no low byte", "256", false);
        row("-256 has none", "-256", false);
        row("257 has one", "257", true);
        row("2^32 has none", "4294967296", false);
        row("256.9 is 256", "256.9", false);
        row("1.5 is 1", "1.5", true);
        row("true has no number", "true", false);
        row("a text has none", "'1'", false);
        row("null has none", "null", false);
        row("an array has none", "[1]", false);
    }
    void flagsAsRead()
    {
        QFETCH(QString, stored);
        QFETCH(bool, flag);
        for (const bool before : {false, true}) {
            AlarmDisplayFilterInfo info;
            info.subjectToUserAor = before;
            info.fromSettingInfo(json("{'SubjectToUserAor':%1,'ShowToolBar':%1}").arg(stored));
            QCOMPARE(info.subjectToUserAor, flag);
            QCOMPARE(info.showToolBar, flag);
        }
    }

    void fieldsThatAreNotNamedStay()
    {
        AlarmDisplayFilterInfo expected = withToolBar(filledInfo());
        expected.areas = {4, 4};
        QVERIFY(readBy(filledInfo(), json(" { 'Aor' : [ 4 , 4 ] } ")).isEqual(expected));
        expected = filledInfo();
        expected.severities.clear();
        QVERIFY(readBy(filledInfo(), json("{'ShowToolBar':0,'Severity':[]}")).isEqual(expected));
        expected = withToolBar(filledInfo());
        expected.subjectToUserAor = true;
        QVERIFY(readBy(filledInfo(), json("{'SubjectToUserAor':1}")).isEqual(expected));
        expected = withToolBar(filledInfo());
        expected.displayItems.clear();
        QVERIFY(readBy(filledInfo(), json("{'DisplayItem':{}}")).isEqual(expected));
    }

    void ofFieldsThatStandTwiceTheLastWins()
    {
        const QString text =
            json("{'Severity':[5,6],'Aor':[1],'ShowToolBar':1,'SubjectToUserAor':0,'DisplayItem':{'1':1},"
                 "'Severity':[2],'Aor':[],'ShowToolBar':0,'SubjectToUserAor':1,'DisplayItem':{'3':4}}");
        AlarmDisplayFilterInfo expected;
        expected.severities = {2};
        expected.displayItems = {{3, 4}};
        QVERIFY(readBy(filledInfo(), text).isEqual(expected));
    }

    void displayItemsAsRead_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<Items>("items");
        const auto row = [](const char* name, const char* stored, const Items& items) {
            QTest::newRow(name) << json(stored) << items;
        };
        row("in any order", "{'12':1,'-2':3,'5':4}", {{-2, 3}, {5, 4}, {12, 1}});
        row("of names that stand twice the last wins", "{'1':1,'1':2}", {{1, 2}});
        row("names that are no numbers land on 0, the last one winning", "{'a':1,'b':2,'c':3}", {{0, 3}});
        row("a name that is 0 among them", "{'a':1,'0':2}", {{0, 2}});
        row("names in part numbers, with fractions or too large are none", "{'7x':1,'7.0':2,'2147483648':3,'':4}",
            {{0, 4}});
        row("names with a sign and blanks are numbers", "{' +7 ':1}", {{7, 1}});
        row("two names for one number", "{'07':1,'7':2}", {{7, 2}});
        row("the ends of the range", "{'2147483647':1,'-2147483648':2}", {{mostInt, 1}, {leastInt, 2}});
    }
    void displayItemsAsRead()
    {
        QFETCH(QString, stored);
        QFETCH(Items, items);
        AlarmDisplayFilterInfo expected = withToolBar(filledInfo());
        expected.displayItems = items;
        QVERIFY(readBy(filledInfo(), json("{'DisplayItem':%1}").arg(stored)).isEqual(expected));
    }

    void whereverATextIsCutOnlyTheToolBarIsShown()
    {
        AlarmDisplayFilterInfo other;
        other.severities = {1, 2, 30};
        other.areas = {4, 500};
        other.displayItems = {{0, 10}, {-2, 0}};
        const QString text = other.toSettingInfo();
        QVERIFY(readBy(filledInfo(), text).isEqual(other));
        forEachCut(text,
                   [](const QString& cut) { QVERIFY(readBy(filledInfo(), cut).isEqual(withToolBar(filledInfo()))); });
    }

    void depthBesideAFieldDoesNotHurtIt()
    {
        AlarmDisplayFilterInfo expected = filledInfo();
        expected.severities = {0, 2};
        const QString text = json("{'X':%1,'Severity':[%2,2],'ShowToolBar':0}");
        QVERIFY(readBy(filledInfo(), text.arg(nestedObjects(100000), nestedArrays(100000))).isEqual(expected));
    }

    void aHugeTextIsRead()
    {
        constexpr int count = 1000000;
        const QString list = QStringLiteral("[%1]").arg(QStringLiteral("5,").repeated(count - 1) + QLatin1Char('5'));
        const AlarmDisplayFilterInfo info = readBy(AlarmDisplayFilterInfo(), json("{'Aor':%1}").arg(list));
        QCOMPARE(info.areas.size(), count);
        QCOMPARE(info.areas.count(5), count);
    }
};

QTEST_GUILESS_MAIN(tst_AlarmDisplayFilterInfo)
#include "tst_alarmdisplayfilterinfo.moc"
