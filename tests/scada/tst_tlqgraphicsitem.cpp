#include "scada/binding/tlqgraphicsitem.h"
#include "tests/support/testshape.h"

#include <QImage>
#include <QPainter>
#include <QtTest>

namespace {

constexpr int width = 20;
constexpr int height = 16;
const QRectF rect(4, 2, 12, 10); // its centre line is y = 7

/// Paints the item itself, as a view without scaling does, on white.
QImage painted(TlqGraphicsItem& item, qreal scale = 1)
{
    QImage image(int(width * scale), int(height * scale), QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, true); // the item switches it off for itself
    painter.setBrush(Qt::green);
    painter.scale(scale, scale);
    item.paint(&painter, nullptr, nullptr);
    return image;
}

/// The colour of every row at half the width: 'c' cyan, 'm' magenta, 'y' yellow, 'r' red, '.' white, '?' other.
QString column(const QImage& image)
{
    static const QMap<QRgb, QChar> letters = {{qRgb(0, 255, 255), QLatin1Char('c')},
                                              {qRgb(255, 0, 255), QLatin1Char('m')},
                                              {qRgb(255, 255, 0), QLatin1Char('y')},
                                              {qRgb(255, 0, 0), QLatin1Char('r')},
                                              {qRgb(255, 255, 255), QLatin1Char('.')}};
    QString rows;
    for (int y = 0; y < image.height(); ++y)
        rows += letters.value(image.pixel(image.width() / 2, y), QLatin1Char('?'));
    return rows;
}

} // namespace

