#include "host/alarmview/alarmcsv.h"
#include "tests/support/temporaryfiles.h"

#include <QDateTime>
#include <QFile>
#include <QStandardItemModel>
#include <QtTest>

namespace {

QByteArray bytesOf(const QString& fileName)
{
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArrayLiteral("no file");
}

/// A table of one cell.
void fill(QStandardItemModel& model, const QVariant& value)
{
    model.setColumnCount(1);
    model.setHorizontalHeaderLabels({QStringLiteral("Title")});
    auto* item = new QStandardItem;
    item->setData(value, AlarmCsv::ValueRole);
    model.appendRow(item);
}

} // namespace

class tst_AlarmCsv : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesACell_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<QByteArray>("field");
        QTest::newRow("a text as it stands") << QVariant(QStringLiteral("a b")) << QByteArray("a b");
        QTest::newRow("a comma in quotes") << QVariant(QStringLiteral("a,b")) << QByteArray("\"a,b\"");
        QTest::newRow("a quote doubled") << QVariant(QStringLiteral("a\"b")) << QByteArray("\"a\"\"b\"");
        QTest::newRow("a line end in quotes") << QVariant(QStringLiteral("a\nb")) << QByteArray("\"a\nb\"");
        QTest::newRow("a carriage return in quotes") << QVariant(QStringLiteral("a\rb")) << QByteArray("\"a\rb\"");
        QTest::newRow("another script as UTF-8") << QVariant(QString(QChar(0xd38c))) << QByteArray("\xed\x8e\x8c");
        QTest::newRow("nothing as nothing") << QVariant() << QByteArray();
        QTest::newRow("a number plainly") << QVariant(-2.5) << QByteArray("-2.5");
        QTest::newRow("a whole number plainly") << QVariant(-3) << QByteArray("-3");
        QTest::newRow("a text like a number is a text") << QVariant(QStringLiteral("-3")) << QByteArray("'-3");
        QTest::newRow("= is no formula") << QVariant(QStringLiteral("=1+1")) << QByteArray("'=1+1");
        QTest::newRow("+ is no formula") << QVariant(QStringLiteral("+1")) << QByteArray("'+1");
        QTest::newRow("@ is no formula") << QVariant(QStringLiteral("@R::x")) << QByteArray("'@R::x");
        QTest::newRow("a tab is no formula") << QVariant(QStringLiteral("\t=1")) << QByteArray("'\t=1");
        QTest::newRow("a formula in quotes") << QVariant(QStringLiteral("=a,b")) << QByteArray("\"'=a,b\"");
        QTest::newRow("= inside is a text") << QVariant(QStringLiteral("a=b")) << QByteArray("a=b");
        QTest::newRow("a time in UTC") << QVariant(
                                              QDateTime(QDate(2026, 3, 1), QTime(9, 0, 1, 5), Qt::OffsetFromUTC, 3600))
                                       << QByteArray("2026-03-01T08:00:01.005Z");
    }
    void writesACell()
    {
        QFETCH(QVariant, value);
        QFETCH(QByteArray, field);
        const TemporaryFiles files;
        QStandardItemModel model;
        fill(model, value);
        const QString fileName = files.path(QStringLiteral("list.csv"));
        QVERIFY(AlarmCsv::write(fileName, model, {0}));
        QCOMPARE(bytesOf(fileName), QByteArray("\xef\xbb\xbfTitle\r\n" + field + "\r\n"));
    }

    void writesColumnsInTheOrderThatIsAskedFor()
    {
        const TemporaryFiles files;
        QStandardItemModel model(2, 3);
        model.setHorizontalHeaderLabels({QStringLiteral("A"), QStringLiteral("B"), QStringLiteral("C")});
        for (int row = 0; row < 2; ++row) {
            for (int column = 0; column < 3; ++column)
                model.setData(model.index(row, column), 10 * row + column, AlarmCsv::ValueRole);
        }
        const QString fileName = files.path(QStringLiteral("list.csv"));
        QVERIFY(AlarmCsv::write(fileName, model, {2, 0}));
        QCOMPARE(bytesOf(fileName), QByteArray("\xef\xbb\xbf"
                                               "C,A\r\n2,0\r\n12,10\r\n"));
    }

    void aFileThatCantBeWrittenIsNamed()
    {
        const TemporaryFiles files;
        QStandardItemModel model;
        fill(model, 1);
        const QString fileName = files.path(QStringLiteral("nowhere/list.csv"));
        const auto written = AlarmCsv::write(fileName, model, {0});
        QVERIFY(!written);
        QVERIFY2(written.error().startsWith(fileName + QStringLiteral(": cannot be written: ")),
                 qPrintable(written.error()));
    }
};

QTEST_GUILESS_MAIN(tst_AlarmCsv)
#include "tst_alarmcsv.moc"
