// The tools of the script editor, and what they insert: files and points.

#include "tests/scada/editedscript.h"
#include "tests/support/dragoff.h"
#include "tests/support/markingtranslator.h"
#include "tests/support/offscreenwarnings.h"
#include "tests/support/ownsettings.h"
#include "tests/support/testruntime.h"

#include <QAction>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QTemporaryDir>
#include <QTimer>
#include <QTreeView>

#include <memory>

using Korvane::ScadaObjectType;

namespace {

/// The current folder is another one while it lives.
class CurrentFolder
{
public:
    explicit CurrentFolder(const QString& folder) : m_before(QDir::currentPath()) { QDir::setCurrent(folder); }
    Q_DISABLE_COPY(CurrentFolder)
    ~CurrentFolder() { QDir::setCurrent(m_before); }

private:
    QString m_before;
};

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

/// How often each tool has done what it is for, by its place.
QList<int> timesWorked(const Edited& edited)
{
    return {edited.scripts.calls.size(), edited.browsers().size(), edited.editor->script().count(text("''")),
            edited.editor->findChildren<FindDialog*>().size()};
}

void letGoOutside(QToolButton& button)
{
    const QPoint outside(-50, -50);
    QMouseEvent release(QEvent::MouseButtonRelease, outside, button.mapToGlobal(outside), Qt::LeftButton, {}, {});
    QCoreApplication::sendEvent(&button, &release);
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

    void aToolWorksWhenItsButtonComesUpClickedOrNot_data()
    {
        QTest::addColumn<int>("tool");
        QTest::newRow("run") << int(RunTool);
        QTest::newRow("point") << int(PointTool);
        QTest::newRow("file") << int(FileTool);
        QTest::newRow("find") << int(FindTool);
    }
    void aToolWorksWhenItsButtonComesUpClickedOrNot()
    {
        QFETCH(int, tool);
        const Edited edited(false);
        QVERIFY(edited.showInFront());
        QToolButton& button = edited.tool(Tool(tool));
        QSignalSpy clicked(&button, &QToolButton::clicked);
        if (tool == FileTool)
            answerFileDialog(edited, {});
        QTest::mousePress(&button, Qt::LeftButton);
        QCOMPARE(timesWorked(edited), (QList<int>{0, 0, 0, 0}));
        dragOff(button);
        QList<int> once{0, 0, 0, 0};
        once[tool] = 1;
        QCOMPARE(timesWorked(edited), once);
        letGoOutside(button); // it has come up already
        QCOMPARE(timesWorked(edited), once);
        QCOMPARE(clicked.count(), 0);
    }

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
        QVERIFY(question->isForEditor);
    }

    void aCancelledFileDialogReplacesASelectionByTheQuotes()
    {
        Edited edited;
        edited.text().setPlainText(text("play(FILE)"));
        edited.setPosition(9, 5);
        answerFileDialog(edited, {});
        edited.editor->openFile();
        QCOMPARE(edited.editor->script(), text("play('')"));
    }

    // Not in the current folder: the dialog is given none.
    void theFileDialogStartsInTheFolderVisitedLast()
    {
        const QTemporaryDir visited;
        const QTemporaryDir current;
        const CurrentFolder inCurrent(current.path());
        const Edited edited;
        answerFileDialog(edited, visited.path()); // goes into the folder
        edited.editor->openFile();
        const auto question = answerFileDialog(edited, {});
        edited.editor->openFile();
        QCOMPARE(question->folder, QDir(visited.path()).absolutePath());
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

    // Kept: the path is inserted as it is, although the literal ends at the apostrophe.
    void anApostropheInAFilesNameIsNotEscaped()
    {
        const QDir program(QCoreApplication::applicationDirPath());
        const QTemporaryDir sounds(program.filePath(text("sounds-XXXXXX")));
        const QString file = writeFile(QDir(sounds.path()), text("o'clock.wav"));
        const Edited edited;
        answerFileDialog(edited, file);
        edited.editor->openFile();
        QCOMPARE(edited.editor->script(), text("'") + QDir(sounds.path()).dirName() + text("/o'clock.wav'"));
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

    void pointBrowsersEndWithTheEditor()
    {
        Edited edited;
        QVERIFY(edited.showInFront());
        edited.editor->openPointBrowser();
        edited.editor->openPointBrowser();
        const QList<PointBrowserDialog*> browsers = edited.browsers();
        const QPointer<PointBrowserDialog> first = browsers.at(0);
        const QPointer<PointBrowserDialog> second = browsers.at(1);
        edited.editor.reset();
        QVERIFY(!first);
        QVERIFY(!second);
    }

    void thePointBrowserListsPointsAndUnitsWithoutPastValues()
    {
        TestRuntime points;
        points.add(ScadaObjectType::DigitalPoint, 100001, text("p101.run"));
        points.add(ScadaObjectType::AnalogPoint, 200001, text("p101.flow"));
        points.add(ScadaObjectType::RtuObject, 5, text("rtu5"));
        points.add(ScadaObjectType::ChannelObject, 6, text("line6"));
        PointDirectory::registerDirectory(&points);
        const Edited edited;
        edited.editor->openPointBrowser();
        const PointBrowserDialog* browser = edited.browsers().constFirst();
        QCOMPARE(browser->findChild<QLabel*>(text("countLabel"))->text(), text("3 of 3"));
        QVERIFY(
            browser->findChild<QTreeView*>(text("fieldsView"))->isColumnHidden(1)); // what a data service would know
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

    void aPointTakenReplacesASelection()
    {
        TestRuntime points;
        points.add(ScadaObjectType::DigitalPoint, 100001, text("p101.run"));
        PointDirectory::registerDirectory(&points);
        Edited edited;
        edited.text().setPlainText(text("value(POINT)"));
        edited.setPosition(11, 6);
        edited.editor->openPointBrowser();
        PointBrowserDialog* browser = edited.browsers().constFirst();
        browser->locateToPoint(ScadaObjectType::DigitalPoint, 100001);
        Q_EMIT browser->emitOk();
        QCOMPARE(edited.editor->script(), text("value(p101.run)"));
    }

    // Kept: nothing selected there is an empty name here.
    void nothingTakenRemovesASelection()
    {
        Edited edited;
        edited.text().setPlainText(text("value(POINT)"));
        edited.setPosition(6, 11);
        edited.editor->openPointBrowser();
        Q_EMIT edited.browsers().constFirst()->emitOk();
        QCOMPARE(edited.editor->script(), text("value()"));
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
