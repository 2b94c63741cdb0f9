#include "tests/support/testshape.h"

#include <QtTest>

class tst_KorvaneFunction : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anItemKnowsItsShape()
    {
        TestShape shape;
        QCOMPARE(KorvaneFunction::GraphicsItemToTessel(shape.item), &shape);
        KorvaneFunction::setTessel(shape.item, nullptr);
        QVERIFY(!KorvaneFunction::GraphicsItemToTessel(shape.item));
    }

    void otherItemsHaveNone()
    {
        TestShape shape;
        const QGraphicsRectItem child(shape.item); // part of the shape, but not what was set
        QVERIFY(!KorvaneFunction::GraphicsItemToTessel(&child));
        QVERIFY(!KorvaneFunction::GraphicsItemToTessel(nullptr));
    }

    void itKeepsOutOfTheHostsKeys()
    {
        TestShape shape;
        for (int key = 0; key < 100; ++key)
            shape.item->setData(key, key);
        QCOMPARE(KorvaneFunction::GraphicsItemToTessel(shape.item), &shape);
    }
};

QTEST_MAIN(tst_KorvaneFunction)
#include "tst_korvanefunction.moc"
