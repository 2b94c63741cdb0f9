#include "scada/records/numberinputparam.h"
#include "tests/support/storedjson.h"

#include <QtTest>

#include <cmath>
#include <cstddef>
#include <limits>

static_assert(!std::is_polymorphic_v<NumberInputParam>);
static_assert(sizeof(NumberInputParam::decimals) == 1 && sizeof(NumberInputParam::useScale) == 1);
static_assert(offsetof(NumberInputParam, minValue) == 0 && offsetof(NumberInputParam, maxValue) == 8 &&
              offsetof(NumberInputParam, scale) == 16 && offsetof(NumberInputParam, singleStep) == 24 &&
              offsetof(NumberInputParam, decimals) == 32 && offsetof(NumberInputParam, useScale) == 33);

namespace {

using Limits = std::numeric_limits<double>;

NumberInputParam percent()
{
    NumberInputParam param;
    param.maxValue = 100;
    param.scale = 1;
    param.singleStep = 0.5;
    param.decimals = 2;
    param.useScale = true;
    return param;
}

NumberInputParam readBy(NumberInputParam param, const QString& text)
{
    param.fromStream(text);
    return param;
}

/// The record with one field changed by \p change.
template <typename Change>
NumberInputParam changed(NumberInputParam param, Change change)
{
    change(param);
    return param;
}

} // namespace

