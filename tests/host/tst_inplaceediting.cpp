#include "host/canvas/inplaceediting.h"
#include "host/shapes/choice.h"
#include "host/shapes/inputfield.h"
#include "host/shapes/rectangle.h"
#include "tests/support/operatedpage.h"

#include <QAction>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPaintEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QVBoxLayout>

namespace {

constexpr QPointF nowhere{390, 290}; // on the page, over no shape

/// Two fields side by side: "first" with its upper left corner at 20, 20, and "second".
struct Fields : OperatedPage
{
    explicit Fields(double zoom = 1, const QSize& size = {400, 300})
    {
        first = &add<InputField>({20, 20, 130, 32}, "first");
        second = &add<InputField>({200, 20, 130, 32}, "second");
        show(zoom, size);
    }
    QLineEdit* line() const { return editor<QLineEdit>(); }

    InputField* first = nullptr;
    InputField* second = nullptr;
};

/// Opens the first field and types "12" into it.
void typeTwelve(Fields& page)
{
    page.click(*page.first);
    QVERIFY(page.line());
    QTest::keyClicks(page.line(), QStringLiteral("12"));
    QCOMPARE(page.takeTold(),
             QStringList({QStringLiteral("first.onTextChanged(1)"), QStringLiteral("first.onTextChanged(12)")}));
}

/// What of a widget is painted.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            painted += static_cast<const QPaintEvent*>(event)->region();
        return QObject::eventFilter(watched, event);
    }

    QRegion painted;
};

QString textOf(const Shape& shape)
{
    return OperatedPage::get(shape, "Text").toString();
}

} // namespace

Q_DECLARE_METATYPE(std::function<void(Fields&)>)

