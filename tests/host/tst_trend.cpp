#include "host/shapes/palette.h"
#include "host/shapes/shapeproperty.h"
#include "host/shapes/textpainter.h"
#include "host/shapes/trend.h"
#include "tests/support/drawnshape.h"
#include "tests/support/operatedpage.h"

#include <QScrollBar>
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

/// A page with a trend of a minute: seconds to the right, and values from 0 to 100, so that what is clicked can be told.
struct TrendPage : OperatedPage
{
    explicit TrendPage(double zoom = 1)
    {
        trend = &add<Trend>({20, 20, 360, 200}, "trend");
        prepare(*trend);
        set(*trend, "Span", 60);
        set(*trend, "ShowLegend", false);
        QObject::connect(canvas.get(), &Canvas::acted, canvas.get(),
                         [this](Shape*, const QString&, const QVariantList& arguments) {
                             if (!arguments.isEmpty())
                                 clicked = arguments;
                         });
        show(zoom);
    }
    /// Samples of one value, every ten seconds from a minute before noon to noon: of index 0 to 6.
    void fill(int curve, double value)
    {
        for (int ten = 0; ten <= 6; ++ten)
            trend->addSample(curve, noon - 60'000 + ten * 10'000, value);
        settle();
    }
    /// Where on the page a sample of the first curve lies, found by its colour, when the curve is a level line.
    QPointF placeOf(double share) const
    {
        const QRect curve = curveOf(*trend);
        const QPointF origin = trend->boundingRect().topLeft() - QPointF(40, 40);
        return trend->mapToScene(origin + QPointF(curve.left() + share * curve.width(), curve.center().y()));
    }
    /// Where on the page a time and a value lie, reckoned from what two clicks tell. At its own size.
    QPointF placeOf(double timeMs, double value)
    {
        const QPointF one(100, 80);
        const QPointF other(300, 160);
        click(one);
        const QVariantList first = clicked;
        click(other);
        const auto between = [&](int argument, double wanted, double from, double to) {
            const double share = (wanted - first.at(argument).toDouble()) /
                                 (clicked.at(argument).toDouble() - first.at(argument).toDouble());
            return from + share * (to - from);
        };
        const QPointF place(between(1, timeMs, one.x(), other.x()), between(2, value, one.y(), other.y()));
        takeTold();
        return place;
    }
    QStringList takeNames()
    {
        QStringList names;
        for (const QString& each : takeTold())
            names.append(each.section(QLatin1Char('('), 0, 0).section(QLatin1Char('.'), 1));
        return names;
    }

