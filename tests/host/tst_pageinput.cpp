// What operators do over a page's view, with real mouse and key events, as its scripts hear of it.

#include "host/canvas/canvasview.h"
#include "host/scripting/pageinput.h"
#include "tests/support/scriptpage.h"

#include <QApplication>
#include <QScrollBar>
#include <QWindow>
#include <QtTest>

namespace {

using Korvane::TriggerType;

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

/// A page of 400 by 200 in a view of that size, all of whose objects say what comes to them: "a" at 50, 50, "b" over
/// half of it, and a silent shape over all.
struct Desk : ScriptPage
{
    Desk()
    {
        a = &addShape("a", {50, 50, 100, 100});
        b = &addShape("b", {100, 50, 100, 100});
        addShape("silent", {0, 0, 400, 200}, 1);
        for (Shape* shape : {a, b, static_cast<Shape*>(nullptr)}) {
            for (const auto& [trigger, name] :
                 {std::pair(TriggerType::MousePress, "press"), std::pair(TriggerType::MouseRelease, "release"),
                  std::pair(TriggerType::MouseDoubleClick, "double"),
                  std::pair(TriggerType::MouseRightButtonRelease, "right"), std::pair(TriggerType::KeyPress, "key")})
                say(shape, trigger, name);
            addScript(shape, shape ? TriggerType::ObjectLoading : TriggerType::CanvasLoad,
                      "def onClick(): say('click')\ndef onDoubleClick(): say('double handler')");
        }
        view = std::make_unique<CanvasView>(*page.canvas);
        view->resize(400, 200);
    }
    void say(Shape* shape, TriggerType trigger, const char* name)
    {
        addScript(shape, trigger, (QByteArray("say('") + name + "')").constData());
    }
    /// Shows the page. The pointer is outside of it.
    void show()
    {
        engine.runForCanvas(page.canvas.get(), text("def say(what): print(shape.name if shape else 'page', what)"));
        load();
        input = new PageInput(*view, *scripts);
        leave();
        view->move(0, 0);
        view->show();
        view->activateWindow();
        if (!QTest::qWaitForWindowActive(view.get()))
            qFatal("the view does not come to the front");
        QCoreApplication::processEvents();
        printed();
    }

    QWindow* window() const { return view->windowHandle(); }
    QPoint toView(const QPointF& position) const { return view->renderer().transform().map(position).toPoint(); }
    void press(const QPointF& position, Qt::MouseButton button = Qt::LeftButton, Qt::KeyboardModifiers keys = {}) const
    {
        QTest::mousePress(window(), button, keys, toView(position));
    }
    void release(const QPointF& position, Qt::MouseButton button = Qt::LeftButton,
                 Qt::KeyboardModifiers keys = {}) const
    {
        QTest::mouseRelease(window(), button, keys, toView(position));
    }
    void click(const QPointF& position, Qt::MouseButton button = Qt::LeftButton) const
    {
        QTest::mouseClick(window(), button, {}, toView(position));
    }
    /// Moves the pointer, which the platform tells the windows of that it leaves and comes to.
    void move(const QPointF& position) const
    {
        QCursor::setPos(view->viewport()->mapToGlobal(toView(position)));
        QCoreApplication::processEvents();
    }
    static void leave()
    {
        QCursor::setPos(700, 500);
        QCoreApplication::processEvents();
    }
    /// A release at a place of the view, or outside of it, whether or not there was a press.
    void sendRelease(const QPoint& place) const
    {
        QMouseEvent event(QEvent::MouseButtonRelease, place, view->viewport()->mapToGlobal(place), Qt::LeftButton,
                          Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(view->viewport(), &event);
    }

    Shape* a = nullptr;
    Shape* b = nullptr;
    std::unique_ptr<CanvasView> view;
    PageInput* input = nullptr; ///< the view's
};

constexpr QPointF onA{70, 100};
constexpr QPointF onBoth{120, 100};
constexpr QPointF onB{180, 100};
constexpr QPointF onPage{300, 150};

/// What the pointer's way over a page says of coming and going.
struct Hovering : Desk
{
    Hovering()
    {
        for (Shape* shape : {a, b, static_cast<Shape*>(nullptr)}) {
            say(shape, TriggerType::MouseHover, "hover");
            say(shape, TriggerType::MouseLeave, "leave");
        }
    }
};

} // namespace

Q_DECLARE_METATYPE(Qt::MouseButton)
Q_DECLARE_METATYPE(Qt::Key)

class tst_PageInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aClickIsAPressAReleaseAndAClick_data()
    {
        QTest::addColumn<QPointF>("position");
        QTest::addColumn<QString>("name");
        QTest::newRow("on a shape") << onA << text("a");
        QTest::newRow("on the topmost of two") << onBoth << text("b");
        QTest::newRow("on the bare page, or a shape without scripts") << onPage << text("page");
    }
    void aClickIsAPressAReleaseAndAClick()
    {
        QFETCH(QPointF, position);
        QFETCH(QString, name);
        Desk desk;
        desk.show();
        desk.press(position);
        QCOMPARE(desk.printed(), text("%1 press").arg(name));
        desk.release(position);
        QCOMPARE(desk.printed(), text("%1 release, %1 click").arg(name));
        QCOMPARE(desk.failures, QStringList());
    }

