#include "host/canvas/canvas.h"
#include "host/canvas/pagerenderer.h"
#include "host/shapes/readout.h"
#include "host/shapes/rectangle.h"
#include "platform/data/quorixdata.h"
#include "scada/binding/tlqgraphicsitem.h"

#include <QRandomGenerator>
#include <QtTest>

namespace {

QImage drawnAfresh(Canvas& canvas, double scale)
{
    PageRenderer renderer(canvas);
    renderer.setView((canvas.size() * scale).toSize(), scale, {});
    renderer.render();
    return renderer.image();
}

// Slanted edges that a clip cuts may round to a neighbouring shade.
bool isSamePicture(const QImage& a, const QImage& b)
{
    const auto isNear = [](QRgb x, QRgb y) {
        return qAbs(qRed(x) - qRed(y)) <= 1 && qAbs(qGreen(x) - qGreen(y)) <= 1 && qAbs(qBlue(x) - qBlue(y)) <= 1;
    };
    if (a.size() != b.size())
        return false;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            if (!isNear(a.pixel(x, y), b.pixel(x, y)))
                return false;
        }
    }
    return true;
}

/// A page of read-outs over panels; some panels lie over the read-outs, half of the read-outs are live.
struct TestPage
{
    TestPage()
    {
        canvas.setSize({400, 300});
        Layer& below = canvas.addLayer(QStringLiteral("below"));
        Layer& above = canvas.addLayer(QStringLiteral("above"));
        for (int row = 0; row < 6; ++row) {
            for (int column = 0; column < 5; ++column) {
                auto shape = std::make_unique<ReadOut>();
                shape->setPlace(QRectF(column * 80 + 3, row * 48 + 5, 60, 24));
                shape->setLive((row + column) % 2 == 0);
                readouts.push_back(&canvas.addShape(below, std::move(shape)));
            }
        }
        for (int number = 0; number < 4; ++number) {
            auto panel = std::make_unique<Rectangle>();
            panel->setPlace(QRectF(40 + number * 90, 30 + number * 50, 70, 40));
            panel->setNamedProperty(QStringLiteral("Opacity"), 0.5);
            panels.push_back(&canvas.addShape(above, std::move(panel)));
        }
        canvas.takeChanged();
    }

    Canvas canvas{QStringLiteral("page")};
    std::vector<Shape*> readouts;
    std::vector<Shape*> panels;
};

} // namespace

