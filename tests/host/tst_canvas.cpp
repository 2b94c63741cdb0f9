#include "host/canvas/canvas.h"
#include "host/shapes/line.h"
#include "host/shapes/rectangle.h"

#include <QSignalSpy>
#include <QtTest>

namespace {

struct TestCanvas
{
    Shape& add(Layer& layer, const QString& name, const QRectF& place = {0, 0, 10, 10})
    {
        auto shape = std::make_unique<Rectangle>();
        shape->setName(name);
        shape->setPlace(place);
        return canvas.addShape(layer, std::move(shape));
    }
    QString nameAt(const QPointF& position) const
    {
        const Shape* found = canvas.shapeAt(position);
        return found ? found->name() : QStringLiteral("nothing");
    }

    Canvas canvas{QStringLiteral("plant")};
    Layer& lower = canvas.addLayer(QStringLiteral("lower"));
    Layer& upper = canvas.addLayer(QStringLiteral("upper"));
};

bool setColor(Shape& shape, const char* color)
{
    return shape.setNamedProperty(QStringLiteral("FillColor"), QLatin1String(color));
}

} // namespace

class tst_Canvas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPageBeginsEmpty()
    {
        const Canvas canvas(QStringLiteral("plant"));
        QCOMPARE(canvas.canvasName(), QStringLiteral("plant"));
        QCOMPARE(canvas.title(), QStringLiteral("plant"));
        QVERIFY(canvas.layers().empty() && canvas.shapes().empty());
        QCOMPARE(canvas.shapeCount(), std::size_t(0));
        QCOMPARE(canvas.shapeNames(), QStringList());
        QVERIFY(!canvas.shapeAt({0, 0}));
        QVERIFY(!canvas.findShape(QStringLiteral("x")));
        QVERIFY(!canvas.hasChanged());
    }

    void aTitleStandsForTheName()
    {
        Canvas canvas(QStringLiteral("plant"));
        canvas.setTitle(QStringLiteral("The plant"));
        QCOMPARE(canvas.title(), QStringLiteral("The plant"));
        QCOMPARE(canvas.canvasName(), QStringLiteral("plant"));
        canvas.setTitle({});
        QCOMPARE(canvas.title(), QStringLiteral("plant"));
    }

    void shapesAreListedFromTheBottomUp()
    {
        TestCanvas test;
        Shape& c = test.add(test.upper, QStringLiteral("c"));
        Shape& a = test.add(test.lower, QStringLiteral("a"));
        Shape& unnamed = test.add(test.lower, {});
        Shape& b = test.add(test.lower, QStringLiteral("b"));
        QCOMPARE(test.canvas.shapes(), (std::vector<Shape*>{&a, &unnamed, &b, &c}));
        QCOMPARE(test.canvas.shapeCount(), std::size_t(4));
        QCOMPARE(test.canvas.shapeNames(),
                 QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")}));
        QCOMPARE(test.canvas.layers()[0]->name(), QStringLiteral("lower"));
        QCOMPARE(test.canvas.layers()[1]->name(), QStringLiteral("upper"));
        QCOMPARE(a.layer(), static_cast<StratelInterface*>(&test.lower));
        QCOMPARE(test.canvas.shapeNamed(QStringLiteral("c")), static_cast<TesselInterface*>(&c));
    }

    void theLowestShapeOfANameIsFound()
    {
        TestCanvas test;
        test.add(test.upper, QStringLiteral("same"));
        Shape& lowest = test.add(test.lower, QStringLiteral("same"));
        test.add(test.lower, QStringLiteral("same"));
        QCOMPARE(test.canvas.findShape(QStringLiteral("same")), &lowest);
        QVERIFY(!test.canvas.findShape(QStringLiteral("Same")));
        QVERIFY(!test.canvas.shapeNamed(QStringLiteral("other")));
    }

    void theTopmostShapeIsHit()
    {
        TestCanvas test;
        test.add(test.upper, QStringLiteral("top"), {50, 50, 20, 20});
        test.add(test.lower, QStringLiteral("below"), {0, 0, 100, 100});
        test.add(test.lower, QStringLiteral("above"), {0, 0, 60, 60});
        QCOMPARE(test.nameAt({55, 55}), QStringLiteral("top"));
        QCOMPARE(test.nameAt({20, 20}), QStringLiteral("above"));
        QCOMPARE(test.nameAt({80, 80}), QStringLiteral("below"));
        QCOMPARE(test.nameAt({101, 50}), QStringLiteral("nothing"));
        QCOMPARE(test.nameAt({-1, 50}), QStringLiteral("nothing"));
    }

    void whatIsHiddenIsNotHit()
    {
        TestCanvas test;
        Shape& top = test.add(test.upper, QStringLiteral("top"));
        test.add(test.lower, QStringLiteral("below"));
        QVERIFY(top.setNamedProperty(QStringLiteral("Visible"), false));
        QCOMPARE(test.nameAt({5, 5}), QStringLiteral("below"));
        QVERIFY(top.setNamedProperty(QStringLiteral("Visible"), true));
        QCOMPARE(test.nameAt({5, 5}), QStringLiteral("top"));
        test.canvas.setLayerVisible(test.upper, false);
        QCOMPARE(test.nameAt({5, 5}), QStringLiteral("below"));
        test.canvas.setLayerVisible(test.lower, false);
        QCOMPARE(test.nameAt({5, 5}), QStringLiteral("nothing"));
        QVERIFY(test.canvas.findShape(QStringLiteral("top"))); // it is there all the same
    }

    void aShapeIsHitWhereItWasTurnedTo()
    {
        TestCanvas test;
        Shape& shape = test.add(test.lower, QStringLiteral("turned"), {100, 100, 100, 20});
        QCOMPARE(test.nameAt({105, 110}), QStringLiteral("turned"));
        QVERIFY(shape.setNamedProperty(QStringLiteral("Rotation"), 90)); // around (150, 110)
        QCOMPARE(test.nameAt({105, 110}), QStringLiteral("nothing"));
        QCOMPARE(test.nameAt({150, 65}), QStringLiteral("turned"));
        QCOMPARE(test.nameAt({150, 155}), QStringLiteral("turned"));
        QCOMPARE(test.nameAt({165, 110}), QStringLiteral("nothing"));
        shape.setPlace({100, 100, 200, 20}); // around (200, 110) from now on
        QCOMPARE(test.nameAt({200, 15}), QStringLiteral("turned"));
        QCOMPARE(test.nameAt({150, 65}), QStringLiteral("nothing"));
    }

    void aLineIsHitAlongItself()
    {
        TestCanvas test;
        test.add(test.lower, QStringLiteral("below"), {0, 0, 100, 100});
        auto line = std::make_unique<Line>();
        line->setName(QStringLiteral("line"));
        line->setPlace({0, 0, 100, 100});
        const QPolygonF points = QPolygonF() << QPointF(0, 0) << QPointF(100, 100);
        QVERIFY(line->setNamedProperty(QStringLiteral("Points"), points));
        test.canvas.addShape(test.upper, std::move(line));
        QCOMPARE(test.nameAt({50, 50}), QStringLiteral("line"));
        QCOMPARE(test.nameAt({90, 10}), QStringLiteral("below"));
    }

    void aChangeIsToldOnce()
    {
        TestCanvas test;
        Shape& a = test.add(test.lower, QStringLiteral("a"));
        Shape& b = test.add(test.upper, QStringLiteral("b"));
        QSignalSpy changed(&test.canvas, &Canvas::changed);
        QVERIFY(setColor(b, "#111111"));
        QVERIFY(setColor(a, "#222222"));
        QVERIFY(setColor(b, "#333333"));
        a.setPlace({1, 1, 10, 10});
        QCOMPARE(changed.count(), 1);
        QVERIFY(test.canvas.hasChanged());
        QCOMPARE(test.canvas.takeChanged(), (std::vector<Shape*>{&b, &a}));
        QVERIFY(!test.canvas.hasChanged());
        QVERIFY(test.canvas.takeChanged().empty());
        QVERIFY(setColor(a, "#444444"));
        QCOMPARE(changed.count(), 2);
        QCOMPARE(test.canvas.takeChanged(), std::vector<Shape*>{&a});
    }

    void whatStaysTheSameIsNoChange()
    {
        TestCanvas test;
        Shape& shape = test.add(test.lower, QStringLiteral("a"), {5, 5, 20, 20});
        QVERIFY(setColor(shape, "#111111"));
        test.canvas.takeChanged();
        QSignalSpy changed(&test.canvas, &Canvas::changed);
        QVERIFY(setColor(shape, "#111111"));
        shape.setPlace({5, 5, 20, 20});
        QVERIFY(shape.setNamedProperty(QStringLiteral("Visible"), true));
        QVERIFY(shape.setNamedProperty(QStringLiteral("ToolTip"), QStringLiteral("nothing to see")));
        QVERIFY(!shape.setNamedProperty(QStringLiteral("no such property"), 1));
        QVERIFY(!setColor(shape, "no colour"));
        QCOMPARE(changed.count(), 0);
    }

    void whatHappenedBeforeAPageHadAShapeIsNoChange()
    {
        TestCanvas test;
        auto shape = std::make_unique<Rectangle>();
        QVERIFY(setColor(*shape, "#111111"));
        Shape& added = test.canvas.addShape(test.lower, std::move(shape));
        QVERIFY(!test.canvas.hasChanged());
        QVERIFY(setColor(added, "#222222"));
        QVERIFY(test.canvas.hasChanged());
    }

    void aNewArrangementIsTold()
    {
        TestCanvas test;
        QSignalSpy rearranged(&test.canvas, &Canvas::rearranged);
        QSignalSpy changed(&test.canvas, &Canvas::changed);
        const auto told = [&rearranged] {
            const int count = rearranged.count();
            rearranged.clear();
            return count;
        };
        test.add(test.lower, QStringLiteral("a"));
        QCOMPARE(told(), 1);
        test.canvas.setSize({800, 600});
        QCOMPARE(told(), 1);
        QCOMPARE(test.canvas.size(), QSizeF(800, 600));
        test.canvas.setSize({800, 600});
        test.canvas.setBackground(test.canvas.background());
        QCOMPARE(told(), 0);
        test.canvas.setBackground(Qt::white);
        QCOMPARE(told(), 1);
        test.canvas.setLayerVisible(test.lower, false);
        QCOMPARE(told(), 1);
        QVERIFY(!test.lower.isVisible());
        test.canvas.setLayerVisible(test.lower, false);
        QCOMPARE(told(), 0);
        test.canvas.setMarksShown(test.upper, false);
        QCOMPARE(told(), 1);
        QVERIFY(!test.upper.areMarksShown() && test.lower.areMarksShown());
        test.canvas.setMarksShown(test.upper, false);
        QCOMPARE(told(), 0);
        QCOMPARE(changed.count(), 0);
    }

    void membersThatAreNotKnownAreKept()
    {
        TestCanvas test;
        test.canvas.setUnknownMembers("{\"a\":1}");
        test.lower.setUnknownMembers("{\"b\":2}");
        QCOMPARE(test.canvas.unknownMembers(), QByteArray("{\"a\":1}"));
        QCOMPARE(test.lower.unknownMembers(), QByteArray("{\"b\":2}"));
        QVERIFY(test.upper.unknownMembers().isEmpty());
    }
};

QTEST_MAIN(tst_Canvas)
#include "tst_canvas.moc"