    Trend* trend = nullptr;
    QVariantList clicked; ///< index, time and value of the last click
};

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

    void aClickTellsSampleTimeAndValue_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::newRow("at its own size") << 1.0;
        QTest::newRow("at three times its size") << 3.0;
    }
    void aClickTellsSampleTimeAndValue()
    {
        QFETCH(double, zoom);
        TrendPage page(zoom);
        page.fill(0, 50);
        for (const int index : {0, 2, 5, 6}) {
            const QPointF place = page.placeOf(index / 6.0 + (index == 0 ? 0.02 : index == 6 ? -0.02 : 0));
            page.view->ensureSeen(*page.trend);
            page.view->horizontalScrollBar()->setValue(qRound(place.x() * zoom) - 200);
            page.view->verticalScrollBar()->setValue(qRound(place.y() * zoom) - 150);
            page.click(place);
            QCOMPARE(page.takeNames(),
                     QStringList({QStringLiteral("onGraphClicked"), QStringLiteral("onXIndexSelected")}));
            QCOMPARE(page.clicked.size(), 3);
            QCOMPARE(page.clicked.at(0), QVariant(index));
            QCOMPARE(page.clicked.at(1).userType(), int(QMetaType::Double));
            QVERIFY(std::abs(page.clicked.at(1).toDouble() - double(noon - 60'000 + index * 10'000)) < 2000);
            QVERIFY(std::abs(page.clicked.at(2).toDouble() - 50) < 2);
        }
    }

    void theSameSampleIsSelectedOnce()
    {
        TrendPage page;
        page.fill(0, 50);
        page.click(page.placeOf(0.5));
        QCOMPARE(page.takeNames(), QStringList({QStringLiteral("onGraphClicked"), QStringLiteral("onXIndexSelected")}));
        page.click(page.placeOf(0.52));
        QCOMPARE(page.takeNames(), QStringList(QStringLiteral("onGraphClicked")));
        page.click(page.placeOf(0.7));
        QCOMPARE(page.takeNames(), QStringList({QStringLiteral("onGraphClicked"), QStringLiteral("onXIndexSelected")}));
        const QPointF place = page.placeOf(0.7);
        page.trend->clearSamples();
        page.fill(0, 50);
        page.click(place); // the same index, but of other samples
        QCOMPARE(page.takeNames(), QStringList({QStringLiteral("onGraphClicked"), QStringLiteral("onXIndexSelected")}));
    }

    void theNearestSampleOfAllCurvesCounts_data()
    {
        QTest::addColumn<double>("second"); // before noon, of the click
        QTest::addColumn<double>("value");
        QTest::addColumn<int>("index");
        QTest::newRow("on a sample of the first curve") << -30.0 << 50.0 << 3;
        QTest::newRow("beside it") << -27.0 << 55.0 << 3;
        QTest::newRow("on a sample of the second curve") << -15.0 << 90.0 << 8;
        QTest::newRow("a gap of the second curve is no sample") << -26.0 << 90.0 << 6;
        QTest::newRow("what is out of sight does not count") << -59.0 << 90.0 << 4;
        QTest::newRow("far from both") << -18.0 << 10.0 << 4;
    }
    void theNearestSampleOfAllCurvesCounts()
    {
        QFETCH(double, second);
        QFETCH(double, value);
        QFETCH(int, index);
        TrendPage page;
        page.fill(0, 50);                           // 0 to 6 at -60 s, -50 s, ..., 0 s
        for (int sample = 0; sample <= 9; ++sample) // at -95 s, -85 s, ..., -5 s; every other one is a gap
            page.trend->addSample(1, noon - 95'000 + sample * 10'000, sample % 2 == 0 ? 90.0 : std::nan(""));
        OperatedPage::settle();
        page.click(page.placeOf(double(noon) + second * 1000, value));
        QCOMPARE(page.clicked.at(0), QVariant(index));
    }

    void outsideThePlotNothingIsTold()
    {
        TrendPage page;
        page.fill(0, 50);
        for (const QPointF& place : {QPointF(30, 215), QPointF(24, 100), QPointF(200, 25), QPointF(390, 250)})
            page.click(place); // time axis, value axis, header, page
        page.click(page.placeOf(0.5), Qt::RightButton);
        QCOMPARE(page.takeTold(), QStringList());
    }

    void withoutSamplesThereIsNoTimeToClick()
    {
        TrendPage page;
        page.click({200, 120});
        QCOMPARE(page.takeTold(), QStringList());
        for (int second = 0; second <= 60; ++second)
            page.trend->addSample(0, noon + second * 1000, std::nan(""));
        OperatedPage::settle();
        page.click({200, 120});
        QCOMPARE(page.takeNames(), QStringList(QStringLiteral("onGraphClicked"))); // of gaps none is selected
        QCOMPARE(page.clicked.at(0), QVariant(-1));
        QVERIFY(page.clicked.at(1).toDouble() > double(noon) && page.clicked.at(1).toDouble() < double(noon + 60'000));
    }

    // While samples go on coming, what the operator sees is what he clicks.
    void thePlotIsTheOneThatWasDrawn()
    {
        TrendPage page;
        page.fill(0, 50);
        const QPointF middle = page.placeOf(0.5);
        const QPointF besideTheEnd = page.placeOf(double(noon) - 500, 90);
        page.trend->addSample(0, noon + 1000, 90); // not drawn yet
        page.click(besideTheEnd);
        QCOMPARE(page.clicked.at(0), QVariant(6));
        page.click(middle);
        QVERIFY(std::abs(page.clicked.at(1).toDouble() - double(noon - 30'000)) < 2000);
        QCOMPARE(page.clicked.at(0), QVariant(3));
    }

    void aTrendTakesNoKeyboardFocus()
    {
        TrendPage page;
        page.fill(0, 50);
        page.click(page.placeOf(0.5));
        QVERIFY(!page.view->focusedShape());
        OperatedPage::key(Qt::Key_Tab);
        QVERIFY(!page.view->focusedShape());
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