class tst_PageRenderer : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsDrawnBitByBitIsThePage_data()
    {
        QTest::addColumn<double>("scale");
        QTest::addColumn<int>("changesAtOnce");
        QTest::newRow("one change a frame") << 1.0 << 1;
        QTest::newRow("a few changes a frame") << 1.0 << 5;
        QTest::newRow("at 150 percent, pixels shared by neighbours") << 1.5 << 3;
        QTest::newRow("at 200 percent") << 2.0 << 20;
    }
    void whatIsDrawnBitByBitIsThePage()
    {
        QFETCH(double, scale);
        QFETCH(int, changesAtOnce);
        TestPage page;
        PageRenderer renderer(page.canvas);
        renderer.setView((page.canvas.size() * scale).toSize(), scale, {});
        renderer.render();
        QRandomGenerator random(7);
        for (int frame = 0; frame < 60; ++frame) {
            for (int change = 0; change < changesAtOnce; ++change) {
                Shape& shape = *page.readouts[random.bounded(int(page.readouts.size()))];
                switch (random.bounded(6)) {
                case 0:
                    shape.setNamedProperty(QStringLiteral("Visible"), random.bounded(2) == 0);
                    break;
                case 1:
                    shape.setPlace(QRectF(random.bounded(380), random.bounded(280), 60, 24));
                    break;
                case 2:
                    shape.setNamedProperty(QStringLiteral("Rotation"), random.bounded(4) * 15.0);
                    break;
                case 3:
                    page.panels[random.bounded(int(page.panels.size()))]->setNamedProperty(
                        QStringLiteral("FillColor"), QColor::fromHsv(random.bounded(360), 200, 200));
                    break;
                default:
                    shape.setNamedProperty(QStringLiteral("Value"), random.bounded(10000) / 10.0);
                }
            }
            const QImage before = renderer.image().copy();
            const QRegion region = renderer.render();
            const QImage now = renderer.image().copy();
            QVERIFY(isSamePicture(now, drawnAfresh(page.canvas, scale)));
            // Nothing changed outside of what was said to have changed.
            for (int y = 0; y < now.height(); ++y) {
                for (int x = 0; x < now.width(); ++x) {
                    if (now.pixel(x, y) != before.pixel(x, y))
                        QVERIFY2(region.contains(QPoint(x, y)), qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
                }
            }
        }
    }

    void aChangeCostsTheChangedShapes()
    {
        TestPage page;
        PageRenderer renderer(page.canvas);
        renderer.setView(page.canvas.size().toSize(), 1, {});
        renderer.render();
        Shape& lonely = *page.readouts[4]; // under none of the panels
        const quint64 before = renderer.drawnShapes();
        lonely.setNamedProperty(QStringLiteral("Value"), 12.5);
        const QRegion region = renderer.render();
        QCOMPARE(renderer.drawnShapes() - before, quint64(1));
        QCOMPARE(region.boundingRect(), lonely.place().toAlignedRect());
        QVERIFY(renderer.render().isEmpty());
        QCOMPARE(renderer.drawnShapes() - before, quint64(1));
    }

    void settingTheSameValueDrawsNothing()
    {
        TestPage page;
        PageRenderer renderer(page.canvas);
        renderer.setView(page.canvas.size().toSize(), 1, {});
        page.readouts[0]->setNamedProperty(QStringLiteral("Value"), 1.0);
        renderer.render();
        page.readouts[0]->setNamedProperty(QStringLiteral("Value"), 1.0);
        QVERIFY(renderer.render().isEmpty());
    }

    void hiddenLayersAreNotDrawn()
    {
        TestPage page;
        const QImage whole = drawnAfresh(page.canvas, 1);
        Layer& above = *page.canvas.layers()[1];
        QSignalSpy rearranged(&page.canvas, &Canvas::rearranged);
        page.canvas.setLayerVisible(above, false);
        QCOMPARE(rearranged.count(), 1);
        const QImage without = drawnAfresh(page.canvas, 1);
        QVERIFY(without != whole);
        QCOMPARE(without.pixel(100, 60), drawnAfresh(page.canvas, 1).pixel(100, 60));
        page.canvas.setLayerVisible(above, true);
        QCOMPARE(drawnAfresh(page.canvas, 1), whole);
    }

    void overlaysAreDrawnOverTheirShape()
    {
        TestPage page;
        PageRenderer renderer(page.canvas);
        renderer.setView(page.canvas.size().toSize(), 1, {});
        renderer.render();
        Shape& shape = *page.readouts[4];
        const QPoint centre = shape.place().center().toPoint();
        auto* overlay = new TlqGraphicsItem(&shape);
        overlay->setRect(shape.geometry());
        overlay->setSourceFail(true);
        QVERIFY(shape.isChanged()); // by the overlay's coming
        renderer.render();
        QCOMPARE(renderer.image().pixelColor(centre.x() - 20, centre.y()), QColor(Qt::red));
        delete overlay;
        QVERIFY(shape.isChanged());
        renderer.render();
        QVERIFY(renderer.image().pixelColor(centre.x() - 20, centre.y()) != QColor(Qt::red));
    }

    void marksLeaveNothingBehind()
    {
        TestPage page;
        PageRenderer renderer(page.canvas);
        for (const double scale : {1.0, 0.5, 1.5}) {
            renderer.setView((page.canvas.size() * scale).toSize(), scale, {});
            Shape& shape = *page.readouts[4];
            auto* overlay = new TlqGraphicsItem(&shape);
            overlay->setRect(shape.geometry());
            overlay->setTlq(1, 1, 1);
            overlay->setSourceFail(true);
            renderer.invalidate(); // drawn with all others, unclipped
            renderer.render();
            delete overlay;
            renderer.render();
            QVERIFY(isSamePicture(renderer.image(), drawnAfresh(page.canvas, scale)));
        }
    }

    void overlaysFollowTheirShapesSize()
    {
        TestPage page;
        Shape& shape = *page.readouts[0];
        auto* overlay = new TlqGraphicsItem(&shape);
        overlay->setRect(shape.geometry());
        shape.setPlace(QRectF(0, 0, 200, 80));
        QCOMPARE(overlay->boundingRect(), QRectF(0, 0, 200, 80));
    }
};

QTEST_MAIN(tst_PageRenderer)
#include "tst_pagerenderer.moc"
