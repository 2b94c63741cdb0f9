#include "host/core/jsonmembers_p.h"

#include <QColor>
#include <QJsonDocument>
#include <QtTest>

#include <limits>

namespace {

/// JSON written with single quotes, for the eye.
QByteArray json(const char* text)
{
    return QByteArray(text).replace('\'', '"');
}

QStringList path(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char('.'));
}

} // namespace

class tst_JsonMembers : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMemberIsSet_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QStringList>("member");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char* name, const char* before, const char* member, const char* after) {
            QTest::newRow(name) << json(before) << path(member) << json(after);
        };
        row("a number", "{ 'a' : 12.5e3 , 'b':1}", "a", "{ 'a' : 7 , 'b':1}");
        row("the last before the end", "{'a':1}", "a", "{'a':7}");
        row("a text with quotes and braces", "{'a': '}\\'\\\\', 'b': 1}", "a", "{'a': 7, 'b': 1}");
        row("a text by its end", "{'b': '\\\\', 'a': 1}", "a", "{'b': '\\\\', 'a': 7}");
        row("an object", "{'a': {'x': [1, {'y': '}'}]}, 'b': 1}", "a", "{'a': 7, 'b': 1}");
        row("a list", "{'a': [[], [']'], {}], 'b': 1}", "a", "{'a': 7, 'b': 1}");
        row("an empty text", "{'a': '', 'b': 1}", "a", "{'a': 7, 'b': 1}");
        row("a word", "{'b': null,\r\n\t'a': true\r\n}", "a", "{'b': null,\r\n\t'a': 7\r\n}");
        row("further in", "{'a': {'a': 1, 'b': {'a': 2}}, 'b': 3}", "a.b.a", "{'a': {'a': 1, 'b': {'a': 7}}, 'b': 3}");
        row("a member's name among the values", "{'b': 'a', 'a': 1}", "a", "{'b': 'a', 'a': 7}");
        row("a name that is escaped", "{'\\u0061': 1}", "a", "{'\\u0061': 7}");
        row("the last of two", "{'a': 1, 'a': 2}", "a", "{'a': 1, 'a': 7}");
        row("a new one in a line", "{'b': 1, 'c': 2}", "a", "{'b': 1, 'c': 2, 'a': 7}");
        row("a new one behind a single one", "{'b':1}", "a", "{'b':1, 'a': 7}");
        row("a new one on a line of its own", "{\n 'b': 1\n}\n", "a", "{\n 'b': 1,\n 'a': 7\n}\n");
        row("a new one where there is none", "{}", "a", "{'a': 7}");
        row("a new one further in", "{\n 'b': {\n  'c': 1\n }\n}", "b.a", "{\n 'b': {\n  'c': 1,\n  'a': 7\n }\n}");
        row("a new object", "{'b': 1, 'c': 2}", "x.y.a", "{'b': 1, 'c': 2, 'x': {'y': {'a': 7}}}");
        row("a name to be escaped", "{}", "\"", "{'\\'': 7}");
    }
    void aMemberIsSet()
    {
        QFETCH(QByteArray, before);
        QFETCH(QStringList, member);
        QVERIFY(QJsonDocument::fromJson(before).isObject());
        const auto after = JsonMembers::with(before, member, "7");
        QVERIFY2(after, after ? "" : qPrintable(after.error()));
        QTEST(*after, "after");
    }

    void aByteOrderMarkStays()
    {
        QCOMPARE(JsonMembers::with("\xef\xbb\xbf{}", path("a"), "7").value(), QByteArray("\xef\xbb\xbf{\"a\": 7}"));
    }

    void aTextHasNoMembers()
    {
        const auto after = JsonMembers::with(json("{'a': '{}'}"), path("a.b"), "7");
        QVERIFY(!after);
        QCOMPARE(after.error(), QStringLiteral("\"a\" is no object"));
    }

    void aMemberIsTakenOut_data()
    {
        QTest::addColumn<QByteArray>("before");
        QTest::addColumn<QStringList>("member");
        QTest::addColumn<QByteArray>("after");
        const auto row = [](const char* name, const char* before, const char* member, const char* after) {
            QTest::newRow(name) << json(before) << path(member) << json(after);
        };
        row("the first", "{\n 'a': 1,\n 'b': 2\n}\n", "a", "{\n 'b': 2\n}\n");
        row("the last", "{\n 'b': 2,\n 'a': 1\n}\n", "a", "{\n 'b': 2\n}\n");
        row("one between", "{'b': 2, 'a': [1, 2], 'c': 3}", "a", "{'b': 2, 'c': 3}");
        row("the only one", "{\n 'a': {'b': 2}\n}\n", "a", "{}\n");
        row("further in", "{'a': {'a': 1}, 'b': 1}", "a.a", "{'a': {}, 'b': 1}");
        row("both of a name", "{'a': 1, 'b': 2, 'a': 3}", "a", "{'b': 2}");
        row("one that is not there", "{'b': 2}", "a", "{'b': 2}");
        row("one of a text", "{'b': 2}", "b.a", "{'b': 2}");
    }
    void aMemberIsTakenOut()
    {
        QFETCH(QByteArray, before);
        QFETCH(QStringList, member);
        QTEST(JsonMembers::without(before, member), "after");
    }

    void valuesAreTexts()
    {
        const auto text = [](const QVariant& value) { return JsonMembers::textOf(value).value_or("nothing"); };
        QCOMPARE(text(true), QByteArray("true"));
        QCOMPARE(text(-3), QByteArray("-3"));
        QCOMPARE(text(2.0), QByteArray("2"));
        QCOMPARE(text(0.25), QByteArray("0.25"));
        QCOMPARE(text(QVariant::fromValue(nullptr)), QByteArray("null"));
        QCOMPARE(text(QStringLiteral("a\"\n")), QByteArray("\"a\\\"\\n\""));
        QCOMPARE(text(QStringList({QStringLiteral("a"), QStringLiteral("b")})), QByteArray("[\"a\", \"b\"]"));
        QCOMPARE(text(QVariantMap{{QStringLiteral("a"), QVariantList{1, 2}}}), QByteArray("{\"a\": [1, 2]}"));
        QCOMPARE(text(QStringList()), QByteArray("[]"));
        QCOMPARE(text(QVariant()), QByteArray("nothing"));
        QCOMPARE(text(QColor(Qt::red)), QByteArray("nothing"));
        QCOMPARE(text(std::numeric_limits<double>::quiet_NaN()), QByteArray("nothing"));
        QCOMPARE(text(QVariantList{1, std::numeric_limits<double>::infinity()}), QByteArray("nothing"));
        QCOMPARE(text(QVariantMap{{QStringLiteral("a"), QColor(Qt::red)}}), QByteArray("nothing"));
    }
};

QTEST_GUILESS_MAIN(tst_JsonMembers)
#include "tst_jsonmembers.moc"
