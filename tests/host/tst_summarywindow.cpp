#include "host/summary/summarycentralwidget.h"
#include "host/summary/summarywindow.h"
#include "platform/data/valuemarks.h"
#include "platform/utility/settingpath.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/ownsettings.h"
#include "tests/support/summaryplant.h"
#include "tests/support/temporaryfiles.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QFile>
#include <QFileDialog>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QScrollBar>
#include <QSettings>
#include <QSignalSpy>
#include <QTableView>
#include <QToolBar>
#include <QtTest>

using Column = SummaryColumns::Column;

Q_DECLARE_METATYPE(ObjectKey)

namespace {

QString text(const char* latin)
{
    return QString::fromLatin1(latin);
}

QString settingsFile()
{
    return Korvane::getSettingPath(QString(), true, true);
}

/// The window in front of a user.
class Desk
{
public:
    explicit Desk(const SummaryPlant& plant) : window(plant.database, QTimeZone::utc())
    {
        window.show();
        QApplication::setActiveWindow(&window);
        table->setFocus();
        settle();
    }

    template <typename T>
    T* part(const char* name) const
    {
        T* found = window.findChild<T*>(QString::fromLatin1(name));
        if (!found)
            qFatal("no %s", name);
        return found;
    }
    SummaryModel* model() const { return static_cast<SummaryModel*>(table->model()); }
    void settle() const
    {
        while (model()->isArranging())
            QCoreApplication::processEvents();
    }
    void sortByClickOn(int column) const
    {
        QHeaderView* header = table->horizontalHeader();
        const QPoint place(header->sectionViewportPosition(column) + header->sectionSize(column) / 2,
                           header->height() / 2);
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, place);
        settle();
    }
    QPoint placeOf(int row) const { return table->visualRect(model()->index(row, 0)).center(); }
    void click(int row, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::mouseClick(table->viewport(), Qt::LeftButton, modifiers, placeOf(row));
    }
    void press(const char* action) const
    {
        auto* bar = window.findChild<QToolBar*>();
        QTest::mouseClick(bar->widgetForAction(part<QAction>(action)), Qt::LeftButton);
    }
    QString names() const
    {
        QStringList names;
        for (int row = 0; row < model()->rowCount(); ++row)
            names.append(model()->index(row, Column::Name).data().toString());
        return names.join(QLatin1Char(' '));
    }
    void change(SummaryPlant& plant, ObjectKey point, double value)
    {
        plant.sample(point, value);
        window.noteChanged({point});
        model()->applyChanges();
    }
    /// Writes what is shown and gives the lines.
    QStringList exported(const QString& fileName) const
    {
        press("export");
        auto* dialog = window.findChild<QFileDialog*>();
        if (!dialog)
            qFatal("no dialog");
        Q_EMIT dialog->fileSelected(fileName);
        dialog->close();
        if (!QTest::qWaitFor([&] { return QFile::exists(fileName); }))
            qFatal("no file");
        QFile file(fileName);
        if (!file.open(QIODevice::ReadOnly))
            qFatal("no file");
        const QByteArray bytes = file.readAll();
        QStringList lines = QString::fromUtf8(bytes).split(text("\r\n"));
        if (!bytes.startsWith("\xef\xbb\xbf") || !lines.takeLast().isEmpty())
            qFatal("not the file that was expected");
        return lines;
    }

    SummaryWindow window;
    QTableView* table = window.findChild<QTableView*>(QStringLiteral("summaryTable"));
};

} // namespace

