#include "platform/data/quorixvalue.h"

#include <QtTest>

#include <limits>

Q_DECLARE_METATYPE(QuorixValue)

class tst_QuorixValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reads_data()
    {
        QTest::addColumn<QuorixValue>("value");
        QTest::addColumn<int>("integer");
        QTest::addColumn<double>("real");
        QTest::addColumn<QVariant>("variant");

        const QDateTime time(QDate(2026, 3, 1), QTime(12, 0, 0, 250), Qt::UTC);
        QTest::newRow("absent") << QuorixValue() << 0 << 0.0 << QVariant();
        QTest::newRow("whole") << QuorixValue(-7) << -7 << -7.0 << QVariant(-7);
        QTest::newRow("beyond 32 bits gives the low ones")
            << QuorixValue(qint64(0x100000005)) << 5 << 4294967301.0 << QVariant(qlonglong(0x100000005));
        QTest::newRow("real truncates toward zero") << QuorixValue(-2.9) << -2 << -2.9 << QVariant(-2.9);
        QTest::newRow("large real stops at the bound")
            << QuorixValue(1e300) << std::numeric_limits<int>::max() << 1e300 << QVariant(1e300);
        QTest::newRow("small real stops at the bound")
            << QuorixValue(-1e300) << std::numeric_limits<int>::min() << -1e300 << QVariant(-1e300);
        QTest::newRow("time is no number") << QuorixValue(time) << 0 << 0.0 << QVariant(time);
        QTest::newRow("invalid time is absent") << QuorixValue(QDateTime()) << 0 << 0.0 << QVariant();
        QTest::newRow("text with a number")
            << QuorixValue(QVariant(QStringLiteral("42"))) << 42 << 42.0 << QVariant(QStringLiteral("42"));
        QTest::newRow("other text") << QuorixValue(QVariant(QStringLiteral("on"))) << 0 << 0.0
                                    << QVariant(QStringLiteral("on"));
        QTest::newRow("variant of a whole number") << QuorixValue(QVariant(3)) << 3 << 3.0 << QVariant(3);
        QTest::newRow("variant of a long number") << QuorixValue(QVariant(qlonglong(-1))) << -1 << -1.0 << QVariant(-1);
        QTest::newRow("variant of a real number") << QuorixValue(QVariant(0.5)) << 0 << 0.5 << QVariant(0.5);
        QTest::newRow("variant of a truth value") << QuorixValue(QVariant(true)) << 1 << 1.0 << QVariant(true);
        QTest::newRow("invalid variant is absent") << QuorixValue(QVariant()) << 0 << 0.0 << QVariant();
    }
    void reads()
    {
        QFETCH(QuorixValue, value);
        QFETCH(QVariant, variant);
        QTEST(value.toInt32(), "integer");
        QTEST(value.toDouble(), "real");
        QCOMPARE(value.toVariant(), variant);
        QCOMPARE(value.toVariant().userType(), variant.userType());
        QCOMPARE(value.isAbsent(), !variant.isValid());
    }

    void notANumber()
    {
        const QuorixValue value(std::numeric_limits<double>::quiet_NaN());
        QCOMPARE(value.toInt32(), 0);
        QVERIFY(qIsNaN(value.toDouble()));
        QVERIFY(qIsNaN(value.toVariant().toDouble()));
    }

    void aLocalTimeIsKeptInUtc()
    {
        const QDateTime local(QDate(2026, 3, 1), QTime(12, 0), Qt::OffsetFromUTC, 9 * 3600);
        const QDateTime kept = QuorixValue(local).toVariant().toDateTime();
        QCOMPARE(kept.timeSpec(), Qt::UTC);
        QCOMPARE(kept, local);
    }

    void copiesShareAndOutliveTheOriginal()
    {
        QuorixValue copy;
        QuorixValue moved;
        {
            QuorixValue original(QVariant(QStringLiteral("text")));
            copy = original;
            moved = std::move(original);
        }
        QCOMPARE(copy.toVariant().toString(), QStringLiteral("text"));
        QCOMPARE(moved.toVariant().toString(), QStringLiteral("text"));
        copy = QuorixValue(1);
        QCOMPARE(moved.toVariant().toString(), QStringLiteral("text"));
        const QuorixValue& itself = moved;
        moved = itself;
        QCOMPARE(moved.toVariant().toString(), QStringLiteral("text"));
    }
};

QTEST_GUILESS_MAIN(tst_QuorixValue)
#include "tst_quorixvalue.moc"