    void aReleaseComesToWhatWasPressed_data()
    {
        QTest::addColumn<QPointF>("from");
        QTest::addColumn<QPointF>("to");
        QTest::addColumn<QString>("name");
        QTest::newRow("from a shape to another") << onA << onB << text("a");
        QTest::newRow("from a shape to the page") << onB << onPage << text("b");
        QTest::newRow("from the page to a shape") << onPage << onA << text("page");
    }
    void aReleaseComesToWhatWasPressed()
    {
        QFETCH(QPointF, from);
        QFETCH(QPointF, to);
        QFETCH(QString, name);
        Desk desk;
        desk.show();
        desk.press(from);
        desk.printed();
        desk.release(to);
        QCOMPARE(desk.printed(), text("%1 release").arg(name)); // and no click
        desk.click(onA);
        QCOMPARE(desk.printed(), text("a press, a release, a click")); // the next one is one again
    }

    void aReleaseOutsideOfTheViewComesToo()
    {
        Desk desk;
        desk.show();
        desk.press(onA);
        desk.sendRelease({500, 300});
        QCOMPARE(desk.printed(), text("a press, a release"));
    }

    void aDragIsNoClick()
    {
        Desk desk;
        desk.show();
        const int far = QApplication::startDragDistance();
        desk.press(onA);
        desk.move(onA + QPointF(far - 1, 0));
        desk.release(onA + QPointF(far - 1, 0));
        QCOMPARE(desk.printed(), text("a press, a release, a click")); // an unsteady hand
        desk.press(onA);
        desk.move(onA + QPointF(far, 0));
        desk.release(onA + QPointF(far, 0));
        QCOMPARE(desk.printed(), text("a press, a release"));
        desk.press(onA);
        desk.move(onA + QPointF(0, far));
        desk.move(onA);
        desk.release(onA); // there and back
        QCOMPARE(desk.printed(), text("a press, a release"));
        desk.move(onB); // without a button nothing is dragged
        desk.move(onA);
        desk.click(onA);
        QCOMPARE(desk.printed(), text("a press, a release, a click"));
    }

    void aDoubleClickIsASequence()
    {
        Desk desk;
        desk.show();
        QTest::mouseDClick(desk.window(), Qt::LeftButton, {}, desk.toView(onA));
        QCOMPARE(desk.printed(), text("a press, a release, a click, a double, a double handler, a release"));
        QTest::mouseDClick(desk.window(), Qt::LeftButton, {}, desk.toView(onPage));
        QCOMPARE(desk.printed(),
                 text("page press, page release, page click, page double, page double handler, page release"));
    }

