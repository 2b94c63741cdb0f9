#include "host/shapes/datefield.h"
#include "tests/support/drawnshape.h"
#include "tests/support/operatedpage.h"

#include <QCalendarWidget>
#include <QTableView>

namespace {

/// A page with one field that shows the 29th of February 2024.
struct DatePage : OperatedPage
{
    explicit DatePage(const QString& date = QStringLiteral("2024-02-29"))
    {
        field = &add<DateField>({20, 20, 150, 32}, "date");
        set(*field, "Date", date);
        show();
    }
    QCalendarWidget* calendar() const { return editor<QCalendarWidget>(); }
    void open()
    {
        click(*field);
        QVERIFY(calendar());
    }
    /// Clicks the day of the month that the calendar shows.
    void clickDay(int day) const
    {
        auto* days = calendar()->findChild<QTableView*>();
        bool isInMonth = false;
        for (int cell = 0; cell < 42; ++cell) {
            const QModelIndex index = days->model()->index(1 + cell / 7, cell % 7); // below the names of the days
            isInMonth |= index.data().toInt() == 1;
            if (!isInMonth || index.data().toInt() != day)
                continue;
            QTest::mouseClick(days->viewport(), Qt::LeftButton, {}, days->visualRect(index).center());
            return;
        }
    }
    QString date() const { return get(*field, "Date").toString(); }

    DateField* field = nullptr;
};

} // namespace

