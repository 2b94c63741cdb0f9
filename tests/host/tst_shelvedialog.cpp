#include "host/alarmview/shelvedialog.h"
#include "tests/support/offscreenwarnings.h"

#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QtTest>

namespace {

class TestDialog
{
public:
    explicit TestDialog(ShelveDialog::Purpose purpose = ShelveDialog::Purpose::Shelve)
        : dialog(purpose, QStringLiteral("<b>P1</b>"), [this] { return now; })
    {
        dialog.show();
    }

    template <typename T>
    T* part(const char* name) const
    {
        return dialog.findChild<T*>(QString::fromLatin1(name));
    }
    void type(const QString& reason) const { QTest::keyClicks(part<QLineEdit>("reasonEdit"), reason); }
    QPushButton* ok() const { return dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok); }
    void click(const char* button) const
    {
        auto* radio = part<QRadioButton>(button);
        QTest::mouseClick(radio, Qt::LeftButton, {}, QPoint(8, radio->height() / 2));
    }

    QDateTime now{QDate(2026, 3, 1), QTime(8, 0), Qt::UTC};
    ShelveDialog dialog;
};

} // namespace

class tst_ShelveDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void aReasonIsNeeded()
    {
        const TestDialog test;
        QVERIFY(!test.ok()->isEnabled());
        test.type(QStringLiteral("  "));
        QVERIFY(!test.ok()->isEnabled());
        test.type(QStringLiteral("cleaned "));
        QVERIFY(test.ok()->isEnabled());
        QCOMPARE(test.dialog.reason(), QStringLiteral("cleaned"));
    }

    void aDurationCountsFromTheEnd_data()
    {
        QTest::addColumn<QByteArray>("button");
        QTest::addColumn<int>("seconds");
        QTest::newRow("a quarter of an hour") << QByteArray("quarterButton") << 900;
        QTest::newRow("an hour") << QByteArray("hourButton") << 3600;
        QTest::newRow("eight hours") << QByteArray("shiftButton") << 28800;
        QTest::newRow("a day") << QByteArray("dayButton") << 86400;
    }
    void aDurationCountsFromTheEnd()
    {
        QFETCH(QByteArray, button);
        QFETCH(int, seconds);
        TestDialog test;
        test.type(QStringLiteral("cleaned"));
        test.click(button.constData());
        test.now = test.now.addSecs(100); // while the user thinks
        QTest::mouseClick(test.ok(), Qt::LeftButton);
        QCOMPARE(test.dialog.result(), int(QDialog::Accepted));
        const QDateTime end = test.now.addSecs(seconds);
        test.now = test.now.addSecs(100);
        QCOMPARE(test.dialog.until(), end);
        QCOMPARE(test.dialog.until().timeSpec(), Qt::UTC);
    }

    void anHourIsOffered()
    {
        const TestDialog test;
        QCOMPARE(test.dialog.until(), test.now.addSecs(3600));
    }

    void aTimeIsChosenByWritingIt()
    {
        const TestDialog test;
        test.type(QStringLiteral("cleaned"));
        const QDateTime end(QDate(2026, 3, 4), QTime(5, 6), Qt::UTC);
        test.part<QDateTimeEdit>("untilEdit")->setDateTime(end.toLocalTime());
        QVERIFY(test.part<QRadioButton>("untilButton")->isChecked());
        QVERIFY(test.ok()->isEnabled());
        QCOMPARE(test.dialog.until(), end);
    }

    void aTimeThatHasPassedIsNone()
    {
        TestDialog test;
        test.type(QStringLiteral("cleaned"));
        auto* edit = test.part<QDateTimeEdit>("untilEdit");
        edit->setDateTime(test.now.toLocalTime());
        QVERIFY(!test.ok()->isEnabled());
        QVERIFY(!test.part<QLabel>("problemLabel")->text().isEmpty());
        edit->setDateTime(test.now.addSecs(60).toLocalTime());
        QVERIFY(test.ok()->isEnabled());
        QVERIFY(test.part<QLabel>("problemLabel")->text().isEmpty());
        test.now = test.now.addSecs(61); // while the user thinks
        QTest::mouseClick(test.ok(), Qt::LeftButton);
        QVERIFY(test.dialog.isVisible());
        QVERIFY(!test.ok()->isEnabled());
    }

    void outOfServiceNeedsNoTime()
    {
        const TestDialog test(ShelveDialog::Purpose::OutOfService);
        QVERIFY(!test.part<QGroupBox>("timeBox")->isVisible());
        QCOMPARE(test.dialog.windowTitle(), QStringLiteral("Out of service"));
        test.type(QStringLiteral("rebuilt"));
        QTest::mouseClick(test.ok(), Qt::LeftButton);
        QCOMPARE(test.dialog.result(), int(QDialog::Accepted));
    }

    void returnWithoutAReasonDoesNothing()
    {
        TestDialog test;
        QTest::keyClick(test.part<QLineEdit>("reasonEdit"), Qt::Key_Return);
        QVERIFY(test.dialog.isVisible());
    }

    void whatItIsAboutIsNoMarkup()
    {
        const TestDialog test;
        QCOMPARE(test.part<QLabel>("whatLabel")->text(), QStringLiteral("<b>P1</b>"));
        QCOMPARE(test.part<QLabel>("whatLabel")->textFormat(), Qt::PlainText);
    }
};

int main(int argc, char** argv)
{
    qputenv("TZ", "KST-9"); // nine hours ahead, without summer time
    QTEST_SET_MAIN_SOURCE_PATH
    QApplication application(argc, argv);
    tst_ShelveDialog test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_shelvedialog.moc"
