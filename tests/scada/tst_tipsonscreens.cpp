// Tips on two screens that are desktops of their own, 800 by 600 and 640 by 480, both beginning at (0, 0). Runs in
// tests/support/run-on-x11.

#include "scada/widgets/pointtooltipwidget.h"

#include <QApplication>
#include <QScreen>
#include <QWindow>
#include <QtTest>

namespace {

QScreen* screenOf(int width)
{
    for (QScreen* screen : QGuiApplication::screens()) {
        if (screen->geometry() == QRect(0, 0, width, width * 3 / 4))
            return screen;
    }
    return nullptr;
}

/// A window on a screen.
struct Window : QWidget
{
    explicit Window(QScreen* screen)
    {
        winId(); // makes what has a screen
        windowHandle()->setScreen(screen);
        show();
    }
};

} // namespace

class tst_TipsOnScreens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
        QCOMPARE(QGuiApplication::screens().size(), 2);
        QVERIFY(screenOf(800) && screenOf(640));
        QCOMPARE(QGuiApplication::primaryScreen()->virtualSiblings().size(), 1);
    }

    void theScreenIsTheWidgetsWhereverThePositionLies()
    {
        Window first(screenOf(800));
        Window second(screenOf(640));
        PointToolTipWidget tip;
        for (const QPoint pos : {QPoint(100, 100), QPoint(700, 500), QPoint(-5, 3000)}) {
            QCOMPARE(tip.getTipScreen(pos, &first), QGuiApplication::screens().indexOf(screenOf(800)));
            QCOMPARE(tip.getTipScreen(pos, &second), QGuiApplication::screens().indexOf(screenOf(640)));
        }
    }

    void theEdgesAreThoseOfTheWidgetsScreen()
    {
        Window first(screenOf(800));
        Window second(screenOf(640));
        PointToolTipWidget tip;
        tip.resize(100, 40);
        tip.placeTip(QPoint(600, 450), &first);
        QCOMPARE(tip.pos(), QPoint(602, 466));
        tip.placeTip(QPoint(600, 450), &second);
        QCOMPARE(tip.pos(), QPoint(498, 402)); // 602 - 104, 466 - 64
    }
};

QTEST_MAIN(tst_TipsOnScreens)
#include "tst_tipsonscreens.moc"
