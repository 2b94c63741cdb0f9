#include "host/shapes/choice.h"
#include "tests/support/drawnshape.h"
#include "tests/support/operatedpage.h"

#include <QListWidget>
#include <QScreen>
#include <QScrollBar>

namespace {

QStringList entries(int count)
{
    QStringList all;
    for (int entry = 0; entry < count; ++entry)
        all.append(QStringLiteral("entry %1").arg(entry));
    return all;
}

/// A page with one choice of four entries, the second one chosen.
struct ChoicePage : OperatedPage
{
    explicit ChoicePage(const QStringList& items = entries(4), int index = 1, double zoom = 1)
    {
        choice = &add<Choice>({20, 20, 150, 32}, "choice");
        set(*choice, "Items", items);
        set(*choice, "Index", index);
        show(zoom);
    }
    QListWidget* list() const { return editor<QListWidget>(); }
    /// Opens the list.
    void open()
    {
        click(*choice);
        QVERIFY(list());
    }
    void clickEntry(int row) const
    {
        QTest::mouseClick(list()->viewport(), Qt::LeftButton, {}, list()->visualItemRect(list()->item(row)).center());
    }

    Choice* choice = nullptr;
};

} // namespace

class tst_Choice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropPopupMessages(); }

    void anotherEntryIsTold()
    {
        ChoicePage page;
        QVariant held;
        page.heard = [&held](Shape& shape) { held = OperatedPage::get(shape, "Index"); };
        page.open();
        QCOMPARE(page.list()->currentRow(), 1);
        QCOMPARE(page.list()->count(), 4);
        page.clickEntry(3);
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("choice.onCurrentIndexChanged(3)")));
        QCOMPARE(held, QVariant(3));
        QVERIFY(!page.list());
        QVERIFY(page.view->hasFocus());
    }

    void theSameEntryIsNotTold()
    {
        ChoicePage page;
        page.open();
        page.clickEntry(1);
        QVERIFY(!page.list());
        QCOMPARE(page.takeTold(), QStringList());
    }

    void keysAreEnough_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<int>("index");
        QTest::newRow("down and Return") << QList<int>{Qt::Key_Down, Qt::Key_Return} << 2;
        QTest::newRow("up and Enter") << QList<int>{Qt::Key_Up, Qt::Key_Enter} << 0;
        QTest::newRow("to the end and Space") << QList<int>{Qt::Key_End, Qt::Key_Space} << 3;
        QTest::newRow("down and Escape") << QList<int>{Qt::Key_Down, Qt::Key_Escape} << 1;
        QTest::newRow("down and Tab") << QList<int>{Qt::Key_Down, Qt::Key_Tab} << 1;
    }
    void keysAreEnough()
    {
        QFETCH(QList<int>, keys);
        QFETCH(int, index);
        for (const int opens : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_F2}) {
            ChoicePage page;
            OperatedPage::key(Qt::Key_Tab);
            QCOMPARE(page.view->focusedShape(), page.choice);
            OperatedPage::key(opens);
            QVERIFY(page.list());
            for (const int key : keys)
                OperatedPage::key(key);
            QVERIFY(!page.list());
            QVERIFY(page.view->hasFocus());
            QCOMPARE(page.view->focusedShape(), page.choice);
            QCOMPARE(page.choice->index(), index);
            QCOMPARE(page.takeTold().size(), index == 1 ? 0 : 1);
        }
    }

    void aClickElsewhereChoosesNothing()
    {
        ChoicePage page;
        page.open();
        page.clickWindow({300, 250});
        QVERIFY(!page.list());
        QCOMPARE(page.choice->index(), 1);
        QCOMPARE(page.takeTold(), QStringList());
        page.open(); // and it can be opened again
        page.clickWindow(page.choice->place().center());
        QVERIFY(!page.list()); // a click on the field closes it as well
        QCOMPARE(page.choice->index(), 1);
    }

    // What is done beside an open list is not done to the page, too.
    void aClickThatClosesTheListIsNoOther()
    {
        ChoicePage page;
        auto& other = page.add<Choice>({20, 200, 150, 32}, "other");
        OperatedPage::set(other, "Items", entries(2));
        OperatedPage::settle();
        page.open();
        int clicks = 0;
        connect(page.view.get(), &CanvasView::clicked, this, [&clicks] { ++clicks; });
        page.clickWindow(other.place().center());
        QVERIFY(!page.list());
        QCOMPARE(clicks, 0);
        page.clickWindow(other.place().center());
        QVERIFY(page.list());
        QCOMPARE(page.list()->count(), 2);
        QCOMPARE(clicks, 1);
    }

    void thePointerShowsWhatAClickWouldChoose()
    {
        ChoicePage page;
        page.open();
        const QPoint position = page.list()->visualItemRect(page.list()->item(2)).center();
        QTest::mouseMove(page.list()->viewport(), position);
        QTRY_COMPARE(page.list()->currentRow(), 2);
        QCOMPARE(page.choice->index(), 1);
    }

    void withoutEntriesNothingOpens()
    {
        ChoicePage page({}, -1);
        page.click(*page.choice);
        QVERIFY(!page.list());
        QVERIFY(!QApplication::activePopupWidget());
        QCOMPARE(page.view->focusedShape(), page.choice);
        OperatedPage::key(Qt::Key_Return);
        QVERIFY(!page.list());
        page.choice->choose(0);
        QCOMPARE(page.choice->index(), -1);
        QCOMPARE(page.takeTold(), QStringList());
    }

    void anIndexBeyondTheEntriesShowsNothing_data()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("none") << -1;
        QTest::newRow("just beyond") << 4;
        QTest::newRow("far beyond") << 1'000'000;
    }
    void anIndexBeyondTheEntriesShowsNothing()
    {
        QFETCH(int, index);
        ChoicePage page(entries(4), index);
        Choice none;
        none.setPlace(page.choice->place());
        QCOMPARE(drawn(*page.choice), drawn(none));
        QCOMPARE(page.choice->index(), index); // entries may come later
        page.open();
        page.clickEntry(0);
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("choice.onCurrentIndexChanged(0)")));
    }

    void whatAProgramSetsIsNotTold()
    {
        ChoicePage page;
        for (const int index : {2, 2, -1, 77, 0})
            QVERIFY(OperatedPage::set(*page.choice, "Index", index));
        QVERIFY(OperatedPage::set(*page.choice, "Items", entries(2)));
        OperatedPage::settle();
        QCOMPARE(page.takeTold(), QStringList());
    }

    void anOpenListDoesNotGoWithTheData()
    {
        ChoicePage page;
        page.open();
        QVERIFY(OperatedPage::set(*page.choice, "Index", 3));
        OperatedPage::settle();
        QCOMPARE(page.list()->currentRow(), 1);
        page.clickEntry(1); // another one than it is now
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("choice.onCurrentIndexChanged(1)")));
    }

    void otherEntriesEndTheChoice()
    {
        ChoicePage page;
        page.open();
        QVERIFY(OperatedPage::set(*page.choice, "Items", QStringList(entries(4).mid(1))));
        OperatedPage::settle();
        QVERIFY(!page.list());
        QCOMPARE(page.takeTold(), QStringList());
    }

    void whatIsHiddenOrOffCantBeChosen_data()
    {
        QTest::addColumn<QString>("property"); // empty for the layer
        QTest::newRow("switched off") << QStringLiteral("Enabled");
        QTest::newRow("hidden") << QStringLiteral("Visible");
        QTest::newRow("on a hidden layer") << QString();
    }
    void whatIsHiddenOrOffCantBeChosen()
    {
        QFETCH(QString, property);
        ChoicePage page;
        page.open();
        if (property.isEmpty())
            page.canvas->setLayerVisible(*page.layer, false);
        else
            QVERIFY(page.choice->setNamedProperty(property, false));
        OperatedPage::settle();
        QVERIFY(!page.list()); // the open list goes
        page.click(*page.choice);
        QVERIFY(!page.list());
        QVERIFY(!page.view->focusedShape());
    }

    void aHiddenViewHasNoOpenList()
    {
        ChoicePage page;
        page.open();
        page.view->hide();
        QVERIFY(!QApplication::activePopupWidget());
    }

    void aPageThatGoesTakesItsListAlong()
    {
        ChoicePage page;
        page.open();
        page.view.reset();
        QVERIFY(!QApplication::activePopupWidget());
        page.show();
        page.open();
        page.canvas.reset();
        page.view.reset();
        QVERIFY(!QApplication::activePopupWidget());
    }

    void theListLiesBelowItsField_data()
    {
        QTest::addColumn<double>("zoom");
        QTest::newRow("at its own size") << 1.0;
        QTest::newRow("at twice its size") << 2.0;
    }
    void theListLiesBelowItsField()
    {
        QFETCH(double, zoom);
        ChoicePage page(entries(4), 1, zoom);
        page.open();
        const auto check = [&page] {
            const QRect field = page.view->viewportRect(*page.choice);
            const QRect list = page.list()->window()->geometry();
            QCOMPARE(list.topLeft(), page.view->viewport()->mapToGlobal(field.bottomLeft() + QPoint(0, 1)));
            QVERIFY(list.width() >= field.width());
            QVERIFY(!page.list()->verticalScrollBar()->isVisible());
            QCOMPARE(page.list()->font().pixelSize(), std::min(22, qRound(14 * page.view->zoom())));
        };
        check();
        page.view->setZoom(zoom * 1.5);
        check();
        page.view->verticalScrollBar()->setValue(11);
        check();
        page.choice->setPlace({40, 60, 120, 30});
        OperatedPage::settle();
        check();
    }

    void atTheEndOfTheScreenTheListLiesAbove()
    {
        ChoicePage page(entries(40), 39);
        const QRect screen = page.view->screen()->availableGeometry();
        page.view->move(screen.right() - 100, screen.bottom() - 100);
        OperatedPage::settle();
        page.open();
        const QRect list = page.list()->window()->geometry();
        QVERIFY(screen.contains(list));
        const int top = page.view->viewport()->mapToGlobal(page.view->viewportRect(*page.choice).topLeft()).y();
        QVERIFY(list.bottom() < top);
        QVERIFY(page.list()->verticalScrollBar()->isVisible());
        QVERIFY(page.list()->viewport()->rect().intersects(page.list()->visualItemRect(page.list()->item(39))));
    }

    void anyTextCanBeAnEntry()
    {
        const QStringList items = {QStringLiteral("자동"), QString(), QStringLiteral("é 😀"),
                                   QString(300, QLatin1Char('W'))};
        ChoicePage page(items, 0);
        page.open();
        for (int row = 0; row < items.size(); ++row)
            QCOMPARE(page.list()->item(row)->text(), items.at(row));
        QVERIFY(page.view->screen()->availableGeometry().contains(page.list()->window()->geometry()));
        page.clickEntry(2);
        QCOMPARE(page.choice->index(), 2);
    }
};

QTEST_MAIN(tst_Choice)
#include "tst_choice.moc"
