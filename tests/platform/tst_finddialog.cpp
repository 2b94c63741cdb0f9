#include "platform/ui/finddialog.h"

#include <QCheckBox>
#include <QLayout>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QtTest>

#include <memory>

class tst_FindDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { qRegisterMetaType<Qt::CaseSensitivity>(); }

    void init()
    {
        m_desk = std::make_unique<QWidget>();
        m_desk->show();
        activate(m_desk.get());
        m_dialog = new FindDialog(m_desk.get());
        m_dialog->layout()->setSizeConstraint(QLayout::SetNoConstraint); // no hints to pass on to the screen
        m_dialog->show();
        activate(m_dialog);
        m_next = std::make_unique<QSignalSpy>(m_dialog, SIGNAL(findNext(const QString&, Qt::CaseSensitivity)));
        m_previous = std::make_unique<QSignalSpy>(m_dialog, SIGNAL(findPrevious(const QString&, Qt::CaseSensitivity)));
        QVERIFY(m_next->isValid());
        QVERIFY(m_previous->isValid());
    }

    void cleanup() { m_desk.reset(); }

    void itComesUpWithTheFieldReadyAndTheButtonsOff()
    {
        QCOMPARE(m_dialog->windowTitle(), QStringLiteral("Find"));
        QVERIFY(!m_dialog->isModal());
        QVERIFY(field()->hasFocus());
        QCOMPARE(m_dialog->text(), QString());
        QVERIFY(!button("nextButton")->isEnabled());
        QVERIFY(!button("previousButton")->isEnabled());
        QVERIFY(button("closeButton")->isEnabled());
    }

    void nothingIsLookedForWithoutAText()
    {
        QTest::keyClick(field(), Qt::Key_Return);
        QTest::keyClick(field(), Qt::Key_Return, Qt::ShiftModifier);
        QTest::mouseClick(button("nextButton"), Qt::LeftButton);
        QTest::mouseClick(button("previousButton"), Qt::LeftButton);
        QVERIFY(m_next->isEmpty());
        QVERIFY(m_previous->isEmpty());
        QVERIFY(m_dialog->isVisible());
    }

    void theButtonsFollowTheText()
    {
        QTest::keyClicks(field(), QStringLiteral("x"));
        QVERIFY(button("nextButton")->isEnabled());
        QVERIFY(button("previousButton")->isEnabled());
        QTest::keyClick(field(), Qt::Key_Backspace);
        QVERIFY(!button("nextButton")->isEnabled());
        QVERIFY(!button("previousButton")->isEnabled());
    }

    void keysFind_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        QTest::addColumn<bool>("isForward");
        QTest::newRow("Return finds the next") << int(Qt::Key_Return) << int(Qt::NoModifier) << true;
        QTest::newRow("Enter finds the next") << int(Qt::Key_Enter) << int(Qt::KeypadModifier) << true;
        QTest::newRow("Shift and Return find the previous") << int(Qt::Key_Return) << int(Qt::ShiftModifier) << false;
        QTest::newRow("Shift and Enter find the previous") << int(Qt::Key_Enter) << int(Qt::ShiftModifier) << false;
    }
    void keysFind()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        QFETCH(bool, isForward);
        QTest::keyClicks(field(), QStringLiteral("onLoad"));
        QTest::keyClick(field(), Qt::Key(key), Qt::KeyboardModifiers(modifiers));

        const QList<QVariantList> expected{{QStringLiteral("onLoad"), QVariant::fromValue(Qt::CaseInsensitive)}};
        QCOMPARE(*m_next, isForward ? expected : QList<QVariantList>());
        QCOMPARE(*m_previous, isForward ? QList<QVariantList>() : expected);
        QVERIFY(m_dialog->isVisible());
        QVERIFY(field()->hasFocus());
    }

    void shiftAndReturnGoBackwardsFromAnyButton()
    {
        m_dialog->setText(QStringLiteral("a"));
        for (const char* name : {"nextButton", "previousButton", "closeButton"}) {
            button(name)->setFocus();
            QTest::keyClick(button(name), Qt::Key_Return, Qt::ShiftModifier);
        }
        QCOMPARE(m_previous->size(), 3);
        QVERIFY(m_next->isEmpty());
        QVERIFY(m_dialog->isVisible());
    }

    void buttonsFindWithTheCaseAsChecked()
    {
        QTest::keyClicks(field(), QStringLiteral(" A b "));
        QTest::mouseClick(m_dialog->findChild<QCheckBox*>(), Qt::LeftButton, {}, {8, 8});
        QTest::mouseClick(button("nextButton"), Qt::LeftButton);
        QTest::mouseClick(button("previousButton"), Qt::LeftButton);
        const QList<QVariantList> expected{{QStringLiteral(" A b "), QVariant::fromValue(Qt::CaseSensitive)}};
        QCOMPARE(*m_next, expected);
        QCOMPARE(*m_previous, expected);
    }

    void escapeAndTheButtonClose()
    {
        QTest::keyClick(field(), Qt::Key_Escape);
        QVERIFY(!m_dialog->isVisible());
        m_dialog->show();
        QTest::mouseClick(button("closeButton"), Qt::LeftButton);
        QVERIFY(!m_dialog->isVisible());
    }

    void itComesBackWithItsTextSelected()
    {
        QTest::keyClicks(field(), QStringLiteral("first"));
        button("previousButton")->setFocus();
        QTest::keyClick(m_dialog, Qt::Key_Escape);
        activate(m_desk.get());
        m_dialog->show();
        activate(m_dialog);
        QTRY_VERIFY(field()->hasFocus());
        QCOMPARE(field()->selectedText(), QStringLiteral("first"));
        QTest::keyClicks(field(), QStringLiteral("next"));
        QCOMPARE(m_dialog->text(), QStringLiteral("next"));
    }

    void aGivenTextIsReplacedByTyping()
    {
        m_dialog->setText(QStringLiteral("onClick"));
        QCOMPARE(m_dialog->text(), QStringLiteral("onClick"));
        QVERIFY(button("nextButton")->isEnabled());
        QTest::keyClicks(field(), QStringLiteral("x"));
        QCOMPARE(m_dialog->text(), QStringLiteral("x"));
    }

    void itIsDeletedOnClosingWhereThatIsAskedFor()
    {
        for (const bool isHidden : {false, true}) {
            const QPointer<FindDialog> dialog = new FindDialog(nullptr);
            dialog->layout()->setSizeConstraint(QLayout::SetNoConstraint);
            dialog->show();
            dialog->setVisible(!isHidden);
            dialog->setAttribute(Qt::WA_DeleteOnClose);
            dialog->close();
            QTRY_VERIFY(!dialog);
        }
    }

private:
    static void activate(QWidget* window)
    {
        window->activateWindow();
        QTRY_COMPARE(QApplication::activeWindow(), window);
    }

    QLineEdit* field() const { return m_dialog->findChild<QLineEdit*>(); }
    QPushButton* button(const char* name) const { return m_dialog->findChild<QPushButton*>(QLatin1String(name)); }

    std::unique_ptr<QWidget> m_desk; ///< the window that the dialog belongs to
    FindDialog* m_dialog = nullptr;
    std::unique_ptr<QSignalSpy> m_next;
    std::unique_ptr<QSignalSpy> m_previous;
};

QTEST_MAIN(tst_FindDialog)
#include "tst_finddialog.moc"