    void theRightButtonCountsWhenItGoesUp()
    {
        Desk desk;
        desk.show();
        desk.press(onA, Qt::RightButton);
        QCOMPARE(desk.printed(), QString());
        desk.release(onB, Qt::RightButton); // where the pointer is then
        QCOMPARE(desk.printed(), text("b right"));
        desk.click(onPage, Qt::RightButton);
        QCOMPARE(desk.printed(), text("page right"));
        QTest::mouseDClick(desk.window(), Qt::RightButton, {}, desk.toView(onA));
        QCOMPARE(desk.printed(), text("a right, a right"));
    }

    void theMiddleButtonDoesNothing()
    {
        Desk desk;
        desk.show();
        desk.click(onA, Qt::MiddleButton);
        QTest::mouseDClick(desk.window(), Qt::MiddleButton, {}, desk.toView(onA));
        desk.click(onPage, Qt::MiddleButton);
        QCOMPARE(desk.printed(), QString());
    }

    void aReleaseWithoutAPressIsNone()
    {
        Desk desk;
        desk.show();
        desk.sendRelease(desk.toView(onA)); // the press was another window's
        QCOMPARE(desk.printed(), QString());
    }

    void whatAScriptHidesIsNotClicked()
    {
        Desk desk;
        desk.addScript(desk.a, TriggerType::MousePress, "shape['Visible'] = False");
        desk.show();
        desk.click(onA);
        QCOMPARE(desk.printed(), text("a press, a release"));
        desk.click(onA);
        QCOMPARE(desk.printed(), text("page press, page release, page click"));
    }

    void thePointerComesAndGoes()
    {
        Hovering desk;
        desk.show();
        desk.move(onPage);
        QCOMPARE(desk.printed(), text("page hover"));
        desk.move(onPage + QPointF(1, 1));
        QCOMPARE(desk.printed(), QString());
        desk.move(onA);
        QCOMPARE(desk.printed(), text("page leave, a hover"));
        desk.move(onBoth);
        QCOMPARE(desk.printed(), text("a leave, b hover"));
        desk.move(onB);
        QCOMPARE(desk.printed(), QString()); // still b
        desk.move(onBoth);
        desk.move(onA);
        QCOMPARE(desk.printed(), text("b leave, a hover"));
        Desk::leave();
        QCOMPARE(desk.printed(), text("a leave"));
        desk.move(onA);
        QCOMPARE(desk.printed(), text("a hover"));
        QCOMPARE(desk.failures, QStringList());
    }

    void handlersHearOfThePointerToo()
    {
        Desk desk;
        desk.addScript(desk.a, TriggerType::ObjectLoading,
                       "def onMouseEnter(): say('enter')\ndef onMouseLeave(): say('leave')");
        desk.show();
        desk.move(onA);
        QCOMPARE(desk.printed(), text("a enter"));
        desk.move(onPage);
        QCOMPARE(desk.printed(), text("a leave"));
    }

    void whereThePointerWasIsToldWhenItLeaves()
    {
        Desk desk;
        desk.addScript(desk.a, TriggerType::MouseLeave, "print(event.x, event.y, event.button)");
        desk.show();
        desk.move({60, 70});
        desk.move({40, 70});
        QCOMPARE(desk.printed(), text("40.0 70.0 None"));
        desk.move({61, 71});
        Desk::leave();
        QCOMPARE(desk.printed(), text("61.0 71.0 None"));
    }