class tst_TlqGraphicsItem : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void takesNoInputAndStandsAboveItsShape()
    {
        const TestShape shape;
        const auto* item = new TlqGraphicsItem(shape.item);
        QCOMPARE(item->parentItem(), static_cast<QGraphicsItem*>(shape.item));
        QVERIFY(!(item->flags() & (QGraphicsItem::ItemIsMovable | QGraphicsItem::ItemIsSelectable |
                                   QGraphicsItem::ItemIsFocusable | QGraphicsItem::ItemStacksBehindParent)));
        QVERIFY(item->isNoTLQ());
        QVERIFY(item->boundingRect().isNull());
    }

    void boundsAreTheRectAsStored()
    {
        TlqGraphicsItem item(nullptr);
        item.setRect(rect);
        QCOMPARE(item.boundingRect(), rect);
        item.setRect(QRectF(5, 5, -3, -3)); // stored as it comes
        QCOMPARE(item.boundingRect(), QRectF(5, 5, -3, -3));
    }

    void marks_data()
    {
        QTest::addColumn<int>("tag");
        QTest::addColumn<int>("limit");
        QTest::addColumn<int>("quality");
        QTest::addColumn<QString>("shown");
        for (int bit = 0; bit < 9; ++bit) {
            const int code = 1 << bit;
            QTest::addRow("T 0x%X", code) << code << 0 << 0 << (bit < 4 ? "T" : "");
            QTest::addRow("L 0x%X", code) << 0 << code << 0 << (bit < 5 ? "L" : "");
            const bool isQuality = code == 0x01 || code == 0x04 || code == 0x08 || code == 0x20 || code == 0x40;
            QTest::addRow("Q 0x%X", code) << 0 << 0 << code << (isQuality ? "Q" : "");
        }
        QTest::newRow("every bit of 32") << -1 << -1 << -1 << "TLQ";
        QTest::newRow("quality bits that draw nothing, together") << 0 << 0 << 0x92 << "";
        QTest::newRow("nothing") << 0 << 0 << 0 << "";
    }
    void marks()
    {
        QFETCH(int, tag);
        QFETCH(int, limit);
        QFETCH(int, quality);
        QFETCH(QString, shown);
        TlqGraphicsItem item(nullptr);
        item.setRect(rect);
        item.setTlq(tag, limit, quality);
        QCOMPARE(item.isNoTLQ(), shown.isEmpty());
        const QString rows = column(painted(item));
        QString seen;
        for (const auto& [letter, mark] : {std::pair('c', 'T'), std::pair('m', 'L'), std::pair('y', 'Q')}) {
            if (rows.contains(QLatin1Char(letter)))
                seen += QLatin1Char(mark);
        }
        QCOMPARE(seen, shown);
    }

    void strokes_data()
    {
        // Rows of the image from the centre line (7) on: what stands where. The failed stroke is two units wide, which
        // without antialiasing covers the row above its line too; what is drawn last lies on top.
        QTest::addColumn<int>("bits");     // 1 T, 2 L, 4 Q, 8 failed
        QTest::addColumn<QString>("rows"); // rows 6 to 10
        const char* const expected[16] = {
            ".....", // none
            ".c...", // T
            ".m...", // L
            ".cm..", // T L
            ".y...", // Q
            ".cy..", // T Q
            ".my..", // L Q
            ".cmy.", // T L Q
            "rr...", // failed
            ".rr..", // T failed: one below, its upper half on T
            ".rr..", // L failed
            ".crr.", // T L failed: on the lower half of L's place
            "rr...", // Q failed: Q does not push it down
            ".crr.", // T Q failed: two below T's line
            ".mrr.", // L Q failed
            ".cmrr", // all
        };
        for (int bits = 0; bits < 16; ++bits) {
            QTest::addRow("%s%s%s%s", bits & 1 ? "T" : "-", bits & 2 ? "L" : "-", bits & 4 ? "Q" : "-",
                          bits & 8 ? "F" : "-")
                << bits << QString::fromLatin1(expected[bits]);
        }
    }
    void strokes()
    {
        QFETCH(int, bits);
        QFETCH(QString, rows);
        TlqGraphicsItem item(nullptr);
        item.setRect(rect);
        item.setTlq(bits & 1 ? 1 : 0, bits & 2 ? 1 : 0, bits & 4 ? 1 : 0);
        item.setSourceFail((bits & 8) != 0);
        const QString seen = column(painted(item));
        QCOMPARE(seen.mid(6, 5), rows);
        QCOMPARE(seen.left(6) + seen.mid(11), QString(11, QLatin1Char('.')));
    }

    void aStrokeRunsFromEdgeToEdge()
    {
        TlqGraphicsItem item(nullptr);
        item.setRect(rect);
        item.setTlq(1, 0, 0);
        const QImage image = painted(item);
        for (int x = 0; x < width; ++x) {
            const bool isOnStroke = x >= 4 && x <= 16;
            QCOMPARE(image.pixel(x, 7) == qRgb(0, 255, 255), isOnStroke);
        }
    }

    void inAScaledViewOnlyTheFailedStrokeGrows()
    {
        TlqGraphicsItem item(nullptr);
        item.setRect(rect);
        item.setTlq(1, 0, 0);
        QCOMPARE(column(painted(item, 3)).count(QLatin1Char('c')), 1);
        item.setTlq(0, 0, 0);
        item.setSourceFail(true);
        QCOMPARE(column(painted(item, 3)).count(QLatin1Char('r')), 6);
    }

    void marksComeAndGoWithoutTheFailedStroke()
    {
        TlqGraphicsItem item(nullptr);
        item.setRect(rect);
        item.setSourceFail(true);
        QVERIFY(item.isNoTLQ());
        item.setTlq(1, 0, 0);
        QVERIFY(!item.isNoTLQ());
        QVERIFY(column(painted(item)).contains(QLatin1Char('r')));
        item.setTlq(0, 0, 0);
        QVERIFY(item.isNoTLQ());
        QVERIFY(column(painted(item)).contains(QLatin1Char('r')));
        item.setTlq(0, 1, 0);
        item.setSourceFail(false);
        QCOMPARE(column(painted(item)).mid(6, 3), QStringLiteral(".m."));
    }

    void layersHideIt_data()
    {
        QTest::addColumn<bool>("hasParent");
        QTest::addColumn<bool>("isShape");
        QTest::addColumn<bool>("hasLayer");
        QTest::addColumn<bool>("visible");
        QTest::addColumn<bool>("marks");
        QTest::addColumn<bool>("painted");
        QTest::newRow("no parent") << false << false << false << false << false << true;
        QTest::newRow("a parent that is no shape") << true << false << false << false << false << true;
        QTest::newRow("a shape on no layer") << true << true << false << false << false << true;
        QTest::newRow("a shown layer") << true << true << true << true << true << true;
        QTest::newRow("a hidden layer") << true << true << true << false << true << false;
        QTest::newRow("a layer without marks") << true << true << true << true << false << false;
        QTest::newRow("a hidden layer without marks") << true << true << true << false << false << false;
    }
    void layersHideIt()
    {
        QFETCH(bool, hasParent);
        QFETCH(bool, isShape);
        QFETCH(bool, hasLayer);
        QFETCH(bool, visible);
        QFETCH(bool, marks);
        TestLayer layer;
        layer.visible = visible;
        layer.marks = marks;
        TestShape shape;
        shape.onLayer = hasLayer ? &layer : nullptr;
        if (!isShape)
            KorvaneFunction::setTessel(shape.item, nullptr);
        TlqGraphicsItem item(hasParent ? shape.item : nullptr);
        item.setRect(rect);
        item.setTlq(1, 1, 1);
        item.setSourceFail(true);
        const bool isPainted = column(painted(item)) != QString(height, QLatin1Char('.'));
        QTEST(isPainted, "painted");
    }

    void thePainterIsLeftAsItWas()
    {
        TlqGraphicsItem item(nullptr);
        item.setRect(rect);
        item.setTlq(1, 1, 1);
        item.setSourceFail(true);
        QImage image(width, height, QImage::Format_RGB32);
        QPainter painter(&image);
        const QPen pen(Qt::darkGreen, 3);
        painter.setPen(pen);
        painter.setBrush(Qt::blue);
        painter.setRenderHint(QPainter::Antialiasing, true);
        item.paint(&painter, nullptr, nullptr);
        QCOMPARE(painter.pen(), pen);
        QCOMPARE(painter.brush(), QBrush(Qt::blue));
        QVERIFY(painter.testRenderHint(QPainter::Antialiasing));
    }

    void itDiesWithItsShapesItem()
    {
        struct Watched : TlqGraphicsItem
        {
            Watched(QGraphicsItem* parent, bool& gone) : TlqGraphicsItem(parent), isGone(gone) {}
            ~Watched() override { isGone = true; }
            bool& isGone;
        };
        bool isGone = false;
        {
            const TestShape shape;
            new Watched(shape.item, isGone);
        }
        QVERIFY(isGone);
    }
};

QTEST_MAIN(tst_TlqGraphicsItem)
#include "tst_tlqgraphicsitem.moc"