class tst_SummaryWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        dropOffscreenWarnings();
        qRegisterMetaType<ObjectKey>();
    }
    void init() { QFile::remove(settingsFile()); }

    void geometryAndColumnsComeBack()
    {
        SummaryPlant plant;
        plant.addWithValues({1, 3, 2});
        const QRect placed(40, 50, 640, 320);
        {
            Desk desk(plant);
            desk.window.setGeometry(placed);
            QHeaderView* header = desk.table->horizontalHeader();
            header->moveSection(header->visualIndex(Column::Marks), 0);
            header->resizeSection(Column::Name, 77);
            desk.table->hideColumn(Column::Description);
            desk.table->showColumn(Column::Unit);
            desk.table->sortByColumn(Column::Value, Qt::DescendingOrder);
        }
        const Desk desk(plant);
        QCOMPARE(desk.window.geometry(), placed);
        const QHeaderView* header = desk.table->horizontalHeader();
        QCOMPARE(header->logicalIndex(0), int(Column::Marks));
        QCOMPARE(header->sectionSize(Column::Name), 77);
        QVERIFY(header->isSectionHidden(Column::Description));
        QVERIFY(!header->isSectionHidden(Column::Unit));
        QCOMPARE(desk.names(), text("A1 A2 A0"));
    }

    void aFirstStartHidesTheUnitAlone()
    {
        SummaryPlant plant;
        const Desk desk(plant);
        for (int column = 0; column < Column::ColumnCount; ++column)
            QCOMPARE(desk.table->isColumnHidden(column), column == Column::Unit);
    }

    void damagedColumnsLeaveTheDefault()
    {
        QSettings(settingsFile(), QSettings::IniFormat)
            .setValue(text("ScadaSummaryWidget/Columns"), QByteArray("none"));
        SummaryPlant plant;
        const Desk desk(plant);
        QCOMPARE(desk.table->horizontalHeader()->count(), int(Column::ColumnCount));
        QVERIFY(!desk.table->isColumnHidden(Column::Name));
    }

    void oneColumnStays()
    {
        SummaryPlant plant;
        {
            const Desk desk(plant);
            for (int column = 0; column < Column::ColumnCount; ++column)
                desk.table->hideColumn(column);
        }
        const Desk desk(plant);
        QVERIFY(!desk.table->isColumnHidden(Column::Name));
    }

    void typingFilters()
    {
        SummaryPlant plant;
        plant.addWithValues({1, 2, 3});
        const Desk desk(plant);
        QTest::keyClick(desk.table, Qt::Key_F, Qt::ControlModifier);
        QTest::keyClicks(QApplication::focusWidget(), text("a1"));
        desk.settle();
        QCOMPARE(desk.names(), text("A1"));
        QCOMPARE(desk.part<QLabel>("summaryStatus")->text(), text("1 of 3 point(s)"));
    }

    void choicesFilter()
    {
        SummaryPlant plant;
        const char* const stations[] = {"South", "North", ""};
        for (int number = 0; number < 3; ++number) {
            RuntimeDatabase::Object object =
                SummaryPlant::object(SummaryPlant::analog(number), QStringLiteral("A%1").arg(number));
            object.station = text(stations[number]);
            plant.add(object);
            plant.sample(SummaryPlant::analog(number), 1, number == 0 ? ValueMark::Stale : 0);
        }
        const Desk desk(plant);
        auto* choice = desk.part<QComboBox>("stations");
        QCOMPARE(choice->count(), 4);
        QCOMPARE(choice->itemText(0), text("All stations"));
        QCOMPARE(choice->itemText(1), text("No station"));
        QCOMPARE(choice->itemText(2), text("North"));
        choice->setFocus();
        QTest::keyClick(choice, Qt::Key_Down);
        desk.settle();
        QCOMPARE(desk.names(), text("A2"));
        QTest::keyClick(choice, Qt::Key_Home);
        desk.settle();
        QCOMPARE(desk.names(), text("A0 A1 A2"));
        QTest::keyClick(desk.part<QCheckBox>("unreliableOnly"), Qt::Key_Space);
        desk.settle();
        QCOMPARE(desk.names(), text("A0"));
    }

    void aClickOnATitleSorts()
    {
        SummaryPlant plant;
        plant.addWithValues({10, 9, 100});
        const Desk desk(plant);
        desk.table->hideColumn(Column::Description); // within reach of the mouse
        desk.table->hideColumn(Column::Station);
        desk.table->hideColumn(Column::Area);
        desk.sortByClickOn(Column::Value);
        QCOMPARE(desk.names(), text("A1 A0 A2"));
        desk.sortByClickOn(Column::Value);
        QCOMPARE(desk.names(), text("A2 A0 A1"));
    }

    void theSelectedRowStaysWhereItIs()
    {
        SummaryPlant plant;
        std::vector<double> values(500);
        for (std::size_t number = 0; number < values.size(); ++number)
            values[number] = double(number);
        plant.addWithValues(values);
        Desk desk(plant);
        desk.table->sortByColumn(Column::Value, Qt::AscendingOrder);
        desk.settle();
        desk.table->scrollTo(desk.model()->index(203, 0), QTableView::PositionAtTop);
        desk.click(205);
        desk.change(plant, SummaryPlant::analog(205), 1000);
        QCOMPARE(desk.table->currentIndex().row(), 499);
        QVERIFY(desk.table->viewport()->rect().contains(desk.placeOf(499)));
        desk.change(plant, SummaryPlant::analog(205), 100.5);
        QCOMPARE(desk.table->currentIndex().row(), 101);
        QVERIFY(desk.table->viewport()->rect().contains(desk.placeOf(101)));
        for (int number = 0; number < 50; ++number) // around a row that does not change
            desk.change(plant, SummaryPlant::analog(number), 2000);
        QCOMPARE(desk.table->currentIndex().row(), 51);
        QVERIFY(desk.table->viewport()->rect().contains(desk.placeOf(51)));
        const int later = desk.placeOf(51).y();
        desk.change(plant, SummaryPlant::analog(400), 3);
        QCOMPARE(desk.placeOf(52).y(), later);
        QCOMPARE(desk.table->selectionModel()->selectedRows().size(), 1);
    }

    void whatTheUserScrolledToStaysWithoutTheSelectedRow()
    {
        SummaryPlant plant;
        plant.addWithValues(std::vector<double>(500, 1));
        Desk desk(plant);
        desk.table->sortByColumn(Column::Value, Qt::AscendingOrder);
        desk.settle();
        desk.click(2);
        desk.table->verticalScrollBar()->setValue(300);
        desk.change(plant, SummaryPlant::analog(2), 9);
        QCOMPARE(desk.table->currentIndex().row(), 499);
        QCOMPARE(desk.table->verticalScrollBar()->value(), 300);
    }

    void aLargeSelectionHoldsTheOrder()
    {
        SummaryPlant plant;
        plant.addWithValues(std::vector<double>(2500, 1));
        Desk desk(plant);
        desk.table->sortByColumn(Column::Value, Qt::AscendingOrder);
        desk.settle();
        desk.click(0);
        desk.table->verticalScrollBar()->setValue(1500);
        desk.click(1500, Qt::ShiftModifier);
        QCOMPARE(desk.table->selectionModel()->selectedRows().size(), 1501);
        desk.change(plant, SummaryPlant::analog(0), 9);
        QCOMPARE(desk.model()->point(0), SummaryPlant::analog(0));
        QVERIFY(desk.part<QLabel>("summaryStatus")->text().contains(text("stay in place")));
        QTest::keyClick(desk.table, Qt::Key_F5);
        desk.settle();
        QCOMPARE(desk.model()->point(2499), SummaryPlant::analog(0));
        QCOMPARE(desk.table->selectionModel()->selectedRows().size(), 1);
        QCOMPARE(desk.model()->point(desk.table->currentIndex().row()), SummaryPlant::analog(1500));
        QVERIFY(!desk.model()->isOrderHeld());
    }

    void keyAndMouseActivate()
    {
        SummaryPlant plant;
        plant.addWithValues({1, 2, 3});
        const Desk desk(plant);
        QSignalSpy activated(&desk.window, &SummaryWindow::objectActivated);
        desk.click(1);
        QCOMPARE(activated.size(), 0);
        QTest::keyClick(desk.table, Qt::Key_Return);
        QCOMPARE(activated.size(), 1);
        QCOMPARE(activated[0][0].value<ObjectKey>(), SummaryPlant::analog(1));
        desk.click(2);
        QTest::mouseDClick(desk.table->viewport(), Qt::LeftButton, {}, desk.placeOf(2));
        QCOMPARE(activated.size(), 2);
        QCOMPARE(activated[1][0].value<ObjectKey>(), SummaryPlant::analog(2));
        desk.press("goToPage");
        QCOMPARE(activated.size(), 3);
    }

    void copiesWhatIsSelectedAsItIsShown()
    {
        SummaryPlant plant;
        plant.addWithValues({3, 2, 1});
        const Desk desk(plant);
        for (int column = 0; column < Column::ColumnCount; ++column)
            desk.table->setColumnHidden(column, column != Column::Name && column != Column::Value);
        desk.table->horizontalHeader()->moveSection(desk.table->horizontalHeader()->visualIndex(Column::Value), 0);
        desk.table->sortByColumn(Column::Value, Qt::AscendingOrder);
        desk.settle();
        desk.click(2);
        desk.click(0, Qt::ControlModifier);
        QTest::keyClick(desk.table, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(QApplication::clipboard()->text(), text("1\tA2\n3\tA0\n"));
    }

    void tooManyRowsAreNotCopied()
    {
        SummaryPlant plant;
        plant.addWithValues(std::vector<double>(2001, 1));
        const Desk desk(plant);
        QApplication::clipboard()->setText(text("before"));
        QTest::keyClick(desk.table, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(desk.table, Qt::Key_C, Qt::ControlModifier);
        auto* box = desk.window.findChild<QMessageBox*>();
        QVERIFY(box);
        box->close();
        QCOMPARE(QApplication::clipboard()->text(), text("before"));
    }

    void exportsWhatIsShown()
    {
        SummaryPlant plant;
        const char* const names[] = {"P1", "P2", "Q3", "-P4"};
        for (int number = 0; number < 4; ++number) {
            RuntimeDatabase::Object object = SummaryPlant::object(SummaryPlant::analog(number), text(names[number]));
            object.description = text("Flow, \"main\"");
            object.unit = text("m/s");
            object.decimals = 1;
            plant.add(object);
            plant.sample(SummaryPlant::analog(number), -0.25 * number);
        }
        const Desk desk(plant);
        for (int column = 3; column < Column::ColumnCount; ++column)
            desk.table->setColumnHidden(column, column != Column::Value && column != Column::Time);
        desk.table->hideColumn(Column::Station);
        desk.table->sortByColumn(Column::Value, Qt::AscendingOrder);
        desk.part<QLineEdit>("search")->setText(text("p"));
        desk.settle();
        const TemporaryFiles files;
        const QString rest = text(",\"Flow, \"\"main\"\"\",");
        QCOMPARE(desk.exported(files.path(text("points.csv"))),
                 QStringList({text("Name,Description,Value,Unit,Time"),
                              text("'-P4") + rest + text("-0.75,m/s,2026-03-01T08:00:00.000Z"),
                              text("P2") + rest + text("-0.25,m/s,2026-03-01T08:00:00.000Z"),
                              text("P1") + rest + text("0,m/s,2026-03-01T08:00:00.000Z")}));
    }

    void aLongExportGoesOnWhileEventsAreHandled()
    {
        SummaryPlant plant;
        plant.addWithValues(std::vector<double>(1700, 1));
        Desk desk(plant);
        const TemporaryFiles files;
        const QString fileName = files.path(text("points.csv"));
        desk.press("export");
        Q_EMIT desk.window.findChild<QFileDialog*>()->fileSelected(fileName);
        QVERIFY(!desk.part<QAction>("export")->isEnabled());
        QCoreApplication::processEvents();
        QVERIFY(!QFile::exists(fileName)); // not before all of it is written
        QVERIFY(desk.part<QLabel>("summaryStatus")->text().contains(text("of 1700 points written")));
        QTRY_VERIFY(QFile::exists(fileName));
        QVERIFY(desk.part<QAction>("export")->isEnabled());
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll().count("\r\n"), 1701);
    }

    void anExportThatFailsIsTold()
    {
        SummaryPlant plant;
        plant.addWithValues({1});
        const Desk desk(plant);
        desk.press("export");
        Q_EMIT desk.window.findChild<QFileDialog*>()->fileSelected(text("/nowhere/points.csv"));
        auto* box = desk.window.findChild<QMessageBox*>();
        QVERIFY(box);
        QVERIFY2(box->text().startsWith(text("/nowhere/points.csv: ")), qPrintable(box->text()));
        box->close();
        QVERIFY(desk.part<QAction>("export")->isEnabled());
    }

    void aHiddenWindowDoesNoWork()
    {
        SummaryPlant plant;
        plant.addWithValues({1, 2});
        Desk desk(plant);
        desk.table->sortByColumn(Column::Value, Qt::AscendingOrder);
        desk.settle();
        desk.window.hide();
        const SummaryModel::Figures before = desk.model()->figures();
        desk.change(plant, SummaryPlant::analog(0), 3);
        desk.model()->refresh();
        QCoreApplication::processEvents();
        QCOMPARE(desk.model()->figures().slices, before.slices);
        QCOMPARE(desk.model()->figures().merges, before.merges);
        QCOMPARE(desk.names(), text("A0 A1"));
        desk.window.show();
        desk.settle();
        QCOMPARE(desk.names(), text("A1 A0"));
    }

private:
    OwnSettings m_settings;
};

QTEST_MAIN(tst_SummaryWindow)
#include "tst_summarywindow.moc"
