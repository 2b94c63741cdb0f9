#include "host/canvas/canvas.h"
#include "host/canvas/canvasview.h"
#include "host/shapes/rectangle.h"

#include <QHelpEvent>
#include <QProcess>
#include <QScrollBar>
#include <QSignalSpy>
#include <QToolTip>
#include <QWheelEvent>
#include <QtTest>

#include <cmath>

namespace {

/// A page of 400 by 200 with two rectangles, in a view of twice its size.
struct TestView
{
    explicit TestView(const QSize& size = {800, 400}, bool isShown = true)
    {
        canvas.setSize({400, 200});
        layer = &canvas.addLayer(QStringLiteral("layer"));
        red = &add({100, 50, 50, 40}, QStringLiteral("#ff0000"));
        blue = &add({200, 100, 50, 40}, QStringLiteral("#0000ff"));
        view.resize(size);
        if (isShown)
            show();
    }

    void show()
    {
        view.show();
        const bool isExposed = QTest::qWaitForWindowExposed(&view);
        Q_ASSERT(isExposed);
        settle();
    }
    /// Lets everything that waits be painted.
    static void settle()
    {
        for (int turn = 0; turn < 3; ++turn) {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
        }
    }
    Shape& add(const QRectF& place, const QString& color)
    {
        Shape& shape = canvas.addShape(*layer, std::make_unique<Rectangle>());
        shape.setPlace(place);
        shape.setNamedProperty(QStringLiteral("FillColor"), color);
        shape.setNamedProperty(QStringLiteral("LineWidth"), 0);
        return shape;
    }

    QPoint toView(const QPointF& page) const
    {
        return (view.renderer().transform().map(page) / view.viewport()->devicePixelRatioF()).toPoint();
    }
    QPointF toPage(const QPoint& position) const
    {
        return view.renderer().transform().inverted().map(QPointF(position) * view.viewport()->devicePixelRatioF());
    }
    void click(const QPointF& page, Qt::MouseButton button = Qt::LeftButton)
    {
        QTest::mouseClick(view.viewport(), button, {}, toView(page));
    }
    void send(QEvent::Type type, const QPoint& position, Qt::MouseButton button)
    {
        const bool isRelease = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, position, view.viewport()->mapToGlobal(position),
                          type == QEvent::MouseMove ? Qt::NoButton : button,
                          isRelease ? Qt::MouseButtons() : Qt::MouseButtons(button), {});
        QCoreApplication::sendEvent(view.viewport(), &event);
    }
    void drag(const QPoint& from, const QPoint& to, Qt::MouseButton button = Qt::LeftButton)
    {
        send(QEvent::MouseButtonPress, from, button);
        send(QEvent::MouseMove, (from + to) / 2, button);
        send(QEvent::MouseMove, to, button);
        send(QEvent::MouseButtonRelease, to, button);
    }
    void turnWheel(const QPoint& position, int angle, Qt::KeyboardModifiers modifiers)
    {
        QWheelEvent event(position, view.viewport()->mapToGlobal(position), {}, {0, angle}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view.viewport(), &event);
    }
    QColor colorAt(const QPointF& page)
    {
        const QImage image = view.viewport()->grab().toImage();
        const QPointF device = view.renderer().transform().map(page);
        return image.pixelColor(device.toPoint());
    }
    QPoint scrolled() const { return {view.horizontalScrollBar()->value(), view.verticalScrollBar()->value()}; }

    Canvas canvas{QStringLiteral("page")};
    Layer* layer = nullptr;
    Shape* red = nullptr;
    Shape* blue = nullptr;
    CanvasView view{canvas};
};

/// What the view says was clicked.
class Clicks
{
public:
    explicit Clicks(const CanvasView& view)
    {
        QObject::connect(&view, &CanvasView::clicked, &m_receiver, [this](Shape* shape) { m_shapes.append(shape); });
    }
    int count() const { return m_shapes.size(); }
    Shape* takeLast() { return m_shapes.takeLast(); }

private:
    QObject m_receiver;
    QList<Shape*> m_shapes;
};

} // namespace

