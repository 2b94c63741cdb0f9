// The tools of the script editor: finding, and inserting files and points.

#include "tests/scada/editedscript.h"
#include "tests/support/markingtranslator.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/ownsettings.h"
#include "tests/support/testruntime.h"

#include <QAction>
#include <QFileDialog>
#include <QLineEdit>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>

#include <memory>

using Korvane::ScadaObjectType;

namespace {

/// What the file dialog looked like that came up.
struct FileQuestion
{
    QString caption;
    QStringList filters;
    QString folder;
    bool isForEditor = false;
};

/// Has the next file dialog answered with \p path, or cancelled when that is empty, and returns what it asked.
std::shared_ptr<FileQuestion> answerFileDialog(const Edited& edited, const QString& path)
{
    auto question = std::make_shared<FileQuestion>();
    QWidget* editor = edited.editor.get();
    QTimer::singleShot(0, [question, editor, path] {
        auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        *question = {dialog->windowTitle(), dialog->nameFilters(), dialog->directory().absolutePath(),
                     dialog->parentWidget() == editor};
        if (path.isEmpty()) {
            QTest::keyClick(dialog, Qt::Key_Escape);
            return;
        }
        auto* name = dialog->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
        QTest::keyClicks(name, path);
        QTest::keyClick(name, Qt::Key_Return);
        if (dialog->isVisible())
            dialog->reject(); // the file was not taken: the test goes on to say so
    });
    return question;
}

QString writeFile(const QDir& folder, const QString& name)
{
    QFile file(folder.filePath(name));
    if (!folder.mkpath(QFileInfo(file).path()) || !file.open(QIODevice::WriteOnly))
        qFatal("%s can't be written", qPrintable(file.fileName()));
    return file.fileName();
}

} // namespace

