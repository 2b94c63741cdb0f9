#include "host/sources/columnmap.h"

#include "tests/support/temporaryfiles.h"

#include <QtTest>

using Korvane::ScadaObjectType;

namespace {

constexpr ObjectKey flow{ScadaObjectType::AnalogPoint, 200001};
constexpr ObjectKey level{ScadaObjectType::AnalogPoint, 200002};
constexpr ObjectKey valve{ScadaObjectType::DigitalPoint, 100001};

std::vector<SourcePoint> points()
{
    return {{flow, QStringLiteral("P101.FLOW"), QStringLiteral("Volume Flow")},
            {level, QStringLiteral("TK101.LEVEL"), {}},
            {valve, QStringLiteral("V101"), QStringLiteral("TK101.LEVEL")}};
}

/// "200001*2+1" for each.
QString shown(const std::vector<ColumnMap::Target>& targets)
{
    QStringList texts;
    for (const ColumnMap::Target& target : targets)
        texts.append(QStringLiteral("%1*%2+%3").arg(target.object.id).arg(target.factor).arg(target.offset));
    return texts.join(QLatin1Char(' '));
}

} // namespace

class tst_ColumnMap : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aColumnFeedsThePointsOfItsName()
    {
        const ColumnMap map(points());
        QCOMPARE(shown(map.targets("P101.FLOW")), QStringLiteral("200001*1+0"));
        QCOMPARE(shown(map.targets("Volume Flow")), QStringLiteral("200001*1+0"));
        QCOMPARE(shown(map.targets("TK101.LEVEL")), QStringLiteral("200002*1+0 100001*1+0"));
        QCOMPARE(shown(map.targets("volume flow")), QString());
        QCOMPARE(shown(map.targets("")), QString());
        QCOMPARE(map.objects(), (std::vector<ObjectKey>{valve, flow, level}));
    }

    void aFileSaysItAlone_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("expected"); // of column A
        QTest::newRow("a point by its name") << QByteArray("A;P101.FLOW") << QStringLiteral("200001*1+0");
        QTest::newRow("a point by its address") << QByteArray("A;Volume Flow\n") << QStringLiteral("200001*1+0");
        QTest::newRow("a factor") << QByteArray("A;P101.FLOW;0,5\n") << QStringLiteral("200001*0.5+0");
        QTest::newRow("factor and offset") << QByteArray("A;P101.FLOW;2;-1.5\n") << QStringLiteral("200001*2+-1.5");
        QTest::newRow("an offset alone") << QByteArray("A,P101.FLOW,,3\n") << QStringLiteral("200001*1+3");
        QTest::newRow("a header and a comment")
            << QByteArray("column;point;factor;offset\n# flow\nA;P101.FLOW\n") << QStringLiteral("200001*1+0");
        QTest::newRow("two points") << QByteArray("A;P101.FLOW\nA;V101;0\n") << QStringLiteral("200001*1+0 100001*0+0");
        QTest::newRow("another column") << QByteArray("B;P101.FLOW\n") << QString();
        QTest::newRow("an empty file") << QByteArray() << QString();
    }

    void aFileSaysItAlone()
    {
        QFETCH(QByteArray, bytes);
        QFETCH(QString, expected);
        ColumnMap map(points());
        const auto problems = map.read(m_files.write(QStringLiteral("map.csv"), bytes));
        QVERIFY2(problems, problems ? "" : qPrintable(problems.error()));
        QCOMPARE(*problems, QStringList());
        QCOMPARE(shown(map.targets("A")), expected);
        QCOMPARE(shown(map.targets("P101.FLOW")), QString());
    }

    void aBadLineIsToldAndLeftOut_data()
    {
        QTest::addColumn<QByteArray>("line");
        QTest::addColumn<QString>("problem");
        QTest::newRow("an unknown point")
            << QByteArray("B;NONE") << QStringLiteral(", line 2, column 2 (point): there is no point \"NONE\"");
        QTest::newRow("a bad factor") << QByteArray("B;V101;x")
                                      << QStringLiteral(", line 2, column 3 (factor): \"x\" is no number");
        QTest::newRow("a bad offset") << QByteArray("B;V101;1;x")
                                      << QStringLiteral(", line 2, column 4 (offset): \"x\" is no number");
        const QString count = QStringLiteral(
            ", line 2: the line has %1 columns; it needs a column and a point, and may have a factor and an offset");
        QTest::newRow("a column alone") << QByteArray("B") << count.arg(1);
        QTest::newRow("too many columns") << QByteArray("B;V101;1;0;0") << count.arg(5);
        QTest::newRow("an open quote") << QByteArray("B;\"V101") << QStringLiteral(", line 2: a quote is not closed");
    }

    void aBadLineIsToldAndLeftOut()
    {
        QFETCH(QByteArray, line);
        QFETCH(QString, problem);
        ColumnMap map(points());
        const QString path = m_files.write(QStringLiteral("map.csv"), "A;P101.FLOW\n" + line + "\nC;V101\n");
        QCOMPARE(map.read(path).value(), QStringList{path + problem});
        QCOMPARE(map.objects(), (std::vector<ObjectKey>{valve, flow}));
    }

    void twentyBadLinesAreTold()
    {
        QByteArray bytes;
        for (int i = 0; i < 100; ++i)
            bytes += "A;NONE\n";
        const QString path = m_files.write(QStringLiteral("map.csv"), bytes);
        const QStringList problems = ColumnMap(points()).read(path).value();
        QCOMPARE(problems.size(), 21);
        QCOMPARE(problems.last(), path + QStringLiteral(": further lines that are left out are not told"));
    }

    void withoutTheFileNothingChanges()
    {
        ColumnMap map(points());
        const QString missing = m_files.path(QStringLiteral("missing.csv"));
        QCOMPARE(map.read(missing).error(), missing + QStringLiteral(": there is no such file"));
        QCOMPARE(shown(map.targets("P101.FLOW")), QStringLiteral("200001*1+0"));
    }

private:
    TemporaryFiles m_files;
};

QTEST_APPLESS_MAIN(tst_ColumnMap)
#include "tst_columnmap.moc"
