#include "tests/support/offscreenwarnings.h"
#include "tests/support/operatedalarms.h"
#include "tests/support/temporaryfiles.h"

#include <QFileDialog>
#include <QLabel>
#include <QMessageBox>

using Column = AlarmListOrder::Column;
using State = ScadaAlarm::State;

Q_DECLARE_METATYPE(ObjectKey)

class tst_AlarmListWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        dropOffscreenWarnings();
        qRegisterMetaType<ObjectKey>();
    }

    void theKeyAcknowledgesWhatIsSelected()
    {
        OperatedAlarms desk;
        const quint64 a = desk.raise(3, QStringLiteral("a"));
        const quint64 b = desk.raise(2, QStringLiteral("b"));
        const quint64 c = desk.raise(1, QStringLiteral("c"));
        desk.settle();
        QVERIFY(!desk.isEnabled("acknowledge"));
        desk.click(a);
        desk.click(c, Qt::ControlModifier);
        QTest::keyClick(desk.table, Qt::Key_F6);
        QCOMPARE(desk.stateOf(a), State::Acknowledged);
        QCOMPARE(desk.stateOf(b), State::Unacknowledged);
        QCOMPARE(desk.stateOf(c), State::Acknowledged);
        QCOMPARE(desk.manager().alarm(a).acknowledgedBy, QStringLiteral("kim"));
        QCOMPARE(desk.ids(), QList<quint64>({b, a, c})); // at once
        QCOMPARE(desk.table->selectionModel()->selectedRows().size(), 2);
        QVERIFY(!desk.isEnabled("acknowledge"));
    }

    void acknowledgingAllLeavesWhatIsNotShown()
    {
        OperatedAlarms desk;
        const quint64 shown = desk.raise(3, QStringLiteral("pump hot"));
        const quint64 hidden = desk.raise(2, QStringLiteral("tank full"));
        desk.settle();
        QTest::keyClick(desk.table, Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("PUMP"));
        QCOMPARE(desk.ids(), QList<quint64>({shown}));
        desk.press("acknowledgeAll");
        QCOMPARE(desk.stateOf(shown), State::Acknowledged);
        QCOMPARE(desk.stateOf(hidden), State::Unacknowledged);
        QVERIFY(!desk.isEnabled("acknowledgeAll"));
    }

    void thePageInFrontIsAcknowledged()
    {
        OperatedAlarms desk;
        const quint64 there = desk.raise(3, QStringLiteral("a"));
        const quint64 elsewhere = desk.raise(2, QStringLiteral("b"));
        QVERIFY(!desk.isEnabled("acknowledgePage"));
        PageOfObjects page;
        page.objects = {desk.objectOf(there)};
        desk.window.setPage(&page);
        desk.press("acknowledgePage");
        QCOMPARE(desk.stateOf(there), State::Acknowledged);
        QCOMPARE(desk.stateOf(elsewhere), State::Unacknowledged);
        desk.window.setPage(nullptr);
        QVERIFY(!desk.isEnabled("acknowledgePage"));
    }

    void shelvingAsksWhyAndHowLong()
    {
        OperatedAlarms desk;
        const quint64 id = desk.raise(3, QStringLiteral("a"));
        const quint64 other = desk.raise(2, QStringLiteral("b"));
        desk.settle();
        desk.click(id);
        desk.press("shelve");
        ShelveDialog* dialog = desk.giveReason(QStringLiteral("cleaned"));
        QVERIFY(dialog);
        QCOMPARE(dialog->findChild<QLabel*>(QStringLiteral("whatLabel"))->text(), QStringLiteral("P1: a"));
        desk.click(other); // meanwhile
        QTest::keyClick(dialog, Qt::Key_Return);
        QCOMPARE(desk.stateOf(id), State::Shelved);
        QCOMPARE(desk.stateOf(other), State::Unacknowledged);
        const AlarmManager::Shelf shelf = desk.manager().shelf(id);
        QCOMPARE(shelf.until, desk.now.addSecs(3600));
        QCOMPARE(shelf.user, QStringLiteral("kim"));
        QCOMPARE(shelf.reason, QStringLiteral("cleaned"));
        QCOMPARE(desk.ids(), QList<quint64>({other}));
    }

    void aDialogLeftShelvesNothing()
    {
        OperatedAlarms desk;
        const quint64 id = desk.raise(3, QStringLiteral("a"));
        desk.settle();
        desk.click(id);
        QTest::keyClick(desk.table, Qt::Key_F7);
        ShelveDialog* dialog = desk.giveReason(QStringLiteral("cleaned"));
        QVERIFY(dialog);
        QTest::keyClick(dialog, Qt::Key_Escape);
        QCOMPARE(desk.stateOf(id), State::Unacknowledged);
    }

    void shelvingEnds()
    {
        OperatedAlarms desk;
        const quint64 id = desk.raise(3, QStringLiteral("a"));
        desk.manager().shelve(id, desk.now.addSecs(60), {}, QStringLiteral("why"));
        desk.choose("states", QStringLiteral("shelved"));
        QCOMPARE(desk.ids(), QList<quint64>({id}));
        desk.click(id);
        QVERIFY(!desk.isEnabled("acknowledge"));
        desk.press("unshelve");
        QCOMPARE(desk.stateOf(id), State::Unacknowledged);
        QVERIFY(!desk.isEnabled("unshelve"));
    }

    void objectsGoOutOfServiceAndComeBack()
    {
        OperatedAlarms desk;
        const quint64 id = desk.raise(3, QStringLiteral("a"));
        desk.settle();
        desk.click(id);
        QVERIFY(!desk.isEnabled("putBack"));
        desk.press("takeOut");
        ShelveDialog* dialog = desk.giveReason(QStringLiteral("rebuilt"));
        QVERIFY(dialog);
        QTest::keyClick(dialog, Qt::Key_Return);
        QCOMPARE(desk.stateOf(id), State::OutOfService);
        QCOMPARE(desk.manager().exclusion(desk.objectOf(id)).serviceReason, QStringLiteral("rebuilt"));
        QCOMPARE(desk.manager().exclusion(desk.objectOf(id)).serviceUser, QStringLiteral("kim"));
        QCOMPARE(desk.ids(), QList<quint64>());
        desk.choose("states", QStringLiteral("suppressed, out of service"));
        desk.click(id);
        QVERIFY(!desk.isEnabled("takeOut"));
        desk.press("putBack");
        QCOMPARE(desk.stateOf(id), State::Unacknowledged);
    }

    void nothingSelectedOffersNothing()
    {
        OperatedAlarms desk;
        desk.raise(3, QStringLiteral("a"));
        desk.settle();
        for (const char* action : {"acknowledge", "shelve", "unshelve", "takeOut", "putBack", "goToPage"})
            QVERIFY2(!desk.isEnabled(action), action);
    }

    void goesToThePageOfTheAlarm()
    {
        OperatedAlarms desk;
        const quint64 id = desk.raise(3, QStringLiteral("a"));
        desk.settle();
        QSignalSpy requested(&desk.window, &AlarmListWindow::pageRequested);
        desk.click(id);
        desk.press("goToPage");
        QCOMPARE(requested.size(), 1);
        QVERIFY(requested[0][0].value<ObjectKey>() == desk.objectOf(id));
        QTest::keyClick(desk.table, Qt::Key_Return);
        QCOMPARE(requested.size(), 2);
    }

    void theKeyboardSelectsToo()
    {
        OperatedAlarms desk;
        const quint64 id = desk.raise(3, QStringLiteral("a"));
        desk.settle();
        desk.table->selectionModel()->setCurrentIndex(desk.table->model()->index(0, 0),
                                                      QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
        QVERIFY(desk.isEnabled("goToPage"));
        desk.part<QAction>("columns")->trigger();
        OperatedAlarms::clickIn(desk.table->findChild<QMenu*>(QStringLiteral("columnsMenu")), QStringLiteral("Cause"));
        QVERIFY(desk.table->isColumnHidden(Column::Cause));
        QTest::keyClick(desk.table, Qt::Key_F6);
        QCOMPARE(desk.stateOf(id), State::Acknowledged);
    }

    void silenceIsAskedFor()
    {
        OperatedAlarms desk;
        QSignalSpy requested(&desk.window, &AlarmListWindow::silenceRequested);
        QTest::keyClick(desk.table, Qt::Key_F9);
        QCOMPARE(requested.size(), 1);
    }

    void keysWorkWithoutTheToolBar()
    {
        OperatedAlarms desk;
        const quint64 id = desk.raise(3, QStringLiteral("a"));
        desk.settle();
        desk.window.applyFilter({});
        QVERIFY(!desk.part<QWidget>("alarmTools")->isVisible());
        desk.click(id);
        QTest::keyClick(desk.table, Qt::Key_F6);
        QCOMPARE(desk.stateOf(id), State::Acknowledged);
        QTest::keyClick(desk.table, Qt::Key_F, Qt::ControlModifier);
        QVERIFY(desk.part<QWidget>("alarmTools")->isVisible());
    }

    void choosingSeveritiesIsKept()
    {
        OperatedAlarms desk;
        const quint64 high = desk.raise(9, QStringLiteral("a"));
        const quint64 low = desk.raise(1, QStringLiteral("b"));
        desk.settle();
        QSignalSpy settings(&desk.window, &AlarmListWindow::settingsChanged);
        desk.choose("severities", QStringLiteral("9"));
        QCOMPARE(desk.ids(), QList<quint64>({low}));
        QCOMPARE(desk.window.displayFilter().severities, QList<int>({0, 1, 2, 3, 4, 5, 6, 7, 8}));
        QCOMPARE(settings.size(), 1);
        QVERIFY(settings[0][0].toString().startsWith(QStringLiteral("{\"Severity\":[0,1,2,3,4,5,6,7,8],\"Aor\":[],")));
        desk.choose("severities", QStringLiteral("All"));
        QCOMPARE(desk.ids(), QList<quint64>({high, low}));
        QCOMPARE(desk.window.displayFilter().severities, QList<int>());
    }

    void choosingAreasIsKept()
    {
        OperatedAlarms desk;
        const quint64 south = desk.raise(9, QStringLiteral("a"), QStringLiteral("South"));
        const quint64 west = desk.raise(1, QStringLiteral("b"), QStringLiteral("West")); // none that is stated
        desk.settle();
        AlarmDisplayFilterInfo filter = desk.window.displayFilter();
        filter.areas = {3};
        desk.window.applyFilter(filter);
        QCOMPARE(desk.ids(), QList<quint64>({west}));
        QCOMPARE(desk.part<QToolButton>("areas")->text(), QStringLiteral("Ar&eas: West"));
        desk.choose("areas", QStringLiteral("South"));
        QCOMPARE(desk.ids(), QList<quint64>({south, west}));
        QCOMPARE(desk.window.displayFilter().areas, QList<int>({2, 3}));
        desk.choose("areas", QStringLiteral("South"));
        desk.choose("areas", QStringLiteral("West"));
        QCOMPARE(desk.window.displayFilter().areas, QList<int>()); // none is all
        QCOMPARE(desk.part<QToolButton>("areas")->text(), QStringLiteral("Ar&eas: all"));
    }

    void theUsersAreasLimitTheListIfItIsSubjectToThem()
    {
        OperatedAlarms desk;
        const quint64 north = desk.raise(9, QStringLiteral("a"), QStringLiteral("North"));
        const quint64 south = desk.raise(1, QStringLiteral("b"), QStringLiteral("South"));
        desk.settle();
        QCOMPARE(desk.ids(), QList<quint64>({north, south})); // nobody said whose areas
        desk.window.setUserAreas({QStringLiteral("South")});
        QCOMPARE(desk.ids(), QList<quint64>({south}));
        desk.choose("areas", QStringLiteral("Only the user's own"));
        QCOMPARE(desk.ids(), QList<quint64>({north, south}));
        QVERIFY(!desk.window.displayFilter().subjectToUserAor);
    }

    void displayItemsPlaceColumns()
    {
        OperatedAlarms desk;
        QSignalSpy settings(&desk.window, &AlarmListWindow::settingsChanged);
        AlarmDisplayFilterInfo filter;
        filter.displayItems = {{Column::Message, 1}, {Column::Raised, 2}, {Column::Severity, 0}, {Column::Limit, 0}};
        desk.window.applyFilter(filter);
        const QHeaderView* header = desk.table->horizontalHeader();
        const QList<int> expected{Column::Message, Column::Raised, Column::State, Column::Area, Column::Tag};
        QList<int> shown;
        for (int place = 0; place < header->count() && shown.size() < expected.size(); ++place) {
            if (!header->isSectionHidden(header->logicalIndex(place)))
                shown.append(header->logicalIndex(place));
        }
        QCOMPARE(shown, expected);
        QVERIFY(desk.table->isColumnHidden(Column::Severity));
        QVERIFY(desk.table->isColumnHidden(Column::Limit));
        QCOMPARE(desk.window.displayFilter().displayItems, (QMap<int, int>{{0, 0},
                                                                           {1, 2},
                                                                           {2, 3},
                                                                           {3, 4},
                                                                           {4, 5},
                                                                           {5, 1},
                                                                           {6, 6},
                                                                           {7, 0},
                                                                           {8, 7},
                                                                           {9, 8},
                                                                           {10, 9},
                                                                           {11, 10},
                                                                           {12, 11},
                                                                           {13, 12}}));
        QCOMPARE(settings.size(), 0); // nobody chose anything
    }

    void whatIsSetComesBack()
    {
        OperatedAlarms desk;
        AlarmDisplayFilterInfo filter;
        filter.severities = {3, 9};
        filter.areas = {0, 2};
        filter.subjectToUserAor = false;
        filter.showToolBar = true;
        for (int column = 0; column < Column::ColumnCount; ++column)
            filter.displayItems.insert(column, column == 4 ? 0 : (column < 4 ? 13 - column : 14 - column));
        desk.window.applyFilter(filter);
        QVERIFY(desk.window.displayFilter().isEqual(filter));
    }

    void aListWithoutColumnsShowsAll()
    {
        OperatedAlarms desk;
        AlarmDisplayFilterInfo filter;
        for (int column = 0; column < Column::ColumnCount; ++column)
            filter.displayItems.insert(column, 0);
        desk.window.applyFilter(filter);
        QVERIFY(!desk.table->isColumnHidden(Column::Message));
    }

    void columnsAreHiddenAndMovedByTheUser()
    {
        OperatedAlarms desk;
        QSignalSpy settings(&desk.window, &AlarmListWindow::settingsChanged);
        OperatedAlarms::clickIn(desk.openColumnsMenu(), QStringLiteral("Limit"));
        QVERIFY(desk.table->isColumnHidden(Column::Limit));
        QCOMPARE(settings.size(), 1);
        desk.table->horizontalHeader()->moveSection(5, 0);
        QCOMPARE(settings.size(), 2);
        QCOMPARE(desk.window.displayFilter().displayItems.value(Column::Message), 1);
        QCOMPARE(desk.window.displayFilter().displayItems.value(Column::Limit), 0);
    }

    void oneColumnStays()
    {
        OperatedAlarms desk;
        AlarmDisplayFilterInfo filter;
        for (int column = 0; column < Column::ColumnCount; ++column)
            filter.displayItems.insert(column, column == Column::Tag ? 1 : 0);
        desk.window.applyFilter(filter);
        for (const QAction* action : desk.openColumnsMenu()->actions()) {
            if (action->text() == QStringLiteral("Tag"))
                QVERIFY(!action->isEnabled());
        }
    }

    void aClickOnATitleSorts()
    {
        OperatedAlarms desk;
        const quint64 high = desk.raise(9, QStringLiteral("a"));
        const quint64 low = desk.raise(1, QStringLiteral("b"));
        desk.settle();
        QCOMPARE(desk.ids(), QList<quint64>({high, low}));
        QHeaderView* header = desk.table->horizontalHeader();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, QPoint(header->sectionViewportPosition(0) + 20, 8));
        QCOMPARE(desk.ids(), QList<quint64>({low, high}));
        OperatedAlarms::clickIn(desk.openColumnsMenu(), QStringLiteral("Usual order"));
        QCOMPARE(desk.ids(), QList<quint64>({high, low}));
    }

    void theToolBarIsHiddenByTheUser()
    {
        OperatedAlarms desk;
        QSignalSpy settings(&desk.window, &AlarmListWindow::settingsChanged);
        desk.part<QAction>("showTools")->trigger();
        QVERIFY(!desk.part<QWidget>("alarmTools")->isVisible());
        QVERIFY(!desk.window.displayFilter().showToolBar);
        QCOMPARE(settings.size(), 1);
    }

    void theFootCountsAndNamesTheFirst()
    {
        OperatedAlarms desk;
        const quint64 first = desk.raise(9, QStringLiteral("a"), QStringLiteral("South"));
        desk.passSeconds(1);
        desk.raise(1, QStringLiteral("b"), QStringLiteral("North"));
        desk.manager().shelve(desk.raise(1, QStringLiteral("c")), desk.now.addSecs(9), {}, QStringLiteral("why"));
        desk.manager().acknowledge(first, {});
        desk.settle();
        QCOMPARE(desk.part<QLabel>("alarmCounts")->text(),
                 QStringLiteral("unacknowledged: 1, acknowledged: 1, shelved: 1"));
        QCOMPARE(desk.part<QLabel>("alarmFirstOut")->text(), QStringLiteral("first: a at 2026-03-01 08:00:00.000"));
        desk.choose("areas", QStringLiteral("no area"));
        QCOMPARE(desk.part<QLabel>("alarmFirstOut")->text(), QStringLiteral("first: a at 2026-03-01 08:00:00.000"));
        desk.choose("areas", QStringLiteral("South"));
        QCOMPARE(desk.part<QLabel>("alarmFirstOut")->text(), QStringLiteral("first: b at 2026-03-01 08:00:01.000"));
        desk.window.applyFilter({});
        desk.window.setUserAreas({QStringLiteral("North")});
        QCOMPARE(desk.part<QLabel>("alarmFirstOut")->text(), QStringLiteral("first: b at 2026-03-01 08:00:01.000"));
        QTest::keyClick(desk.table, Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("nothing"));
        QCOMPARE(desk.part<QLabel>("alarmCounts")->text(), QStringLiteral("no alarm, 3 hidden by the filter"));
    }

    // Its alarms come hidden: it must not be forgotten.
    void anObjectOutOfServiceWithoutAnAlarmIsPutBack()
    {
        OperatedAlarms desk;
        QVERIFY(!desk.isEnabled("putBack"));
        const ObjectKey object{Korvane::ScadaObjectType::AnalogPoint, 200077};
        QVERIFY(desk.manager().setOutOfService(object, true, QStringLiteral("kim"), QStringLiteral("a & b")));
        QCOMPARE(desk.part<QLabel>("alarmCounts")->text(),
                 QStringLiteral("no alarm, 1 object(s) suppressed or out of service"));
        QVERIFY(desk.isEnabled("putBack"));
        QString entry;
        QTimer::singleShot(0, &desk.window, [&] {
            auto* menu = desk.part<QMenu>("outOfService");
            entry = menu->actions().constFirst()->text();
            OperatedAlarms::clickIn(menu, entry);
        });
        desk.press("putBack");
        QVERIFY2(entry.endsWith(QStringLiteral(" - a && b (kim)")), qPrintable(entry));
        QVERIFY(!desk.manager().exclusion(object).isOutOfService);
        QVERIFY(!desk.isEnabled("putBack"));
        QCOMPARE(desk.part<QLabel>("alarmCounts")->text(), QStringLiteral("no alarm"));
    }

    void namesOfThePlantAreNoMarkup()
    {
        OperatedAlarms desk;
        desk.raise(9, QStringLiteral("<b>full</b>"), QStringLiteral("R&D"));
        desk.settle();
        for (const char* label : {"alarmCounts", "alarmFirstOut", "logStatus"})
            QCOMPARE(desk.part<QLabel>(label)->textFormat(), Qt::PlainText);
        desk.choose("areas", QStringLiteral("R&&D"));
    }

    void tabLeavesTheTable()
    {
        OperatedAlarms desk;
        desk.raise(9, QStringLiteral("a"));
        desk.settle();
        QVERIFY(desk.table->hasFocus());
        QTest::keyClick(desk.table, Qt::Key_Tab);
        QVERIFY(!desk.table->hasFocus());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
        QVERIFY(desk.table->hasFocus());
        for (const char* before : {"search", "states", "areas", "severities"}) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
            QCOMPARE(QApplication::focusWidget()->objectName(), QString::fromLatin1(before));
        }
        QCOMPARE(desk.table->accessibleName(), QStringLiteral("Alarms"));
    }

    void exportsWhatIsShown()
    {
        OperatedAlarms desk;
        desk.raise(9, QStringLiteral("=a,b"));
        desk.raise(1, QStringLiteral("c"));
        desk.settle();
        AlarmDisplayFilterInfo filter;
        filter.showToolBar = true;
        filter.severities = {9};
        for (int column = 0; column < Column::ColumnCount; ++column)
            filter.displayItems.insert(column, 0);
        filter.displayItems[Column::Message] = 1;
        filter.displayItems[Column::Raised] = 2;
        desk.window.applyFilter(filter);
        const TemporaryFiles files;
        const QString fileName = files.path(QStringLiteral("list.csv"));
        QTest::keyClick(desk.table, Qt::Key_E, Qt::ControlModifier);
        auto* dialog = desk.window.findChild<QFileDialog*>();
        QVERIFY(dialog);
        Q_EMIT dialog->fileSelected(fileName);
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), QByteArray("\xef\xbb\xbfMessage,Raised\r\n\"'=a,b\",2026-03-01T08:00:00.000Z\r\n"));
    }

    void anExportThatFailsIsTold()
    {
        OperatedAlarms desk;
        const TemporaryFiles files;
        desk.press("export");
        auto* dialog = desk.window.findChild<QFileDialog*>();
        QVERIFY(dialog);
        Q_EMIT dialog->fileSelected(files.path(QStringLiteral("nowhere/list.csv")));
        auto* box = desk.window.findChild<QMessageBox*>();
        QVERIFY(box);
        QVERIFY2(box->text().contains(QStringLiteral("cannot be written")), qPrintable(box->text()));
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QTest::keyClick(box, Qt::Key_Return);
    }
};

int main(int argc, char** argv)
{
    qputenv("TZ", "UTC");
    QTEST_SET_MAIN_SOURCE_PATH
    QApplication application(argc, argv);
    tst_AlarmListWindow test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_alarmlistwindow.moc"