class tst_CanvasView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPageIsFittedAtFirst_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<double>("zoom");
        QTest::addColumn<QPoint>("origin"); // of the page in the view
        QTest::newRow("of the page's shape") << QSize(800, 400) << 2.0 << QPoint(0, 0);
        QTest::newRow("wider: in the middle") << QSize(1000, 400) << 2.0 << QPoint(100, 0);
        QTest::newRow("higher: in the middle") << QSize(400, 301) << 1.0 << QPoint(0, 50);
        QTest::newRow("smaller") << QSize(100, 100) << 0.25 << QPoint(0, 25);
        QTest::newRow("far smaller: at the smallest zoom") << QSize(10, 10) << 0.05 << QPoint(0, 0);
    }
    void aPageIsFittedAtFirst()
    {
        QFETCH(QSize, size);
        QFETCH(double, zoom);
        QFETCH(QPoint, origin);
        TestView test(size);
        if (test.view.size() != size)
            QSKIP("the screen has no windows of this size");
        QVERIFY(test.view.isFitted());
        QCOMPARE(test.view.zoom(), zoom);
        QCOMPARE(test.toView({0, 0}), origin);
        QCOMPARE(test.view.sizeHint(), QSize(400, 200));
        QCOMPARE(test.scrolled(), QPoint(0, 0));
        QVERIFY(!test.view.horizontalScrollBar()->isVisible());
        QVERIFY(!test.view.verticalScrollBar()->isVisible());
    }

    void fittedAPageFollowsTheViewsSize()
    {
        TestView test;
        QSignalSpy zoomed(&test.view, &CanvasView::zoomChanged);
        test.view.resize(400, 400);
        TestView::settle();
        QCOMPARE(test.view.zoom(), 1.0);
        QVERIFY(zoomed.count() > 0);
        test.view.setZoom(1.5);
        zoomed.clear();
        test.view.resize(500, 400);
        TestView::settle();
        QCOMPARE(test.view.zoom(), 1.5);
        QCOMPARE(zoomed.count(), 0);
    }

    void fittedAPageFollowsItsOwnSize()
    {
        TestView test;
        test.canvas.setSize({800, 200});
        QCOMPARE(test.view.zoom(), 1.0);
        TestView::settle();
        QCOMPARE(test.toView({0, 0}), QPoint(0, 100));
    }

    void theZoomIsHeldToItsBounds_data()
    {
        QTest::addColumn<double>("asked");
        QTest::addColumn<double>("zoom");
        QTest::newRow("its own size") << 1.0 << 1.0;
        QTest::newRow("the smallest") << 0.05 << 0.05;
        QTest::newRow("the largest") << 8.0 << 8.0;
        QTest::newRow("below the smallest") << 0.01 << 0.05;
        QTest::newRow("nothing") << 0.0 << 0.05;
        QTest::newRow("negative") << -2.0 << 0.05;
        QTest::newRow("above the largest") << 1e9 << 8.0;
    }
    void theZoomIsHeldToItsBounds()
    {
        QFETCH(double, asked);
        QFETCH(double, zoom);
        TestView test;
        QSignalSpy zoomed(&test.view, &CanvasView::zoomChanged);
        test.view.setZoom(asked);
        QCOMPARE(test.view.zoom(), zoom);
        QVERIFY(!test.view.isFitted());
        QCOMPARE(zoomed.count(), 1);
        test.view.zoomToFit();
        QVERIFY(test.view.isFitted());
        QCOMPARE(test.view.zoom(), 2.0);
        QCOMPARE(zoomed.count(), 2);
        QVERIFY(!test.view.horizontalScrollBar()->isVisible());
        QCOMPARE(test.view.viewport()->size(), QSize(800, 400));
    }

    void inItsOwnSizeASmallPageLiesInTheMiddle()
    {
        TestView test;
        test.view.setZoom(1);
        QCOMPARE(test.toView({0, 0}), QPoint(200, 100));
        QCOMPARE(test.toView({400, 200}), QPoint(600, 300));
        QCOMPARE(test.scrolled(), QPoint(0, 0));
    }

    void aLargePageIsScrolled()
    {
        TestView test;
        test.view.setZoom(4);
        const QSize room = test.view.viewport()->size();
        QCOMPARE(test.view.horizontalScrollBar()->maximum(), 1600 - room.width());
        QCOMPARE(test.view.verticalScrollBar()->maximum(), 800 - room.height());
        test.view.horizontalScrollBar()->setValue(400);
        test.view.verticalScrollBar()->setValue(200);
        QCOMPARE(test.toView({100, 50}), QPoint(0, 0));
        QCOMPARE(test.colorAt({101, 51}), QColor(Qt::red));
    }

    void theWheelZoomsAroundThePointer_data()
    {
        QTest::addColumn<double>("zoom"); // 0 for fitted
        QTest::addColumn<QPoint>("pointer");
        QTest::addColumn<int>("notches");
        QTest::newRow("in, from a fitted page") << 0.0 << QPoint(600, 300) << 1;
        QTest::newRow("in, four notches") << 0.0 << QPoint(300, 150) << 4;
        QTest::newRow("in, from four times") << 4.0 << QPoint(400, 200) << 1;
        QTest::newRow("in, at an edge") << 4.0 << QPoint(3, 390) << 2;
        QTest::newRow("out") << 6.0 << QPoint(400, 200) << -1;
        QTest::newRow("out, two notches") << 7.0 << QPoint(100, 350) << -2;
    }
    void theWheelZoomsAroundThePointer()
    {
        QFETCH(double, zoom);
        QFETCH(QPoint, pointer);
        QFETCH(int, notches);
        TestView test;
        if (zoom != 0) {
            test.view.setZoom(zoom);
            test.view.horizontalScrollBar()->setValue(test.view.horizontalScrollBar()->maximum() / 2);
            test.view.verticalScrollBar()->setValue(test.view.verticalScrollBar()->maximum() / 2);
        }
        const double before = test.view.zoom();
        for (int turn = 0; turn < std::abs(notches); ++turn) {
            const QPointF held = test.toPage(pointer);
            test.turnWheel(pointer, notches > 0 ? 120 : -120, Qt::ControlModifier);
            const QPointF moved = (test.toPage(pointer) - held) * test.view.zoom();
            QVERIFY2(std::abs(moved.x()) <= 0.51 && std::abs(moved.y()) <= 0.51,
                     qPrintable(QStringLiteral("%1, %2 pixels").arg(moved.x()).arg(moved.y())));
        }
        QCOMPARE(test.view.zoom(), before * std::exp2(notches / 4.0)); // four notches double it
        QVERIFY(!test.view.isFitted());
    }

    void theWheelHoldsTheZoomToItsBounds()
    {
        TestView test;
        for (int turn = 0; turn < 40; ++turn)
            test.turnWheel({400, 200}, 120, Qt::ControlModifier);
        QCOMPARE(test.view.zoom(), 8.0);
        for (int turn = 0; turn < 80; ++turn)
            test.turnWheel({400, 200}, -120, Qt::ControlModifier);
        QCOMPARE(test.view.zoom(), 0.05);
    }

    void theWheelAloneScrolls()
    {
        TestView test;
        test.view.setZoom(4);
        test.turnWheel({400, 200}, -120, {});
        QCOMPARE(test.view.zoom(), 4.0);
        QVERIFY(test.scrolled().y() > 0);
    }

    void aClickFindsAShape()
    {
        TestView test;
        Clicks clicked(test.view);
        test.click({125, 70});
        QCOMPARE(clicked.count(), 1);
        QCOMPARE(clicked.takeLast(), test.red);
        test.click({225, 120});
        QCOMPARE(clicked.takeLast(), test.blue);
        test.click({10, 10});
        QCOMPARE(clicked.count(), 1);
        QCOMPARE(clicked.takeLast(), nullptr);
        test.click({125, 70}, Qt::RightButton);
        test.click({125, 70}, Qt::MiddleButton);
        QCOMPARE(clicked.count(), 0);
        test.view.setZoom(5);
        test.view.horizontalScrollBar()->setValue(300);
        test.view.verticalScrollBar()->setValue(100);
        test.click({125, 70});
        QCOMPARE(clicked.takeLast(), test.red);
        test.canvas.setLayerVisible(*test.layer, false);
        test.click({125, 70});
        QCOMPARE(clicked.takeLast(), nullptr);
    }

    // As after a press that closed a menu or a list over the page.
    void aReleaseAloneIsNoClick()
    {
        TestView test;
        Clicks clicked(test.view);
        QTest::mouseRelease(test.view.viewport(), Qt::LeftButton, {}, test.toView({125, 70}));
        QCOMPARE(clicked.count(), 0);
        test.click({125, 70});
        QCOMPARE(clicked.count(), 1);
    }

    void aDragIsNoClick_data()
    {
        QTest::addColumn<int>("button");
        QTest::newRow("with the left button") << int(Qt::LeftButton);
        QTest::newRow("with the middle button") << int(Qt::MiddleButton);
    }
    void aDragIsNoClick()
    {
        QFETCH(int, button);
        TestView test;
        test.view.setZoom(4);
        test.view.horizontalScrollBar()->setValue(300);
        test.view.verticalScrollBar()->setValue(100);
        Clicks clicked(test.view);
        const QPointF held = test.toPage({400, 200});
        test.drag({400, 200}, {340, 230}, static_cast<Qt::MouseButton>(button));
        QCOMPARE(test.scrolled(), QPoint(360, 70));
        QCOMPARE(test.toPage({340, 230}), held); // the page goes along
        QCOMPARE(clicked.count(), 0);
        test.click({125, 70});
        QCOMPARE(clicked.count(), 1); // and the next click is one again
    }

    void anUnsteadyClickIsOne()
    {
        TestView test;
        test.view.setZoom(4);
        test.view.horizontalScrollBar()->setValue(300);
        Clicks clicked(test.view);
        const int distance = QApplication::startDragDistance();
        test.drag({400, 200}, {400 + distance - 1, 200});
        QCOMPARE(clicked.count(), 1);
        QCOMPARE(test.scrolled(), QPoint(300, 0));
        test.drag({400, 200}, {400 + 2 * distance, 200});
        QCOMPARE(clicked.count(), 1);
    }

    void aDragOfAFittedPageMovesNothing()
    {
        TestView test;
        Clicks clicked(test.view);
        test.drag(test.toView({125, 70}), test.toView({225, 120}));
        QCOMPARE(clicked.count(), 0);
        QCOMPARE(test.toView({0, 0}), QPoint(0, 0));
    }

    void movingWithoutAButtonDragsNothing()
    {
        TestView test;
        test.view.setZoom(4);
        test.view.horizontalScrollBar()->setValue(300);
        test.send(QEvent::MouseMove, {100, 100}, Qt::NoButton);
        test.send(QEvent::MouseMove, {200, 100}, Qt::NoButton);
        QCOMPARE(test.scrolled().x(), 300);
    }

    void aShapesToolTipIsShown()
    {
        TestView test;
        test.red->setNamedProperty(QStringLiteral("ToolTip"), QStringLiteral("a pump"));
        const auto hover = [&test](const QPointF& page) {
            const QPoint position = test.toView(page);
            QHelpEvent event(QEvent::ToolTip, position, test.view.viewport()->mapToGlobal(position));
            QCoreApplication::sendEvent(test.view.viewport(), &event);
        };
        hover({225, 120}); // a shape without one
        QVERIFY(!QToolTip::isVisible());
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        hover({125, 70});
        QVERIFY(QToolTip::isVisible());
        QCOMPARE(QToolTip::text(), QStringLiteral("a pump"));
        hover({10, 10});
        QTRY_VERIFY(!QToolTip::isVisible());
    }

    void aChangeIsPaintedOnce()
    {
        TestView test;
        const quint64 before = test.view.paints();
        QVERIFY(before > 0);
        QSignalSpy painted(&test.view, &CanvasView::painted);
        for (const char* color : {"#111111", "#222222", "#00ff00"})
            test.red->setNamedProperty(QStringLiteral("FillColor"), QLatin1String(color));
        test.blue->setNamedProperty(QStringLiteral("FillColor"), QStringLiteral("#ffff00"));
        QCOMPARE(test.view.paints(), before); // with the next turn of the event loop
        QTRY_COMPARE(test.view.paints(), before + 1);
        TestView::settle();
        QCOMPARE(test.view.paints(), before + 1);
        QCOMPARE(painted.count(), 1);
        QCOMPARE(test.colorAt({125, 70}), QColor(0, 255, 0));
        QCOMPARE(test.colorAt({225, 120}), QColor(255, 255, 0));
    }

    void withoutAChangeNothingIsPainted()
    {
        TestView test;
        QSignalSpy painted(&test.view, &CanvasView::painted);
        test.view.refresh();
        test.red->setNamedProperty(QStringLiteral("FillColor"), QStringLiteral("#ff0000")); // it has it already
        test.view.refresh();
        TestView::settle();
        QCOMPARE(painted.count(), 0);
    }

    void refreshingPaintsAtOnceWhatChanged()
    {
        TestView test;
        test.red->setNamedProperty(QStringLiteral("FillColor"), QStringLiteral("#00ff00"));
        const quint64 drawn = test.view.renderer().drawnShapes();
        test.view.refresh();
        QVERIFY(test.view.renderer().drawnShapes() > drawn);
        const QPoint pixel = test.view.renderer().transform().map(QPointF(125, 70)).toPoint();
        QCOMPARE(test.view.renderer().image().pixelColor(pixel), QColor(0, 255, 0));
        QVERIFY(!test.canvas.hasChanged());
    }

    void aHiddenViewPaintsNothing()
    {
        TestView test({800, 400}, false);
        QSignalSpy painted(&test.view, &CanvasView::painted);
        test.red->setNamedProperty(QStringLiteral("FillColor"), QStringLiteral("#00ff00"));
        test.view.refresh();
        TestView::settle();
        QCOMPARE(test.view.paints(), quint64(0));
        QCOMPARE(test.view.renderer().drawnShapes(), quint64(0));
        test.show();
        QTRY_VERIFY(test.view.paints() > 0);
        const quint64 shown = test.view.paints();
        test.view.hide();
        TestView::settle();
        painted.clear();
        test.red->setNamedProperty(QStringLiteral("FillColor"), QStringLiteral("#0000ff"));
        test.view.refresh();
        TestView::settle();
        QCOMPARE(test.view.paints(), shown);
        QCOMPARE(painted.count(), 0);
        test.show();
        QTRY_VERIFY(test.view.paints() > shown);
        QCOMPARE(test.colorAt({125, 70}), QColor(0, 0, 255));
        test.red->setNamedProperty(QStringLiteral("FillColor"), QStringLiteral("#00ff00"));
        painted.clear();
        QTRY_COMPARE(painted.count(), 1); // changes are heard of again
    }

    void aLayerThatIsSwitchedOffIsPaintedAway()
    {
        TestView test;
        QSignalSpy painted(&test.view, &CanvasView::painted);
        test.canvas.setLayerVisible(*test.layer, false);
        QTRY_VERIFY(painted.count() > 0);
        QCOMPARE(test.colorAt({125, 70}), test.canvas.background());
    }

    void theSelectedShapeIsMarked()
    {
        TestView test;
        QSignalSpy painted(&test.view, &CanvasView::painted);
        const QImage before = test.view.viewport()->grab().toImage();
        painted.clear();
        test.view.setSelected(test.red);
        QTRY_COMPARE(painted.count(), 1);
        QVERIFY(test.view.viewport()->grab().toImage() != before);
        painted.clear();
        test.view.setSelected(test.red);
        TestView::settle();
        QCOMPARE(painted.count(), 0);
        test.view.setSelected(nullptr);
        QTRY_COMPARE(painted.count(), 1);
        QCOMPARE(test.view.viewport()->grab().toImage(), before);
    }

    // Runs on a screen of any resolution: see the test behind it.
    void aPageIsDrawnInDevicePixels()
    {
        TestView test;
        const double ratio = test.view.viewport()->devicePixelRatioF();
        QCOMPARE(test.view.viewport()->size(), QSize(800, 400));
        QCOMPARE(test.view.renderer().image().size(), (QSizeF(800, 400) * ratio).toSize());
        QCOMPARE(test.view.renderer().transform().map(QPointF(100, 50)), QPointF(200, 100) * ratio);
        QCOMPARE(test.view.zoom(), 2.0);
        QCOMPARE(test.colorAt({125, 70}), QColor(Qt::red));
        Clicks clicked(test.view);
        QTest::mouseClick(test.view.viewport(), Qt::LeftButton, {}, QPoint(250, 140));
        QCOMPARE(clicked.count(), 1);
        QCOMPARE(clicked.takeLast(), test.red);
        QSignalSpy painted(&test.view, &CanvasView::painted);
        test.red->setNamedProperty(QStringLiteral("FillColor"), QStringLiteral("#00ff00"));
        QTRY_COMPARE(painted.count(), 1);
        QCOMPARE(test.colorAt({125, 70}), QColor(0, 255, 0));
        QCOMPARE(test.colorAt({225, 120}), QColor(Qt::blue));
        test.turnWheel({600, 300}, 120, Qt::ControlModifier);
        QCOMPARE(test.view.zoom(), 2 * std::exp2(0.25));
    }

    void screensOfOtherResolutions_data()
    {
        QTest::addColumn<QString>("factor");
        QTest::newRow("one and a half times") << QStringLiteral("1.5");
        QTest::newRow("twice") << QStringLiteral("2");
        QTest::newRow("three times") << QStringLiteral("3");
    }
    void screensOfOtherResolutions()
    {
        QFETCH(QString, factor);
        QProcess other;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_SCALE_FACTOR"), factor);
        environment.insert(QStringLiteral("QT_SCALE_FACTOR_ROUNDING_POLICY"), QStringLiteral("PassThrough"));
        other.setProcessEnvironment(environment);
        other.setProcessChannelMode(QProcess::MergedChannels);
        other.start(QCoreApplication::applicationFilePath(), {QStringLiteral("aPageIsDrawnInDevicePixels")});
        QVERIFY(other.waitForFinished());
        const QByteArray output = other.readAll();
        QVERIFY2(other.exitCode() == 0, output.constData());
    }
};

QTEST_MAIN(tst_CanvasView)
#include "tst_canvasview.moc"
