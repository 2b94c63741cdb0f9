#include "host/sources/csvfile.h"

#include "tests/support/temporaryfiles.h"

#include <QtTest>

#ifdef Q_OS_UNIX
#include <sys/stat.h>
#endif

class tst_CsvFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAFileLargerThanItsPieces()
    {
        QByteArray bytes = "number,square\n";
        for (int i = 0; i < 50000; ++i)
            bytes += QByteArray::number(i) + ',' + QByteArray::number(qint64(i) * i) + '\n';
        CsvFile file;
        QVERIFY(file.open(m_files.write(QStringLiteral("squares.csv"), bytes)));
        for (int pass = 0; pass < 2; ++pass) {
            QCOMPARE(file.next().value(), CsvReader::Result::Record);
            for (int i = 0; i < 50000; ++i) {
                QCOMPARE(file.next().value(), CsvReader::Result::Record);
                QCOMPARE(file.record().line(), qint64(i) + 2);
                QCOMPARE(csvNumber(file.record().fields().at(1), false).value(), double(i) * i);
            }
            QCOMPARE(file.next().value(), CsvReader::Result::Ended);
            QCOMPARE(file.next().value(), CsvReader::Result::Ended);
            QVERIFY2(file.open(m_files.path(QStringLiteral("squares.csv"))), "once more, from its beginning");
        }
    }

    void refusesWhatIsNoFile()
    {
        CsvFile file;
        const QString missing = m_files.path(QStringLiteral("missing.csv"));
        QCOMPARE(file.open(missing).error(), missing + QStringLiteral(": there is no such file"));
        const QString folder = m_files.path({});
        QCOMPARE(file.open(folder).error(), folder + QStringLiteral(": is no regular file"));
#ifdef Q_OS_UNIX
        const QString pipe = m_files.path(QStringLiteral("pipe"));
        QCOMPARE(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
        QCOMPARE(file.open(pipe).error(), pipe + QStringLiteral(": is no regular file"));
        QVERIFY(QFile::link(pipe, m_files.path(QStringLiteral("link"))));
        QVERIFY2(!file.open(m_files.path(QStringLiteral("link"))), "nor is a link to a pipe");
#endif
        QVERIFY(!file.isOpen());
    }

private:
    TemporaryFiles m_files;
};

QTEST_APPLESS_MAIN(tst_CsvFile)
#include "tst_csvfile.moc"
