#include "host/shapes/table.h"
#include "tests/support/drawnshape.h"
#include "tests/support/operatedpage.h"

#include <QLineEdit>
#include <QScrollBar>

#include <functional>

namespace {

/// Rows "r0a", "r0b", ..., and which were asked for.
struct TestRows : TableRows
{
    QStringList tableRow(Table& table, int row) override
    {
        asked.append(row);
        if (meanwhile)
            meanwhile(table, row);
        return {QStringLiteral("r%1a").arg(row), QStringLiteral("r%1b").arg(row)};
    }
    QList<int> takeAsked() { return std::exchange(asked, {}); }

    QList<int> asked;
    std::function<void(Table&, int)> meanwhile;
};

QList<int> span(int first, int end)
{
    QList<int> all;
    for (int row = first; row < end; ++row)
        all.append(row);
    return all;
}

/// A page with a table of two columns and room for five rows: rows of 24 units, one of them the headings, in a frame.
struct TablePage : OperatedPage
{
    explicit TablePage(int rowCount = 100, double zoom = 1)
    {
        table = &add<Table>({20, 20, 202, 24 * 6 + 2}, "table");
        set(*table, "Columns", QStringList({QStringLiteral("A"), QStringLiteral("B")}));
        set(*table, "RowCount", rowCount);
        table->setRows(&rows);
        show(zoom);
    }
    ~TablePage() { table->setRows(nullptr); }

    /// The middle of a cell on the page.
    QPointF cell(int row, int column) const { return table->mapToScene(table->cellRect(row, column).center()); }
    int firstRow() const { return get(*table, "FirstRow").toInt(); }
    int selectedRow() const { return get(*table, "SelectedRow").toInt(); }

    TestRows rows;
    Table* table = nullptr;
};

} // namespace

Q_DECLARE_METATYPE(std::function<void(Table&, int)>)

