// Tips on one desktop of two screens: 640 by 480 at (0, 0), and 800 by 600 to its right, 120 lower. Runs in
// tests/support/run-on-x11.

#include "scada/widgets/pointtooltipwidget.h"

#include <QApplication>
#include <QScreen>
#include <QtTest>

namespace {

constexpr QRect first(0, 0, 640, 480);
constexpr QRect second(640, 120, 800, 600); // ends at (1440, 720)

int numberOf(const QRect& geometry)
{
    const QList<QScreen*> screens = QGuiApplication::screens();
    for (int i = 0; i < screens.size(); ++i) {
        if (screens[i]->geometry() == geometry)
            return i;
    }
    return -1;
}

/// A window on a screen.
struct Window : QWidget
{
    explicit Window(const QRect& screen)
    {
        setGeometry(QRect(screen.center(), QSize(50, 50)));
        show();
    }
};

} // namespace

class tst_TipsOnJoinedScreens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
        QCOMPARE(QGuiApplication::screens().size(), 2);
        QVERIFY(numberOf(first) >= 0 && numberOf(second) >= 0);
        QCOMPARE(QGuiApplication::primaryScreen()->virtualSiblings().size(), 2);
    }

    void theScreenIsThePositionsWhereverTheWidgetIs()
    {
        Window onFirst(first);
        Window onSecond(second);
        QCOMPARE(onFirst.screen()->geometry(), first);
        QCOMPARE(onSecond.screen()->geometry(), second);
        PointToolTipWidget tip;
        for (QWidget* window :
             {static_cast<QWidget*>(&onFirst), static_cast<QWidget*>(&onSecond), static_cast<QWidget*>(nullptr)}) {
            for (const QPoint pos : {QPoint(0, 0), QPoint(639, 479), QPoint(639, 300)})
                QCOMPARE(tip.getTipScreen(pos, window), numberOf(first));
            for (const QPoint pos : {QPoint(640, 120), QPoint(1439, 719), QPoint(640, 300)})
                QCOMPARE(tip.getTipScreen(pos, window), numberOf(second));
        }
    }

    void placesOnThePositionsScreen_data()
    {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("pos");
        QTest::addColumn<QPoint>("place");
        const QSize size(100, 40);
        QTest::newRow("below and to the right") << size << QPoint(700, 200) << QPoint(702, 216);
        QTest::newRow("just inside the right edge") << size << QPoint(1338, 200) << QPoint(1340, 216);
        QTest::newRow("a pixel further, to the left") << size << QPoint(1339, 200) << QPoint(1237, 216);
        QTest::newRow("just inside the lower edge") << size << QPoint(700, 664) << QPoint(702, 680);
        QTest::newRow("a pixel further, above") << size << QPoint(700, 665) << QPoint(702, 617);
        QTest::newRow("the lower right corner") << size << QPoint(1439, 719) << QPoint(1337, 671);
        QTest::newRow("too wide for the left side") << QSize(500, 40) << QPoint(1000, 200) << QPoint(640, 216);
        QTest::newRow("too high for the upper side") << QSize(100, 400) << QPoint(700, 400) << QPoint(702, 120);
        QTest::newRow("wider than the screen: its beginning shows")
            << QSize(900, 40) << QPoint(700, 200) << QPoint(640, 216);
        QTest::newRow("higher than the screen: its end shows")
            << QSize(100, 700) << QPoint(700, 200) << QPoint(702, 20);
        QTest::newRow("as large as the screen") << QSize(800, 600) << QPoint(640, 120) << QPoint(640, 120);
        QTest::newRow("the first screen's right edge: not onto the next")
            << size << QPoint(600, 200) << QPoint(498, 216);
        QTest::newRow("the first screen's lower edge, which the next one passes")
            << size << QPoint(100, 450) << QPoint(102, 402);
    }
    void placesOnThePositionsScreen()
    {
        QFETCH(QSize, size);
        QFETCH(QPoint, pos);
        QFETCH(QPoint, place);
        Window onFirst(first);
        Window onSecond(second);
        PointToolTipWidget tip;
        tip.resize(size);
        for (QWidget* window : {&onFirst, &onSecond}) {
            tip.placeTip(pos, window);
            QCOMPARE(tip.pos(), place);
        }
    }

    void aTipIsShownOnThePositionsScreen()
    {
        Window onFirst(first);
        const auto* tip =
            PointToolTipWidget::showTip(QStringLiteral("P1.FLOW"), QString(), QPointF(1430.4, 710.4), &onFirst);
        QVERIFY(second.contains(tip->geometry()));
        QCOMPARE(tip->pos(), QPoint(1428 - tip->width(), 702 - tip->height()));
    }
};

QTEST_MAIN(tst_TipsOnJoinedScreens)
#include "tst_tipsonjoinedscreens.moc"
