// Finding in the script editor, and the life of its find dialog.

#include "tests/scada/editedscript.h"
#include "tests/support/offscreenwarnings.h"

#include <QPointer>

namespace {

/// Counts how often a window is raised, and keeps of each time it is closed whether that deletes it.
class WindowEvents : public QObject
{
public:
    explicit WindowEvents(QWidget& window) : m_window(window) { window.installEventFilter(this); }

    int raised = 0;
    QList<bool> deletedByClosing;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::ZOrderChange)
            ++raised;
        else if (event->type() == QEvent::Close)
            deletedByClosing.append(m_window.testAttribute(Qt::WA_DeleteOnClose));
        return false;
    }

private:
    QWidget& m_window;
};

} // namespace

class tst_KorvaneScriptorEditorFinding : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void findingForward_data()
    {
        QTest::addColumn<int>("anchor");
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("wanted");
        QTest::addColumn<bool>("isCaseSensitive");
        QTest::addColumn<int>("anchorAfter");
        QTest::addColumn<int>("positionAfter");
        // "pump valve\nPump fan\npumps": pump at 0, Pump at 11, pump at 20
        QTest::newRow("from the start, at the cursor") << 0 << 0 << "pump" << true << 0 << 4;
        QTest::newRow("the next one behind a selection") << 0 << 4 << "pump" << true << 20 << 24;
        QTest::newRow("the next one in any case") << 0 << 4 << "pump" << false << 11 << 15;
        QTest::newRow("in part of a word") << 12 << 12 << "pump" << true << 20 << 24;
        QTest::newRow("only above the cursor: it goes round") << 15 << 15 << "valve" << true << 5 << 10;
        QTest::newRow("the only one, selected, is found again") << 5 << 10 << "valve" << true << 5 << 10;
        QTest::newRow("one that the cursor stands in is found by going round") << 7 << 7 << "valve" << true << 5 << 10;
        QTest::newRow("at the very end") << 0 << 0 << "pumps" << true << 20 << 25;
        QTest::newRow("not there: the cursor stays") << 13 << 13 << "motor" << true << 13 << 13;
        QTest::newRow("not there: a selection stays") << 16 << 13 << "motor" << true << 16 << 13;
        QTest::newRow("not there in this case") << 3 << 3 << "FAN" << true << 3 << 3;
        QTest::newRow("there in another case") << 3 << 3 << "FAN" << false << 16 << 19;
        QTest::newRow("nothing is nowhere") << 3 << 3 << "" << true << 3 << 3;
    }
    void findingForward()
    {
        QFETCH(int, anchor);
        QFETCH(int, position);
        QFETCH(QString, wanted);
        QFETCH(bool, isCaseSensitive);
        Edited edited;
        edited.text().setPlainText(text("pump valve\nPump fan\npumps"));
        edited.setPosition(anchor, position);
        edited.editor->findNext(wanted, isCaseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive);
        QTEST(edited.text().textCursor().anchor(), "anchorAfter");
        QTEST(edited.text().textCursor().position(), "positionAfter");
    }

    void findingBackward_data()
    {
        QTest::addColumn<int>("anchor");
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("wanted");
        QTest::addColumn<bool>("isCaseSensitive");
        QTest::addColumn<int>("anchorAfter");
        QTest::addColumn<int>("positionAfter");
        QTest::newRow("the one before") << 25 << 25 << "pump" << true << 20 << 24;
        QTest::newRow("before a selection") << 20 << 24 << "pump" << true << 0 << 4;
        QTest::newRow("before a selection, in any case") << 20 << 24 << "pump" << false << 11 << 15;
        QTest::newRow("only below the cursor: nothing changes") << 3 << 3 << "fan" << true << 3 << 3;
        QTest::newRow("only below: a selection stays") << 3 << 6 << "fan" << true << 3 << 6;
        QTest::newRow("only below: a selection made backwards stays") << 6 << 3 << "fan" << true << 6 << 3;
        QTest::newRow("not there") << 25 << 25 << "motor" << true << 25 << 25;
        QTest::newRow("nothing is nowhere") << 25 << 25 << "" << true << 25 << 25;
    }
    void findingBackward()
    {
        QFETCH(int, anchor);
        QFETCH(int, position);
        QFETCH(QString, wanted);
        QFETCH(bool, isCaseSensitive);
        Edited edited;
        edited.text().setPlainText(text("pump valve\nPump fan\npumps"));
        edited.setPosition(anchor, position);
        edited.editor->findPrevious(wanted, isCaseSensitive ? Qt::CaseSensitive : Qt::CaseInsensitive);
        QTEST(edited.text().textCursor().anchor(), "anchorAfter");
        QTEST(edited.text().textCursor().position(), "positionAfter");
    }

    void whatIsFoundComesIntoView()
    {
        Edited edited;
        QVERIFY(edited.showInFront());
        edited.text().setPlainText(text("line\n").repeated(500) + text("valve"));
        edited.editor->findNext(text("valve"), Qt::CaseSensitive);
        QVERIFY(edited.text().viewport()->rect().contains(edited.text().cursorRect().center()));
    }

    void theFindDialogSearchesTheText()
    {
        Edited edited;
        QVERIFY(edited.showInFront());
        QVERIFY(!edited.findDialog());
        edited.text().setPlainText(text("valve Valve valve"));
        QTest::mouseClick(&edited.tool(FindTool), Qt::LeftButton);
        FindDialog* dialog = edited.findDialog();
        QVERIFY(dialog);
        QCOMPARE(dialog->parentWidget(), edited.editor.get());
        QVERIFY(dialog->isVisible());
        QVERIFY(!dialog->isModal());
        QTRY_COMPARE(QApplication::activeWindow(), dialog);

        Q_EMIT dialog->findNext(text("Valve"), Qt::CaseSensitive);
        QCOMPARE(edited.selectedAt(), 6);
        Q_EMIT dialog->findNext(text("Valve"), Qt::CaseInsensitive);
        QCOMPARE(edited.selectedAt(), 12);
        Q_EMIT dialog->findPrevious(text("valve"), Qt::CaseSensitive);
        QCOMPARE(edited.selectedAt(), 0);
        QCOMPARE(edited.selected(), text("valve"));
    }

    void theFindKeysOpenTheOneFindDialog()
    {
        Edited edited(false);
        QVERIFY(edited.showInFront());
        edited.text().setPlainText(text("a a a a"));
        edited.text().setFocus();
        QTest::keySequence(&edited.text(), QKeySequence(QKeySequence::Find));
        QTRY_VERIFY(edited.findDialog());
        QPointer<FindDialog> dialog = edited.findDialog();
        QVERIFY(dialog->isVisible());
        QVERIFY(edited.scripts.calls.isEmpty());

        QTRY_COMPARE(QApplication::activeWindow(), dialog.data());
        dialog->close();
        QVERIFY(dialog);
        edited.editor->activateWindow(); // as window managers do, when a dialog goes
        QTRY_COMPARE(QApplication::activeWindow(), edited.editor.get());
        edited.editor->openScriptHelp();
        QCOMPARE(edited.editor->findChildren<FindDialog*>(), QList<FindDialog*>{dialog.data()});
        QVERIFY(dialog->isVisible());
        QTRY_COMPARE(QApplication::activeWindow(), dialog.data());
        Q_EMIT dialog->findNext(text("a"), Qt::CaseSensitive);
        QCOMPARE(edited.selectedAt(), 0); // found once: not connected a second time
    }

    void aFindDialogInTheBackgroundComesToTheFront()
    {
        const Edited edited;
        QVERIFY(edited.showInFront());
        edited.editor->openScriptHelp();
        FindDialog* dialog = edited.findDialog();
        QTRY_COMPARE(QApplication::activeWindow(), dialog);
        edited.editor->activateWindow();
        QTRY_COMPARE(QApplication::activeWindow(), edited.editor.get());
        QVERIFY(dialog->isVisible());

        const WindowEvents events(*dialog);
        edited.editor->openScriptHelp();
        QCOMPARE(events.raised, 1);
        QTRY_COMPARE(QApplication::activeWindow(), dialog);
    }

    void theUserFindsByKeys()
    {
        const Edited edited;
        QVERIFY(edited.showInFront());
        edited.text().setPlainText(text("valve Valve fan"));
        edited.text().setFocus();
        QTest::keySequence(&edited.text(), QKeySequence(QKeySequence::Find));
        QTRY_VERIFY(edited.findDialog());
        QTRY_COMPARE(QApplication::activeWindow(), edited.findDialog());
        QTest::keyClicks(QApplication::focusWidget(), text("valve"));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(edited.selectedAt(), 0);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
        QCOMPARE(edited.selectedAt(), 6);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return); // round
        QCOMPARE(edited.selectedAt(), 0);
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return, Qt::ShiftModifier); // not round
        QCOMPARE(edited.selectedAt(), 0);
    }

    void hidingTheEditorHidesTheFindDialog()
    {
        Edited edited;
        QVERIFY(edited.showInFront());
        edited.editor->openScriptHelp();
        QPointer<FindDialog> dialog = edited.findDialog();
        QVERIFY(dialog->isVisible());
        edited.editor->hide();
        QVERIFY(dialog);
        QVERIFY(!dialog->isVisible());
        edited.editor->show();
        QVERIFY(!dialog->isVisible());
    }

    void hidingWithoutAFindDialogIsPlain()
    {
        const Edited edited;
        QVERIFY(edited.showInFront());
        edited.editor->hide();
        QVERIFY(!edited.editor->isVisible());
        QVERIFY(!edited.findDialog());
    }

    void theFindDialogEndsWithTheEditor()
    {
        Edited edited;
        QVERIFY(edited.showInFront());
        edited.editor->openScriptHelp();
        QPointer<FindDialog> dialog = edited.findDialog();
        const WindowEvents events(*dialog);
        QSignalSpy finished(dialog, &QDialog::finished);
        edited.editor.reset();
        QVERIFY(!dialog);
        QCOMPARE(finished.count(), 1); // closed, not just destroyed
        QCOMPARE(events.deletedByClosing, QList<bool>{true});
    }

    void aHiddenFindDialogEndsWithTheEditorToo()
    {
        Edited edited;
        QVERIFY(edited.showInFront());
        edited.editor->openScriptHelp();
        QPointer<FindDialog> dialog = edited.findDialog();
        dialog->hide();
        const WindowEvents events(*dialog);
        edited.editor.reset();
        QVERIFY(!dialog);
        QCOMPARE(events.deletedByClosing, QList<bool>{true});
    }
};

QTEST_MAIN(tst_KorvaneScriptorEditorFinding)
#include "tst_korvanescriptoreditorfinding.moc"