class tst_Table : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropPopupMessages(); }

    void onlyRowsInViewAreAskedFor()
    {
        TablePage page(1'000'000);
        QCOMPARE(page.table->roomForRows(), 5);
        QCOMPARE(page.rows.takeAsked(), span(0, 5));
        QCOMPARE(page.table->cells(3), QStringList({QStringLiteral("r3a"), QStringLiteral("r3b")}));
        QCOMPARE(page.table->cells(5), QStringList());
        QVERIFY(OperatedPage::set(*page.table, "FirstRow", 999'000));
        OperatedPage::settle();
        QCOMPARE(page.rows.takeAsked(), span(999'000, 999'005));
        QVERIFY(OperatedPage::set(*page.table, "FirstRow", 999'003));
        OperatedPage::settle();
        QCOMPARE(page.rows.takeAsked(), span(999'005, 999'008)); // two were known
        QVERIFY(OperatedPage::set(*page.table, "FirstRow", 0));
        OperatedPage::settle();
        QCOMPARE(page.rows.takeAsked(), QList<int>());
    }

    void drawingAsksForNothing()
    {
        TestRows rows;
        Table table;
        QVERIFY(OperatedPage::set(table, "RowCount", 10));
        table.setRows(&rows);
        const QImage blank = drawn(table);
        QCOMPARE(rows.asked, QList<int>());
        table.prepare();
        QVERIFY(!rows.asked.isEmpty());
        QVERIFY(drawn(table) != blank);
    }

    // The first frame that a row is in view for shows it.
    void rowsAreThereBeforeTheyAreDrawn()
    {
        TablePage page;
        QSignalSpy painted(page.view.get(), &CanvasView::painted);
        QVERIFY(OperatedPage::set(*page.table, "FirstRow", 50));
        page.view->refresh();
        QCOMPARE(page.rows.takeAsked(), span(0, 5) + span(50, 55));
        QTRY_COMPARE(painted.count(), 1);
        const QImage frame = page.view->renderer().image();
        page.table->changed();
        page.view->refresh();
        QCOMPARE(page.view->renderer().image(), frame);
    }

    void knownRowsAreNotAskedForAgain()
    {
        TablePage page;
        page.rows.takeAsked();
        for (int turn = 0; turn < 3; ++turn) {
            page.table->changed();
            OperatedPage::settle();
        }
        QCOMPARE(page.rows.takeAsked(), QList<int>());
        page.table->invalidateRows();
        QCOMPARE(page.table->cells(0), QStringList());
        OperatedPage::settle();
        QCOMPARE(page.rows.takeAsked(), span(0, 5));
    }

    void aRowWithoutTextsIsKnownToo()
    {
        struct NoRows : TableRows
        {
            QStringList tableRow(Table&, int) override
            {
                ++count;
                return {};
            }
            int count = 0;
        } none;
        TablePage page(3);
        page.table->setRows(&none);
        for (int turn = 0; turn < 3; ++turn) {
            page.table->changed();
            OperatedPage::settle();
        }
        QCOMPARE(none.count, 3);
        page.click(page.cell(1, 1));
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("table.onItemClicked(, 1)")));
        QCOMPARE(none.count, 3);
        page.table->setRows(nullptr);
    }

    void withoutASourceRowsAreBlank()
    {
        TablePage page;
        const QImage filled = drawn(*page.table);
        page.table->setRows(nullptr);
        OperatedPage::settle();
        QCOMPARE(page.table->cells(0), QStringList()); // what was known came from the one before
        QVERIFY(drawn(*page.table) != filled);
        page.table->setRows(&page.rows);
        page.rows.takeAsked();
        page.table->setRows(&page.rows); // the same is no other
        OperatedPage::settle();
        QCOMPARE(page.rows.takeAsked(), span(0, 5));
    }

    void aHiddenTableAsksForNothing_data()
    {
        QTest::addColumn<bool>("isLayer");
        QTest::newRow("hidden itself") << false;
        QTest::newRow("on a hidden layer") << true;
    }
    void aHiddenTableAsksForNothing()
    {
        QFETCH(bool, isLayer);
        TablePage page;
        const auto show = [&](bool isShown) {
            if (isLayer)
                page.canvas->setLayerVisible(*page.layer, isShown);
            else
                QVERIFY(OperatedPage::set(*page.table, "Visible", isShown));
            OperatedPage::settle();
        };
        show(false);
        page.rows.takeAsked();
        page.table->invalidateRows();
        QVERIFY(OperatedPage::set(*page.table, "FirstRow", 20));
        OperatedPage::settle();
        QCOMPARE(page.rows.takeAsked(), QList<int>());
        show(true);
        QCOMPARE(page.rows.takeAsked(), span(20, 25));
    }

    void aHiddenViewAsksForNothing()
    {
        TablePage page;
        page.rows.takeAsked();
        page.view->hide();
        page.table->invalidateRows();
        OperatedPage::settle();
        QCOMPARE(page.rows.takeAsked(), QList<int>());
        page.view->show();
        OperatedPage::settle();
        QCOMPARE(page.rows.takeAsked(), span(0, 5));
    }

    void whoeverIsAskedMayChangeTheTable_data()
    {
        using Change = std::function<void(Table&, int)>;
        QTest::addColumn<Change>("change");
        QTest::newRow("forget the rows") << Change([](Table& table, int) { table.invalidateRows(); });
        QTest::newRow("leave") << Change([](Table& table, int) { table.setRows(nullptr); });
        QTest::newRow("ask once more") << Change([](Table& table, int) { table.prepare(); });
        QTest::newRow("take the rows away")
            << Change([](Table& table, int) { OperatedPage::set(table, "RowCount", 0); });
        QTest::newRow("scroll on") << Change([](Table& table, int row) { OperatedPage::set(table, "FirstRow", row); });
    }
    void whoeverIsAskedMayChangeTheTable()
    {
        using Change = std::function<void(Table&, int)>;
        QFETCH(Change, change);
        TestRows rows;
        Table table;
        rows.meanwhile = change;
        QVERIFY(OperatedPage::set(table, "RowCount", 5));
        table.setRows(&rows);
        table.prepare();
        QVERIFY(!rows.asked.isEmpty());
        QVERIFY(rows.asked.size() <= 5); // each at most once
        drawn(table);
    }

    void aSourceThatLeftIsNotHeardAnyMore()
    {
        TestRows rows;
        TestRows others;
        Table table;
        rows.meanwhile = [&others](Table& asking, int) { asking.setRows(&others); };
        QVERIFY(OperatedPage::set(table, "RowCount", 3));
        table.setRows(&rows);
        table.prepare();
        QCOMPARE(rows.asked, QList<int>{0});
        QCOMPARE(table.cells(0), QStringList()); // what it said meanwhile is not the new one's
        table.prepare();
        QCOMPARE(others.asked, (QList<int>{1, 2, 0}));
    }

    void memoryIsBounded()
    {
        TestRows rows;
        Table table;
        QVERIFY(OperatedPage::set(table, "RowCount", 10'000));
        table.setRows(&rows);
        const auto askFor = [&](int first) {
            OperatedPage::set(table, "FirstRow", first);
            table.prepare();
        };
        for (int first = 0; first < 10'000; first += table.roomForRows())
            askFor(first);
        QCOMPARE(rows.asked.size(), 10'000);
        askFor(9990);
        QCOMPARE(rows.asked.size(), 10'000); // those in view are kept
        askFor(0);
        QCOMPARE(rows.asked.size(), 10'000 + table.roomForRows()); // those of long ago are not
    }

    void rowsCanStandInThePage()
    {
        TablePage page(7);
        page.rows.takeAsked();
        QVERIFY(OperatedPage::set(*page.table, "Rows",
                                  QStringList({QStringLiteral("P-101\t순환"), QString(), QStringLiteral("a\tb\tc")})));
        page.table->invalidateRows();
        OperatedPage::settle();
        QCOMPARE(page.table->cells(0), QStringList({QStringLiteral("P-101"), QStringLiteral("순환")}));
        QCOMPARE(page.table->cells(1), QStringList(QString()));
        QCOMPARE(page.table->cells(2).size(), 3);
        QCOMPARE(page.rows.takeAsked(), span(3, 5)); // the others come from elsewhere
        QVERIFY(OperatedPage::set(*page.table, "RowCount", 1));
        QCOMPARE(page.table->rowCount(), 3);
        page.click(page.cell(0, 1));
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("table.onItemClicked(P-101|순환, 1)")));
    }

    void aClickTellsRowAndColumn()
    {
        TablePage page;
        page.click(page.cell(2, 1));
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("table.onItemClicked(r2a|r2b, 1)")));
        QCOMPARE(page.selectedRow(), 2);
        QCOMPARE(page.view->focusedShape(), page.table);
        page.click(page.cell(2, 0));
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("table.onItemClicked(r2a|r2b, 0)")));
        QTest::mouseClick(page.view->viewport(), Qt::RightButton, {}, page.toView(page.cell(3, 0)));
        QCOMPARE(page.takeTold(), QStringList());
        QCOMPARE(page.selectedRow(), 2);
    }

    void whatIsNoRowTellsNothing_data()
    {
        QTest::addColumn<QPointF>("place");
        QTest::newRow("the headings") << QPointF(40, 30);
        QTest::newRow("below the last row") << QPointF(40, 20 + 24 * 5);
        QTest::newRow("outside") << QPointF(300, 100);
    }
    void whatIsNoRowTellsNothing()
    {
        QFETCH(QPointF, place);
        TablePage page(3);
        page.doubleClick(place);
        QCOMPARE(page.takeTold(), QStringList());
        QCOMPARE(page.selectedRow(), -1);
    }

    void aClickIsFoundWhereverTheTableLies()
    {
        TablePage page(100, 3);
        QVERIFY(OperatedPage::set(*page.table, "FirstRow", 40));
        page.view->horizontalScrollBar()->setValue(150);
        page.view->verticalScrollBar()->setValue(60);
        OperatedPage::settle();
        page.click(page.cell(42, 1));
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("table.onItemClicked(r42a|r42b, 1)")));
        page.view->setZoom(1);
        QVERIFY(OperatedPage::set(*page.table, "Rotation", 30));
        OperatedPage::settle();
        page.click(page.cell(43, 0));
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("table.onItemClicked(r43a|r43b, 0)")));
    }

    void aDoubleClickIsTold()
    {
        TablePage page;
        page.doubleClick(page.cell(1, 1));
        QCOMPARE(page.takeTold(), QStringList({QStringLiteral("table.onItemClicked(r1a|r1b, 1)"),
                                               QStringLiteral("table.onItemDoubleClicked()")}));
    }

    void keysAreEnough()
    {
        TablePage page;
        OperatedPage::key(Qt::Key_Tab);
        QCOMPARE(page.view->focusedShape(), page.table);
        OperatedPage::key(Qt::Key_Space); // nothing is selected
        OperatedPage::key(Qt::Key_Return);
        QCOMPARE(page.takeTold(), QStringList());
        const auto press = [&page](int key) {
            OperatedPage::key(key);
            return page.selectedRow();
        };
        QCOMPARE(press(Qt::Key_Down), 0);
        QCOMPARE(press(Qt::Key_Down), 1);
        QCOMPARE(press(Qt::Key_Up), 0);
        QCOMPARE(press(Qt::Key_Up), 0);
        QCOMPARE(press(Qt::Key_PageDown), 5);
        QCOMPARE(page.firstRow(), 1); // just as far as needed
        QCOMPARE(press(Qt::Key_PageUp), 0);
        QCOMPARE(page.firstRow(), 0);
        QCOMPARE(press(Qt::Key_End), 99);
        QCOMPARE(page.firstRow(), 95);
        QCOMPARE(press(Qt::Key_Down), 99);
        QCOMPARE(press(Qt::Key_Right), 99);
        QCOMPARE(press(Qt::Key_Right), 99);
        QCOMPARE(page.takeTold(), QStringList()); // a selection is no click
        OperatedPage::key(Qt::Key_Space);
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("table.onItemClicked(r99a|r99b, 1)")));
        OperatedPage::key(Qt::Key_Left);
        OperatedPage::key(Qt::Key_Return);
        QCOMPARE(page.takeTold(), QStringList({QStringLiteral("table.onItemClicked(r99a|r99b, 0)"),
                                               QStringLiteral("table.onItemDoubleClicked()")}));
        QCOMPARE(press(Qt::Key_Home), 0);
        QCOMPARE(page.firstRow(), 0);
        QVERIFY(!page.editor<QLineEdit>());
    }

    // Without rows keys scroll the page, as they do without a table.
    void anEmptyTableTakesNoKeysAndNoWheel()
    {
        TablePage page(0, 4);
        OperatedPage::key(Qt::Key_Tab);
        page.view->verticalScrollBar()->setValue(0);
        OperatedPage::key(Qt::Key_Down);
        QVERIFY(page.view->verticalScrollBar()->value() > 0);
        page.view->verticalScrollBar()->setValue(0);
        page.turnWheel(page.table->place().center(), -120);
        QVERIFY(page.view->verticalScrollBar()->value() > 0);
        QCOMPARE(page.takeTold(), QStringList());
    }

    void theWheelScrollsRows()
    {
        TablePage page;
        const QPointF middle = page.table->place().center();
        const int lines = QApplication::wheelScrollLines();
        page.turnWheel(middle, -120);
        QCOMPARE(page.firstRow(), lines);
        page.turnWheel(middle, -240);
        QCOMPARE(page.firstRow(), 3 * lines);
        page.turnWheel(middle, 120);
        QCOMPARE(page.firstRow(), 2 * lines);
        for (int part = 0; part < 120 / 8; ++part) // as a finely stepped wheel or a pad turns
            page.turnWheel(middle, -8);
        QCOMPARE(page.firstRow(), 3 * lines);
        page.turnWheel(middle, 120 * 1000);
        QCOMPARE(page.firstRow(), 0);
        page.turnWheel(middle, -120 * 1000);
        QCOMPARE(page.firstRow(), 95);
        page.turnWheel({390, 290}, 120); // over the page
        QCOMPARE(page.firstRow(), 95);
        QCOMPARE(page.takeTold(), QStringList());
        page.turnWheel(middle, 120 * 4, Qt::ControlModifier);
        QCOMPARE(page.firstRow(), 95);
        QCOMPARE(page.view->zoom(), 2.0);
    }

    void theWheelScrollsThePageWhereATableHasAllItsRowsInView()
    {
        TablePage page(5, 4);
        page.turnWheel({40, 40}, -120);
        QVERIFY(page.view->verticalScrollBar()->value() > 0);
        QCOMPARE(page.firstRow(), 0);
    }

    void aClickBesideTheThumbTurnsAPage()
    {
        TablePage page;
        const QPointF below(20 + 202 - 4, 20 + 24 * 6 - 3);
        const QPointF above(20 + 202 - 4, 20 + 24 + 3);
        page.click(below);
        QCOMPARE(page.firstRow(), 5);
        page.click(below);
        QCOMPARE(page.firstRow(), 10);
        QVERIFY(OperatedPage::set(*page.table, "FirstRow", 95));
        page.click(above);
        QCOMPARE(page.firstRow(), 90);
        QCOMPARE(page.takeTold(), QStringList());
        QCOMPARE(page.selectedRow(), -1);
    }

    void fewerRowsThanTheFirstInView()
    {
        TablePage page;
        QVERIFY(OperatedPage::set(*page.table, "FirstRow", 80));
        QVERIFY(OperatedPage::set(*page.table, "SelectedRow", 82));
        OperatedPage::settle();
        page.rows.takeAsked();
        QVERIFY(OperatedPage::set(*page.table, "RowCount", 12));
        OperatedPage::settle();
        QCOMPARE(page.table->firstShownRow(), 7);
        QCOMPARE(page.rows.takeAsked(), span(7, 12));
        QVERIFY(page.table->cellRect(82, 0).isEmpty());
        page.turnWheel(page.table->place().center(), 120);
        QCOMPARE(page.firstRow(), 7 - QApplication::wheelScrollLines());
        OperatedPage::key(Qt::Key_Tab);
        OperatedPage::key(Qt::Key_Space); // the selected row is gone
        QCOMPARE(page.takeTold(), QStringList());
        QVERIFY(OperatedPage::set(*page.table, "RowCount", 2));
        OperatedPage::settle();
        QCOMPARE(page.table->firstShownRow(), 0);
        page.click(page.cell(1, 0));
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("table.onItemClicked(r1a|r1b, 0)")));
    }

    void whatAProgramSetsIsNotTold()
    {
        TablePage page;
        for (const char* property : {"SelectedRow", "FirstRow", "RowCount"}) {
            QVERIFY(OperatedPage::set(*page.table, property, 7));
            QVERIFY(OperatedPage::set(*page.table, property, 7));
        }
        page.table->invalidateRows();
        OperatedPage::settle();
        QCOMPARE(page.takeTold(), QStringList());
    }

    void switchedOffATableOnlyShows()
    {
        TablePage page;
        QVERIFY(OperatedPage::set(*page.table, "Enabled", false));
        page.table->invalidateRows();
        page.rows.takeAsked();
        OperatedPage::settle();
        QCOMPARE(page.rows.takeAsked(), span(0, 5)); // it still shows its rows
        page.doubleClick(page.cell(1, 1));
        page.turnWheel(page.table->place().center(), -120);
        OperatedPage::key(Qt::Key_Tab);
        QVERIFY(!page.view->focusedShape());
        QCOMPARE(page.takeTold(), QStringList());
        QCOMPARE(page.firstRow(), 0);
        QCOMPARE(page.selectedRow(), -1);
    }

    void theSelectedRowCanBeToldWithoutItsColour()
    {
        Table table;
        QVERIFY(OperatedPage::set(table, "RowCount", 4));
        const QImage none = drawn(table, 1, nullptr, 0);
        QVERIFY(OperatedPage::set(table, "SelectedRow", 2));
        const QImage third = drawn(table, 1, nullptr, 0);
        QVERIFY(OperatedPage::set(table, "SelectedRow", 3));
        QVERIFY(greyDifference(none, third) > 1);
        QVERIFY(greyDifference(drawn(table, 1, nullptr, 0), third) > 1);
    }

    void columnsBeyondTheMostAreLeftOut()
    {
        Table table;
        QStringList headings;
        for (int column = 0; column < 5000; ++column)
            headings.append(QString::number(column));
        QVERIFY(OperatedPage::set(table, "Columns", headings));
        QCOMPARE(table.columnCount(), Table::mostColumns);
        QVERIFY(OperatedPage::set(table, "Columns", QStringList()));
        QCOMPARE(table.columnCount(), 1);
    }
};

QTEST_MAIN(tst_Table)
#include "tst_table.moc"
