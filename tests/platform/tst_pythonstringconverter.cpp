#include "platform/utility/pythonstringconverter.h"

#include <QFileInfo>
#include <QMap>
#include <QProcess>
#include <QtTest>

#include <rapidcheck.h>

#include <vector>

namespace {

/// What Python 3 makes of a literal's body, by its reference's table of escapes; {-1} for anything that the converter
/// must not write.
std::vector<int> evaluate(const QString& body)
{
    const QMap<char, int> letters{{'\\', 0x5c}, {'\'', 0x27}, {'"', 0x22}, {'n', 0x0a}, {'r', 0x0d}, {'t', 0x09}};
    const QMap<char, int> digitsOf{{'x', 2}, {'u', 4}, {'U', 8}};
    std::vector<int> codes;
    for (int i = 0; i < body.size();) {
        const int unit = body.at(i).unicode();
        if (unit < 0x20 || unit > 0x7e || unit == '"' || unit == '\'' || (unit == '\\' && i + 1 == body.size()))
            return {-1};
        if (unit != '\\') {
            codes.push_back(unit);
            ++i;
            continue;
        }
        const char kind = body.at(i + 1).toLatin1();
        const int digits = digitsOf.value(kind);
        if (digits == 0 && !letters.contains(kind))
            return {-1};
        codes.push_back(digits > 0 ? body.midRef(i + 2, digits).toInt(nullptr, 16) : letters.value(kind));
        i += 2 + digits;
    }
    return codes;
}

/// The text's characters; a half of a surrogate pair that stands alone is one.
std::vector<int> codesOf(const QString& text)
{
    const QVector<uint> codes = text.toUcs4(); // puts U+FFFD in the place of a lone half
    std::vector<int> all;
    int unit = 0;
    for (const uint code : codes) {
        all.push_back(code == 0xfffd ? text.at(unit).unicode() : int(code));
        unit += code > 0xffff ? 2 : 1;
    }
    return all;
}

/// Texts made of what is delicate, as UTF-16 units.
rc::Gen<QString> delicateTexts()
{
    const auto units = rc::gen::container<std::vector<ushort>>(rc::gen::oneOf(
        rc::gen::elementOf(std::vector<ushort>{'\\', '\'', '"',    '\n',   '\r',   '\t',   0,      'x',
                                               'u',  'U',  'N',    '{',    '}',    '0',    0x7f,   0x85,
                                               0xa0, 0xff, 0x2028, 0xac00, 0xd83d, 0xde00, 0xfffd, 0xffff}),
        rc::gen::arbitrary<ushort>()));
    return rc::gen::map(units,
                        [](const std::vector<ushort>& all) { return QString::fromUtf16(all.data(), int(all.size())); });
}

/// Reads literals of Python, one a line, and writes each one's code points as a line.
QByteArray evaluateByPython(const QString& python, const QByteArray& literals)
{
    QProcess process;
    process.start(python, {QStringLiteral("-I"), QStringLiteral("-c"),
                           QStringLiteral("import ast, sys\n"
                                          "for line in sys.stdin.buffer.read().decode('ascii').split('\\n')[:-1]:\n"
                                          "    print(*[ord(c) for c in ast.literal_eval(line)])\n")});
    process.write(literals);
    process.closeWriteChannel();
    if (!process.waitForFinished() || process.exitCode() != 0)
        return process.errorString().toUtf8() + process.readAllStandardError();
    return process.readAllStandardOutput();
}

} // namespace

