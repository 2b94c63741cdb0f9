#include "host/shapes/palette.h"
#include "host/shapes/pathshape.h"
#include "host/shapes/placeholder.h"
#include "host/shapes/readout.h"
#include "host/shapes/shapefactory.h"
#include "host/shapes/shapepainter.h"
#include "host/shapes/shapeproperty.h"
#include "host/shapes/textpainter.h"
#include "host/shapes/trend.h"
#include "tests/support/drawnshape.h"

#include <QtTest>

#include <limits>

namespace {

using Kind = ShapeProperty::Kind;

/// Counts what a shape reports.
struct Listener : ShapeListener
{
    void shapeChanged(Shape&) override { ++count; }
    int count = 0;
    void shapeActed(Shape&, const QString&, const QVariantList&) override {}
};

std::unique_ptr<Shape> created(const char* className)
{
    return ShapeFactory::create(QString::fromLatin1(className));
}

bool set(Shape& shape, const char* property, const QVariant& value)
{
    return shape.setNamedProperty(QString::fromLatin1(property), value);
}

QVariant get(const Shape& shape, const char* property)
{
    return shape.namedProperty(QString::fromLatin1(property));
}

QPolygonF corner()
{
    return QVector<QPointF>{{0, 0}, {60, 0}, {60, 30}};
}

/// A value that the property can hold and that is not its default.
QVariant otherValue(const ShapeProperty& property, const QVariant& now)
{
    if (property.name == QLatin1String("Level") || property.name == QLatin1String("Opacity"))
        return 0.5;
    if (property.name == QLatin1String("Orientation"))
        return int(Qt::Horizontal);
    if (property.name == QLatin1String("Date"))
        return QStringLiteral("2024-02-29");
    switch (property.kind) {
    case Kind::Number:
        return 12.5;
    case Kind::Integer:
        return 7;
    case Kind::Boolean:
        return !now.toBool();
    case Kind::Text:
        return QStringLiteral("Pump 17");
    case Kind::TextList:
        return QStringList({QStringLiteral("red"), QStringLiteral("blue")});
    case Kind::Color:
        return QColor(0x12, 0x34, 0x56);
    case Kind::Rect:
        return QRectF(0, 0, 70, 55);
    case Kind::Point:
        return QPointF(11, 12);
    case Kind::Size:
        return QSizeF(71, 56);
    case Kind::Points:
        return corner();
    }
    return {};
}

QVariantList wrongValues(Kind kind)
{
    const QVariant text = QStringLiteral("no such thing");
    const QVariant rect = QRectF(1, 2, 3, 4);
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double infinity = std::numeric_limits<double>::infinity();
    switch (kind) {
    case Kind::Number:
    case Kind::Integer:
        return {text, rect, nan, infinity, -infinity};
    case Kind::Boolean:
        return {text, rect};
    case Kind::Text:
        return {rect, QPolygonF()};
    case Kind::TextList:
        return {text, 5, rect};
    case Kind::Color:
        return {text, 5, rect};
    case Kind::Rect:
        return {text, 5, QRectF(0, 0, nan, 1)};
    case Kind::Point:
        return {text, rect, QPointF(0, infinity)};
    case Kind::Size:
        return {text, rect, QSizeF(nan, 1)};
    case Kind::Points:
        return {text, rect, QPointF(1, 2), QPolygonF(QVector<QPointF>{{0, 0}, {nan, 1}})};
    }
    return {};
}

/// Settings that make shapes reach as far as they can.
const std::vector<std::pair<const char*, std::vector<std::pair<const char*, QVariant>>>>& extremes()
{
    static const QString longText = QStringLiteral("A text that is wider than most shapes\nand its second line");
    static const std::vector<std::pair<const char*, std::vector<std::pair<const char*, QVariant>>>> all = {
        {"defaults", {}},
        {"thick lines and large texts",
         {{"LineWidth", 64}, {"Width", 200}, {"FontSize", 200}, {"Radius", 1000}, {"Text", longText}, {"Bold", true}}},
        {"long texts and odd alignments",
         {{"Text", longText},
          {"Items", QStringList(longText)},
          {"Index", 0},
          {"Columns", QStringList({longText, QStringLiteral("B"), longText})},
          {"Rows", QStringList({longText + QStringLiteral("\tb\t") + longText, longText})},
          {"SelectedRow", 0},
          {"Label", longText},
          {"Unit", longText},
          {"Title", longText},
          {"Placeholder", longText},
          {"Source", longText},
          {"Alignment", int(Qt::AlignBottom | Qt::AlignRight)},
          {"FontSize", 40}}},
        {"values beyond the range",
         {{"Value", 1e9},
          {"RowCount", 1'000'000},
          {"FirstRow", 1'000'000},
          {"SelectedRow", 999'999},
          {"HasLimits", true},
          {"Flow", -1},
          {"State", 3},
          {"Pressed", true},
          {"Active", true},
          {"ArrowStart", true},
          {"ArrowEnd", true},
          {"LineWidth", 9},
          {"Points", corner()}}},
        {"values below the range, lying",
         {{"Value", -1e9},
          {"HasLimits", true},
          {"LowLimit", 0},
          {"HighLimit", 100},
          {"Orientation", 1},
          {"Flow", 1},
          {"State", 17},
          {"Enabled", false},
          {"Dashed", true},
          {"Points", QPolygonF(QVector<QPointF>{{0, 0}, {200, 20}, {0, 40}, {-30, 200}})}}},
    };
    return all;
}

/// Sets those of the properties that the shape has.
void setAll(Shape& shape, const std::vector<std::pair<const char*, QVariant>>& values)
{
    for (const auto& [name, value] : values) {
        if (shape.shapeClass().find(QString::fromLatin1(name)))
            QVERIFY2(set(shape, name, value), name);
    }
    if (auto* trend = dynamic_cast<Trend*>(&shape); trend && !values.empty()) {
        for (int curve = 0; curve < Trend::mostCurves; ++curve) {
            for (int i = 0; i < 50; ++i)
                trend->addSample(curve, i * 13'000, i % 7 * (curve + 1.0));
        }
    }
}

double luminance(const QColor& color)
{
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// As WCAG 2.1 defines it.
double contrast(const QColor& one, const QColor& other)
{
    const double a = luminance(one) + 0.05;
    const double b = luminance(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

} // namespace

class tst_Shapes : public QObject
{
    Q_OBJECT

    static void addClasses()
    {
        QTest::addColumn<QString>("className");
        for (const ShapeClass* shapeClass : ShapeFactory::classes())
            QTest::newRow(shapeClass->name.data()) << QString(shapeClass->name);
    }

private Q_SLOTS:
    void theFactoryKnowsItsClassesByName_data() { addClasses(); }
    void theFactoryKnowsItsClassesByName()
    {
        QFETCH(QString, className);
        const std::unique_ptr<Shape> shape = ShapeFactory::create(className);
        QVERIFY(shape);
        QCOMPARE(QString(shape->shapeClass().name), className);
        QCOMPARE(ShapeFactory::find(className), &shape->shapeClass());
        QVERIFY(!ShapeFactory::create(className.toUpper()));
        QVERIFY(!shape->isChanged());
    }

    void aPlaceholderIsNotOffered()
    {
        QVERIFY(!ShapeFactory::find(QStringLiteral("Placeholder")));
        const std::unique_ptr<Shape> shape = Placeholder::staticClass().create();
        QVERIFY(set(*shape, "Text", QStringLiteral("Fan 3")));
        QCOMPARE(get(*shape, "Text"), QVariant(QStringLiteral("Fan 3")));
        QVERIFY(!inkOf(drawn(*shape)).isEmpty());
    }

    void everyPropertyReadsBackAndReportsOnce_data() { addClasses(); }
    void everyPropertyReadsBackAndReportsOnce()
    {
        QFETCH(QString, className);
        const ShapeClass& shapeClass = *ShapeFactory::find(className);
        for (const ShapeProperty& property : shapeClass.properties) {
            const std::unique_ptr<Shape> shape = shapeClass.create();
            Listener listener;
            shape->setListener(&listener);
            const QVariant wanted = otherValue(property, property.read(*shape));
            QVERIFY2(property.read(*shape) != wanted, property.name.data());
            QVERIFY2(property.write(*shape, wanted), property.name.data());
            QCOMPARE(property.read(*shape), wanted);
            const int reports = property.name == QLatin1String("ToolTip") ? 0 : 1; // which is not drawn
            QCOMPARE(listener.count, reports);

            shape->setDrawn();
            QVERIFY(property.write(*shape, wanted));
            QCOMPARE(listener.count, reports); // the same once more is no change
        }
    }

    void wrongValuesAreRefused_data() { addClasses(); }
    void wrongValuesAreRefused()
    {
        QFETCH(QString, className);
        const std::unique_ptr<Shape> shape = ShapeFactory::create(className);
        Listener listener;
        shape->setListener(&listener);
        for (const ShapeProperty& property : shape->shapeClass().properties) {
            const QVariant before = property.read(*shape);
            const QVariantList wrong = wrongValues(property.kind);
            for (const QVariant& value : wrong) {
                QVERIFY2(!property.write(*shape, value), property.name.data());
                QCOMPARE(property.read(*shape), before);
            }
        }
        QVERIFY(!shape->setNamedProperty(QStringLiteral("NoSuchProperty"), 1));
        QVERIFY(!shape->namedProperty(QStringLiteral("NoSuchProperty")).isValid());
        QCOMPARE(listener.count, 0);
    }

    void setBackToItsDefaultsAShapeIsLikeNew_data() { addClasses(); }
    void setBackToItsDefaultsAShapeIsLikeNew()
    {
        QFETCH(QString, className);
        const std::unique_ptr<Shape> fresh = ShapeFactory::create(className);
        const std::unique_ptr<Shape> used = ShapeFactory::create(className);
        const auto& properties = fresh->shapeClass().properties;
        for (const ShapeProperty& property : properties)
            QVERIFY(property.write(*used, otherValue(property, property.read(*used))));
        for (const ShapeProperty& property : properties)
            QVERIFY2(property.write(*used, property.read(*fresh)), property.name.data());
        for (const ShapeProperty& property : properties)
            QCOMPARE(property.read(*used), property.read(*fresh));
        QCOMPARE(drawn(*used), drawn(*fresh));
    }

    void drawsInsideItsBounds_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<double>("scale");
        for (const ShapeClass* shapeClass : ShapeFactory::classes()) {
            for (const double scale : {1.0, 1.5, 2.0, 3.0})
                QTest::addRow("%s at %g %%", shapeClass->name.data(), scale * 100)
                    << QString(shapeClass->name) << scale;
        }
    }
    void drawsInsideItsBounds()
    {
        QFETCH(QString, className);
        QFETCH(double, scale);
        for (const QSizeF& size : {QSizeF(), QSizeF(100, 40), QSizeF(20, 20), QSizeF(8, 90), QSizeF(260, 5)}) {
            for (const auto& [name, values] : extremes()) {
                const std::unique_ptr<Shape> shape = ShapeFactory::create(className);
                if (!size.isEmpty())
                    shape->setPlace({{}, size});
                setAll(*shape, values);
                TextPainter texts;
                for (TextPainter* used : {static_cast<TextPainter*>(nullptr), &texts}) {
                    const QRect ink = inkOf(drawn(*shape, scale, used));
                    const QRect bounds = QRectF(40 * scale, 40 * scale, shape->boundingRect().width() * scale,
                                                shape->boundingRect().height() * scale)
                                             .toAlignedRect();
                    QVERIFY2(bounds.contains(ink) || ink.isEmpty(),
                             qPrintable(QStringLiteral("%1, %2 x %3: %4 to %5 by %6 to %7 in %8 x %9")
                                            .arg(QString::fromLatin1(name))
                                            .arg(shape->geometry().width())
                                            .arg(shape->geometry().height())
                                            .arg(ink.left() - bounds.left())
                                            .arg(ink.right() - bounds.left())
                                            .arg(ink.top() - bounds.top())
                                            .arg(ink.bottom() - bounds.top())
                                            .arg(bounds.width())
                                            .arg(bounds.height())));
                }
            }
        }
    }

    void leavesThePainterAsItWas_data() { addClasses(); }
    void leavesThePainterAsItWas()
    {
        QFETCH(QString, className);
        for (const auto& [name, values] : extremes()) {
            const std::unique_ptr<Shape> shape = ShapeFactory::create(className);
            setAll(*shape, values);
            QImage image(300, 300, QImage::Format_ARGB32_Premultiplied);
            image.fill(Qt::white);
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setOpacity(0.5);
            painter.scale(1.25, 1.25);
            painter.setClipRect(QRectF(3, 4, 100, 90));
            const QTransform transform = painter.worldTransform();
            const QRectF clip = painter.clipBoundingRect();
            const QPainter::RenderHints hints = painter.renderHints();
            shape->draw(ShapePainter(painter));
            QCOMPARE(painter.worldTransform(), transform);
            QVERIFY(painter.hasClipping());
            QCOMPARE(painter.clipBoundingRect(), clip);
            QCOMPARE(painter.opacity(), 0.5);
            QCOMPARE(painter.renderHints(), hints);
            QCOMPARE(painter.compositionMode(), QPainter::CompositionMode_SourceOver);
        }
    }

    void anySizeCanBeDrawn_data() { addClasses(); }
    void anySizeCanBeDrawn()
    {
        QFETCH(QString, className);
        for (const auto& [name, values] : extremes()) {
            for (const QSizeF& size : {QSizeF(0, -5), QSizeF(1, 1), QSizeF(1, 1e9), QSizeF(1e9, 1), QSizeF(1e9, 1e9)}) {
                const std::unique_ptr<Shape> shape = ShapeFactory::create(className);
                shape->setPlace({QPointF(), size});
                setAll(*shape, values);
                QVERIFY(shape->geometry().width() >= 1 && shape->geometry().height() >= 1);
                QVERIFY(shape->geometry().width() <= 100'000 && shape->geometry().height() <= 100'000);
                QImage image(64, 64, QImage::Format_ARGB32_Premultiplied);
                QPainter painter(&image);
                painter.setRenderHint(QPainter::Antialiasing);
                painter.scale(3, 3);
                shape->draw(ShapePainter(painter));
            }
        }
    }

    void statesDifferWithoutTheirColours_data()
    {
        QTest::addColumn<QString>("className");
        for (const char* className : {"Valve", "Pump", "Breaker"})
            QTest::newRow(className) << QString::fromLatin1(className);
    }
    void statesDifferWithoutTheirColours()
    {
        QFETCH(QString, className);
        std::vector<QImage> pictures;
        for (const int state : {0, 1, 2, 3, 4}) {
            const std::unique_ptr<Shape> shape = ShapeFactory::create(className);
            shape->setPlace({0, 0, 32, 32});
            QVERIFY(set(*shape, "State", state));
            pictures.push_back(drawn(*shape, 1, nullptr, 0));
        }
        for (std::size_t one = 0; one < pictures.size(); ++one) {
            for (std::size_t other = one + 1; other < pictures.size(); ++other) {
                const double difference = greyDifference(pictures[one], pictures[other]);
                QVERIFY2(difference > 10,
                         qPrintable(QStringLiteral("%1 and %2 by %3").arg(one).arg(other).arg(difference)));
            }
        }
    }

    void allStatesThatAreNoneLookUnknown()
    {
        const std::unique_ptr<Shape> one = created("Pump");
        const std::unique_ptr<Shape> other = created("Pump");
        QVERIFY(set(*one, "State", -1));
        QVERIFY(set(*other, "State", 1000));
        QCOMPARE(drawn(*one), drawn(*other));
    }

    void looksDifferWithoutTheirColours_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("one");
        QTest::addColumn<QVariant>("other");
        const auto row = [](const char* name, const char* className, const char* property, QVariant one,
                            QVariant other) {
            QTest::newRow(name) << QString::fromLatin1(className) << QString::fromLatin1(property) << one << other;
        };
        row("a pipe with flow and one without", "Pipe", "Flow", 1, 0);
        row("flow forward and flow back", "Pipe", "Flow", 2.5, -0.1);
        row("a button pressed and one that is not", "Button", "Pressed", true, false);
        row("a button that can be pushed and one that can't", "Button", "Enabled", true, false);
        row("a field being written into and another", "InputField", "Active", true, false);
        row("a field that can be written into and one that can't", "InputField", "Enabled", true, false);
        row("a choice that can be made and one that can't", "Choice", "Enabled", true, false);
        row("a date that can be picked and one that can't", "DateField", "Enabled", true, false);
        row("a date and none", "DateField", "Date", QStringLiteral("2024-02-29"), QString());
        row("a table that can be used and one that can't", "Table", "Enabled", true, false);
        row("a bar without a value and an empty one", "Bar", "Value", QVariant(), 0);
        row("an empty bar and one whose value lies below", "Bar", "Value", 0, -1);
        row("a full bar and one whose value lies above", "Bar", "Value", 100, 101);
        row("a gauge without a value and one at its end", "RoundGauge", "Value", QVariant(), 0);
        row("a tank without a value and an empty one", "Tank", "Value", QVariant(), 0);
    }
    void looksDifferWithoutTheirColours()
    {
        QFETCH(QString, className);
        QFETCH(QString, property);
        QFETCH(QVariant, one);
        QFETCH(QVariant, other);
        const std::unique_ptr<Shape> first = ShapeFactory::create(className);
        const std::unique_ptr<Shape> second = ShapeFactory::create(className);
        QVERIFY(first->setNamedProperty(property, one));
        QVERIFY(second->setNamedProperty(property, other));
        QVERIFY(greyDifference(drawn(*first, 1, nullptr, 0), drawn(*second, 1, nullptr, 0)) > 0.3);
    }

    void numbersWithARangeKeepToIt_data()
    {
        QTest::addColumn<QString>("className");
        QTest::addColumn<QString>("property");
        QTest::addColumn<QVariant>("set");
        QTest::addColumn<QVariant>("held");
        const auto row = [](const char* className, const char* property, const QVariant& value, const QVariant& held) {
            QTest::addRow("%s, %s %s", className, property, qPrintable(value.toString()))
                << QString::fromLatin1(className) << QString::fromLatin1(property) << value << held;
        };
        row("Rectangle", "LineWidth", -1, 0.0);
        row("Rectangle", "LineWidth", 65, 64.0);
        row("Rectangle", "Radius", -3, 0.0);
        row("Line", "LineWidth", 1000, 64.0);
        row("Pipe", "Width", 0, 2.0);
        row("ReadOut", "FontSize", 3, 4);
        row("ReadOut", "FontSize", 1e9, 200);
        row("ReadOut", "Decimals", -2, -1);
        row("ReadOut", "Decimals", 99, 12);
        row("Bar", "Orientation", 0, int(Qt::Horizontal));
        row("Bar", "Level", 1.5, 1.0);
        row("Tank", "Level", -1, 0.0);
        row("Trend", "Span", 0, 1.0);
        row("Choice", "Index", -2, -1);
        row("Table", "RowCount", -1, 0);
        row("Table", "RowCount", 1'000'001, 1'000'000);
        row("Table", "FirstRow", -5, 0);
        row("Table", "SelectedRow", -7, -1);
        row("Rectangle", "Opacity", 2, 1.0);
    }
    void numbersWithARangeKeepToIt()
    {
        QFETCH(QString, className);
        QFETCH(QString, property);
        QFETCH(QVariant, set);
        QFETCH(QVariant, held);
        const std::unique_ptr<Shape> shape = ShapeFactory::create(className);
        QVERIFY(shape->setNamedProperty(property, set));
        QCOMPARE(shape->namedProperty(property), held);
    }

    void aLevelIsAShareOfTheRange()
    {
        const std::unique_ptr<Shape> bar = created("Bar");
        QVERIFY(!get(*bar, "Value").isValid());
        QVERIFY(!get(*bar, "Level").isValid());
        QVERIFY(set(*bar, "Minimum", -50));
        QVERIFY(set(*bar, "Maximum", 150));
        QVERIFY(set(*bar, "Level", 0.25));
        QCOMPARE(get(*bar, "Value"), QVariant(0.0));
        QVERIFY(set(*bar, "Value", 500));
        QCOMPARE(get(*bar, "Level"), QVariant(1.0));
        QVERIFY(set(*bar, "Value", QVariant()));
        QVERIFY(!get(*bar, "Level").isValid());

        QVERIFY(set(*bar, "Minimum", 100)); // the scale runs the other way
        QVERIFY(set(*bar, "Maximum", 0));
        QVERIFY(set(*bar, "Value", 25));
        QCOMPARE(get(*bar, "Level"), QVariant(0.75));
        QVERIFY(set(*bar, "Maximum", 100)); // no range at all
        for (const double value : {25.0, 100.0, 175.0}) {
            QVERIFY(set(*bar, "Value", value));
            QCOMPARE(get(*bar, "Level"), QVariant(0.0));
        }

        QVERIFY(set(*bar, "Minimum", -1.7e308));
        QVERIFY(set(*bar, "Maximum", 1.7e308));
        QVERIFY(set(*bar, "Level", 0.5));
        QCOMPARE(get(*bar, "Value"), QVariant(0.0));
        QCOMPARE(get(*bar, "Level"), QVariant(0.5));
    }

    void aBarIsFilledToItsLevel()
    {
        const std::unique_ptr<Shape> bar = created("Bar");
        bar->setPlace({0, 0, 20, 102});
        QVERIFY(set(*bar, "ShowScale", false));
        QVERIFY(set(*bar, "Value", 30));
        const QImage image = drawn(*bar, 1, nullptr, 0); // 4 units of margin, a frame of 1, and 100 rows in it
        for (int row = 0; row < 100; ++row)
            QCOMPARE(QColor(image.pixel(14, 5 + row)), row < 70 ? Palette::light : Palette::value);
    }

    void aValueBeyondALimitShowsItsColour()
    {
        const std::unique_ptr<Shape> tank = created("Tank");
        QVERIFY(set(*tank, "ShowPercent", false));
        QVERIFY(set(*tank, "Value", 95));
        const QPoint inside(4 + 45, 4 + 65);
        QCOMPARE(QColor(drawn(*tank, 1, nullptr, 0).pixel(inside)), Palette::value);
        QVERIFY(set(*tank, "HasLimits", true));
        QCOMPARE(QColor(drawn(*tank, 1, nullptr, 0).pixel(inside)), Palette::alarm);
        QVERIFY(set(*tank, "HighLimit", 95));
        QCOMPARE(QColor(drawn(*tank, 1, nullptr, 0).pixel(inside)), Palette::value);
    }

    void textIsReadOutWithItsUnit()
    {
        ReadOut readOut;
        QCOMPARE(readOut.shownText(), QStringLiteral("--"));
        QVERIFY(set(readOut, "Value", 12.345));
        QVERIFY(set(readOut, "Unit", QStringLiteral("bar")));
        QVERIFY(set(readOut, "Prefix", QStringLiteral("~")));
        QCOMPARE(readOut.shownText(), QStringLiteral("~12.3 bar"));
        QVERIFY(set(readOut, "Decimals", -1));
        QCOMPARE(readOut.shownText(), QStringLiteral("~12.345 bar"));
        QVERIFY(set(readOut, "Value", QVariant()));
        QVERIFY(!get(readOut, "Value").isValid());
        QCOMPARE(readOut.shownText(), QStringLiteral("--"));
    }

    void aLabelShowsAllItsLines()
    {
        const std::unique_ptr<Shape> label = created("Label");
        for (const int height : {70, 24}) { // one in which they fit, and one in which they must shrink
            label->setPlace({0, 0, 100, double(height)});
            QVERIFY(set(*label, "Text", QStringLiteral("HHH\nHHH\nHHH")));
            const QImage image = drawn(*label, 3, nullptr, 0);
            int lines = 0;
            bool wasBlank = true;
            for (int y = 0; y < image.height(); ++y) {
                const bool isBlank = inkOf(image.copy(0, y, image.width(), 1)).isEmpty();
                lines += wasBlank && !isBlank ? 1 : 0;
                wasBlank = isBlank;
            }
            QCOMPARE(lines, 3);
        }
    }

    void boundsHoldThePointsOfALine()
    {
        const std::unique_ptr<Shape> line = created("Line");
        QVERIFY(line->boundingRect().width() < 200);
        QVERIFY(set(*line, "Points", QPolygonF(QVector<QPointF>{{-500, -70}, {900, 300}})));
        QVERIFY(line->boundingRect().contains(QRectF(-500, -70, 1400, 370)));
        QCOMPARE(line->geometry(), QRectF(0, 0, 100, 40));
        QVERIFY(line->shape().contains(QPointF(200, 115)));
        QVERIFY(!line->shape().contains(QPointF(200, 0)));
        QVERIFY(set(*line, "Points", QPolygonF(QVector<QPointF>{{1e300, -1e300}, {0, 5}})));
        QCOMPARE(get(*line, "Points").value<QPolygonF>().first(), QPointF(100'000, -100'000));
    }

    void aLineWithoutPointsLiesInTheMiddle()
    {
        const std::unique_ptr<Shape> line = created("Line");
        line->setPlace({0, 0, 60, 30});
        const QRectF place = line->boundingRect().adjusted(-40, -40, 40, 40);
        QCOMPARE(inkOf(drawn(*line)).translated(place.topLeft().toPoint()), QRect(0, 14, 60, 2));
    }

    void framesAreSharp_data()
    {
        QTest::addColumn<double>("scale");
        QTest::addColumn<int>("pixels");
        QTest::newRow("100 %") << 1.0 << 1;
        QTest::newRow("125 %") << 1.25 << 1;
        QTest::newRow("150 %") << 1.5 << 2;
        QTest::newRow("200 %") << 2.0 << 2;
        QTest::newRow("300 %") << 3.0 << 3;
    }
    void framesAreSharp()
    {
        QFETCH(double, scale);
        QFETCH(int, pixels);
        const std::unique_ptr<Shape> rectangle = created("Rectangle");
        rectangle->setPlace({0, 0, 33, 27});
        QVERIFY(set(*rectangle, "FillColor", QColor(Qt::white)));
        QVERIFY(set(*rectangle, "LineColor", QColor(Qt::black)));
        const QImage image = drawn(*rectangle, scale, nullptr, 0);
        int black = 0;
        for (int x = 0; x < image.width() / 2; ++x) {
            const QRgb pixel = image.pixel(x, image.height() / 2);
            QVERIFY(pixel == 0 || pixel == qRgb(0, 0, 0) || pixel == qRgb(255, 255, 255)); // nothing in between
            black += pixel == qRgb(0, 0, 0) ? 1 : 0;
        }
        QCOMPARE(black, pixels);
    }

    void textsCanBeReadOnTheirGrounds()
    {
        for (const QColor& ground : {Palette::paper, Palette::light, Palette::plate})
            QVERIFY(contrast(Palette::ink, ground) > 4.5);
        QVERIFY(contrast(Palette::outline, Palette::paper) > 4.5);
        QVERIFY(contrast(Palette::alarm, Palette::paper) > 4.5);
        for (const QColor& ground : {Palette::dark, Palette::alarm, Palette::plate, Palette::light})
            QVERIFY(contrast(Palette::readableOn(ground), ground) > 4.5);
    }
};

QTEST_MAIN(tst_Shapes)
#include "tst_shapes.moc"
