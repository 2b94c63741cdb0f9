#include "host/scriptediting/pythontokenizer_p.h"

#include <QtTest>

namespace {

using Kind = PythonToken::Kind;

char letter(Kind kind)
{
    switch (kind) {
    case Kind::Name:
        return 'n';
    case Kind::Number:
        return '1';
    case Kind::String:
        return 's';
    case Kind::Comment:
        return '#';
    case Kind::Open:
        return '(';
    case Kind::Close:
        return ')';
    case Kind::Dot:
        return '.';
    case Kind::LineEnd:
        return '$';
    case Kind::Other:
        return '+';
    case Kind::End:
        break;
    }
    return '?';
}

/// A letter for each token; an unfinished string is an "u".
QString kindsOf(const QString& source)
{
    QString kinds;
    PythonTokenizer tokens(source);
    for (PythonToken token = tokens.next(); token.kind != Kind::End; token = tokens.next()) {
        const bool isUnfinished = token.kind == Kind::String && !token.isClosed;
        kinds += QLatin1Char(isUnfinished ? 'u' : letter(token.kind));
    }
    return kinds;
}

PythonToken firstOf(const QString& source)
{
    return PythonTokenizer(source).next();
}

} // namespace

class tst_PythonTokenizer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void kinds_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("kinds");
        const auto row = [](const char* name, const char* source, const char* kinds) {
            QTest::newRow(name) << QString::fromUtf8(source) << QString::fromLatin1(kinds);
        };
        row("nothing has no token", "", "");
        row("blanks are no token", " \t ", "");
        row("names, numbers and signs", "x1 = _y + 0x1f", "n+n+1");
        row("a number keeps its point", "1.5e3", "1");
        row("a call of a member", "tags.read(a)", "n.n(n)");
        row("all brackets", "([{}])", "((()))");
        row("lines", "a\n\nb\n", "n$$n$");
        row("a backslash joins lines", "a \\\n b", "nn");
        row("a comment ends with its line", "a # b(\"c\nd", "n#$n");
        row("a sharp in a string is no comment", "\"#\" a", "sn");
        row("either quote stands in the other", "'\"' \"'\" a", "ssn");
        row("an escaped quote closes nothing", "'a\\'b' c", "sn");
        row("an escaped backslash escapes no quote", "'a\\\\' b", "sn");
        row("an escaped quote closes no raw string either", "r'a\\'b' c", "sn");
        row("an unfinished string ends with its line", "'a\nb", "u$n");
        row("a backslash carries a string over the line", "'a\\\nb' c", "sn");
        row("three quotes span lines", "\"\"\"a\nb\"\"\" c", "sn");
        row("one quote stands between three", "'''a'b''' c", "sn");
        row("an escaped quote among three", "'''a\\'''' c", "sn");
        row("three quotes left open take the rest", "'''a\nb\nc", "u");
        row("two quotes are an empty string", "'' a", "sn");
        row("a source that ends in a backslash inside a string", "'a\\", "u");
        row("prefixes belong to their string", "b'' Rb\"\" f'' U''", "ssss");
        row("other letters before a quote are a name", "x''", "ns");
        row("letters of any script make names", "\xec\xa0\x84\xec\x95\x95 = \xc3\xa4\x31", "n+n");
        row("letters beyond sixteen bits make names", "\xf0\x9d\x94\x9e = 1", "n+1");
    }
    void kinds()
    {
        QFETCH(QString, source);
        QTEST(kindsOf(source), "kinds");
    }

    void theContentBeginsBehindPrefixAndQuotes()
    {
        QCOMPARE(firstOf(QStringLiteral("'ab'")).contentBegin, 1);
        QCOMPARE(firstOf(QStringLiteral("rb'''ab'''")).contentBegin, 5);
    }

    void onlyAnRMakesAStringRaw()
    {
        QVERIFY(!firstOf(QStringLiteral("'a'")).isRaw);
        QVERIFY(!firstOf(QStringLiteral("b'a'")).isRaw);
        QVERIFY(firstOf(QStringLiteral("r'a'")).isRaw);
        QVERIFY(firstOf(QStringLiteral("bR'a'")).isRaw);
    }

    void tokensLieWhereTheyStand()
    {
        const QString source = QStringLiteral(" ab  'c'");
        PythonTokenizer tokens(source);
        const PythonToken name = tokens.next();
        QCOMPARE(name.begin, 1);
        QCOMPARE(name.end, 3);
        const PythonToken string = tokens.next();
        QCOMPARE(string.begin, 5);
        QCOMPARE(string.end, 8);
        const PythonToken end = tokens.next();
        QCOMPARE(end.kind, Kind::End);
        QCOMPARE(end.begin, 8);
        QCOMPARE(end.end, 8);
        QCOMPARE(tokens.next().kind, Kind::End);
    }
};

QTEST_APPLESS_MAIN(tst_PythonTokenizer)
#include "tst_pythontokenizer.moc"
