#include "host/sources/csvreader.h"

#include <QtTest>

#include <cmath>

using LineBreaks = CsvReader::LineBreaks;
using Result = CsvReader::Result;

namespace {

/// All that comes: "3: a|b" for a record on line 3, "3! problem" for one that is left out.
QStringList taken(CsvReader& reader, bool& needsBytes)
{
    QStringList lines;
    needsBytes = false;
    while (true) {
        const Result result = reader.next();
        if (result == Result::Ended || result == Result::NeedsBytes) {
            needsBytes = result == Result::NeedsBytes;
            return lines;
        }
        if (result == Result::Skipped) {
            lines.append(QStringLiteral("%1! %2").arg(reader.line()).arg(reader.problem()));
            continue;
        }
        QStringList fields;
        for (const std::string_view field : reader.fields())
            fields.append(QString::fromUtf8(field.data(), int(field.size())));
        lines.append(QStringLiteral("%1: %2").arg(reader.line()).arg(fields.join(QLatin1Char('|'))));
    }
}

QStringList takenAtOnce(const QByteArray& bytes, LineBreaks lineBreaks)
{
    CsvReader reader(lineBreaks);
    reader.append(bytes.constData(), std::size_t(bytes.size()));
    reader.finish();
    bool needsBytes = false;
    return taken(reader, needsBytes);
}

QStringList takenInPieces(const QByteArray& bytes, LineBreaks lineBreaks, int pieceSize)
{
    CsvReader reader(lineBreaks);
    QStringList lines;
    bool needsBytes = false;
    for (int at = 0; at < bytes.size(); at += pieceSize) {
        const QByteArray piece = bytes.mid(at, pieceSize);
        reader.append(piece.constData(), std::size_t(piece.size()));
        lines += taken(reader, needsBytes);
        if (!needsBytes)
            return {QStringLiteral("it ended before it was finished")};
    }
    reader.finish();
    lines += taken(reader, needsBytes);
    return needsBytes ? QStringList(QStringLiteral("it did not end")) : lines;
}

} // namespace

