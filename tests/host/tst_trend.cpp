#include "host/shapes/palette.h"
#include "host/shapes/shapeproperty.h"
#include "host/shapes/textpainter.h"
#include "host/shapes/trend.h"
#include "tests/support/drawnshape.h"

#include <QtTest>

#include <cmath>

namespace {

constexpr qint64 noon = 1'709'294'400'000; // 2024-03-01T12:00Z
const QColor curveColor(0xff, 0x00, 0xff); // like nothing else in the picture

struct Listener : ShapeListener
{
    void shapeChanged(Shape&) override { ++count; }
    int count = 0;
    void shapeActed(Shape&, const QString&, const QVariantList&) override {}
};

bool set(Shape& shape, const char* property, const QVariant& value)
{
    return shape.setNamedProperty(QString::fromLatin1(property), value);
}

/// A trend from 0 to 100 over 100 seconds whose first curve is easily found.
void prepare(Trend& trend)
{
    QVERIFY(set(trend, "Minimum", 0));
    QVERIFY(set(trend, "Maximum", 100));
    QVERIFY(set(trend, "Span", 100));
    QVERIFY(set(trend, "TimeZone", QStringLiteral("UTC")));
    QVERIFY(set(trend, "CurveColors", QStringList(curveColor.name())));
}

/// Where the curve's colour is, beside its number at the right edge.
QRect curveIn(const QImage& image)
{
    QRect found;
    const int end = image.width() - 40 - 4 - 6 - 17; // around, margin, inset and number
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < end; ++x) {
            const QColor pixel(image.pixel(x, y));
            if (pixel.red() > 200 && pixel.green() < 120 && pixel.blue() > 200)
                found |= QRect(x, y, 1, 1);
        }
    }
    return found;
}

QRect curveOf(const Trend& trend)
{
    return curveIn(drawn(trend));
}

} // namespace

