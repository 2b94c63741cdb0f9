#include "scada/binding/pointmarkergraphicsitem.h"

#include <QGraphicsRectItem>
#include <QImage>
#include <QPainter>
#include <QtTest>

namespace {

const QRectF rect(6, 6, 8, 4);

QImage painted(PointMarkerGraphicsItem& item)
{
    QImage image(20, 16, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setPen(Qt::black);
    painter.setRenderHint(QPainter::Antialiasing, true);
    item.paint(&painter, nullptr, nullptr);
    return image;
}

/// Blue (23, 114, 249) over white at an opacity.
QColor blended(double opacity)
{
    const auto channel = [opacity](int blue) { return qRound(255 + opacity * (blue - 255)); };
    return {channel(23), channel(114), channel(249)};
}

bool isNear(QRgb pixel, const QColor& color)
{
    return qAbs(qRed(pixel) - color.red()) <= 1 && qAbs(qGreen(pixel) - color.green()) <= 1 &&
           qAbs(qBlue(pixel) - color.blue()) <= 1;
}

} // namespace

class tst_PointMarkerGraphicsItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesNoInput()
    {
        const PointMarkerGraphicsItem item(nullptr);
        QVERIFY(!(item.flags() &
                  (QGraphicsItem::ItemIsMovable | QGraphicsItem::ItemIsSelectable | QGraphicsItem::ItemIsFocusable |
                   QGraphicsItem::ItemStacksBehindParent | QGraphicsItem::ItemClipsToShape)));
        QCOMPARE(item.boundingRect(), QRectF(-5, -5, 10, 10));
    }

    void boundsAreTheRectGrownByFive()
    {
        PointMarkerGraphicsItem item(nullptr);
        item.setRect(rect);
        QCOMPARE(item.boundingRect(), QRectF(1, 1, 18, 14));
    }

    void theValueShowsInItsOpacity_data()
    {
        QTest::addColumn<bool>("value");
        QTest::addColumn<double>("opacity");
        QTest::newRow("true") << true << 0.3;
        QTest::newRow("false") << false << 0.5;
    }
    void theValueShowsInItsOpacity()
    {
        QFETCH(bool, value);
        QFETCH(double, opacity);
        QGraphicsRectItem parent;
        PointMarkerGraphicsItem item(&parent);
        item.setRect(rect);
        item.updateValue(value);
        const QImage image = painted(item);
        // The rect grown by 1, without a border: 5 to 14 across, 5 to 10 down.
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const bool isInside = x >= 5 && x <= 14 && y >= 5 && y <= 10;
                QVERIFY2(isNear(image.pixel(x, y), isInside ? blended(opacity) : QColor(Qt::white)),
                         qPrintable(QStringLiteral("%1, %2").arg(x).arg(y)));
            }
        }
    }

    void aFreshMarkerShowsFalse()
    {
        QGraphicsRectItem parent;
        PointMarkerGraphicsItem item(&parent);
        item.setRect(rect);
        QVERIFY(isNear(painted(item).pixel(8, 8), blended(0.5)));
    }

    void withoutAVisibleParentItPaintsNothing_data()
    {
        QTest::addColumn<bool>("hasParent");
        QTest::addColumn<bool>("isVisible");
        QTest::newRow("no parent") << false << true;
        QTest::newRow("hidden parent") << true << false;
    }
    void withoutAVisibleParentItPaintsNothing()
    {
        QFETCH(bool, hasParent);
        QFETCH(bool, isVisible);
        QGraphicsRectItem parent;
        parent.setVisible(isVisible);
        PointMarkerGraphicsItem item(hasParent ? &parent : nullptr);
        item.setRect(rect);
        QImage blank(20, 16, QImage::Format_RGB32);
        blank.fill(Qt::white);
        QCOMPARE(painted(item), blank);
        QCOMPARE(item.boundingRect(), QRectF(1, 1, 18, 14));
    }

    void thePainterIsLeftAsItWas()
    {
        QGraphicsRectItem parent;
        PointMarkerGraphicsItem item(&parent);
        item.setRect(rect);
        QImage image(20, 16, QImage::Format_RGB32);
        QPainter painter(&image);
        painter.setOpacity(0.8);
        painter.setRenderHint(QPainter::Antialiasing, true);
        item.paint(&painter, nullptr, nullptr);
        QCOMPARE(painter.opacity(), 0.8);
        QCOMPARE(painter.brush(), QBrush(Qt::NoBrush));
        QVERIFY(painter.testRenderHint(QPainter::Antialiasing));
    }
};

QTEST_MAIN(tst_PointMarkerGraphicsItem)
#include "tst_pointmarkergraphicsitem.moc"
