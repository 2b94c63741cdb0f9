#include "platform/data/samevalue.h"

#include <QDateTime>
#include <QtTest>

#include <rapidcheck.h>

#include <cmath>
#include <cstring>
#include <limits>

namespace {

double fromBits(quint64 bits)
{
    double number = 0;
    std::memcpy(&number, &bits, sizeof number);
    return number;
}

} // namespace

class tst_SameValue : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // Every pair of these, both ways round, compares as QVariant has it.
    void edgesCompareAsVariantsDo()
    {
        using limits = std::numeric_limits<double>;
        const QVariant values[] = {QVariant(),
                                   0.0,
                                   -0.0,
                                   1.0,
                                   1.0 + 1e-13,
                                   1.0 + 1e-11,
                                   1.0 - 1e-12,
                                   -1.0,
                                   1e-300,
                                   limits::denorm_min(),
                                   -limits::denorm_min(),
                                   limits::min(),
                                   limits::max(),
                                   limits::lowest(),
                                   limits::infinity(),
                                   -limits::infinity(),
                                   limits::quiet_NaN(),
                                   5.0,
                                   5,
                                   5.0f,
                                   qlonglong(5),
                                   true,
                                   QStringLiteral("5"),
                                   QStringLiteral("5.0"),
                                   QStringLiteral("on"),
                                   QByteArray("5"),
                                   QDateTime::fromMSecsSinceEpoch(5, Qt::UTC)};
        for (const QVariant& a : values) {
            for (const QVariant& b : values)
                QVERIFY2(isSameValue(a, b) == (a == b), qPrintable(a.toString() + QLatin1Char(' ') + b.toString()));
        }
    }

    void doublesOfAnyBitsCompareAsVariantsDo()
    {
        QVERIFY(rc::check("any two doubles", [] {
            const double a = fromBits(*rc::gen::arbitrary<quint64>());
            const double b = fromBits(*rc::gen::arbitrary<quint64>());
            RC_ASSERT(isSameValue(a, b) == (QVariant(a) == QVariant(b)));
        }));
        QVERIFY(rc::check("a double and one a few steps away", [] {
            const double a = fromBits(*rc::gen::arbitrary<quint64>());
            const double b = a * (1 + *rc::gen::inRange(-20, 21) * 1e-13);
            RC_ASSERT(isSameValue(a, b) == (QVariant(a) == QVariant(b)));
        }));
    }
};

QTEST_GUILESS_MAIN(tst_SameValue)
#include "tst_samevalue.moc"
