#include "host/shapes/textpainter.h"
#include "tests/support/drawnshape.h"

#include <QtTest>

#include <functional>

namespace {

constexpr int width = 400;
constexpr int height = 120;
const QRectF box(30, 20, 100, 24);

QImage painted(double scale, const std::function<void(QPainter&)>& paint)
{
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    paint(painter);
    return image;
}

/// Ink of \p text in box, drawn plainly for want of a text painter.
QRect inkOfText(const QString& text, Qt::Alignment alignment, TextStyle style = {}, TextPainter* texts = nullptr,
                double scale = 1, const QRectF& rect = box)
{
    return inkOf(painted(scale, [&](QPainter& painter) {
        ShapePainter(painter, texts).drawText(rect, alignment, style, Qt::black, text);
    }));
}

} // namespace

class tst_TextPainter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cachedTextsLieWherePlainOnesDo_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("alignment");
        QTest::addColumn<double>("scale");
        for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
            QTest::addRow("on the left at %g", scale)
                << QStringLiteral("12.5 bar") << int(Qt::AlignLeft | Qt::AlignVCenter) << scale;
            QTest::addRow("on the right at %g", scale)
                << QStringLiteral("-88.00") << int(Qt::AlignRight | Qt::AlignVCenter) << scale;
            QTest::addRow("in the middle at %g", scale) << QStringLiteral("Hgj") << int(Qt::AlignCenter) << scale;
            QTest::addRow("above at %g", scale)
                << QStringLiteral("Hgj") << int(Qt::AlignHCenter | Qt::AlignTop) << scale;
            QTest::addRow("below at %g", scale)
                << QStringLiteral("Hgj") << int(Qt::AlignHCenter | Qt::AlignBottom) << scale;
        }
    }
    void cachedTextsLieWherePlainOnesDo()
    {
        QFETCH(QString, text);
        QFETCH(int, alignment);
        QFETCH(double, scale);
        TextPainter texts;
        const QRect plain = inkOfText(text, Qt::Alignment(alignment), {}, nullptr, scale);
        const QRect cached = inkOfText(text, Qt::Alignment(alignment), {}, &texts, scale);
        QVERIFY(texts.glyphCount() > 0);
        QVERIFY(!plain.isEmpty());
        // Hinted advances are whole pixels: texts may end half a pixel a character farther away than they begin.
        const int side = 1 + text.size() / 2;
        QVERIFY(std::abs(cached.top() - plain.top()) <= 1);
        QVERIFY(std::abs(cached.bottom() - plain.bottom()) <= 1);
        QVERIFY(std::abs(cached.left() - plain.left()) <= (alignment & Qt::AlignLeft ? 1 : side));
        QVERIFY(std::abs(cached.right() - plain.right()) <= (alignment & Qt::AlignRight ? 1 : side));
    }

    void textsHaveTheirColour()
    {
        TextPainter texts;
        for (const QColor& color : {QColor(0xc0, 0x39, 0x2b), QColor(0x1b, 0x26, 0x31)}) {
            const QImage image = painted(1, [&](QPainter& painter) {
                QVERIFY(texts.draw(painter, box, Qt::AlignLeft, {20, true}, color, QStringLiteral("||||")));
            });
            bool isFull = false;
            for (int x = 0; x < width; ++x)
                isFull = isFull || image.pixelColor(x, 32) == color;
            QVERIFY(isFull);
        }
    }

    void whatItCantDoItLeaves_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QTransform>("transform");
        QTest::addColumn<bool>("isDrawn");
        const QString number = QStringLiteral("12.5");
        QTest::newRow("a number") << number << QTransform() << true;
        QTest::newRow("a number, moved and zoomed")
            << number << QTransform::fromTranslate(3.3, 4.4).scale(1.7, 1.7) << true;
        QTest::newRow("a rotated painter") << number << QTransform().rotate(5) << false;
        QTest::newRow("a painter on its head") << number << QTransform().rotate(180) << false;
        QTest::newRow("an unevenly scaled painter") << number << QTransform::fromScale(1, 2) << false;
        QTest::newRow("a mirrored painter") << number << QTransform::fromScale(-1, -1) << false;
        QTest::newRow("a sheared painter") << number << QTransform().shear(0.1, 0) << false;
        QTest::newRow("characters beyond ASCII") << QStringLiteral("20 °C") << QTransform() << false;
        QTest::newRow("a line break") << QStringLiteral("1\n2") << QTransform() << false;
        QTest::newRow("a text that does not fit") << QStringLiteral("123456789012345678") << QTransform() << false;
    }
    void whatItCantDoItLeaves()
    {
        QFETCH(QString, text);
        QFETCH(QTransform, transform);
        QFETCH(bool, isDrawn);
        TextPainter texts;
        const QImage image = painted(1, [&](QPainter& painter) {
            painter.setWorldTransform(transform);
            QCOMPARE(texts.draw(painter, box, Qt::AlignLeft, {}, Qt::black, text), isDrawn);
            QCOMPARE(painter.worldTransform(), transform);
        });
        QCOMPARE(!inkOf(image).isEmpty(), isDrawn);
    }

    void textsThatDoNotFitAreElided_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<double>("wide");
        QTest::newRow("a long number") << QStringLiteral("123456789012345") << 60.0;
        QTest::newRow("a long text with other characters") << QStringLiteral("Vorlauftemperatur °C") << 60.0;
        QTest::newRow("hardly room for the dots") << QStringLiteral("123456") << 12.0;
        QTest::newRow("no room for the dots") << QStringLiteral("123456") << 5.0;
    }
    void textsThatDoNotFitAreElided()
    {
        QFETCH(QString, text);
        QFETCH(double, wide);
        TextPainter texts;
        const QRectF narrow(30, 20, wide, 24);
        for (TextPainter* used : {static_cast<TextPainter*>(nullptr), &texts}) {
            const QRect ink = inkOfText(text, Qt::AlignLeft | Qt::AlignVCenter, {}, used, 1, narrow);
            QVERIFY(!ink.isEmpty());
            QVERIFY(ink.left() >= 29 && ink.right() <= 30 + wide);
        }
        // It ends in dots: what is drawn last lies low in the line, where a digit or a letter would reach up.
        const QImage image = painted(4, [&](QPainter& painter) {
            ShapePainter(painter).drawText({10, 4, wide, 24}, Qt::AlignLeft | Qt::AlignVCenter, {}, Qt::black, text);
        });
        const QRect ink = inkOf(image);
        const QRect end = inkOf(image.copy(ink.right() - 3, 0, 4, height));
        QVERIFY(end.height() <= 12 && end.top() > 60);
    }

    void textsTooHighAreDrawnSmaller()
    {
        TextPainter texts;
        for (TextPainter* used : {static_cast<TextPainter*>(nullptr), &texts}) {
            const QRect ink = inkOfText(QStringLiteral("Hg"), Qt::AlignCenter, {200}, used);
            QVERIFY(ink.top() >= 18 && ink.bottom() <= 45);
            QVERIFY(ink.height() > 14);
        }
    }

    void nothingIsDrawnOfNothing()
    {
        QVERIFY(inkOfText(QString(), Qt::AlignCenter).isEmpty());
        QVERIFY(inkOfText(QStringLiteral("x"), Qt::AlignCenter, {}, nullptr, 1, {10, 10, 0, 20}).isEmpty());
        QVERIFY(inkOf(painted(1, [](QPainter& painter) {
                    ShapePainter(painter).drawText(box, Qt::AlignCenter, {}, QColor(), QStringLiteral("x"));
                })).isEmpty());
    }

    void itDoesNotGrowWithoutBound()
    {
        TextPainter texts;
        int most = 0;
        for (int i = 0; i < 1000; ++i) {
            painted(1, [&](QPainter& painter) {
                QVERIFY(
                    texts.draw(painter, box, Qt::AlignLeft, {}, QColor(i % 256, i / 256, 7), QStringLiteral("0123")));
            });
            most = std::max(most, texts.glyphCount());
        }
        QVERIFY(most <= 64 * 4);

        for (int i = 1; i < 50; ++i) {
            painted(1 + i * 0.01, [&](QPainter& painter) {
                QVERIFY(texts.draw(painter, box, Qt::AlignLeft, {}, Qt::black, QStringLiteral("0123")));
            });
            QCOMPARE(texts.glyphCount(), 4); // those of this zoom alone
        }
    }
};

QTEST_MAIN(tst_TextPainter)
#include "tst_textpainter.moc"