class tst_KorvaneScriptorEditorTools : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        dropOffscreenWarnings();
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    }

    // The first of those with a file dialog: later ones start where the last file was.
    void aCancelledFileDialogInsertsTheQuotesAlone()
    {
        Edited edited;
        edited.text().setPlainText(text("play()"));
        edited.setPosition(5, 5);
        const auto question = answerFileDialog(edited, {});
        edited.editor->openFile();
        QCOMPARE(edited.editor->script(), text("play('')"));
        QCOMPARE(question->caption, text("Select file"));
        QCOMPARE(question->filters,
                 QStringList({text("Canvas File (*.pws)"), text("Sound File (*.wav)"), text("All Files(*.*)")}));
        QCOMPARE(question->folder, QDir::currentPath());
        QVERIFY(question->isForEditor);
    }

    void findingForward_data()
    {
        QTest::addColumn<int>("anchor");
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("wanted");
        QTest::addColumn<bool>("isCaseSensitive");
        QTest::addColumn<int>("start"); ///< of the selection afterwards
        QTest::addColumn<int>("end");
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
        QTest::newRow("not there: a selection stays") << 16 << 13 << "motor" << true << 13 << 16;
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
        QTEST(edited.text().textCursor().selectionStart(), "start");
        QTEST(edited.text().textCursor().selectionEnd(), "end");
    }

    void findingBackward_data()
    {
        QTest::addColumn<int>("anchor");
        QTest::addColumn<int>("position");
        QTest::addColumn<QString>("wanted");
        QTest::addColumn<bool>("isCaseSensitive");
        QTest::addColumn<int>("start");
        QTest::addColumn<int>("end");
        QTest::newRow("the one before") << 25 << 25 << "pump" << true << 20 << 24;
        QTest::newRow("before a selection") << 20 << 24 << "pump" << true << 0 << 4;
        QTest::newRow("before a selection, in any case") << 20 << 24 << "pump" << false << 11 << 15;
        QTest::newRow("only below the cursor: nothing changes") << 3 << 3 << "fan" << true << 3 << 3;
        QTest::newRow("only below: a selection stays") << 3 << 6 << "fan" << true << 3 << 6;
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
        QTEST(edited.text().textCursor().selectionStart(), "start");
        QTEST(edited.text().textCursor().selectionEnd(), "end");
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
        QVERIFY(QTest::qWaitForWindowActive(dialog));

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

        dialog->close();
        QVERIFY(dialog);
        edited.editor->openScriptHelp();
        QCOMPARE(edited.editor->findChildren<FindDialog*>(), QList<FindDialog*>{dialog.data()});
        QVERIFY(dialog->isVisible());
        QVERIFY(QTest::qWaitForWindowActive(dialog.data()));
        Q_EMIT dialog->findNext(text("a"), Qt::CaseSensitive);
        QCOMPARE(edited.selectedAt(), 0); // found once: not connected a second time
    }

    void theUserFindsByKeys()
    {
        const Edited edited;
        QVERIFY(edited.showInFront());
        edited.text().setPlainText(text("valve Valve fan"));
        edited.text().setFocus();
        QTest::keySequence(&edited.text(), QKeySequence(QKeySequence::Find));
        QTRY_VERIFY(edited.findDialog());
        QVERIFY(QTest::qWaitForWindowActive(edited.findDialog()));
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
        QSignalSpy finished(dialog, &QDialog::finished);
        edited.editor.reset();
        QVERIFY(!dialog);
        QCOMPARE(finished.count(), 1); // closed, not just destroyed
    }

    void aFileIsInsertedRelativeToTheProgram()
    {
        const QDir program(QCoreApplication::applicationDirPath());
        const QTemporaryDir sounds(program.filePath(text("sounds-XXXXXX")));
        QVERIFY(sounds.isValid());
        const QString file = writeFile(QDir(sounds.path()), text("alarm.wav"));
        Edited edited;
        edited.text().setPlainText(text("play(FILE)"));
        edited.setPosition(5, 9); // a selection is replaced
        answerFileDialog(edited, file);
        edited.editor->openFile();
        QCOMPARE(edited.editor->script(), text("play('") + QDir(sounds.path()).dirName() + text("/alarm.wav')"));
        QVERIFY(!edited.text().textCursor().hasSelection());
    }

    void aFileElsewhereStepsOutOfTheProgramsFolder()
    {
        const QTemporaryDir elsewhere;
        const QString file = writeFile(QDir(elsewhere.path()), text("page one.pws"));
        Edited edited;
        answerFileDialog(edited, file);
        QTest::mouseClick(&edited.tool(FileTool), Qt::LeftButton);
        const QString inserted = edited.editor->script();
        QVERIFY2(inserted.startsWith(text("'../")) && inserted.endsWith(text("/page one.pws'")), qPrintable(inserted));
        const QString path = inserted.mid(1, inserted.size() - 2);
        QCOMPARE(QDir::cleanPath(QCoreApplication::applicationDirPath() + QLatin1Char('/') + path), file);
    }

    void theFileDialogIsTranslated()
    {
        const Edited edited;
        const MarkingTranslator translator;
        const auto question = answerFileDialog(edited, {});
        edited.editor->openFile();
        QCOMPARE(question->caption, text("KorvaneScriptorEditor::Select file"));
        QCOMPARE(question->filters.first(), text("KorvaneScriptorEditor::Canvas File (*.pws)"));
    }

    void thePointBrowserOpensAnewEachTime()
    {
        const Edited edited;
        QVERIFY(edited.showInFront());
        QTest::mouseClick(&edited.tool(PointTool), Qt::LeftButton);
        edited.editor->openPointBrowser();
        QCOMPARE(edited.browsers().size(), 2);
        for (QPointer<PointBrowserDialog> browser : edited.browsers()) {
            QCOMPARE(browser->parentWidget(), edited.editor.get());
            QCOMPARE(int(browser->windowType()), int(Qt::Window));
            QVERIFY(browser->isVisible());
            QVERIFY(!browser->isModal());
            browser->close();
            QTRY_VERIFY(!browser);
        }
        QVERIFY(edited.browsers().isEmpty());
    }

    void aPointTakenIsInserted_data()
    {
        QTest::addColumn<int>("type");
        QTest::addColumn<int>("id");
        QTest::addColumn<QString>("inserted");
        QTest::newRow("digital point") << int(ScadaObjectType::DigitalPoint) << 100001 << "p101.run";
        QTest::newRow("analog point") << int(ScadaObjectType::AnalogPoint) << 200001 << "p101.flow";
        QTest::newRow("unit") << int(ScadaObjectType::RtuObject) << 5 << "@R::rtu5";
        QTest::newRow("a line is not offered") << int(ScadaObjectType::ChannelObject) << 6 << "";
    }
    void aPointTakenIsInserted()
    {
        QFETCH(int, type);
        QFETCH(int, id);
        QFETCH(QString, inserted);
        TestRuntime points;
        points.add(ScadaObjectType::DigitalPoint, 100001, text("p101.run"));
        points.add(ScadaObjectType::AnalogPoint, 200001, text("p101.flow"));
        points.add(ScadaObjectType::RtuObject, 5, text("rtu5"));
        points.add(ScadaObjectType::ChannelObject, 6, text("line6"));
        PointDirectory::registerDirectory(&points);
        Edited edited;
        edited.text().setPlainText(text("value()"));
        edited.setPosition(6, 6);
        edited.editor->openPointBrowser();
        PointBrowserDialog* browser = edited.browsers().constFirst();
        browser->locateToPoint(ScadaObjectType(type), id);
        Q_EMIT browser->emitOk();
        QCOMPARE(edited.editor->script(), text("value(") + inserted + text(")"));
        QVERIFY(edited.browsers().contains(browser)); // stays for the next one
        Q_EMIT browser->emitOk();
        QCOMPARE(edited.editor->script(), text("value(") + inserted.repeated(2) + text(")"));
    }

    void onlyAPointBrowserInserts()
    {
        TestRuntime points;
        points.add(ScadaObjectType::DigitalPoint, 100001, text("p101.run"));
        PointDirectory::registerDirectory(&points);
        Edited edited;
        edited.editor->openPointBrowser();
        edited.browsers().constFirst()->locateToPoint(ScadaObjectType::DigitalPoint, 100001);
        edited.editor->addPointName();
        QAction action;
        connect(&action, &QAction::triggered, edited.editor.get(), &KorvaneScriptorEditor::addPointName);
        action.trigger();
        QVERIFY(edited.editor->script().isEmpty());
    }

    void aPointTakenWithoutATextAreaGoesNowhere()
    {
        KorvaneScriptorEditor editor(nullptr);
        editor.init(nullptr, nullptr);
        editor.openPointBrowser();
        Q_EMIT editor.findChild<PointBrowserDialog*>()->emitOk();
        QVERIFY(editor.script().isEmpty());
    }

private:
    OwnSettings m_settings;
};

QTEST_MAIN(tst_KorvaneScriptorEditorTools)
#include "tst_korvanescriptoreditortools.moc"