class tst_PythonStringConverter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void escapes_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("body");
        QTest::newRow("an empty text") << QString() << QString();
        QTest::newRow("plain ASCII stays") << "def onLoad(a, b=~1):"
                                           << "def onLoad(a, b=~1):";
        QTest::newRow("a line's end and an indent") << "x:\n\treturn\r\n"
                                                    << "x:\\n\\treturn\\r\\n";
        QTest::newRow("both quotes") << "'a' \"b\""
                                     << "\\'a\\' \\\"b\\\"";
        QTest::newRow("three quotes in a row") << "\"\"\"'''"
                                               << "\\\"\\\"\\\"\\'\\'\\'";
        QTest::newRow("a backslash at the end") << "a\\"
                                                << "a\\\\";
        QTest::newRow("what looks like an escape is none") << "\\n"
                                                           << "\\\\n";
        QTest::newRow("NUL, with digits behind it") << QString::fromLatin1("\0"
                                                                           "7",
                                                                           2)
                                                    << "\\x007";
        QTest::newRow("other controls") << QString::fromLatin1("\x01\x0b\x1b\x1f\x7f") << "\\x01\\x0b\\x1b\\x1f\\x7f";
        QTest::newRow("Latin-1") << QStringLiteral("\u0080\u00e9\u00ff") << "\\u0080\\u00e9\\u00ff";
        QTest::newRow("Korean") << QStringLiteral("\uac00\ud7a3") << "\\uac00\\ud7a3";
        QTest::newRow("the last one of four digits") << QString(QChar(0xffff)) << "\\uffff";
        QTest::newRow("a surrogate pair") << QString::fromUcs4(U"\U0001f600a", 2) << "\\U0001f600a";
        QTest::newRow("the last character") << QString::fromUcs4(U"\U0010ffff", 1) << "\\U0010ffff";
        QTest::newRow("a first half alone") << QString(QChar(0xd800)) + QLatin1Char('a') << "\\ud800a";
        QTest::newRow("a first half at the end") << QString(QChar(0xdbff)) << "\\udbff";
        QTest::newRow("a second half alone") << QString(QChar(0xdc00)) << "\\udc00";
        QTest::newRow("two first halves and a second")
            << QString::fromUtf16(u"\xd83d\xd83d\xde00", 3) << "\\ud83d\\U0001f600";
        QTest::newRow("halves the wrong way round") << QString::fromUtf16(u"\xde00\xd83d", 2) << "\\ude00\\ud83d";
    }
    void escapes()
    {
        QFETCH(QString, text);
        QFETCH(QString, body);
        QCOMPARE(PythonStringConverter::convert(text), body);
    }

    void anyTextComesBackByTheTableOfEscapes()
    {
        QVERIFY(rc::check("delicate and any units", [] {
            const QString text = *delicateTexts();
            RC_ASSERT(evaluate(PythonStringConverter::convert(text)) == codesOf(text));
        }));
    }

    void pythonItselfGivesTheTextBack_data()
    {
        QTest::addColumn<QByteArray>("quote");
        QTest::newRow("single quotes") << QByteArray("'");
        QTest::newRow("double quotes") << QByteArray("\"");
        QTest::newRow("three single quotes") << QByteArray("'''");
        QTest::newRow("three double quotes") << QByteArray("\"\"\"");
    }
    void pythonItselfGivesTheTextBack()
    {
        QFETCH(QByteArray, quote);
        const QString python = QStringLiteral("/usr/bin/python3");
        if (!QFileInfo(python).isExecutable())
            QSKIP("there is no /usr/bin/python3");

        QByteArray literals;
        QByteArray expected;
        const auto add = [&](const QString& text) {
            literals += quote + PythonStringConverter::convert(text).toLatin1() + quote + '\n';
            QByteArrayList codes;
            for (const int code : codesOf(text))
                codes.append(QByteArray::number(code));
            expected += codes.join(' ') + '\n';
        };
        for (int unit = 0; unit <= 0xffff; ++unit) // each by itself, halves included
            add(QString(QChar(ushort(unit))));
        for (uint plane = 1; plane <= 16; ++plane) {
            const uint ends[] = {plane << 16, (plane << 16) | 0xffff};
            add(QString::fromUcs4(ends, 2));
        }
        const rc::Gen<QString> texts = delicateTexts();
        for (unsigned seed = 0; seed < 2000; ++seed)
            add(texts(rc::Random(seed), 40).value());
        QCOMPARE(evaluateByPython(python, literals), expected);
    }
};

QTEST_GUILESS_MAIN(tst_PythonStringConverter)
#include "tst_pythonstringconverter.moc"
