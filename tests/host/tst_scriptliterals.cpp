#include "host/projectfiles/scriptliterals.h"

#include <QtTest>

namespace {

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

class tst_ScriptLiterals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void literalsAreReadAsPythonDoes_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QStringList>("values");
        const auto row = [](const char* name, const char* source, const QStringList& values) {
            QTest::newRow(name) << text(source) << values;
        };
        row("both quotes", "a('x', \"y\")", {text("x"), text("y")});
        row("comments are none", "# 'x'\na('y')", {text("y")});
        row("escapes", "'a\\'b' \"\\\\\" '\\n'", {text("a'b"), text("\\"), text("\n")});
        row("a raw string", "r'a\\n'", {text("a\\n")});
        row("rare escapes are not known", "'\\x41' 'b'", {text("b")});
        row("bytes are no text", "b'x' 'y'", {text("y")});
        row("a formatted string without an expression", "f'x{{y}}'", {text("x{y}")});
        row("a formatted string with one", "f'x{y}' 'z'", {text("z")});
        row("three quotes", "\"\"\"a\"b\"\"\"", {text("a\"b")});
        row("an unclosed one", "'x\n'y'", {text("y")});
    }
    void literalsAreReadAsPythonDoes()
    {
        QFETCH(const QString, source);
        QFETCH(const QStringList, values);
        QStringList read;
        for (const ScriptLiteral& literal : ScriptWords::of(source).literals)
            read.append(literal.value);
        QCOMPARE(read, values);
    }

    void aLiteralKnowsTheCallThatItIsTheFirstArgumentOf_data()
    {
        QTest::addColumn<QString>("source");
        QTest::addColumn<QString>("call");
        QTest::newRow("alone") << text("x = tags.read('P')") << text("tags.read");
        QTest::newRow("with others") << text("alarms.suppress( 'P' , True)") << text("alarms.suppress");
        QTest::newRow("behind the module") << text("korvane.tags.read('P')") << text("tags.read");
        QTest::newRow("of something else") << text("my.tags.read('P')") << QString();
        QTest::newRow("part of an expression") << text("tags.read('P' + x)") << QString();
        QTest::newRow("second") << text("tags.read(x, 'P')") << QString();
        QTest::newRow("of a function") << text("read('P')") << QString();
    }
    void aLiteralKnowsTheCallThatItIsTheFirstArgumentOf()
    {
        QFETCH(const QString, source);
        QFETCH(const QString, call);
        const ScriptWords words = ScriptWords::of(source);
        QCOMPARE(int(words.literals.size()), 1);
        QCOMPARE(words.literals.front().call, call);
    }

    void callsHaveTheirLines()
    {
        const ScriptWords words = ScriptWords::of(text("x = '''a\nb'''\n\ncontrol.operate('P', 1)\ncontrol = 1\n"));
        QCOMPARE(int(words.calls.size()), 1);
        QCOMPARE(words.calls.front().name, text("control.operate"));
        QCOMPARE(words.calls.front().line, 4);
        QCOMPARE(words.literals.back().line, 4);
    }

    void aNameIsWrittenSoThatPythonReadsIt()
    {
        const auto written = [](const char* source, const char* name) {
            return ScriptWords::of(text(source)).literals.front().written(text(name));
        };
        QCOMPARE(written("'P'", "a'b\"c\\").value(), text("a\\'b\"c\\\\"));
        QCOMPARE(written("f'P'", "{x}").value(), text("{{x}}"));
        QCOMPARE(written("r'P'", "plain").value(), text("plain"));
        QVERIFY(!written("r'P'", "a'b"));
    }
};

QTEST_GUILESS_MAIN(tst_ScriptLiterals)
#include "tst_scriptliterals.moc"
