#include "host/accountview/accountsdialog.h"
#include "host/accountview/changepassworddialog.h"
#include "host/accountview/firstaccountdialog.h"
#include "host/accountview/logondialog.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/temporaryfiles.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTableWidget>
#include <QtTest>

namespace {

const QString anna = QStringLiteral("anna");
const QString good = QStringLiteral("open sesame");
const QString wrong = QStringLiteral("open simsim");
const QString wrongText = QStringLiteral("The user name or the password is wrong.");

/// A file of accounts, with anna if wanted, and a manager whose clock is moved by hand.
struct TestAccounts
{
    explicit TestAccounts(bool withAnna = true)
    {
        AccountSettings settings;
        settings.fileName = files.path(QStringLiteral("accounts.db"));
        bool isReady = database.open(settings).has_value();
        if (withAnna) {
            EUserAccount account;
            account.name = anna;
            account.role = QStringLiteral("operator");
            isReady = isReady && database.add(account, good);
        }
        if (!isReady)
            qFatal("no accounts");
    }

    /// Adds root and logs him on.
    void addAdministrator()
    {
        EUserAccount account;
        account.name = QStringLiteral("root");
        account.role = QStringLiteral("administrator");
        account.areas = QStringList{QStringLiteral("north"), QStringLiteral("<b>s</b>")};
        if (!database.add(account, good) || !manager.logOn(account.name, good))
            qFatal("no administrator");
    }

    TemporaryFiles files;
    AccountDatabase database;
    qint64 now = 0;
    DatabaseManager manager{database, [this] { return now; }};
};

QLineEdit* edit(const QDialog& dialog, const char* name)
{
    return dialog.findChild<QLineEdit*>(QString::fromLatin1(name));
}

QString text(const QDialog& dialog, const char* label)
{
    return dialog.findChild<QLabel*>(QString::fromLatin1(label))->text();
}

QPushButton* ok(const QDialog& dialog)
{
    return dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok);
}

void show(QDialog& dialog)
{
    dialog.show();
    QApplication::setActiveWindow(&dialog);
    QVERIFY(QTest::qWaitForWindowActive(&dialog));
}

/// Replaces what a field holds, as a user does.
void write(const QDialog& dialog, const char* name, const QString& text)
{
    QLineEdit* field = edit(dialog, name);
    field->setFocus();
    field->selectAll();
    QTest::keyClick(field, Qt::Key_Delete);
    QTest::keyClicks(field, text);
}

QPushButton* push(const QDialog& dialog, const char* name)
{
    return dialog.findChild<QPushButton*>(QString::fromLatin1(name));
}

/// The table's rows with "|" between the cells.
QStringList rows(const QDialog& dialog)
{
    const auto* table = dialog.findChild<QTableWidget*>();
    QStringList rows;
    for (int row = 0; row < table->rowCount(); ++row) {
        QStringList cells;
        for (int column = 0; column < table->columnCount(); ++column)
            cells.append(table->item(row, column)->text());
        rows.append(cells.join(QLatin1Char('|')));
    }
    return rows;
}

void choose(const QDialog& dialog, int row)
{
    auto* table = dialog.findChild<QTableWidget*>();
    QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, table->visualItemRect(table->item(row, 1)).center());
}

/// The dialog that was opened last on top of another.
QDialog& opened(const QDialog& parent)
{
    const auto children = parent.findChildren<QDialog*>();
    if (children.isEmpty() || !children.last()->isVisible())
        qFatal("no dialog was opened");
    QApplication::setActiveWindow(children.last());
    return *children.last();
}

} // namespace