class tst_NumberInputParam : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDefaultRecord()
    {
        const NumberInputParam param;
        QCOMPARE(param.minValue, 0.0);
        QCOMPARE(param.maxValue, 0.0);
        QCOMPARE(param.scale, 0.0);
        QCOMPARE(param.singleStep, 0.0);
        QCOMPARE(param.decimals, qint8(0));
        QVERIFY(!param.useScale);
        QVERIFY(param.isEmpty());
        QCOMPARE(param.toStream(),
                 json("{'MinValue':0,'MaxValue':0,'Decimals':0,'Scale':0,'SingleStep':0,'UseScale':0}"));
    }

    void theFieldsAsWritten()
    {
        QCOMPARE(percent().toStream(),
                 json("{'MinValue':0,'MaxValue':100,'Decimals':2,'Scale':1,'SingleStep':0.5,'UseScale':1}"));

        NumberInputParam param;
        param.minValue = -0.1;
        param.maxValue = -1e300; // below the minimum, negative steps: stored as they are
        param.scale = Limits::infinity();
        param.singleStep = -1234567;
        param.decimals = -128;
        QCOMPARE(param.toStream(), json("{'MinValue':-0.1,'MaxValue':-1e+300,'Decimals':-128,'Scale':null,"
                                        "'SingleStep':-1234567,'UseScale':0}"));
        param.decimals = 127;
        QVERIFY(param.toStream().contains(json("'Decimals':127,")));
    }

    void copiesHaveEveryField()
    {
        const NumberInputParam param = changed(percent(), [](auto& p) { p.minValue = -7; });
        const NumberInputParam copy(param);
        NumberInputParam assigned;
        assigned = param;
        for (const NumberInputParam& made : {copy, assigned}) {
            QCOMPARE(made.minValue, -7.0);
            QCOMPARE(made.maxValue, 100.0);
            QCOMPARE(made.scale, 1.0);
            QCOMPARE(made.singleStep, 0.5);
            QCOMPARE(made.decimals, qint8(2));
            QVERIFY(made.useScale);
        }
    }

    void anyFieldMakesARecordNotEmpty()
    {
        const NumberInputParam none;
        QVERIFY(!changed(none, [](auto& p) { p.minValue = Limits::denorm_min(); }).isEmpty());
        QVERIFY(!changed(none, [](auto& p) { p.maxValue = -1; }).isEmpty());
        QVERIFY(!changed(none, [](auto& p) { p.scale = 1; }).isEmpty());
        QVERIFY(!changed(none, [](auto& p) { p.singleStep = 1; }).isEmpty());
        QVERIFY(!changed(none, [](auto& p) { p.decimals = 1; }).isEmpty());
        QVERIFY(!changed(none, [](auto& p) { p.useScale = true; }).isEmpty());
    }

    void minusZeroIsEmptyButNanIsNot()
    {
        NumberInputParam param;
        for (double* number : {&param.minValue, &param.maxValue, &param.scale, &param.singleStep}) {
            *number = -0.0;
            QVERIFY(param.isEmpty());
            *number = Limits::quiet_NaN();
            QVERIFY(!param.isEmpty());
            *number = 0;
        }
    }

    void everyFieldCountsForEquality()
    {
        const NumberInputParam param = percent();
        const auto isEqualAfter = [&param](auto change) {
            const NumberInputParam other = changed(param, change);
            return param.isEqual(other) || other.isEqual(param);
        };
        QVERIFY(isEqualAfter([](auto&) {}));
        QVERIFY(!isEqualAfter([](auto& p) { p.minValue = -1; }));
        QVERIFY(!isEqualAfter([](auto& p) { p.maxValue = 101; }));
        QVERIFY(!isEqualAfter([](auto& p) { p.scale = 2; }));
        QVERIFY(!isEqualAfter([](auto& p) { p.singleStep = 1; }));
        QVERIFY(!isEqualAfter([](auto& p) { p.decimals = 3; }));
        QVERIFY(!isEqualAfter([](auto& p) { p.useScale = false; }));
    }

    void numbersAreComparedExactly()
    {
        const NumberInputParam param = percent();
        QVERIFY(!param.isEqual(changed(param, [](auto& p) { p.maxValue = std::nextafter(100, 101); })));
        QVERIFY(!param.isEqual(changed(param, [](auto& p) { p.singleStep = std::nextafter(0.5, 1); })));
        QVERIFY(!param.isEqual(changed(param, [](auto& p) { p.scale = std::nextafter(1, 2); })));
        QVERIFY(!param.isEqual(changed(param, [](auto& p) { p.minValue = std::nextafter(0, 1); })));
        QVERIFY(param.isEqual(changed(param, [](auto& p) { p.minValue = -0.0; })));
        const NumberInputParam nan = changed(param, [](auto& p) { p.scale = Limits::quiet_NaN(); });
        QVERIFY(!nan.isEqual(nan));
    }

    void whatIsWrittenReadsBack()
    {
        NumberInputParam wide = percent();
        wide.minValue = -Limits::max();
        wide.maxValue = 9007199254740993.0;
        wide.scale = 0.001;
        wide.singleStep = -0.0;
        for (const int decimals : {-128, -1, 0, 127}) {
            for (NumberInputParam param : {NumberInputParam(), percent(), wide}) {
                param.decimals = static_cast<qint8>(decimals);
                QVERIFY(readBy(NumberInputParam(), param.toStream()).isEqual(param));
                QVERIFY(readBy(wide, param.toStream()).isEqual(param));
            }
        }
        QVERIFY(std::signbit(readBy(NumberInputParam(), wide.toStream()).singleStep));
    }

    void whatJsonCannotHoldReadsBackAsZero()
    {
        for (const double number : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity()}) {
            const NumberInputParam param = changed(percent(), [number](auto& p) { p.maxValue = number; });
            QVERIFY(readBy(percent(), param.toStream()).isEqual(changed(percent(), [](auto& p) { p.maxValue = 0; })));
        }
    }

    void nothingChanges_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("an empty text") << QString();
        QTest::newRow("an empty object") << json("{}");
        QTest::newRow("no JSON") << QStringLiteral("MinValue");
        QTest::newRow("an array of records") << json("[{'MinValue':5}]");
        QTest::newRow("a text") << json("'MinValue'");
        QTest::newRow("a number") << json("5");
        QTest::newRow("null") << json("null");
        QTest::newRow("two roots") << json("{'MinValue':5}{}");
        QTest::newRow("a comma too many") << json("{'MinValue':5,}");
        QTest::newRow("a number that is none for JSON") << json("{'MinValue':5,'MaxValue':NaN}");
        QTest::newRow("a plus sign") << json("{'MinValue':+5}");
        QTest::newRow("a number beyond the doubles") << json("{'MinValue':5,'MaxValue':1e309}");
        QTest::newRow("an escape of half a pair") << json("{'MinValue':5,'\\ud83d':0}");
        QTest::newRow("a NUL inside a text") << json("{'MinValue':5,'") + QChar(0) + json("':0}");
        QTest::newRow("other names") << json("{'minValue':5,'MAXVALUE':5,'Decimal':5,'Scale ':5,'':5}");
        QTest::newRow("names with a NUL behind") << json("{'MinValue\\u0000':5,'UseScale\\u0000':0}");
        QTest::newRow("the record of another class") << json("{'NumberInputParam':{'MinValue':5}}");
        QTest::newRow("arrays, 100,000 deep") << nestedArrays(100000);
        QTest::newRow("objects, 100,000 deep") << nestedObjects(100000);
        QTest::newRow("an object never closed, 100,000 deep") << json("{'MinValue':").repeated(100000);
    }
    void nothingChanges()
    {
        QFETCH(QString, text);
        QVERIFY(readBy(percent(), text).isEqual(percent()));
    }

    void fieldsThatAreNotNamedStay()
    {
        const auto reads = [](const char* text, auto change) {
            return readBy(percent(), json(text)).isEqual(changed(percent(), change));
        };
        QVERIFY(reads(" { 'MinValue' : -3 } ", [](auto& p) { p.minValue = -3; }));
        QVERIFY(reads("{'MaxValue':7,'Other':{}}", [](auto& p) { p.maxValue = 7; }));
        QVERIFY(reads("{'Decimals':0}", [](auto& p) { p.decimals = 0; }));
        QVERIFY(reads("{'Scale':7}", [](auto& p) { p.scale = 7; }));
        QVERIFY(reads("{'SingleStep':7}", [](auto& p) { p.singleStep = 7; }));
        QVERIFY(reads("{'UseScale':0}", [](auto& p) { p.useScale = false; }));
        QVERIFY(reads("{'Min\\u0056alue':-3}", [](auto& p) { p.minValue = -3; }));
    }

    void limitsThatContradictEachOtherStayAsGiven()
    {
        for (const char* text : {"{'MinValue':10,'MaxValue':-5}", "{'MaxValue':-5,'MinValue':10}"}) {
            for (const NumberInputParam& before : {NumberInputParam(), percent()}) {
                const NumberInputParam param = readBy(before, json(text));
                QCOMPARE(param.minValue, 10.0);
                QCOMPARE(param.maxValue, -5.0);
            }
        }
        QCOMPARE(readBy(percent(), json("{'MinValue':101}")).minValue, 101.0);
        QCOMPARE(readBy(percent(), json("{'MaxValue':-1}")).maxValue, -1.0);
    }

    void inAnyOrderAndOfTwoTheFirst()
    {
        NumberInputParam expected = percent();
        expected.minValue = 1;
        expected.decimals = 4;
        expected.useScale = false;
        QVERIFY(readBy(percent(), json("{'UseScale':0,'Decimals':4,'MinValue':1,'UseScale':1,'Decimals':5,"
                                       "'MinValue':2,'MinValue':'x'}"))
                    .isEqual(expected));
    }

    void numbersAsRead_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<double>("number");
        const auto row = [](const char* name, const char* stored, double number) {
            QTest::newRow(name) << json(stored) << number;
        };
        row("an integer", "5", 5);
        row("a negative one", "-5", -5);
        row("an unsigned one", "4294967295", 4294967295.0);
        row("one of 64 bits", "-9007199254740992", -9007199254740992.0);
        row("an unsigned one of 64 bits", "18446744073709551615", 18446744073709551616.0);
        row("one beyond 64 bits", "36893488147419103232", 36893488147419103232.0);
        row("a fraction", "-0.375", -0.375);
        row("an exponent", "1e300", 1e300);
        row("too small for a double", "1e-400", 0);
        row("a text is no number", "'5'", 0);
        row("nor is null", "null", 0);
        row("nor true", "true", 0);
        row("nor an array", "[5]", 0);
        row("nor an object, 100,000 deep", "deep", 0);
    }
    void numbersAsRead()
    {
        QFETCH(QString, stored);
        QFETCH(double, number);
        stored.replace(QStringLiteral("deep"), nestedObjects(100000));
        NumberInputParam expected = percent();
        expected.minValue = expected.maxValue = expected.scale = expected.singleStep = number;
        const QString text = json("{'MinValue':%1,'MaxValue':%1,'Scale':%1,'SingleStep':%1}").arg(stored);
        QVERIFY(readBy(percent(), text).isEqual(expected));
    }

    void theLowByteOfAnInteger_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<int>("decimals");
        const auto row = [](const char* name, const char* stored, int decimals) {
            QTest::newRow(name) << json(stored) << decimals;
        };
        row("0", "0", 0);
        row("1", "1", 1);
        row("-1", "-1", -1);
        row("127", "127", 127);
        row("128 has the sign's bit", "128", -128);
        row("255", "255", -1);
        row("256 has no low byte", "256", 0);
        row("-256 has none", "-256", 0);
        row("258", "258", 2);
        row("2^32 has none", "4294967296", 0);
        row("2^64 - 1", "18446744073709551615", -1);
        row("a double without a fraction", "2.0", 2);
        row("a fraction is cut off", "2.9", 2);
        row("a negative one too", "-2.9", -2);
        row("256.9 is 256", "256.9", 0);
        row("an exponent", "2e0", 2);
        row("a huge double stays at the end of the integers", "1e300", -1);
        row("a huge negative one too", "-1e300", 0);
        row("a text is no number", "'2'", 0);
        row("nor is true", "true", 0);
        row("nor null", "null", 0);
        row("nor an array", "[2]", 0);
        row("nor an object", "{'2':2}", 0);
    }
    void theLowByteOfAnInteger()
    {
        QFETCH(QString, stored);
        QFETCH(int, decimals);
        for (const bool before : {false, true}) {
            NumberInputParam param;
            param.useScale = before;
            param.decimals = 99;
            param.fromStream(json("{'Decimals':%1,'UseScale':%1}").arg(stored));
            QCOMPARE(int(param.decimals), decimals);
            QCOMPARE(param.useScale, decimals != 0);
        }
    }

    void halfAPairThatStandsUnescapedHurtsNothing()
    {
        const QString text = json("{'") + QChar(0xD83D) + json("':1,'MinValue':5}");
        QVERIFY(readBy(percent(), text).isEqual(changed(percent(), [](auto& p) { p.minValue = 5; })));
    }

    void whereverATextIsCutNothingChanges()
    {
        NumberInputParam other = percent();
        other.minValue = -1.25;
        other.decimals = 12;
        const QString text = other.toStream();
        QVERIFY(readBy(NumberInputParam(), text).isEqual(other));
        forEachCut(text, [](const QString& cut) { QVERIFY(readBy(percent(), cut).isEqual(percent())); });
    }

    void depthBesideAFieldDoesNotHurtIt()
    {
        const QString text = json("{'X':%1,'MinValue':5,'Y':%2}").arg(nestedObjects(100000), nestedArrays(100000));
        QVERIFY(readBy(percent(), text).isEqual(changed(percent(), [](auto& p) { p.minValue = 5; })));
    }
};

QTEST_GUILESS_MAIN(tst_NumberInputParam)
#include "tst_numberinputparam.moc"