class tst_Trend : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void samplesAreBounded()
    {
        Trend trend;
        for (int i = 0; i < Trend::mostSamples + 500; ++i)
            trend.addSample(3, noon + i, i);
        QCOMPARE(trend.sampleCount(3), Trend::mostSamples);
        QCOMPARE(trend.sampleCount(0), 0);
        trend.clearSamples();
        QCOMPARE(trend.sampleCount(3), 0);
    }

    void whatIsNoSampleIsLeftOut()
    {
        Trend trend;
        trend.addSample(-1, noon, 1);
        trend.addSample(Trend::mostCurves, noon, 1);
        trend.addSample(0, std::numeric_limits<qint64>::max(), 1);
        trend.addSample(0, std::numeric_limits<qint64>::min(), 1);
        QVERIFY(!trend.isChanged());
        trend.addSample(0, noon, 1);
        trend.setDrawn();
        trend.addSample(0, noon - 1, 1);
        QVERIFY(!trend.isChanged());
        QCOMPARE(trend.sampleCount(0), 1);
    }

    void aBurstIsReportedOnce()
    {
        Trend trend;
        Listener listener;
        trend.setListener(&listener);
        for (int i = 0; i < 1000; ++i)
            trend.addSample(i % 8, noon + i, i);
        QCOMPARE(listener.count, 1);
        trend.setDrawn();
        trend.addSample(0, noon + 5000, 1);
        QCOMPARE(listener.count, 2);
        trend.setDrawn();
        trend.clearSamples();
        QCOMPARE(listener.count, 3);
        trend.setDrawn();
        trend.clearSamples(); // nothing left to clear
        QCOMPARE(listener.count, 3);
    }

    void valuesLieBetweenTheBounds()
    {
        const auto levelAt = [](double value) {
            Trend trend;
            prepare(trend);
            trend.addSample(0, noon - 100'000, value);
            trend.addSample(0, noon, value);
            return curveOf(trend).center().y();
        };
        const int low = levelAt(10);
        const int middle = levelAt(50);
        const int high = levelAt(90);
        QVERIFY(high < middle && middle < low);
        QVERIFY(std::abs((low + high) / 2 - middle) <= 1);

        Trend beyond;
        prepare(beyond);
        beyond.addSample(0, noon - 100'000, 1e300);
        beyond.addSample(0, noon, 1e300);
        QVERIFY(curveOf(beyond).isEmpty());
    }

    void boundsComeFromTheSamplesWhenEqual()
    {
        Trend trend;
        prepare(trend);
        QVERIFY(set(trend, "Maximum", 0));
        trend.addSample(0, noon - 500'000, -7000); // out of sight
        for (int i = 0; i <= 100; ++i)
            trend.addSample(0, noon + i * 1000, 1000 + i);
        const QRect curve = curveOf(trend);
        QVERIFY(curve.height() > 100); // of 200, with header and axis
    }

    void theTimeAxisEndsAtTheNewestSample()
    {
        Trend trend;
        prepare(trend);
        trend.addSample(0, noon - 100'000, 50);
        trend.addSample(0, noon, 50);
        const QRect whole = curveOf(trend);
        trend.addSample(1, noon + 50'000, std::nan("")); // a gap has a time as well
        const QRect half = curveOf(trend);
        QCOMPARE(half.left(), whole.left());
        QVERIFY(std::abs(half.width() - whole.width() / 2) <= 4); // its marks reach a little beyond its ends
        trend.addSample(1, noon + 500'000, 1);
        QVERIFY(curveOf(trend).isEmpty());
    }

    void gapsStayBlank()
    {
        Trend trend;
        prepare(trend);
        for (int second = 0; second <= 100; ++second)
            trend.addSample(0, noon + second * 1000, second > 40 && second < 60 ? std::nan("") : 50.0);
        const QImage image = drawn(trend);
        const QRect curve = curveIn(image);
        QVERIFY(!curve.isEmpty());
        const auto isBlank = [&](double share) {
            const int x = curve.left() + int(share * curve.width());
            for (int y = curve.top(); y <= curve.bottom(); ++y) {
                if (QColor(image.pixel(x, y)).green() < 120)
                    return false;
            }
            return true;
        };
        QVERIFY(!isBlank(0.38));
        QVERIFY(isBlank(0.42));
        QVERIFY(isBlank(0.50));
        QVERIFY(isBlank(0.58));
        QVERIFY(!isBlank(0.62));
    }

    void aSampleBetweenGapsIsADot()
    {
        Trend trend;
        prepare(trend);
        trend.addSample(0, noon, 1);
        trend.addSample(0, noon + 1, std::nan(""));
        trend.addSample(0, noon + 50'000, 50);
        trend.addSample(0, noon + 50'001, std::nan(""));
        trend.addSample(0, noon + 100'000, std::nan(""));
        const QRect dot = curveOf(trend);
        QVERIFY(dot.width() > 100);                       // from the first, at the left edge, to the one in the middle
        trend.addSample(0, noon + 110'000, std::nan("")); // the first leaves
        QVERIFY(!curveOf(trend).isEmpty());
        QVERIFY(curveOf(trend).width() < 6);
    }

    void noPeakIsLost_data()
    {
        QTest::addColumn<double>("noise");
        QTest::newRow("in a quiet curve") << 0.0;
        QTest::newRow("in a noisy curve") << 40.0;
    }
    void noPeakIsLost()
    {
        QFETCH(double, noise);
        Trend trend;
        prepare(trend);
        for (int i = 0; i < 10'000; ++i)
            trend.addSample(0, noon + i * 10, 10 + (i % 2 ? noise : 0));
        const QRect flat = curveOf(trend);
        trend.clearSamples();
        for (int i = 0; i < 10'000; ++i)
            trend.addSample(0, noon + i * 10, i == 4321 ? 95 : 10 + (i % 2 ? noise : 0));
        const QRect peaked = curveOf(trend);
        QVERIFY(peaked.top() < flat.top() - 40);
        QCOMPARE(peaked.bottom(), flat.bottom());
    }

    // Stroked by the painter, or filled a column at a time: what is dense must not jump when it becomes so.
    void denseCurvesLieWhereOthersDo()
    {
        Trend sparse;
        Trend dense;
        for (Trend* trend : {&sparse, &dense}) {
            prepare(*trend);
            QVERIFY(set(*trend, "ShowLegend", false));
        }
        const auto value = [](double second) { return 50 + 40 * std::sin(second / 10); };
        for (int i = 0; i <= 200; ++i)
            sparse.addSample(0, noon + i * 500, value(i * 0.5));
        for (int i = 0; i <= 10'000; ++i)
            dense.addSample(0, noon + i * 10, value(i * 0.01));
        for (const double scale : {1.0, 2.0, 3.0}) {
            const QImage one = drawn(sparse, scale);
            const QImage other = drawn(dense, scale);
            QVERIFY(one != other);
            QVERIFY(greyDifference(one, other) < 0.6);
        }
    }

    void curvesOfOneColourCanBeTold()
    {
        const QStringList black(QStringList{QStringLiteral("black"), QStringLiteral("black")});
        const auto picture = [&](int first, int second) {
            Trend trend;
            trend.setNamedProperty(QStringLiteral("CurveColors"), black);
            trend.setNamedProperty(QStringLiteral("TimeZone"), QStringLiteral("UTC"));
            for (int i = 0; i <= 600; ++i) {
                trend.addSample(first, noon + i * 1000, 20);
                trend.addSample(second, noon + i * 1000, 80);
            }
            return drawn(trend);
        };
        const QImage image = picture(0, 1);
        const QRect plot(0, 0, image.width() - 40 - 4 - 6 - 20, image.height()); // without the numbers at the end
        for (const QImage& other : {picture(1, 0), picture(0, 2)}) {
            QVERIFY(greyDifference(image, other) > 0.05);
            QVERIFY(greyDifference(image.copy(plot), other.copy(plot)) > 0.02);
        }
    }

    void namesAndColoursAreListsOfTexts()
    {
        Trend trend;
        QVERIFY(!set(trend, "CurveColors", QStringList({QStringLiteral("red"), QStringLiteral("no colour")})));
        QCOMPARE(trend.namedProperty(QStringLiteral("CurveColors")), QVariant(QStringList()));
        QVERIFY(set(trend, "CurveColors", QStringList({QString(), QStringLiteral("#102030")})));

        const QImage unnamed = drawn(trend);
        QVERIFY(set(trend, "CurveNames", QStringList(QStringLiteral("Flow"))));
        const QImage named = drawn(trend);
        QVERIFY(named != unnamed);
        QVERIFY(set(trend, "ShowLegend", false));
        QVERIFY(drawn(trend) != named);
    }

    void timesAreThoseOfTheZone()
    {
        Trend trend;
        trend.addSample(0, noon, 1);
        const auto pictureIn = [&](const char* zone) {
            trend.setNamedProperty(QStringLiteral("TimeZone"), QString::fromLatin1(zone));
            return drawn(trend);
        };
        const QImage utc = pictureIn("UTC");
        QVERIFY(pictureIn("Asia/Seoul") != utc);
        const QImage local = pictureIn("");
        QCOMPARE(pictureIn("Nowhere/Atlantis"), local);
    }

    void rotatedTrendsAreDrawnToo()
    {
        Trend trend;
        prepare(trend);
        for (int i = 0; i < 10'000; ++i)
            trend.addSample(0, noon + i * 10, i % 90);
        QImage image(500, 500, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(120, 20);
        painter.rotate(20);
        trend.draw(ShapePainter(painter));
        QVERIFY(!curveIn(image).isEmpty());
    }

    void anEmptyTrendSaysSo()
    {
        Trend trend;
        prepare(trend);
        const QImage empty = drawn(trend);
        trend.addSample(0, noon, std::nan(""));
        QVERIFY(drawn(trend) != empty);
        trend.clearSamples();
        QCOMPARE(drawn(trend), empty);
    }
};

QTEST_MAIN(tst_Trend)
#include "tst_trend.moc"