class tst_InPlaceEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropPopupMessages(); }

    void aFieldIsOpened_data()
    {
        QTest::addColumn<int>("key"); // 0 for a click
        QTest::newRow("by a click") << 0;
        QTest::newRow("by Return") << int(Qt::Key_Return);
        QTest::newRow("by Enter") << int(Qt::Key_Enter);
        QTest::newRow("by Space") << int(Qt::Key_Space);
        QTest::newRow("by F2") << int(Qt::Key_F2);
    }
    void aFieldIsOpened()
    {
        QFETCH(int, key);
        Fields page;
        QVERIFY(OperatedPage::set(*page.first, "Value", 12.5));
        if (key == 0) {
            page.click(*page.first);
        } else {
            OperatedPage::key(Qt::Key_Tab);
            QCOMPARE(page.view->focusedShape(), page.first);
            OperatedPage::key(key);
        }
        QVERIFY(page.line());
        QCOMPARE(page.line()->text(), QStringLiteral("12.5"));
        QCOMPARE(page.line()->selectedText(), QStringLiteral("12.5")); // typing replaces it
        QVERIFY(page.line()->hasFocus());
        QCOMPARE(page.view->focusedShape(), page.first);
        QCOMPARE(page.takeTold(), QStringList());
    }

    void whatIsNoClickOpensNothing()
    {
        Fields page;
        const QPoint middle = page.middleOf(*page.first);
        QTest::mouseClick(page.view->viewport(), Qt::RightButton, {}, middle);
        QTest::mouseClick(page.view->viewport(), Qt::MiddleButton, {}, middle);
        QVERIFY(!page.line());
        QTest::mousePress(page.view->viewport(), Qt::LeftButton, {}, middle);
        QVERIFY(!page.line()); // not before the release
        QTest::mouseRelease(page.view->viewport(), Qt::LeftButton, {}, page.middleOf(*page.second));
        QVERIFY(!page.line());
        page.click(nowhere);
        QVERIFY(!page.line());
        QVERIFY(!page.view->focusedShape());
    }

    void aDragOfThePageOpensNothing()
    {
        Fields page(4);
        const auto send = [&page](QEvent::Type type, const QPoint& position) {
            QMouseEvent event(type, position, page.view->viewport()->mapToGlobal(position),
                              type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                              type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton, {});
            QCoreApplication::sendEvent(page.view->viewport(), &event);
        };
        const QPoint from = page.middleOf(*page.first);
        const int distance = QApplication::startDragDistance();
        send(QEvent::MouseButtonPress, from);
        send(QEvent::MouseMove, from - QPoint(2 * distance, 0));
        send(QEvent::MouseButtonRelease, from - QPoint(2 * distance, 0));
        QCOMPARE(page.view->horizontalScrollBar()->value(), 2 * distance);
        QVERIFY(!page.line());
        send(QEvent::MouseButtonPress, from); // an unsteady hand
        send(QEvent::MouseMove, from - QPoint(distance - 1, 0));
        send(QEvent::MouseButtonRelease, from - QPoint(distance - 1, 0));
        QVERIFY(page.line());
    }

    void everyChangeIsToldAndHeld()
    {
        Fields page;
        QStringList held;
        page.heard = [&held](Shape& shape) { held.append(textOf(shape)); };
        page.click(*page.first);
        QTest::keyClicks(page.line(), QStringLiteral("7.5"));
        QTest::keyClick(page.line(), Qt::Key_Backspace);
        QTest::keyClick(page.line(), Qt::Key_Left); // no change
        QCOMPARE(page.takeTold(),
                 QStringList({QStringLiteral("first.onTextChanged(7)"), QStringLiteral("first.onTextChanged(7.)"),
                              QStringLiteral("first.onTextChanged(7.5)"), QStringLiteral("first.onTextChanged(7.)")}));
        QCOMPARE(held,
                 QStringList({QStringLiteral("7"), QStringLiteral("7."), QStringLiteral("7.5"), QStringLiteral("7.")}));
    }

    void anyTextCanBeEntered()
    {
        Fields page;
        const QString text = QStringLiteral("펌프 é 😀");
        page.click(*page.first);
        QInputMethodEvent composing(QStringLiteral("펌"), {});
        QCoreApplication::sendEvent(page.line(), &composing);
        QCOMPARE(page.takeTold(), QStringList()); // not a text yet
        QInputMethodEvent composed;
        composed.setCommitString(text);
        QCoreApplication::sendEvent(page.line(), &composed);
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("first.onTextChanged(%1)").arg(text)));
        OperatedPage::key(Qt::Key_Return);
        QCOMPARE(textOf(*page.first), text);
    }

    void returnHandsOver_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("Return") << int(Qt::Key_Return);
        QTest::newRow("Enter") << int(Qt::Key_Enter);
    }
    void returnHandsOver()
    {
        QFETCH(int, key);
        Fields page;
        typeTwelve(page);
        QString held;
        bool wasOpen = true;
        page.heard = [&](Shape& shape) {
            held = textOf(shape);
            wasOpen = page.line();
        };
        OperatedPage::key(key);
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("first.onReturnPressed()")));
        QCOMPARE(held, QStringLiteral("12"));
        QVERIFY(!wasOpen);
        QVERIFY(page.view->hasFocus());
        QCOMPARE(page.view->focusedShape(), page.first);
        OperatedPage::key(key); // and opens it again
        QVERIFY(page.line());
        QCOMPARE(page.line()->text(), QStringLiteral("12"));
    }

    void returnWithoutTypingLeavesTheLiveValue()
    {
        Fields page;
        QVERIFY(OperatedPage::set(*page.first, "Value", 3.25));
        page.click(*page.first);
        OperatedPage::key(Qt::Key_Return);
        QCOMPARE(textOf(*page.first), QString());
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("first.onReturnPressed()")));
    }

    void aHeldKeyHandsNothingOver()
    {
        Fields page;
        OperatedPage::key(Qt::Key_Tab);
        OperatedPage::key(Qt::Key_Return);
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, {}, QString(), true);
        QCoreApplication::sendEvent(QApplication::focusWidget(), &repeated);
        QVERIFY(page.line());
        QCOMPARE(page.takeTold(), QStringList());
        OperatedPage::key(Qt::Key_Escape);
        repeated.accept();
        QCoreApplication::sendEvent(QApplication::focusWidget(), &repeated);
        QVERIFY(!page.line()); // nor does it open one after the other
    }

    void escapeTakesBack()
    {
        Fields page;
        QVERIFY(OperatedPage::set(*page.first, "Text", QStringLiteral("before")));
        typeTwelve(page);
        OperatedPage::key(Qt::Key_Escape);
        QVERIFY(!page.line());
        QCOMPARE(textOf(*page.first), QStringLiteral("before"));
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("first.onTextChanged(before)")));
        QVERIFY(page.view->hasFocus());
        page.click(*page.first);
        OperatedPage::key(Qt::Key_Escape);
        QVERIFY(!page.line());
        QCOMPARE(textOf(*page.first), QStringLiteral("before"));
        QCOMPARE(page.takeTold(), QStringList()); // nothing was changed
    }

    void escapeGoesToTheEditorBeforeAnyShortcut()
    {
        Fields page;
        QAction action;
        action.setShortcut(Qt::Key_Escape);
        page.view->addAction(&action);
        QSignalSpy triggered(&action, &QAction::triggered);
        page.click(*page.first);
        OperatedPage::key(Qt::Key_Escape);
        QVERIFY(!page.line());
        QCOMPARE(triggered.count(), 0);
        OperatedPage::key(Qt::Key_Escape);
        QCOMPARE(triggered.count(), 1);
    }

    // F2 is a shortcut of whole windows, too.
    void f2OpensBeforeAnyShortcut()
    {
        Fields page;
        QAction action;
        action.setShortcut(Qt::Key_F2);
        page.view->addAction(&action);
        QSignalSpy triggered(&action, &QAction::triggered);
        OperatedPage::key(Qt::Key_F2);
        QCOMPARE(triggered.count(), 1); // no shape has the keyboard
        OperatedPage::key(Qt::Key_Tab);
        OperatedPage::key(Qt::Key_F2);
        QVERIFY(page.line());
        QCOMPARE(triggered.count(), 1);
    }

    void otherEndsKeepWhatWasTyped_data()
    {
        using End = std::function<void(Fields&)>;
        QTest::addColumn<End>("end");
        QTest::newRow("a click on the page") << End([](Fields& page) { page.click(nowhere); });
        QTest::newRow("a click on another field") << End([](Fields& page) { page.click(*page.second); });
        QTest::newRow("Tab") << End([](Fields&) { OperatedPage::key(Qt::Key_Tab); });
        QTest::newRow("Shift and Tab") << End([](Fields&) { OperatedPage::key(Qt::Key_Backtab, Qt::ShiftModifier); });
        QTest::newRow("the focus goes to the view") << End([](Fields& page) { page.view->setFocus(); });
        QTest::newRow("the focus goes nowhere") << End([](Fields& page) { page.line()->clearFocus(); });
        QTest::newRow("the view is hidden") << End([](Fields& page) { page.view->hide(); });
        QTest::newRow("the layer is hidden")
            << End([](Fields& page) { page.canvas->setLayerVisible(*page.layer, false); });
        QTest::newRow("the shape is hidden") << End([](Fields& page) {
            QVERIFY(OperatedPage::set(*page.first, "Visible", false));
            OperatedPage::settle();
        });
        QTest::newRow("the shape is switched off") << End([](Fields& page) {
            QVERIFY(OperatedPage::set(*page.first, "Enabled", false));
            OperatedPage::settle();
        });
        QTest::newRow("the page is rearranged") << End([](Fields& page) { page.canvas->setBackground(Qt::white); });
    }
    void otherEndsKeepWhatWasTyped()
    {
        using End = std::function<void(Fields&)>;
        QFETCH(End, end);
        Fields page;
        typeTwelve(page);
        QLineEdit* before = page.line();
        end(page);
        QVERIFY(page.line() != before);
        QCOMPARE(textOf(*page.first), QStringLiteral("12"));
        QCOMPARE(page.takeTold(), QStringList());
    }

    void twoFieldsInTurn()
    {
        Fields page;
        typeTwelve(page);
        page.click(*page.second);
        QCOMPARE(page.view->focusedShape(), page.second);
        QTest::keyClicks(page.line(), QStringLiteral("3"));
        OperatedPage::key(Qt::Key_Tab);
        QCOMPARE(page.view->focusedShape(), page.first); // behind the last comes the first
        QVERIFY(!page.line());
        OperatedPage::key(Qt::Key_Space);
        QCOMPARE(page.line()->text(), QStringLiteral("12"));
        QTest::keyClicks(page.line(), QStringLiteral("4"));
        OperatedPage::key(Qt::Key_Return);
        QCOMPARE(page.takeTold(),
                 QStringList({QStringLiteral("second.onTextChanged(3)"), QStringLiteral("first.onTextChanged(4)"),
                              QStringLiteral("first.onReturnPressed()")}));
        QCOMPARE(textOf(*page.second), QStringLiteral("3"));
    }

    void theEditorsOwnMenuDoesNotEndIt()
    {
        Fields page;
        typeTwelve(page);
        QContextMenuEvent asked(QContextMenuEvent::Mouse, {3, 3}, page.line()->mapToGlobal({3, 3}));
        QCoreApplication::sendEvent(page.line(), &asked);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QVERIFY(menu);
        QVERIFY(page.line());
        menu->close();
        QVERIFY(page.line());
        QTest::keyClicks(page.line(), QStringLiteral("3"));
        QCOMPARE(textOf(*page.first), QStringLiteral("123"));
    }

    void liveDataDoNotDisturb()
    {
        Fields page;
        QVERIFY(OperatedPage::set(*page.first, "Value", 1));
        page.click(*page.first);
        QTest::keyClicks(page.line(), QStringLiteral("8"));
        for (const QVariant& value : {QVariant(2.5), QVariant(), QVariant(99)}) {
            QVERIFY(OperatedPage::set(*page.first, "Value", value));
            OperatedPage::settle();
            QCOMPARE(page.line()->text(), QStringLiteral("8"));
            QVERIFY(page.line()->hasFocus());
        }
        OperatedPage::key(Qt::Key_Escape);
        QCOMPARE(page.first->shownText(), QStringLiteral("99"));
    }

    void untouchedAFieldKeepsWhatWasSetMeanwhile()
    {
        Fields page;
        page.click(*page.first);
        QVERIFY(OperatedPage::set(*page.first, "Text", QStringLiteral("set")));
        OperatedPage::settle();
        QCOMPARE(page.line()->text(), QString());
        page.click(nowhere);
        QCOMPARE(textOf(*page.first), QStringLiteral("set"));
        page.click(*page.first);
        QVERIFY(OperatedPage::set(*page.first, "Text", QStringLiteral("other")));
        OperatedPage::key(Qt::Key_Escape);
        QCOMPARE(textOf(*page.first), QStringLiteral("other"));
        QCOMPARE(page.takeTold(), QStringList());
    }

    void whatAProgramSetsIsNotTold()
    {
        Fields page;
        for (const char* text : {"a", "b", "b", ""})
            QVERIFY(OperatedPage::set(*page.first, "Text", QString::fromLatin1(text)));
        QVERIFY(OperatedPage::set(*page.first, "Value", 5));
        QVERIFY(OperatedPage::set(*page.first, "Active", true));
        OperatedPage::settle();
        QCOMPARE(page.takeTold(), QStringList());
        QVERIFY(!page.line());
    }

    void switchedOffOrHiddenNothingCanBeEntered_data()
    {
        QTest::addColumn<QString>("property"); // of the field; empty for its layer
        QTest::newRow("switched off") << QStringLiteral("Enabled");
        QTest::newRow("hidden") << QStringLiteral("Visible");
        QTest::newRow("on a hidden layer") << QString();
    }
    void switchedOffOrHiddenNothingCanBeEntered()
    {
        QFETCH(QString, property);
        Fields page;
        Layer& above = page.canvas->addLayer(QStringLiteral("above"));
        Shape& third =
            page.canvas->addShape(above, ShapeFactory::create(QLatin1String(InputField::staticClass().name)));
        third.setPlace({20, 100, 100, 30});
        if (property.isEmpty())
            page.canvas->setLayerVisible(above, false);
        else
            QVERIFY(third.setNamedProperty(property, false));
        OperatedPage::settle();
        page.click(third);
        QVERIFY(!page.line());
        QVERIFY(!page.view->focusedShape());
        QVERIFY(!InPlaceEditing(*page.view).open(third));
        for (Shape* next : {page.first, page.second, page.first}) {
            OperatedPage::key(Qt::Key_Tab);
            QCOMPARE(page.view->focusedShape(), next); // it is left out
        }
    }

    void theFocusLeavesAShapeThatIsHidden()
    {
        Fields page;
        OperatedPage::key(Qt::Key_Tab);
        QCOMPARE(page.view->focusedShape(), page.first);
        QVERIFY(OperatedPage::set(*page.first, "Visible", false));
        OperatedPage::settle();
        QVERIFY(!page.view->focusedShape());
        OperatedPage::key(Qt::Key_Return);
        QVERIFY(!page.line());
    }

    void tabGoesThroughThePageAndOn()
    {
        QWidget window;
        Fields page;
        page.view->hide();
        auto* layout = new QVBoxLayout(&window);
        auto* above = new QLineEdit;
        auto* below = new QLineEdit;
        layout->addWidget(above);
        layout->addWidget(page.view.get());
        page.view->show();
        layout->addWidget(below);
        page.add<Rectangle>({300, 200, 20, 20}, "no field");
        auto& choice = page.add<Choice>({20, 200, 100, 30}, "choice");
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        above->setFocus();
        for (Shape* next : std::initializer_list<Shape*>{page.first, page.second, &choice}) {
            OperatedPage::key(Qt::Key_Tab);
            QVERIFY(page.view->hasFocus());
            QCOMPARE(page.view->focusedShape(), next);
        }
        OperatedPage::key(Qt::Key_Tab);
        QVERIFY(below->hasFocus());
        for (Shape* next : std::initializer_list<Shape*>{&choice, page.second, page.first}) {
            OperatedPage::key(Qt::Key_Backtab, Qt::ShiftModifier);
            QVERIFY(page.view->hasFocus());
            QCOMPARE(page.view->focusedShape(), next);
        }
        OperatedPage::key(Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(above->hasFocus());
    }

    void tabScrollsToWhereItGoes()
    {
        Fields page(4);
        OperatedPage::key(Qt::Key_Tab);
        OperatedPage::key(Qt::Key_Tab);
        const QRect room = page.view->viewport()->rect();
        QVERIFY(page.view->viewportRect(*page.second).left() >= 0);
        page.view->horizontalScrollBar()->setValue(0);
        QVERIFY(!room.intersects(page.view->viewportRect(*page.second)));
        OperatedPage::key(Qt::Key_Space); // whoever types wants to see it
        QVERIFY(page.view->viewportRect(*page.second).left() >= 0);
        QVERIFY(room.intersects(page.line()->geometry()));
        page.view->setZoom(2);
        OperatedPage::key(Qt::Key_Backtab, Qt::ShiftModifier);
        QVERIFY(room.contains(page.view->viewportRect(*page.first)));
    }

    void theEditorLiesOverItsField_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::addColumn<int>("scrolled");
        QTest::newRow("at its own size") << 1.0 << 0;
        QTest::newRow("at twice its size") << 2.0 << 0;
        QTest::newRow("at three times its size, scrolled") << 3.0 << 40;
        QTest::newRow("at half its size") << 0.5 << 0;
    }
    void theEditorLiesOverItsField()
    {
        QFETCH(double, zoom);
        QFETCH(int, scrolled);
        Fields page(zoom);
        page.view->horizontalScrollBar()->setValue(scrolled);
        page.click(*page.first);
        QVERIFY(page.line());
        const auto check = [&page] {
            const QRectF area = page.first->textArea();
            const double now = page.view->zoom();
            const QRect place = page.line()->geometry();
            const QPoint topLeft = page.toView(page.first->mapToScene(area.topLeft()));
            QVERIFY(std::abs(place.left() - topLeft.x()) <= 1);
            QVERIFY(std::abs(place.width() - area.width() * now) <= 1);
            QVERIFY(std::abs(place.center().y() - page.middleOf(*page.first).y()) <= 1);
            QVERIFY(place.height() < area.height() * now && place.height() > area.height() * now * 0.7);
            QCOMPARE(page.line()->font().pixelSize(), std::max(8, qRound(14 * now)));
        };
        check();
        page.view->setZoom(zoom * 1.5);
        check();
        page.view->verticalScrollBar()->setValue(7);
        check();
        page.first->setPlace({60, 40, 90, 28});
        OperatedPage::settle();
        check();
        page.view->zoomToFit();
        check();
        QVERIFY(page.line()->hasFocus());
    }

    void theUnitStaysInSight()
    {
        Fields page;
        QVERIFY(OperatedPage::set(*page.first, "Unit", QStringLiteral("l/min")));
        page.click(*page.first);
        QVERIFY(page.line()->geometry().right() < page.toView({150, 0}).x() - 30);
    }

    void aRotatedFieldIsEditedUpright()
    {
        Fields page;
        QVERIFY(OperatedPage::set(*page.first, "Rotation", 90));
        page.first->setPlace({50, 100, 130, 32});
        OperatedPage::settle();
        page.click(*page.first);
        const QRect place = page.line()->geometry();
        QVERIFY(place.width() > 100 && place.height() < 32);
        QVERIFY((place.center() - page.middleOf(*page.first)).manhattanLength() <= 3);
    }

    void theWheelStillZooms()
    {
        Fields page;
        typeTwelve(page);
        const QRect before = page.line()->geometry();
        page.turnWheel(page.first->place().center(), 120 * 4, Qt::ControlModifier);
        QCOMPARE(page.view->zoom(), 2.0);
        QVERIFY(page.line()->width() > before.width() * 1.9);
        QCOMPARE(page.line()->text(), QStringLiteral("12"));
    }

    void theKeyboardsShapeIsMarked()
    {
        Fields page;
        const auto picture = [&page] {
            OperatedPage::settle();
            return page.view->viewport()->grab().toImage();
        };
        const QImage none = picture();
        OperatedPage::key(Qt::Key_Tab);
        const QImage first = picture();
        QVERIFY(first != none);
        OperatedPage::key(Qt::Key_Tab);
        QVERIFY(picture() != first);
        OperatedPage::key(Qt::Key_Tab);
        QCOMPARE(picture(), first);
        page.view->clearFocus(); // keys go elsewhere
        QCOMPARE(picture(), none);
    }

    // The frame reaches beyond the shape: with it, what lies around it is painted anew here and there.
    void theMarkMovesWithItsShape()
    {
        Fields page;
        OperatedPage::key(Qt::Key_Tab);
        page.first->setPlace({20, 90, 130, 32}); // from the second move on only what changed is drawn
        OperatedPage::settle();
        const auto frame = [&page] { return page.view->viewportRect(*page.first).adjusted(-4, -4, 4, 4); };
        const QRect before = frame();
        PaintWatch watch(*page.view->viewport());
        page.first->setPlace({60, 150, 130, 32});
        OperatedPage::settle();
        QVERIFY(QRegion(before).subtracted(watch.painted).isEmpty());
        QVERIFY(QRegion(frame()).subtracted(watch.painted).isEmpty());
        QVERIFY(!watch.painted.contains(QPoint(390, 10))); // and nothing else
        const QImage moved = page.view->viewport()->grab().toImage();
        QCOMPARE(moved.pixelColor(page.toView({60 - 3, 160})), page.view->palette().color(QPalette::Highlight));
        QCOMPARE(moved.pixelColor(page.toView({20 - 3, 100})), page.canvas->background());
    }

    void aPageThatGoesTakesItsEditorAlong()
    {
        Fields page;
        typeTwelve(page);
        page.view.reset(); // as it should be
        QCOMPARE(textOf(*page.first), QStringLiteral("12"));
        page.show();
        page.click(*page.first);
        QVERIFY(page.line());
        page.canvas.reset(); // and the other way round
        page.view.reset();
    }

    void aPageThatIsClosedByItsFieldCloses()
    {
        Fields page;
        page.click(*page.first);
        page.heard = [&page](Shape&) { page.view.release()->deleteLater(); };
        OperatedPage::key(Qt::Key_Return);
        OperatedPage::settle();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("first.onReturnPressed()")));
    }
};

QTEST_MAIN(tst_InPlaceEditing)
#include "tst_inplaceediting.moc"