class tst_CsvReader : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesRecords_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("isBrokenInQuotes");
        QTest::addColumn<QStringList>("expected");
        const auto row = [](const char* name, const QByteArray& bytes, const QString& expected, bool inQuotes = false) {
            QTest::newRow(name) << bytes << inQuotes << expected.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
        };
        row("nothing", "", {});
        row("lines without an end have one", "a,b\n1,2", QStringLiteral("1: a|b\n2: 1|2"));
        row("a carriage return belongs to the line's end", "a,b\r\n1,2\r\n", QStringLiteral("1: a|b\n2: 1|2"));
        row("a carriage return alone ends no line", "a,b\rc\n", QStringLiteral("1: a|b\rc"));
        row("semicolons", "a;b;c,d\n1;2\n", QStringLiteral("1: a|b|c,d\n2: 1|2"));
        row("tabs", "a\tb;c\td\n1\t\t2\n", QStringLiteral("1: a|b;c|d\n2: 1||2"));
        row("a line of one field is separated by commas", "a\n1,2\n", QStringLiteral("1: a\n2: 1|2"));
        row("separators inside of quotes don't count", "\"a,b,c\";d\n1;2\n", QStringLiteral("1: a,b,c|d\n2: 1|2"));
        row("empty fields stay", ";;\n", QStringLiteral("1: ||"));
        row("empty lines and comments are no records", "\n#x;y;z\na,b\n\r\n# 1,2\n1,2\n#",
            QStringLiteral("3: a|b\n6: 1|2"));
        row("a mark of the byte order is dropped",
            "\xEF\xBB\xBF"
            "a,b\n",
            QStringLiteral("1: a|b"));
        row("what begins like a mark is text", "\xEF\xBB\x80", QStringLiteral("1: \uFEC0"));
        row("blanks around a field don't belong to it", " a , b\t,\tc \n", QStringLiteral("1: a|b|c"));
        row("blanks inside of quotes belong to the field", " \" a \" ,b\n", QStringLiteral("1:  a |b"));
        row("doubled quotes are one", "\"a \"\"b\"\"\",\"\"\"\"\n", QStringLiteral("1: a \"b\"|\""));
        row("empty quotes are an empty field", "\"\",a\n", QStringLiteral("1: |a"));
        row("a quote within an unquoted field is text", "5\" pipe,a\"\"b\n", QStringLiteral("1: 5\" pipe|a\"\"b"));
        row("separators and returns inside of quotes are text", "\"a,\rb\",c\r\n", QStringLiteral("1: a,\rb|c"));
        row("an open quote costs its line", "a,b\n\"1,2\n3,4\"\n5,6\n",
            QStringLiteral("1: a|b\n2! a quote is not closed\n3: 3|4\"\n4: 5|6"));
        row("an open quote in the last line", "a,b\n1,\"", QStringLiteral("1: a|b\n2! a quote is not closed"));
        row("text behind a closing quote", "\"a\"b,c\nd,e\n",
            QStringLiteral("1! text stands behind a closing quote\n2: d|e"));

        QTest::newRow("lines inside of quotes")
            << QByteArray("a,b\n\"1\r\n#2\n\",\"x\"\"\ny\"\n3,4\n") << true
            << QStringList{QStringLiteral("1: a|b"), QStringLiteral("2: 1\r\n#2\n|x\"\ny"), QStringLiteral("6: 3|4")};
        row("a quote that is open to the end costs its line", "a,b\n\"1,2\n3,4\n",
            QStringLiteral("1: a|b\n2! a quote is not closed\n3: 3|4"), true);
    }

    void takesRecords()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(bool, isBrokenInQuotes);
        QFETCH(QStringList, expected);
        const LineBreaks lineBreaks = isBrokenInQuotes ? LineBreaks::AllowedInQuotes : LineBreaks::EndRecords;
        QCOMPARE(takenAtOnce(bytes, lineBreaks), expected);
        for (int pieceSize = 1; pieceSize < bytes.size(); ++pieceSize)
            QCOMPARE(takenInPieces(bytes, lineBreaks, pieceSize), expected);
    }

    void aRecordOfMoreThanOneMegabyteIsLeftOut_data()
    {
        QTest::addColumn<bool>("isBrokenInQuotes");
        QTest::newRow("records of one line") << false;
        QTest::newRow("records of several lines") << true;
    }

    void aRecordOfMoreThanOneMegabyteIsLeftOut()
    {
        QFETCH(bool, isBrokenInQuotes);
        const LineBreaks lineBreaks = isBrokenInQuotes ? LineBreaks::AllowedInQuotes : LineBreaks::EndRecords;
        const QByteArray longest(int(CsvReader::maxRecordBytes), 'x');
        const QByteArray bytes = "a\n" + longest + "\nb\n" + longest + "y\nc\n" + longest + "z";
        const QStringList expected{QStringLiteral("1: a"), QStringLiteral("2: ") + QString::fromLatin1(longest),
                                   QStringLiteral("3: b"), QStringLiteral("4! the line is longer than 1 MB"),
                                   QStringLiteral("5: c"), QStringLiteral("6! the line is longer than 1 MB")};
        QCOMPARE(takenAtOnce(bytes, lineBreaks), expected);
        QCOMPARE(takenInPieces(bytes, lineBreaks, 65536), expected);
        QCOMPARE(takenInPieces(bytes, lineBreaks, int(CsvReader::maxRecordBytes) + 7), expected);
    }

    void anOpenQuoteIsFollowedForOneMegabyte()
    {
        QByteArray bytes = "a,\"b\n";
        QStringList expected{QStringLiteral("1! a quote is not closed within 1 MB")};
        for (int line = 2; line < 300000; ++line) {
            bytes += "12345\n";
            expected.append(QStringLiteral("%1: 12345").arg(line));
        }
        QCOMPARE(takenAtOnce(bytes, LineBreaks::AllowedInQuotes), expected);
        QCOMPARE(takenInPieces(bytes, LineBreaks::AllowedInQuotes, 65536), expected);
    }

    void readsNumbers_data()
    {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<bool>("hasDecimalComma");
        QTest::addColumn<double>("expected"); // NaN for none
        const double none = std::nan("");
        QTest::newRow("a point") << QByteArray("12.5") << false << 12.5;
        QTest::newRow("an exponent") << QByteArray("-1.5e-3") << false << -0.0015;
        QTest::newRow("a plus") << QByteArray("+7") << false << 7.0;
        QTest::newRow("two signs") << QByteArray("+-7") << false << none;
        QTest::newRow("a decimal comma") << QByteArray("-12,5") << true << -12.5;
        QTest::newRow("a comma that is none") << QByteArray("12,5") << false << none;
        QTest::newRow("comma and point") << QByteArray("1.012,5") << true << none;
        QTest::newRow("two commas") << QByteArray("1,012,5") << true << none;
        QTest::newRow("empty") << QByteArray() << false << none;
        QTest::newRow("a plus alone") << QByteArray("+") << false << none;
        QTest::newRow("text behind") << QByteArray("12 l") << false << none;
        QTest::newRow("not a number") << QByteArray("nan") << false << none;
        QTest::newRow("infinite") << QByteArray("inf") << false << none;
        QTest::newRow("too large") << QByteArray("1e999") << false << none;
        QTest::newRow("hexadecimal") << QByteArray("0x10") << false << none;
        QTest::newRow("read to the last place") << QByteArray("0.1000000000000000055511151231257827") << false << 0.1;
        QTest::newRow("many digits with a comma") << "0," + QByteArray(99, '3') << true << 1.0 / 3;
    }

    void readsNumbers()
    {
        QFETCH(QByteArray, text);
        QFETCH(bool, hasDecimalComma);
        QFETCH(double, expected);
        const auto number = csvNumber(std::string_view(text.constData(), std::size_t(text.size())), hasDecimalComma);
        QCOMPARE(number.has_value(), !std::isnan(expected));
        if (number)
            QCOMPARE(*number, expected);
    }

    void aLongFieldIsShortenedInMessages()
    {
        QCOMPARE(csvQuoted("12 l/min"), QStringLiteral("\"12 l/min\""));
        QCOMPARE(csvQuoted("a\nb"), QStringLiteral("\"a b\""));
        QCOMPARE(csvQuoted("\xC2\xB0"
                           "C"),
                 QStringLiteral("\"\u00B0C\""));
        QCOMPARE(csvQuoted("\xB0"
                           "C"),
                 QStringLiteral("\"\uFFFDC\""));
        QCOMPARE(csvQuoted(std::string(41, 'x')),
                 QLatin1Char('"') + QString(40, QLatin1Char('x')) + QStringLiteral("...\""));
    }
};

QTEST_APPLESS_MAIN(tst_CsvReader)
#include "tst_csvreader.moc"
