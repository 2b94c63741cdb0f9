#include "host/shapes/curvecolumns.h"
#include "tests/support/drawnshape.h"

#include <QtTest>

namespace {

QImage filled(CurveColumns& columns, double width, int top = 0, int bottom = 200)
{
    QImage image(60, 200, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    columns.draw(painter, width, Qt::black, top, bottom);
    return image;
}

} // namespace

class tst_CurveColumns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLevelLineIsAsThickAsItsBrush()
    {
        CurveColumns columns;
        columns.reset(10, 30);
        const QPointF line[] = {{10.5, 50}, {39.5, 50}};
        columns.add(line, 2);
        QCOMPARE(inkOf(filled(columns, 4)), QRect(10, 48, 30, 4));
        QCOMPARE(qAlpha(filled(columns, 4).pixel(20, 50)), 255);
        QCOMPARE(qAlpha(filled(columns, 1).pixel(20, 50)), 127); // half of the pixel is covered
    }

    void anUprightLineIsAsThickAsItsBrush()
    {
        CurveColumns columns;
        columns.reset(0, 60);
        const QPointF line[] = {{20.5, 30}, {20.5, 130}};
        columns.add(line, 2);
        const QImage image = filled(columns, 3);
        QCOMPARE(inkOf(image.copy(0, 80, 60, 1)), QRect(19, 0, 3, 1));
        QCOMPARE(inkOf(image).top(), 28);
        QCOMPARE(inkOf(image).bottom(), 131);
    }

    void aSlantedLineHasNoHoles()
    {
        CurveColumns columns;
        columns.reset(0, 60);
        const QPointF line[] = {{2, 10}, {8, 190}, {14, 10}, {58, 190}};
        columns.add(line, 4);
        const QImage image = filled(columns, 1);
        for (int x = 2; x < 58; ++x)
            QVERIFY(!inkOf(image.copy(x, 0, 1, 200)).isEmpty());
        for (int y = 11; y < 190; ++y)
            QVERIFY(!inkOf(image.copy(0, y, 8, 1)).isEmpty());
    }

    void keepsToItsColumnsAndRows()
    {
        CurveColumns columns;
        columns.reset(20, 10);
        const QPointF line[] = {{-1e4, -1e4}, {1e4, 1e4}, {1e4, 0}};
        columns.add(line, 3);
        const QPointF beside[] = {{5, 5}, {6, 6}};
        columns.add(beside, 2);
        QCOMPARE(inkOf(filled(columns, 3)).left(), 20);
        QCOMPARE(inkOf(filled(columns, 3)).right(), 29);
        const QPointF upright[] = {{25, -1e4}, {25, 1e4}};
        columns.add(upright, 2);
        QCOMPARE(inkOf(filled(columns, 3, 40, 120)).top(), 40);
        QCOMPARE(inkOf(filled(columns, 3, 40, 120)).bottom(), 119);
    }

    void aSinglePointIsADot()
    {
        CurveColumns columns;
        columns.reset(0, 60);
        const QPointF point(30.5, 60);
        columns.add(&point, 1);
        QCOMPARE(inkOf(filled(columns, 5)).center().x(), 30);
        QCOMPARE(inkOf(filled(columns, 5)).width(), 5);
        columns.reset(0, 60);
        QVERIFY(inkOf(filled(columns, 5)).isEmpty());
        columns.reset(0, 0);
        QVERIFY(inkOf(filled(columns, 5)).isEmpty());
    }
};

QTEST_MAIN(tst_CurveColumns)
#include "tst_curvecolumns.moc"