class tst_DateField : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropPopupMessages(); }

    void aDateIsIsoText_data()
    {
        QTest::addColumn<QVariant>("value");
        QTest::addColumn<bool>("isTaken");
        QTest::addColumn<QString>("date");
        const QString kept = QStringLiteral("2020-01-02");
        QTest::newRow("a day") << QVariant(QStringLiteral("2024-02-29")) << true << QStringLiteral("2024-02-29");
        QTest::newRow("none") << QVariant(QString()) << true << QString();
        QTest::newRow("a date of Qt's") << QVariant(QDate(1999, 12, 31)) << true << QStringLiteral("1999-12-31");
        QTest::newRow("a day and its time")
            << QVariant(QStringLiteral("2024-03-01 23:59:59")) << true << QStringLiteral("2024-03-01");
        QTest::newRow("a day that there is not") << QVariant(QStringLiteral("2023-02-29")) << false << kept;
        QTest::newRow("another order") << QVariant(QStringLiteral("29.02.2024")) << false << kept;
        QTest::newRow("no date") << QVariant(QStringLiteral("today")) << false << kept;
        QTest::newRow("a number") << QVariant(20240229) << false << kept;
        QTest::newRow("nothing") << QVariant() << false << kept;
    }
    void aDateIsIsoText()
    {
        QFETCH(QVariant, value);
        QFETCH(bool, isTaken);
        QFETCH(QString, date);
        DatePage page(QStringLiteral("2020-01-02"));
        QCOMPARE(OperatedPage::set(*page.field, "Date", value), isTaken);
        QCOMPARE(page.date(), date);
        OperatedPage::settle();
        QCOMPARE(page.takeTold(), QStringList()); // what a program sets is not told
    }

    void anotherDayIsTold()
    {
        DatePage page;
        QString held;
        page.heard = [&](Shape&) { held = page.date(); };
        page.open();
        QCOMPARE(page.calendar()->selectedDate(), QDate(2024, 2, 29));
        page.clickDay(7);
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("date.onDateChanged(2024, 2, 7)")));
        QCOMPARE(held, QStringLiteral("2024-02-07"));
        QVERIFY(!page.calendar());
        QVERIFY(page.view->hasFocus());
    }

    void theSameDayIsNotTold()
    {
        DatePage page;
        page.open();
        page.clickDay(29);
        QVERIFY(!page.calendar());
        QCOMPARE(page.takeTold(), QStringList());
    }

    void keysAreEnough_data()
    {
        QTest::addColumn<QList<int>>("keys");
        QTest::addColumn<QString>("date");
        QTest::newRow("a day on and Return")
            << QList<int>{Qt::Key_Right, Qt::Key_Return} << QStringLiteral("2024-03-01");
        QTest::newRow("a week back and Enter") << QList<int>{Qt::Key_Up, Qt::Key_Enter} << QStringLiteral("2024-02-22");
        QTest::newRow("a month on and Return")
            << QList<int>{Qt::Key_PageDown, Qt::Key_Return} << QStringLiteral("2024-03-29");
        QTest::newRow("a day on and Escape")
            << QList<int>{Qt::Key_Right, Qt::Key_Escape} << QStringLiteral("2024-02-29");
    }
    void keysAreEnough()
    {
        QFETCH(QList<int>, keys);
        QFETCH(QString, date);
        for (const int opens : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space, Qt::Key_F2}) {
            DatePage page;
            OperatedPage::key(Qt::Key_Tab);
            OperatedPage::key(opens);
            QVERIFY(page.calendar());
            for (const int key : keys) {
                QCOMPARE(page.date(), QStringLiteral("2024-02-29")); // not before the end
                OperatedPage::key(key);
            }
            QVERIFY(!page.calendar());
            QVERIFY(page.view->hasFocus());
            QCOMPARE(page.view->focusedShape(), page.field);
            QCOMPARE(page.date(), date);
            QCOMPARE(page.takeTold().size(), date == QLatin1String("2024-02-29") ? 0 : 1);
        }
    }

    void aHeldKeyPicksNothing()
    {
        DatePage page((QString()));
        OperatedPage::key(Qt::Key_Tab);
        OperatedPage::key(Qt::Key_Return);
        QVERIFY(page.calendar());
        QWidget* days = page.calendar()->findChild<QTableView*>();
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Return, {}, QString(), true);
        QCoreApplication::sendEvent(days, &repeated);
        QVERIFY(page.calendar());
        QCOMPARE(page.date(), QString());
    }

    void withoutADateTheCalendarShowsToday()
    {
        const QDate before = QDate::currentDate();
        DatePage page((QString()));
        page.open();
        QVERIFY(page.calendar()->selectedDate() >= before);
        QVERIFY(page.calendar()->selectedDate() <= QDate::currentDate());
        const QDate picked(page.calendar()->yearShown(), page.calendar()->monthShown(), 15);
        page.clickDay(15);
        QCOMPARE(page.date(), picked.toString(Qt::ISODate));
        QCOMPARE(page.takeTold().size(), 1);
    }

    void aClickElsewherePicksNothing()
    {
        DatePage page;
        page.open();
        OperatedPage::key(Qt::Key_Right);
        page.clickWindow({390, 290});
        QVERIFY(!page.calendar());
        QCOMPARE(page.date(), QStringLiteral("2024-02-29"));
        QCOMPARE(page.takeTold(), QStringList());
    }

    void anOpenCalendarDoesNotGoWithTheData()
    {
        DatePage page;
        page.open();
        QVERIFY(OperatedPage::set(*page.field, "Date", QStringLiteral("2001-01-01")));
        OperatedPage::settle();
        QCOMPARE(page.calendar()->selectedDate(), QDate(2024, 2, 29));
        page.clickDay(29);
        QCOMPARE(page.takeTold(), QStringList(QStringLiteral("date.onDateChanged(2024, 2, 29)")));
    }

    void whatIsHiddenOrOffCantBePicked_data()
    {
        QTest::addColumn<QString>("property"); // empty for the layer
        QTest::newRow("switched off") << QStringLiteral("Enabled");
        QTest::newRow("hidden") << QStringLiteral("Visible");
        QTest::newRow("on a hidden layer") << QString();
    }
    void whatIsHiddenOrOffCantBePicked()
    {
        QFETCH(QString, property);
        DatePage page;
        page.open();
        if (property.isEmpty())
            page.canvas->setLayerVisible(*page.layer, false);
        else
            QVERIFY(page.field->setNamedProperty(property, false));
        OperatedPage::settle();
        QVERIFY(!page.calendar());
        page.click(*page.field);
        QVERIFY(!page.calendar());
        QVERIFY(!page.view->focusedShape());
    }

    void aPageThatGoesTakesItsCalendarAlong()
    {
        DatePage page;
        page.open();
        page.view.reset();
        QVERIFY(!QApplication::activePopupWidget());
        page.show();
        page.open();
        page.canvas.reset();
        page.view.reset();
        QVERIFY(!QApplication::activePopupWidget());
    }

    void thePlaceholderStandsInForADate()
    {
        DateField field;
        const QImage blank = drawn(field);
        QVERIFY(OperatedPage::set(field, "Placeholder", QStringLiteral("from day")));
        const QImage stood = drawn(field);
        QVERIFY(stood != blank);
        QVERIFY(OperatedPage::set(field, "Date", QStringLiteral("2024-02-29")));
        const QImage date = drawn(field);
        QVERIFY(date != stood);
        QVERIFY(OperatedPage::set(field, "Placeholder", QString()));
        QCOMPARE(drawn(field), date);
    }

    void nothingIsPickedByAnInvalidDate()
    {
        DatePage page;
        page.field->pick(QDate());
        QCOMPARE(page.date(), QStringLiteral("2024-02-29"));
        QCOMPARE(page.takeTold(), QStringList());
    }
};

QTEST_MAIN(tst_DateField)
#include "tst_datefield.moc"
