#include "platform/utility/jsontexts.h"
#include "tests/support/storedjson.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <QtTest>

#include <rapidcheck.h>

#include <rapidjson/document.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

namespace {

rapidjson::Document parsed(const QString& text)
{
    rapidjson::Document document;
    document.Parse<rapidjson::kParseDefaultFlags | rapidjson::kParseIterativeFlag>(text.toUtf8().constData());
    return document;
}

/// The object that one member makes.
rapidjson::Document objectOf(const QString& member)
{
    return parsed(QStringLiteral("{%1}").arg(member));
}

/// The text with U+FFFD in the place of every half of a pair that stands alone.
QString withoutHalves(const QString& text)
{
    const QVector<uint> codes = text.toUcs4();
    return QString::fromUcs4(codes.constData(), codes.size());
}

rc::Gen<QString> delicateTexts()
{
    const auto units = rc::gen::container<std::vector<ushort>>(rc::gen::oneOf(
        rc::gen::elementOf(std::vector<ushort>{'\\',   '"',    '\'',   '/',    '\n',   '\r',   '\t',  '\b', '\f',
                                               0,      0x1f,   0x20,   'u',    'n',    '%',    '1',   0x7f, 0x85,
                                               0x2028, 0xac00, 0xd83d, 0xde00, 0xfeff, 0xfffd, 0xffff}),
        rc::gen::arbitrary<ushort>()));
    return rc::gen::map(units,
                        [](const std::vector<ushort>& all) { return QString::fromUtf16(all.data(), int(all.size())); });
}

double fromBits(quint64 bits)
{
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

quint64 bitsOf(double number)
{
    quint64 bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

/// A number's text as RapidJSON reads it when it is told to do so to the last bit.
double exactlyRead(const QString& text)
{
    rapidjson::Document document;
    document.Parse<rapidjson::kParseFullPrecisionFlag>(text.toUtf8().constData());
    return document.GetDouble();
}

constexpr double infinity = std::numeric_limits<double>::infinity();

} // namespace

class tst_JsonTexts : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void integers()
    {
        using namespace Korvane;
        QCOMPARE(jsKeyValue(QStringLiteral("a"), 12, false), json("'a':12"));
        QCOMPARE(jsKeyValue(QStringLiteral("a"), -2147483647 - 1, true), json("'a':-2147483648,"));
        QCOMPARE(jsKeyInt64Value(QStringLiteral("b c"), Q_INT64_C(-9223372036854775807) - 1, false),
                 json("'b c':-9223372036854775808"));
        QCOMPARE(jsKeyInt64Value(QString(), Q_INT64_C(9223372036854775807), true), json("'':9223372036854775807,"));
    }

    void objectsAreInsertedAsTheyStand()
    {
        using Korvane::jsKeyObjectValue;
        QCOMPARE(jsKeyObjectValue(QStringLiteral("o"), QStringLiteral("{ \"%1\" : [] }"), true),
                 json("'o':{ '%1' : [] },"));
        QCOMPARE(jsKeyObjectValue(QStringLiteral("o"), QStringLiteral("[1,2]"), false), json("'o':[1,2]"));
    }

    void texts_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("literal"); // between the quotes
        const auto row = [](const char* name, const QString& text, const char* literal) {
            QTest::newRow(name) << text << QString::fromUtf8(literal);
        };
        row("an empty text", QString(), "");
        row("quotes and a backslash at the end", QStringLiteral("\"a\"\\"), "\\\"a\\\"\\\\");
        row("an apostrophe and a slash stand", QStringLiteral("'/"), "'/");
        row("controls with letters", QStringLiteral("\b\f\n\r\t"), "\\b\\f\\n\\r\\t");
        row("other controls in four digits", QStringLiteral("\x01\x0b\x1b\x1f"), "\\u0001\\u000b\\u001b\\u001f");
        row("NUL, with a digit behind it", QString(QChar(0)) + QLatin1Char('7'), "\\u00007");
        row("a blank, DEL and what is above stand", QStringLiteral(" \u007f\u0085\u2028\uac00"),
            " \u007f\u0085\u2028\uac00");
        row("a pattern's place is none", QStringLiteral("%1 %L2"), "%1 %L2");
        row("a pair beyond the basic plane stands", QString::fromUcs4(U"\U0001f600\U0010ffff", 2),
            "\U0001f600\U0010ffff");
        row("a first half alone is replaced", QString(QChar(0xd800)) + QLatin1Char('a'), "\ufffda");
        row("a first half at the end is replaced", QLatin1Char('a') + QString(QChar(0xdbff)), "a\ufffd");
        row("a second half alone is replaced", QString(QChar(0xdc00)), "\ufffd");
        row("two first halves and a second", QString::fromUtf16(u"\xd83d\xd83d\xde00", 3), "\ufffd\U0001f600");
        row("a first half and two second ones", QString::fromUtf16(u"\xd83d\xde00\xde00", 3), "\U0001f600\ufffd");
        row("halves the wrong way round", QString::fromUtf16(u"\xde00\xd83d", 2), "\ufffd\ufffd");
    }
    void texts()
    {
        QFETCH(QString, text);
        QFETCH(QString, literal);
        const QString quoted = QLatin1Char('"') + literal + QLatin1Char('"');
        QCOMPARE(Korvane::jsKeyStringValue(QStringLiteral("k"), text, false), QStringLiteral("\"k\":") + quoted);
        QCOMPARE(Korvane::jsKeyStringValue(text, QString(), true), quoted + QStringLiteral(":\"\","));
        QCOMPARE(Korvane::jsKeyValue(text, 0, false), quoted + QStringLiteral(":0"));
        QCOMPARE(Korvane::jsKeyDoubleValue(text, 0, false), quoted + QStringLiteral(":0"));
        QCOMPARE(Korvane::jsKeyObjectValue(text, QStringLiteral("{}"), false), quoted + QStringLiteral(":{}"));
    }