class tst_AccountDialogs : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void logOnByKeys()
    {
        TestAccounts test;
        LogOnDialog dialog(test.manager);
        show(dialog);
        QVERIFY(edit(dialog, "userEdit")->hasFocus());
        QVERIFY(edit(dialog, "userEdit")->text().isEmpty());
        QVERIFY(!ok(dialog)->isEnabled());
        QTest::keyClicks(dialog.focusWidget(), anna);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Tab);
        QVERIFY(edit(dialog, "passwordEdit")->hasFocus());
        QCOMPARE(edit(dialog, "passwordEdit")->echoMode(), QLineEdit::Password);
        QTest::keyClicks(dialog.focusWidget(), good);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QCOMPARE(test.manager.currentUserId(), anna);
        QVERIFY(edit(dialog, "passwordEdit")->text().isEmpty());
    }

    void aKnownUserWritesHisPassword()
    {
        TestAccounts test;
        LogOnDialog dialog(test.manager, anna);
        show(dialog);
        QVERIFY(edit(dialog, "passwordEdit")->hasFocus());
        QTest::keyClicks(dialog.focusWidget(), good);
        QTest::mouseClick(ok(dialog), Qt::LeftButton);
        QCOMPARE(test.manager.currentUserId(), anna);
    }

    void aWrongPasswordIsTold()
    {
        TestAccounts test;
        LogOnDialog dialog(test.manager, anna);
        show(dialog);
        QCOMPARE(text(dialog, "messageLabel"), QString());
        write(dialog, "passwordEdit", wrong);
        QTest::mouseClick(ok(dialog), Qt::LeftButton);
        QVERIFY(dialog.isVisible());
        QCOMPARE(text(dialog, "messageLabel"), wrongText);
        QVERIFY(edit(dialog, "passwordEdit")->text().isEmpty());
        QVERIFY(edit(dialog, "passwordEdit")->hasFocus());
        QTest::keyClicks(dialog.focusWidget(), QStringLiteral("x"));
        QCOMPARE(text(dialog, "messageLabel"), QString()); // is about the one before
        QCOMPARE(test.manager.currentUserId(), QString());
    }

    void aRefusalCountsDown()
    {
        TestAccounts test;
        LogOnDialog dialog(test.manager, anna);
        show(dialog);
        for (int time = 0; time < 3; ++time) {
            write(dialog, "passwordEdit", wrong);
            QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        }
        QCOMPARE(text(dialog, "messageLabel"), QStringLiteral("Too many wrong passwords. Try again in 2 s."));
        QVERIFY(!ok(dialog)->isEnabled());
        test.now += 1000;
        QTRY_COMPARE(text(dialog, "messageLabel"), QStringLiteral("Too many wrong passwords. Try again in 1 s."));
        write(dialog, "passwordEdit", good);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        QVERIFY(dialog.isVisible()); // Return gets no further than the button
        QCOMPARE(edit(dialog, "passwordEdit")->text(), good);
        test.now += 1000;
        QTRY_VERIFY(ok(dialog)->isEnabled());
        QVERIFY(!text(dialog, "messageLabel").contains(QStringLiteral("again")));
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        QCOMPARE(test.manager.currentUserId(), anna);
    }

    void aRefusalIsOfOneName()
    {
        TestAccounts test;
        for (int time = 0; time < 3; ++time)
            QVERIFY(!test.manager.logOn(anna, wrong));
        LogOnDialog dialog(test.manager, anna);
        show(dialog);
        QVERIFY(!ok(dialog)->isEnabled());
        write(dialog, "userEdit", QStringLiteral("bob"));
        QVERIFY(ok(dialog)->isEnabled());
        QCOMPARE(text(dialog, "messageLabel"), QString());
    }

    void cancelLogsNobodyOn()
    {
        TestAccounts test;
        LogOnDialog dialog(test.manager, anna);
        show(dialog);
        write(dialog, "passwordEdit", good);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Escape);
        QCOMPARE(dialog.result(), int(QDialog::Rejected));
        QCOMPARE(test.manager.currentUserId(), QString());
    }

    void aDatabaseThatIsAwayIsTold()
    {
        TestAccounts test;
        test.database.close();
        LogOnDialog dialog(test.manager, anna);
        show(dialog);
        write(dialog, "passwordEdit", good);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        QCOMPARE(text(dialog, "messageLabel"), QStringLiteral("No database of user accounts is open."));
    }

    void theFirstAccountIsAnAdministrator()
    {
        TestAccounts test(false);
        FirstAccountDialog dialog(test.database);
        show(dialog);
        for (const char* field : {"nameEdit", "passwordEdit", "repeatedEdit"})
            QVERIFY2(edit(dialog, field)->text().isEmpty(), field); // no default
        QVERIFY(!ok(dialog)->isEnabled());
        QVERIFY(edit(dialog, "nameEdit")->hasFocus());
        write(dialog, "nameEdit", anna);
        QVERIFY(!ok(dialog)->isEnabled());
        write(dialog, "passwordEdit", good);
        QVERIFY(!ok(dialog)->isEnabled());
        write(dialog, "repeatedEdit", good);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        const auto all = test.database.allUserAccounts().list;
        QCOMPARE(all.size(), 1);
        QCOMPARE(all.at(0).name, anna);
        QCOMPARE(all.at(0).role, QStringLiteral("administrator"));
        QVERIFY(all.at(0).areas.isEmpty());
        QVERIFY(test.manager.logOn(anna, good));
    }

    void aNewPasswordIsHinted_data()
    {
        QTest::addColumn<QString>("password");
        QTest::addColumn<QString>("repeated");
        QTest::addColumn<QString>("hint");
        QTest::addColumn<bool>("isEnough");
        const QString tooShort = QStringLiteral("The password needs 8 characters at least.");
        const QString seven = QStringLiteral("1234567");
        const QString eight = QStringLiteral("12345678");
        const QString twelve = QStringLiteral("123456789012");
        QTest::newRow("nothing") << QString() << QString() << tooShort << false;
        QTest::newRow("seven") << seven << seven << tooShort << false;
        QTest::newRow("eight") << eight << eight << QStringLiteral("Short: 12 characters or more are safer.") << true;
        QTest::newRow("not repeated yet") << twelve << QString() << QStringLiteral("Good length.") << false;
        QTest::newRow("half repeated") << twelve << seven << QStringLiteral("The two passwords differ.") << false;
        QTest::newRow("other letters") << QStringLiteral("abcdefghijkl") << QStringLiteral("Abcdefghijkl")
                                       << QStringLiteral("The two passwords differ.") << false;
        QTest::newRow("twelve") << twelve << twelve << QStringLiteral("Good length.") << true;
    }
    void aNewPasswordIsHinted()
    {
        QFETCH(QString, password);
        QFETCH(QString, repeated);
        QFETCH(QString, hint);
        QFETCH(bool, isEnough);
        TestAccounts test(false);
        FirstAccountDialog dialog(test.database);
        show(dialog);
        write(dialog, "nameEdit", anna);
        write(dialog, "passwordEdit", password);
        write(dialog, "repeatedEdit", repeated);
        QCOMPARE(text(dialog, "hintLabel"), hint);
        QCOMPARE(ok(dialog)->isEnabled(), isEnough);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        QCOMPARE(test.database.allUserAccounts().list.size(), isEnough ? 1 : 0);
    }

    void aPasswordThatIsTooLongIsNotCut()
    {
        TestAccounts test(false);
        FirstAccountDialog dialog(test.database);
        show(dialog);
        write(dialog, "nameEdit", anna);
        for (const char* field : {"passwordEdit", "repeatedEdit"})
            edit(dialog, field)->setText(QString(1025, QLatin1Char('x')));
        QCOMPARE(text(dialog, "hintLabel"), QStringLiteral("The password is too long."));
        QVERIFY(!ok(dialog)->isEnabled());
    }

    void aRefusedNameIsTold()
    {
        TestAccounts test(false);
        FirstAccountDialog dialog(test.database);
        show(dialog);
        write(dialog, "nameEdit", QStringLiteral(" anna"));
        write(dialog, "passwordEdit", good);
        write(dialog, "repeatedEdit", good);
        QTest::mouseClick(ok(dialog), Qt::LeftButton);
        QVERIFY(dialog.isVisible());
        QCOMPARE(text(dialog, "messageLabel"),
                 QStringLiteral("A name must not have blanks around it or control characters in it."));
        write(dialog, "nameEdit", anna);
        QCOMPARE(text(dialog, "messageLabel"), QString());
        QTest::mouseClick(ok(dialog), Qt::LeftButton);
        QCOMPARE(test.database.allUserAccounts().list.size(), 1);
    }

    void anAccountThatCameInBetweenIsNotJoined()
    {
        TestAccounts test; // has anna
        FirstAccountDialog dialog(test.database);
        show(dialog);
        write(dialog, "nameEdit", QStringLiteral("mallory"));
        write(dialog, "passwordEdit", good);
        write(dialog, "repeatedEdit", good);
        QTest::mouseClick(ok(dialog), Qt::LeftButton);
        QCOMPARE(text(dialog, "messageLabel"), QStringLiteral("There is an account by now: ask its user."));
        QCOMPARE(test.database.allUserAccounts().list.size(), 1);
    }

    void aPasswordIsChanged()
    {
        TestAccounts test;
        QVERIFY(test.manager.logOn(anna, good));
        ChangePasswordDialog dialog(test.manager);
        show(dialog);
        QCOMPARE(text(dialog, "userLabel"), anna);
        QVERIFY(edit(dialog, "oldEdit")->hasFocus());
        const QString next = QStringLiteral("close sesame");
        write(dialog, "oldEdit", wrong);
        write(dialog, "passwordEdit", next);
        QVERIFY(!ok(dialog)->isEnabled());
        write(dialog, "repeatedEdit", next);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        QVERIFY(dialog.isVisible());
        QCOMPARE(text(dialog, "messageLabel"), wrongText);
        QVERIFY(edit(dialog, "oldEdit")->text().isEmpty());
        QVERIFY(edit(dialog, "oldEdit")->hasFocus());
        QCOMPARE(edit(dialog, "repeatedEdit")->text(), next); // need not be written again
        write(dialog, "oldEdit", good);
        QCOMPARE(text(dialog, "messageLabel"), QString());
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        QCOMPARE(dialog.result(), int(QDialog::Accepted));
        QVERIFY(test.manager.checkCurrentUserPassword(next));
    }

    void accountsAreListed()
    {
        TestAccounts test;
        test.addAdministrator();
        QVERIFY(test.database.setLocked(anna, true));
        const AccountsDialog dialog(test.database, test.manager);
        QCOMPARE(rows(dialog), QStringList({QStringLiteral("1|anna|Operator|all|locked"),
                                            QStringLiteral("2|root|Administrator|north, <b>s</b>|")}));
        for (const char* button : {"changeButton", "passwordButton", "lockButton", "removeButton"})
            QVERIFY2(!push(dialog, button)->isEnabled(), button); // nobody is chosen
    }

    void anAdministratorAddsAUser()
    {
        TestAccounts test;
        test.addAdministrator();
        AccountsDialog dialog(test.database, test.manager);
        show(dialog);
        push(dialog, "addButton")->click();
        QDialog& form = opened(dialog);
        QVERIFY(!ok(form)->isEnabled());
        write(form, "nameEdit", anna);
        write(form, "passwordEdit", good);
        write(form, "repeatedEdit", good);
        auto* role = form.findChild<QComboBox*>(QStringLiteral("roleBox"));
        QCOMPARE(role->currentText(), QStringLiteral("Viewer"));
        role->setCurrentText(QStringLiteral("Engineer"));
        form.findChild<QPlainTextEdit*>()->setPlainText(QStringLiteral("north\n\n south \nnorth"));
        ok(form)->click();
        QVERIFY(form.isVisible());
        QCOMPARE(text(form, "messageLabel"), QStringLiteral("There is a user \"anna\" already."));
        write(form, "nameEdit", QStringLiteral("bob"));
        ok(form)->click();
        QVERIFY(!form.isVisible());
        QCOMPARE(rows(dialog).last(), QStringLiteral("3|bob|Engineer|north, south|"));
        QVERIFY(test.manager.logOn(QStringLiteral("bob"), good));
    }

    void anAdministratorChangesAUser()
    {
        TestAccounts test;
        test.addAdministrator();
        AccountsDialog dialog(test.database, test.manager);
        show(dialog);
        choose(dialog, 0);
        push(dialog, "changeButton")->click();
        QDialog& form = opened(dialog);
        QCOMPARE(edit(form, "nameEdit")->text(), anna);
        QVERIFY(!edit(form, "nameEdit")->isEnabled());
        QVERIFY(!edit(form, "passwordEdit")->isVisible());
        form.findChild<QComboBox*>()->setCurrentText(QStringLiteral("Supervisor"));
        ok(form)->click();
        QCOMPARE(rows(dialog).first(), QStringLiteral("1|anna|Supervisor|all|"));
        QVERIFY(push(dialog, "changeButton")->isEnabled()); // she is still chosen
        QVERIFY(test.manager.logOn(anna, good));
    }

    void areasThatWereNotTouchedStay()
    {
        TestAccounts test;
        test.addAdministrator();
        EUserAccount odd = *test.manager.account(anna);
        odd.areas = QStringList{QStringLiteral("two\nlines"), QStringLiteral(" blank ")};
        QVERIFY(test.database.change(odd));
        AccountsDialog dialog(test.database, test.manager);
        show(dialog);
        choose(dialog, 0);
        push(dialog, "changeButton")->click();
        QDialog& form = opened(dialog);
        form.findChild<QComboBox*>()->setCurrentText(QStringLiteral("Viewer"));
        ok(form)->click();
        QCOMPARE(test.manager.account(anna)->role, QStringLiteral("viewer"));
        QCOMPARE(test.manager.account(anna)->areas, odd.areas);
    }

    void anAdministratorSetsAPassword()
    {
        TestAccounts test;
        test.addAdministrator();
        AccountsDialog dialog(test.database, test.manager);
        show(dialog);
        choose(dialog, 0);
        push(dialog, "passwordButton")->click();
        QDialog& form = opened(dialog);
        QVERIFY(!form.findChild<QComboBox*>()->isVisible());
        QVERIFY(!ok(form)->isEnabled());
        const QString next = QStringLiteral("close sesame");
        write(form, "passwordEdit", next);
        write(form, "repeatedEdit", next);
        QTest::keyClick(form.focusWidget(), Qt::Key_Return);
        QVERIFY(!form.isVisible());
        QVERIFY(test.manager.logOn(anna, next));
        QCOMPARE(test.manager.currentAccount()->role, QStringLiteral("operator"));
    }

    void anAdministratorLocksAndUnlocks()
    {
        TestAccounts test;
        test.addAdministrator();
        AccountsDialog dialog(test.database, test.manager);
        show(dialog);
        choose(dialog, 0);
        push(dialog, "lockButton")->click();
        QCOMPARE(rows(dialog).first(), QStringLiteral("1|anna|Operator|all|locked"));
        QCOMPARE(push(dialog, "lockButton")->text(), QStringLiteral("Un&lock"));
        push(dialog, "lockButton")->click();
        QCOMPARE(rows(dialog).first(), QStringLiteral("1|anna|Operator|all|"));
        choose(dialog, 1);
        push(dialog, "lockButton")->click();
        QCOMPARE(text(dialog, "messageLabel"), QStringLiteral("This is the last administrator who can log on."));
    }

    void anAdministratorRemovesAUser()
    {
        TestAccounts test;
        test.addAdministrator();
        AccountsDialog dialog(test.database, test.manager);
        show(dialog);
        for (const auto answer : {QMessageBox::No, QMessageBox::Yes}) {
            choose(dialog, 0);
            push(dialog, "removeButton")->click();
            auto& question = static_cast<QMessageBox&>(opened(dialog));
            QCOMPARE(question.defaultButton(), question.button(QMessageBox::No));
            QCOMPARE(question.textFormat(), Qt::PlainText);
            question.button(answer)->click();
            QCOMPARE(rows(dialog).size(), answer == QMessageBox::Yes ? 1 : 2);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        }
        QVERIFY(!test.manager.account(anna));
    }

    void onlyAnAdministratorChangesAccounts()
    {
        TestAccounts test;
        test.addAdministrator();
        AccountsDialog dialog(test.database, test.manager);
        show(dialog);
        choose(dialog, 0);
        QVERIFY(test.manager.logOn(anna, good)); // while the dialog is open
        const QString problem = QStringLiteral("Only an administrator may do that.");
        push(dialog, "lockButton")->click();
        QCOMPARE(text(dialog, "messageLabel"), problem);
        QCOMPARE(test.database.isLocked(anna).value(), false);
        push(dialog, "changeButton")->click();
        QDialog& form = opened(dialog);
        form.findChild<QComboBox*>()->setCurrentText(QStringLiteral("Administrator"));
        ok(form)->click();
        QCOMPARE(text(form, "messageLabel"), problem);
        QCOMPARE(test.manager.account(anna)->role, QStringLiteral("operator"));
    }

    void accountsThatCantBeReadAreTold()
    {
        TestAccounts test;
        test.addAdministrator();
        AccountsDialog dialog(test.database, test.manager);
        test.database.close();
        dialog.refresh();
        QCOMPARE(text(dialog, "messageLabel"), QStringLiteral("No database of user accounts is open."));
        QCOMPARE(rows(dialog), QStringList());
    }

    void messagesAreNoMarkup()
    {
        TestAccounts test;
        LogOnDialog logOn(test.manager);
        ChangePasswordDialog change(test.manager);
        FirstAccountDialog first(test.database);
        for (const QDialog* dialog : std::initializer_list<const QDialog*>{&logOn, &change, &first})
            QCOMPARE(dialog->findChild<QLabel*>(QStringLiteral("messageLabel"))->textFormat(), Qt::PlainText);
        QCOMPARE(change.findChild<QLabel*>(QStringLiteral("userLabel"))->textFormat(), Qt::PlainText);
    }
};

QTEST_MAIN(tst_AccountDialogs)
#include "tst_accountdialogs.moc"
