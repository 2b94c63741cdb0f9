#include "host/sources/recordingtable.h"

#include "host/sources/csvreader.h"

#include <QtTest>

using Korvane::ScadaObjectType;
using TimeColumn = RecordingTable::TimeColumn;

namespace {

constexpr ObjectKey flow{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 200002};

std::vector<SourcePoint> points()
{
    return {{flow, QStringLiteral("FLOW"), QStringLiteral("Volume Flow")}, {level, QStringLiteral("LEVEL"), {}}};
}

/// Reads a recording and shows each row: "1000: 200001=2.5 200002=3/4" (time, values, quality unless 0), or "column 2: text"
/// for what is wrong.
QStringList shown(RecordingTable& table, const QByteArray& bytes)
{
    CsvReader reader;
    reader.append(bytes.constData(), std::size_t(bytes.size()));
    reader.finish();
    QStringList lines;
    std::vector<Sample> samples;
    bool hasHeader = false;
    while (reader.next() == CsvReader::Result::Record) {
        if (!hasHeader) {
            if (const auto read = table.readHeader(reader.fields(), reader.separator()); !read)
                return {read.error()};
            hasHeader = true;
            continue;
        }
        const std::size_t before = samples.size();
        const auto time = table.appendRow(reader.fields(), samples);
        if (!time) {
            const bool isWhole = time.error().field == RecordingTable::Problem::wholeRow;
            lines.append((isWhole ? QString() : QStringLiteral("column %1: ").arg(time.error().field + 1)) +
                         time.error().text);
            if (samples.size() != before)
                lines.append(QStringLiteral("samples of a malformed row"));
            continue;
        }
        QString line = QStringLiteral("%1:").arg(*time);
        for (std::size_t i = before; i < samples.size(); ++i) {
            const Sample& sample = samples[i];
            line += QStringLiteral(" %1=%2").arg(sample.object.id).arg(sample.value);
            if (sample.quality != 0)
                line += QStringLiteral("/%1").arg(sample.quality);
            if (sample.timeMs != *time)
                line += QStringLiteral(" at another time");
        }
        lines.append(line);
    }
    return lines;
}

QStringList lines(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

class tst_RecordingTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsRows_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("expected");
        QTest::addColumn<QStringList>("unknown");
        const auto row = [](const char* name, const char* bytes, const char* expected, const char* unknown = "") {
            QTest::newRow(name) << QByteArray(bytes) << lines(expected) << lines(unknown);
        };
        row("wide, by name and address", "DateTime;Volume Flow;LEVEL\n1970-01-01 00:00:01;2.5;3\n",
            "1000: 200001=2.5 200002=3");
        row("the time in any column", "LEVEL,timestamp,FLOW\n3,1,2.5\n", "1000: 200002=3 200001=2.5");
        row("a decimal comma", "time;FLOW\n1;-2,5\n2;1.5\n", "1000: 200001=-2.5\n2000: 200001=1.5");
        row("an empty field is no value", "time;FLOW;LEVEL\n1;;3\n2;;\n", "1000: 200002=3\n2000:");
        row("columns of no point are not read", "time;FLOW;note;\n1;2;a word;\n", "1000: 200001=2", "note");
        row("the first of two columns of a point is read", "time;FLOW;Volume Flow;FLOW\n1;2;3;4\n", "1000: 200001=2",
            "Volume Flow\nFLOW");
        row("equal times", "time;FLOW\n1;2\n1;3\n", "1000: 200001=2\n1000: 200001=3");
        row("a wrong number of fields", "time;FLOW\n1\n2;1\n3;1;1\n",
            "the row has 1 columns, the header 2\n2000: 200001=1\nthe row has 3 columns, the header 2");
        row("a bad number", "time;LEVEL;FLOW\n1;3;2,5,1\n2;3;1\n",
            "column 3: \"2,5,1\" is no number\n2000: 200002=3 200001=1");
        row("a bad time", "time;FLOW\nnow;1\n;1\n2;1\n",
            "column 1: \"now\" is no time\ncolumn 1: \"\" is no time\n2000: 200001=1");
        row("a time that goes back", "time;FLOW\n2;1\n1;1\n2;2\n",
            "2000: 200001=1\ncolumn 1: the time \"1\" goes back\n2000: 200001=2");
        row("the time of a malformed row does not count", "time;FLOW\n2;1\n9;x\n3;1\n",
            "2000: 200001=1\ncolumn 2: \"x\" is no number\n3000: 200001=1");

        row("narrow", "time;name;value;quality\n1;FLOW;2,5;4\n1;LEVEL;3;\n2;Volume Flow;1;0\n",
            "1000: 200001=2.5/4\n1000: 200002=3\n2000: 200001=1");
        row("narrow without quality, in another order", "Value,Name,Time\n2.5,FLOW,1\n", "1000: 200001=2.5");
        row("narrow, an empty value is none", "time;name;value\n1;FLOW;\n", "1000:");
        row("narrow, a name of no point", "time;name;value\n1;A;1\n1;B;1\n2;A;1\n2;FLOW;1\n",
            "1000:\n1000:\n2000:\n2000: 200001=1", "A\nB");
        row("narrow, no name", "time;name;value\n1;;1\n", "column 2: no point is named");
        row("narrow, a bad number", "time;name;value\n1;FLOW;on\n", "column 3: \"on\" is no number");
        row("narrow, a bad quality",
            "time;name;value;quality\n1;FLOW;1;256\n1;FLOW;1;-1\n1;FLOW;1;0.5\n1;FLOW;1;bad\n1;FLOW;1;255\n",
            "column 4: \"256\" is no quality from 0 to 255\ncolumn 4: \"-1\" is no quality from 0 to 255\n"
            "column 4: \"0.5\" is no quality from 0 to 255\ncolumn 4: \"bad\" is no quality from 0 to 255\n"
            "1000: 200001=1/255");
        row("no time column", "FLOW;LEVEL\n1;2\n", "no column is called datetime, time or timestamp");
    }