    void anyTextAndKeyReadBack()
    {
        QVERIFY(rc::check("delicate and any units", [] {
            const QString key = *delicateTexts();
            const QString text = *delicateTexts();
            const QString member = Korvane::jsKeyStringValue(key, text, false);
            const rapidjson::Document object = objectOf(member);
            RC_ASSERT(!object.HasParseError() && object.MemberCount() == 1U);
            RC_ASSERT(Korvane::getJsonString(object.MemberBegin()->name) == withoutHalves(key));
            RC_ASSERT(Korvane::getJsonString(object.MemberBegin()->value) == withoutHalves(text));
            const QJsonObject another = QJsonDocument::fromJson('{' + member.toUtf8() + '}').object();
            RC_ASSERT(another.value(withoutHalves(key)).toString() == withoutHalves(text));
        }));
    }

    void numbers_data()
    {
        QTest::addColumn<double>("number");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, double number, const char* text) {
            QTest::newRow(name) << number << QString::fromLatin1(text);
        };
        row("zero", 0, "0");
        row("a whole number has no fraction", 2, "2");
        row("nor has a negative one", -100, "-100");
        row("a round number has no exponent", 1e15, "1000000000000000");
        row("up to 2^53", 9007199254740992.0, "9007199254740992");
        row("down to -2^53", -9007199254740992.0, "-9007199254740992");
        row("beyond it the fewest digits", 1e16, "1e+16");
        row("beyond it all digits where it needs them", 9007199254740994.0, "9007199254740994");
        row("a fraction", 0.5, "0.5");
        row("a fraction that no double holds", 0.1, "0.1");
        row("the double beside it", 0.1 + 0.2, "0.30000000000000004");
        row("a small fraction", -2.5e-10, "-2.5e-10");
        row("the least double", 5e-324, "5e-324");
        row("the greatest double", std::numeric_limits<double>::max(), "1.7976931348623157e+308");
        row("minus zero keeps its sign: as an integer it would lose it", -0.0, "-0.0");
        row("NaN is null", std::numeric_limits<double>::quiet_NaN(), "null");
        row("infinity is null", infinity, "null");
        row("minus infinity is null", -infinity, "null");
    }
    void numbers()
    {
        QFETCH(double, number);
        QFETCH(QString, text);
        QCOMPARE(Korvane::jsKeyDoubleValue(QStringLiteral("n"), number, false), QStringLiteral("\"n\":") + text);
        QCOMPARE(Korvane::jsKeyDoubleValue(QStringLiteral("n"), number, true), QStringLiteral("\"n\":%1,").arg(text));
        QCOMPARE(Korvane::getJsonString(rapidjson::Value(number)), text);
    }

    void anyNumberReadsBackExactly()
    {
        QVERIFY(rc::check("doubles of any bits", [] {
            constexpr quint64 minusZero = 0x8000000000000000;
            const double number = fromBits(*rc::gen::oneOf(
                rc::gen::arbitrary<quint64>(), rc::gen::elementOf(std::vector<quint64>{0, minusZero, minusZero + 1})));
            const QString member = Korvane::jsKeyDoubleValue(QStringLiteral("n"), number, false);
            RC_PRE(std::isfinite(number));
            RC_ASSERT(bitsOf(member.mid(4).toDouble()) == bitsOf(number));
            RC_ASSERT(bitsOf(exactlyRead(member.mid(4))) == bitsOf(number));
            RC_ASSERT(objectOf(member)["n"].IsNumber());
            RC_ASSERT(!member.contains(QLatin1Char(' ')));
        }));
    }

    void wholeNumbersReadBackAsIntegers()
    {
        QVERIFY(rc::check("up to 2^53", [] {
            const qint64 number = *rc::gen::inRange<qint64>(-(1LL << 53), (1LL << 53) + 1);
            const rapidjson::Document object =
                objectOf(Korvane::jsKeyDoubleValue(QStringLiteral("n"), static_cast<double>(number), false));
            RC_ASSERT(object["n"].IsInt64() && object["n"].GetInt64() == number);
        }));
    }

    void aValuesText_data()
    {
        QTest::addColumn<QString>("stored");
        QTest::addColumn<QString>("text");
        const auto row = [](const char* name, const char* stored, const char* text) {
            QTest::newRow(name) << json(stored) << json(text);
        };
        row("of a text the text itself", "'a\\u0022b'", "a'b");
        row("null", "null", "null");
        row("true", "true", "true");
        row("false", "false", "false");
        row("an integer", "-12", "-12");
        row("a 64-bit number", "-9223372036854775808", "-9223372036854775808");
        row("an unsigned 64-bit number", "18446744073709551615", "18446744073709551615");
        row("a whole number written as a double", "2.0", "2");
        row("a double", "0.25", "0.25");
        row("minus zero", "-0.0", "-0.0");
        row("minus zero written as an integer has lost its sign", "-0", "0");
        row("an empty object", " { } ", "{}");
        row("an empty array", " [ ] ", "[]");
        row("an array", "[1, 'a\\n', null, true, [], {}]", "[1,'a\\n',null,true,[],{}]");
        row("an object, keys escaped", "{'a\\u0001' : [1, {'b': -0.5}], 'c': {'d': {}}, 'a': 'x'}",
            "{'a\\u0001':[1,{'b':-0.5}],'c':{'d':{}},'a':'x'}");
        row("an object keeps what stands twice", "{'a':1,'a':2}", "{'a':1,'a':2}");
    }
    void aValuesText()
    {
        QFETCH(QString, stored);
        QFETCH(QString, text);
        QCOMPARE(Korvane::getJsonString(parsed(stored)), text);
    }

    void aTextKeepsNulsAndByteOrderMarks()
    {
        const QString text = QStringLiteral("\ufeff\ufeffa\ufeff") + QChar(0) + QLatin1Char('b');
        const rapidjson::Document read = parsed(QStringLiteral("[\"\ufeff\\ufeffa\ufeff\\u0000b\"]"));
        QCOMPARE(Korvane::getJsonString(read[0]), text);
        QCOMPARE(Korvane::getJsonString(read), QStringLiteral("[\"\ufeff\ufeffa\ufeff\\u0000b\"]"));
        QCOMPARE(Korvane::getJsonString(rapidjson::Value("")), QString());
    }

    void halfAPairFromAnEscapeIsReplaced()
    {
        const rapidjson::Document read =
            parsed(json("['a\\udc00b']")); // taken by the parser, which checks first halves only
        QVERIFY(!read.HasParseError());
        const QString text = Korvane::getJsonString(read[0]);
        QVERIFY(text.startsWith(QLatin1Char('a')) && text.endsWith(QLatin1Char('b')));
        QCOMPARE(text.mid(1, text.size() - 2).remove(QChar(QChar::ReplacementCharacter)), QString());
        QVERIFY(text.size() > 2);
    }

    void anyDepthIsWritten()
    {
        constexpr int depth = 100000;
        QCOMPARE(Korvane::getJsonString(parsed(nestedArrays(depth))), nestedArrays(depth));
        QCOMPARE(Korvane::getJsonString(parsed(nestedObjects(depth))), nestedObjects(depth));
    }

    void aValuesTextIsTheSameValue()
    {
        QVERIFY(rc::check("arrays of texts and numbers", [] {
            const auto texts = *rc::gen::container<std::vector<QString>>(delicateTexts());
            QString members;
            for (const QString& text : texts)
                members += Korvane::jsKeyStringValue(text, text, true);
            const QString object = QStringLiteral("{%1%2}").arg(
                members, Korvane::jsKeyObjectValue(QStringLiteral("o"), QStringLiteral("[0.1,{}]"), false));
            RC_ASSERT(Korvane::getJsonString(parsed(object)) == object);
        }));
    }
};

QTEST_GUILESS_MAIN(tst_JsonTexts)
#include "tst_jsontexts.moc"
