#include "scada/records/enuminputparam.h"
#include "tests/support/storedjson.h"

#include <QtTest>

#include <cmath>
#include <limits>

static_assert(!std::is_polymorphic_v<EnumInputParam>);

using Values = QList<QPair<QString, double>>;

namespace {

using Limits = std::numeric_limits<double>;

EnumInputParam choiceOf(const Values& values)
{
    EnumInputParam param;
    param.enumValues = values;
    return param;
}

EnumInputParam positions()
{
    return choiceOf({{QStringLiteral("Open"), 1}, {QStringLiteral("Close"), 0}});
}

EnumInputParam readBy(EnumInputParam param, const QString& text)
{
    param.fromStream(text);
    return param;
}

EnumInputParam named(const QString& name)
{
    return choiceOf({{name, 1}});
}

} // namespace

class tst_EnumInputParam : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aDefaultRecord()
    {
        const EnumInputParam param;
        QVERIFY(param.enumValues.isEmpty());
        QVERIFY(param.isEmpty());
        QCOMPARE(param.toStream(), json("{'EnumValues':{}}"));
    }

    void theValuesAsWritten()
    {
        QCOMPARE(named(QStringLiteral("On")).toStream(), json("{'EnumValues':{'On':1}}"));
        QCOMPARE(positions().toStream(), json("{'EnumValues':{'Open':1,'Close':0}}"));
        const EnumInputParam param = choiceOf({{QStringLiteral("b"), -0.5},
                                               {QStringLiteral("a"), 1e300},
                                               {QStringLiteral("b"), 7},
                                               {QString(), Limits::quiet_NaN()}});
        QCOMPARE(param.toStream(), json("{'EnumValues':{'b':-0.5,'a':1e+300,'b':7,'':null}}"));
    }

    void namesAsWritten_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("key");
        const auto row = [](const char* about, const QString& name, const char* key) {
            QTest::newRow(about) << name << QString::fromUtf8(key);
        };
        row("a quote", QStringLiteral("say \"on\""), "\"say \\\"on\\\"\"");
        row("a backslash", QStringLiteral("a\\b"), "\"a\\\\b\"");
        row("an apostrophe and a slash", QStringLiteral("it's a/b"), "\"it's a/b\"");
        row("line ends and tabs", QStringLiteral("a\r\n\tb"), "\"a\\r\\n\\tb\"");
        row("other control characters", QStringLiteral("\u0001\u001f"), "\"\\u0001\\u001f\"");
        row("a NUL", QStringLiteral("a") + QChar(0) + QStringLiteral("b"), "\"a\\u0000b\"");
        row("places of a template", QStringLiteral("%1 %2 {%1}"), "\"%1 %2 {%1}\"");
        row("Korean", QStringLiteral("\uc5f4\ub9bc"), "\"\xec\x97\xb4\xeb\xa6\xbc\"");
        row("a character outside the BMP", QString::fromUtf8("\xf0\x9f\x98\x80"), "\"\xf0\x9f\x98\x80\"");
        row("byte order marks", QStringLiteral("\ufeff\ufeffa"),
            "\"\xef\xbb\xbf\xef\xbb\xbf"
            "a\"");
        row("blanks at the ends", QStringLiteral("  a "), "\"  a \"");
        row("none", QString(), "\"\"");
        row("JSON", QStringLiteral("{\"EnumValues\":{}}"), "\"{\\\"EnumValues\\\":{}}\"");
    }
    void namesAsWritten()
    {
        QFETCH(QString, name);
        QFETCH(QString, key);
        const EnumInputParam param = named(name);
        QCOMPARE(param.toStream(), QStringLiteral("{\"EnumValues\":{") + key + QStringLiteral(":1}}"));
        QCOMPARE(readBy(EnumInputParam(), param.toStream()).enumValues, param.enumValues);
    }

    void halfAPairInANameIsReplaced()
    {
        const EnumInputParam read = readBy(EnumInputParam(), json("{'EnumValues':{'a\\udc00':1}}"));
        QCOMPARE(read.enumValues.size(), 1);
        QCOMPARE(read.enumValues.first().first.left(2), QStringLiteral("a\ufffd"));
        QVERIFY(readBy(EnumInputParam(), read.toStream()).isEqual(read));

        const EnumInputParam param = named(QStringLiteral("a") + QChar(0xD83D) + QStringLiteral("b"));
        QCOMPARE(readBy(EnumInputParam(), param.toStream()).enumValues, named(QStringLiteral("a\ufffdb")).enumValues);
    }

    void copiesHaveTheValues()
    {
        const EnumInputParam param = positions();
        const EnumInputParam copy(param);
        EnumInputParam assigned = named(QStringLiteral("gone"));
        assigned = param;
        QCOMPARE(copy.enumValues, param.enumValues);
        QCOMPARE(assigned.enumValues, param.enumValues);
        assigned.enumValues[0].second = 9;
        QCOMPARE(param.enumValues.first().second, 1.0);
    }

    void equalityIsByPlaceNameAndExactValue()
    {
        const EnumInputParam param = positions();
        QVERIFY(param.isEqual(positions()));
        QVERIFY(EnumInputParam().isEqual(EnumInputParam()));
        const auto isEqualTo = [&param](const Values& values) {
            return param.isEqual(choiceOf(values)) || choiceOf(values).isEqual(param);
        };
        const QString open = QStringLiteral("Open");
        const QString close = QStringLiteral("Close");
        QVERIFY(isEqualTo({{open, 1}, {close, -0.0}}));
        QVERIFY(!isEqualTo({}));
        QVERIFY(!isEqualTo({{open, 1}}));
        QVERIFY(!isEqualTo({{open, 1}, {close, 0}, {close, 0}}));
        QVERIFY(!isEqualTo({{close, 0}, {open, 1}}));
        QVERIFY(!isEqualTo({{open, 1}, {QStringLiteral("close"), 0}}));
        QVERIFY(!isEqualTo({{open, std::nextafter(1, 2)}, {close, 0}}));
        const EnumInputParam nan = choiceOf({{open, Limits::quiet_NaN()}});
        QVERIFY(!nan.isEqual(nan));
    }

    void whatIsWrittenReadsBack()
    {
        EnumInputParam many;
        for (int i = 0; i < 1000; ++i)
            many.enumValues.append({QStringLiteral("state %1").arg(i % 10), i * 0.25 - 100});
        for (const EnumInputParam& param : {EnumInputParam(), positions(), many})
            QVERIFY(readBy(EnumInputParam(), param.toStream()).isEqual(param));
    }

    void readingTwiceDoublesTheList() // kept: nothing is cleared first
    {
        const QString text = positions().toStream();
        const EnumInputParam twice = readBy(readBy(EnumInputParam(), text), text);
        QVERIFY(twice.isEqual(choiceOf(positions().enumValues + positions().enumValues)));
    }

    void inTheOrderOfTheTextNamesTwiceToo()
    {
        const EnumInputParam read = readBy(positions(), json("{'EnumValues':{'z':3,'a':1,'z':2}}"));
        QVERIFY(read.isEqual(
            choiceOf(positions().enumValues +
                     Values{{QStringLiteral("z"), 3}, {QStringLiteral("a"), 1}, {QStringLiteral("z"), 2}})));
    }

    void nothingChanges_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("an empty text") << QString();
        QTest::newRow("an empty object") << json("{}");
        QTest::newRow("no values") << json("{'EnumValues':{}}");
        QTest::newRow("no JSON") << QStringLiteral("EnumValues");
        QTest::newRow("an array of records") << json("[{'EnumValues':{'a':1}}]");
        QTest::newRow("a text") << json("'EnumValues'");
        QTest::newRow("null") << json("null");
        QTest::newRow("two roots") << json("{'EnumValues':{'a':1}}{}");
        QTest::newRow("a comma too many") << json("{'EnumValues':{'a':1,}}");
        QTest::newRow("an escape of half a pair") << json("{'EnumValues':{'\\ud83d':1}}");
        QTest::newRow("a NUL inside a name") << json("{'EnumValues':{'a") + QChar(0) + json("b':1}}");
        QTest::newRow("other names") << json("{'enumValues':{'a':1},'EnumValue':{'a':1}}");
        QTest::newRow("a name with a NUL behind") << json("{'EnumValues\\u0000':{'a':1}}");
        QTest::newRow("an array of values") << json("{'EnumValues':['a',1]}");
        QTest::newRow("a text of values") << json("{'EnumValues':'{}'}");
        QTest::newRow("a number") << json("{'EnumValues':1}");
        QTest::newRow("values that are null") << json("{'EnumValues':null}");
        QTest::newRow("of two the first, which is none") << json("{'EnumValues':null,'EnumValues':{'a':1}}");
        QTest::newRow("arrays, 100,000 deep") << json("{'EnumValues':%1}").arg(nestedArrays(100000));
        QTest::newRow("an object never closed, 100,000 deep") << json("{'EnumValues':").repeated(100000);
    }
    void nothingChanges()
    {
        QFETCH(QString, text);
        QVERIFY(readBy(positions(), text).isEqual(positions()));
    }

    void numbersAsRead_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<double>("number");
        const auto row = [](const char* name, const QString& stored, double number) {
            QTest::newRow(name) << stored << number;
        };
        row("an integer", json("-5"), -5);
        row("an unsigned one of 64 bits", json("18446744073709551615"), 18446744073709551616.0);
        row("a fraction", json("0.375"), 0.375);
        row("an exponent", json("1e300"), 1e300);
        row("a text is no number", json("'5'"), 0);
        row("nor is null", json("null"), 0);
        row("nor true", json("true"), 0);
        row("nor an array, 100,000 deep", nestedArrays(100000), 0);
        row("nor an object, 100,000 deep", nestedObjects(100000), 0);
    }
    void numbersAsRead()
    {
        QFETCH(QString, stored);
        QFETCH(double, number);
        const EnumInputParam read = readBy(EnumInputParam(), json("{'EnumValues':{'a':%1,'b':2}}").arg(stored));
        QVERIFY(read.isEqual(choiceOf({{QStringLiteral("a"), number}, {QStringLiteral("b"), 2}})));
    }

    void whereverATextIsCutNothingChanges()
    {
        const QString text = choiceOf({{QStringLiteral("\uc5f4\ub9bc"), 1.5}, {QStringLiteral("a\"b"), 2}}).toStream();
        QCOMPARE(readBy(EnumInputParam(), text).enumValues.size(), 2);
        forEachCut(text, [](const QString& cut) { QVERIFY(readBy(positions(), cut).isEqual(positions())); });
    }

    void aHugeListIsRead()
    {
        constexpr int count = 200000;
        EnumInputParam param;
        for (int i = 0; i < count; ++i)
            param.enumValues.append({QString::number(i), double(i)});
        QVERIFY(readBy(EnumInputParam(), param.toStream()).isEqual(param));
    }
};

QTEST_GUILESS_MAIN(tst_EnumInputParam)
#include "tst_enuminputparam.moc"