    void keysComeToWhatWasPressedLastAndToThePage()
    {
        Desk desk;
        desk.show();
        QTest::keyClick(desk.window(), Qt::Key_A);
        QCOMPARE(desk.printed(), text("page key"));
        desk.click(onA);
        desk.printed();
        QTest::keyClick(desk.window(), Qt::Key_A);
        QCOMPARE(desk.printed(), text("a key, page key"));
        desk.move(onB); // the pointer does not count
        desk.click(onB, Qt::RightButton);
        desk.printed();
        QTest::keyClick(desk.window(), Qt::Key_A);
        QCOMPARE(desk.printed(), text("a key, page key"));
        desk.click(onB);
        desk.printed();
        QTest::keyClick(desk.window(), Qt::Key_A);
        QCOMPARE(desk.printed(), text("b key, page key"));
        desk.click(onPage);
        desk.printed();
        QTest::keyClick(desk.window(), Qt::Key_A);
        QCOMPARE(desk.printed(), text("page key"));
    }

    void modifiersAloneAreNoKeys_data()
    {
        QTest::addColumn<Qt::Key>("key");
        for (const Qt::Key key :
             {Qt::Key_Shift, Qt::Key_Control, Qt::Key_Alt, Qt::Key_Meta, Qt::Key_AltGr, Qt::Key_Super_L,
              Qt::Key_Super_R, Qt::Key_CapsLock, Qt::Key_NumLock, Qt::Key_ScrollLock})
            QTest::newRow(qPrintable(QVariant::fromValue(key).toString())) << key;
    }
    void modifiersAloneAreNoKeys()
    {
        QFETCH(Qt::Key, key);
        Desk desk;
        desk.show();
        QKeyEvent event(QEvent::KeyPress, key, Qt::NoModifier);
        QCoreApplication::sendEvent(desk.view.get(), &event);
        QCOMPARE(desk.printed(), QString());
    }

    void aKeysEventSaysWhichItWas_data()
    {
        QTest::addColumn<Qt::Key>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<QString>("said");
        QTest::newRow("a letter") << Qt::Key_A << 0 << text("A 'a' [] None");
        QTest::newRow("a digit") << Qt::Key_7 << 0 << text("7 '7' [] None");
        QTest::newRow("the long bar") << Qt::Key_Space << 0 << text("Space ' ' [] None");
        QTest::newRow("return") << Qt::Key_Return << 0 << text("Return '\\r' [] None");
        QTest::newRow("a function key") << Qt::Key_F5 << 0 << text("F5 '' [] None");
        QTest::newRow("with two modifiers")
            << Qt::Key_F5 << int(Qt::ControlModifier | Qt::AltModifier) << text("F5 '' ['ctrl', 'alt'] None");
    }
    void aKeysEventSaysWhichItWas()
    {
        QFETCH(Qt::Key, key);
        QFETCH(int, modifiers);
        QFETCH(QString, said);
        Desk desk;
        desk.addScript(nullptr, TriggerType::KeyPress,
                       "print(event.key, repr(event.text), event.modifiers, event.button)");
        desk.show();
        QTest::keyClick(desk.window(), key, Qt::KeyboardModifiers(modifiers));
        QCOMPARE(desk.printed(), text("page key, ") + said);
        QKeyEvent typed(QEvent::KeyPress, Qt::Key_A, Qt::ShiftModifier, text("A"));
        QCoreApplication::sendEvent(desk.view.get(), &typed);
        QCOMPARE(desk.printed(), text("page key, A 'A' ['shift'] None"));
    }