    void readsRows()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, expected);
        QFETCH(QStringList, unknown);
        RecordingTable table(ColumnMap(points()), QTimeZone::utc(), TimeColumn::Read);
        QCOMPARE(shown(table, bytes), expected);
        QCOMPARE(table.takeUnknownNames(), unknown);
        QCOMPARE(table.takeUnknownNames(), QStringList());
    }

    void timesMayBeIgnored_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("a time that is none") << QByteArray("time;FLOW\nnow;1\n") << lines("0: 200001=1");
        QTest::newRow("no time, wide") << QByteArray("FLOW;LEVEL\n1;2\n") << lines("0: 200001=1 200002=2");
        QTest::newRow("no time, narrow") << QByteArray("name;value\nFLOW;1\n") << lines("0: 200001=1");
        QTest::newRow("nothing that tells a header")
            << QByteArray("hello;world\n") << lines("no column is called datetime, time or timestamp, or like a point");
    }

    void timesMayBeIgnored()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QStringList, expected);
        RecordingTable table(ColumnMap(points()), QTimeZone::utc(), TimeColumn::Ignored);
        QCOMPARE(shown(table, bytes), expected);
    }

    void objectsAreThoseOfTheColumns()
    {
        RecordingTable table(ColumnMap(points()), QTimeZone::utc(), TimeColumn::Read);
        shown(table, "time;LEVEL;other\n");
        QCOMPARE(table.objects(), std::vector<ObjectKey>{level});
        shown(table, "time;name;value\n");
        QCOMPARE(table.objects(), (std::vector<ObjectKey>{flow, level}));
    }

    void anotherPassMayHaveEarlierTimes()
    {
        RecordingTable table(ColumnMap(points()), QTimeZone::utc(), TimeColumn::Read);
        QCOMPARE(shown(table, "time;FLOW\n5;1\n"), lines("5000: 200001=1"));
        QCOMPARE(shown(table, "time;FLOW\n4;1\n"), lines("column 1: the time \"4\" goes back"));
        table.rewind();
        QCOMPARE(shown(table, "time;FLOW\n4;1\n"), lines("4000: 200001=1"));
    }
};

QTEST_APPLESS_MAIN(tst_RecordingTable)
#include "tst_recordingtable.moc"