    void aMousesEventSaysWhereItWas_data()
    {
        QTest::addColumn<double>("zoom"); // 0 for fitted
        QTest::addColumn<QPoint>("scrolled");
        QTest::addColumn<QPoint>("position"); // in the view
        QTest::addColumn<QString>("said");
        QTest::newRow("in the page's own size") << 0.0 << QPoint() << QPoint(60, 75) << text("60.0 75.0");
        QTest::newRow("twice as large") << 2.0 << QPoint() << QPoint(121, 150) << text("60.5 75.0");
        QTest::newRow("and scrolled") << 2.0 << QPoint(40, 30) << QPoint(81, 120) << text("60.5 75.0");
        QTest::newRow("half as large, in the middle") << 0.5 << QPoint() << QPoint(130, 88) << text("60.0 76.0");
    }
    void aMousesEventSaysWhereItWas()
    {
        QFETCH(double, zoom);
        QFETCH(QPoint, scrolled);
        QFETCH(QPoint, position);
        QFETCH(QString, said);
        Desk desk;
        const char* const script =
            "print(event.x, event.y, event.button, event.modifiers, event.key, repr(event.text))";
        for (const TriggerType trigger :
             {TriggerType::MousePress, TriggerType::MouseRelease, TriggerType::MouseRightButtonRelease})
            desk.addScript(desk.a, trigger, script);
        desk.addScript(desk.a, TriggerType::MouseHover, "print(event.x, event.y, event.button)");
        desk.show();
        if (zoom > 0)
            desk.view->setZoom(zoom);
        QCoreApplication::processEvents(); // scroll bars come
        desk.view->horizontalScrollBar()->setValue(scrolled.x());
        desk.view->verticalScrollBar()->setValue(scrolled.y());
        QCursor::setPos(desk.view->viewport()->mapToGlobal(position));
        QCoreApplication::processEvents();
        QCOMPARE(desk.printed(), said + text(" None"));
        QTest::mousePress(desk.window(), Qt::LeftButton, Qt::ShiftModifier, position);
        QCOMPARE(desk.printed(), text("a press, ") + said + text(" left ['shift'] None ''"));
        QTest::mouseRelease(desk.window(), Qt::LeftButton, Qt::ControlModifier, position);
        QCOMPARE(desk.printed(), text("a release, ") + said + text(" left ['ctrl'] None '', a click"));
        QTest::mouseClick(desk.window(), Qt::RightButton, {}, position);
        QCOMPARE(desk.printed(), text("a right, ") + said + text(" right [] None ''"));
    }

    void theZoomIsTold()
    {
        Desk desk;
        desk.addScript(nullptr, TriggerType::CanvasLoad,
                       "def onZoomLevelChanged(page, zoom): print('zoom', page.name, zoom)");
        desk.show();
        desk.view->setZoom(2);
        QCOMPARE(desk.printed(), text("zoom overview 2.0"));
        desk.view->setZoom(100);
        QCOMPARE(desk.printed(), text("zoom overview 8.0"));
        desk.view->zoomToFit();
        QCOMPARE(desk.printed(), text("zoom overview 1.0"));
        desk.view->resize(200, 100);
        QTRY_COMPARE(desk.said(), text("zoom overview 0.5"));
    }

    void theViewDoesWhatItDidBefore()
    {
        Desk desk;
        desk.show();
        int clicks = 0;
        QObject::connect(desk.view.get(), &CanvasView::clicked, [&clicks] { ++clicks; });
        desk.click(onA);
        QCOMPARE(clicks, 1);
        desk.view->setZoom(4);
        QCoreApplication::processEvents();
        desk.printed();
        QTest::mousePress(desk.window(), Qt::LeftButton, {}, {200, 150});
        QCursor::setPos(desk.view->viewport()->mapToGlobal(QPoint(150, 130)));
        QCoreApplication::processEvents();
        QTest::mouseRelease(desk.window(), Qt::LeftButton, {}, {150, 130});
        QCOMPARE(desk.view->horizontalScrollBar()->value(), 50);
        QCOMPARE(desk.view->verticalScrollBar()->value(), 20);
        QCOMPARE(clicks, 1);
        QCOMPARE(desk.printed(), text("page press, page release"));
        QTest::keyClick(desk.window(), Qt::Key_Right);
        QVERIFY(desk.view->horizontalScrollBar()->value() > 50);
        QCOMPARE(desk.printed(), text("page key"));
    }

    void theViewMayGoFirst()
    {
        Desk desk;
        desk.show();
        desk.click(onA);
        desk.view.reset();
        desk.printed();
        desk.scripts->fire(TriggerType::MousePress, desk.a, ScriptEvent());
        QCOMPARE(desk.printed(), text("a press"));
    }
};

QTEST_MAIN(tst_PageInput)
#include "tst_pageinput.moc"
