#include "platform/ui/hidpi.h"
#include "tests/scada/arealessscripts.h"
#include "tests/scada/editedscript.h"
#include "tests/support/markingtranslator.h"
#include "tests/support/offscreenwarnings.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QVBoxLayout>

using Operation = TestScriptInterface::Operation;
using Call = TestScriptInterface::Call;

namespace {

bool showsIcon(const QToolButton& button, const char* path)
{
    const QPixmap expected = HiDPI::dpiScaledPixmap(QString::fromLatin1(path), nullptr);
    return !expected.isNull() &&
           button.icon().pixmap(expected.size() / expected.devicePixelRatio()).toImage() == expected.toImage();
}

} // namespace

class tst_KorvaneScriptorEditor : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { dropOffscreenWarnings(); }

    void slotsStandInTheirOrder()
    {
        const QMetaObject& meta = KorvaneScriptorEditor::staticMetaObject;
        QCOMPARE(meta.superClass(), &QWidget::staticMetaObject);
        QStringList names;
        for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
            QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
            names.append(QString::fromLatin1(meta.method(i).methodSignature()));
        }
        QCOMPARE(names, QStringList({text("addPointName()"), text("openPointBrowser()"), text("openFile()"),
                                     text("openScriptHelp()"), text("slotStdOut(QString)"), text("slotStdErr(QString)"),
                                     text("consoleMessage(QString)"), text("compile()"),
                                     text("findPrevious(QString,Qt::CaseSensitivity)"),
                                     text("findNext(QString,Qt::CaseSensitivity)")}));
    }

    void nothingIsBuiltBeforeInit()
    {
        QWidget parent;
        KorvaneScriptorEditor editor(&parent);
        QCOMPARE(editor.parentWidget(), &parent);
        QVERIFY(editor.children().isEmpty());
        QVERIFY(!editor.layout());
        QVERIFY(!editor.scriptEditor());
        QVERIFY(editor.script().isEmpty());
    }

    void itsLayoutHasNoMargins()
    {
        const Edited edited;
        auto* layout = qobject_cast<QVBoxLayout*>(edited.editor->layout());
        QVERIFY(layout);
        QCOMPARE(layout->contentsMargins(), QMargins());
        QCOMPARE(layout->spacing(), 0);
        QCOMPARE(layout->count(), 2);
        QVERIFY(qobject_cast<QFrame*>(layout->itemAt(0)->widget()));
        QCOMPARE(layout->itemAt(1)->widget(), &edited.splitter());
    }

    void theToolBarHoldsFourToolsAndAStretch()
    {
        const Edited edited;
        auto* bar = qobject_cast<QFrame*>(edited.editor->layout()->itemAt(0)->widget());
        QCOMPARE(bar->frameShape(), QFrame::Panel);
        QCOMPARE(bar->frameShadow(), QFrame::Raised);
        auto* layout = qobject_cast<QHBoxLayout*>(bar->layout());
        QVERIFY(layout);
        QCOMPARE(layout->contentsMargins(), QMargins());
        QCOMPARE(layout->spacing(), 0);
        QCOMPARE(layout->count(), 5);
        const QSpacerItem* stretch = layout->itemAt(4)->spacerItem();
        QVERIFY(stretch);
        QCOMPARE(stretch->sizeHint(), QSize(30, 24));
        QCOMPARE(stretch->sizePolicy(), QSizePolicy(QSizePolicy::Expanding, QSizePolicy::Minimum));
    }

    void tools_data()
    {
        QTest::addColumn<int>("tool");
        QTest::addColumn<QByteArray>("icon");
        QTest::addColumn<QString>("toolTip");
        QTest::addColumn<QKeySequence>("shortcut");
        QTest::newRow("run") << int(RunTool) << QByteArray(":/KVC/image/execute") << "Compile Script"
                             << QKeySequence(text("F5"));
        QTest::newRow("point") << int(PointTool) << QByteArray(":/KVC/image/tag") << "Open Point Explorer"
                               << QKeySequence();
        QTest::newRow("file") << int(FileTool) << QByteArray(":/KVC/image/folder-open") << "Open File Browser"
                              << QKeySequence();
        QTest::newRow("find") << int(FindTool) << QByteArray(":/KVC/image/find") << "Search"
                              << QKeySequence(QKeySequence::Find);
    }
    void tools()
    {
        QFETCH(int, tool);
        QFETCH(QByteArray, icon);
        QFETCH(QString, toolTip);
        const Edited edited;
        const QToolButton& button = edited.tool(Tool(tool));
        QVERIFY(button.autoRaise());
        QVERIFY(showsIcon(button, icon.constData()));
        QCOMPARE(button.toolTip(), toolTip);
        QTEST(button.shortcut(), "shortcut");

        const MarkingTranslator translator;
        const Edited translated;
        QCOMPARE(translated.tool(Tool(tool)).toolTip(), text("KorvaneScriptorEditor::") + toolTip);
    }

    void theSplitterHoldsTextAreaAndOutput()
    {
        Edited edited;
        const QSplitter& splitter = edited.splitter();
        QCOMPARE(splitter.orientation(), Qt::Vertical);
        QVERIFY(!splitter.opaqueResize());
        QVERIFY(splitter.childrenCollapsible());
        QCOMPARE(splitter.count(), 2);
        QCOMPARE(splitter.widget(0), edited.editor->scriptEditor());
        QCOMPARE(splitter.widget(0)->sizePolicy().verticalStretch(), 3);
        QCOMPARE(splitter.widget(1)->sizePolicy().verticalStretch(), 1);

        const QWidget* panel = splitter.widget(1);
        auto* layout = qobject_cast<QVBoxLayout*>(panel->layout());
        QVERIFY(layout);
        QCOMPARE(layout->contentsMargins(), QMargins());
        QCOMPARE(layout->spacing(), 0);
        QCOMPARE(layout->count(), 2);
        auto* label = qobject_cast<QLabel*>(layout->itemAt(0)->widget());
        QVERIFY(label);
        QCOMPARE(label->text(), text("Output: "));
        QCOMPARE(layout->itemAt(1)->widget(), &edited.console());

        const MarkingTranslator translator;
        const Edited translated;
        QCOMPARE(translated.splitter().widget(1)->findChild<QLabel*>()->text(),
                 text("KorvaneScriptorEditor::Output: "));
    }

    void theScriptInterfaceMakesTheTextArea()
    {
        TestCanvas canvas;
        TestScriptInterface scripts;
        KorvaneScriptorEditor editor(nullptr);
        editor.init(&canvas, &scripts);
        QVERIFY(editor.scriptEditor());
        QCOMPARE(scripts.calls,
                 (QList<Call>{{Operation::CreateEditor, &canvas, nullptr, {}, {}, editor.scriptEditor()}}));
    }

    void withoutAScriptInterfaceThereIsTheToolBarAlone()
    {
        TestCanvas canvas;
        KorvaneScriptorEditor editor(nullptr);
        editor.init(&canvas, nullptr);
        QCOMPARE(editor.layout()->count(), 1);
        QVERIFY(!editor.findChild<QSplitter*>());
        QVERIFY(!editor.scriptEditor());
        editor.setScript(text("x"));
        QVERIFY(editor.script().isEmpty());
        editor.clear();
        editor.compile();
        editor.openFile(); // opens no dialog: nothing here would close it
        editor.slotStdOut(text("a\n"));
        editor.consoleMessage(text("a"));
        editor.findNext(text("x"), Qt::CaseSensitive);
        editor.findPrevious(text("x"), Qt::CaseSensitive);
        QVERIFY(!editor.findChild<QTextBrowser*>());
    }

    void withoutATextAreaThereAreToolsAndConsole_data()
    {
        QTest::addColumn<bool>("hasWidget");
        QTest::newRow("the script interface makes no widget") << false;
        QTest::newRow("the script interface makes another widget") << true;
    }
    void withoutATextAreaThereAreToolsAndConsole()
    {
        QFETCH(bool, hasWidget);
        QWidget* made = hasWidget ? new QWidget : nullptr;
        AreaLessScripts scripts(made);
        KorvaneScriptorEditor editor(nullptr);
        TestCanvas canvas;
        editor.init(&canvas, &scripts);
        QCOMPARE(editor.findChildren<QToolButton*>().size(), 4);
        QVERIFY(!editor.scriptEditor());
        auto* splitter = editor.findChild<QSplitter*>();
        auto* console = editor.findChild<QTextBrowser*>();
        QVERIFY(splitter && console);
        QCOMPARE(splitter->count(), hasWidget ? 2 : 1);
        if (hasWidget) {
            QCOMPARE(splitter->widget(0), made);
            QCOMPARE(made->sizePolicy().verticalStretch(), 3);
        }
        const QWidget* panel = splitter->widget(splitter->count() - 1);
        QCOMPARE(console->parentWidget(), panel);
        QCOMPARE(panel->sizePolicy().verticalStretch(), 1);

        editor.setScript(text("x"));
        QVERIFY(editor.script().isEmpty());
        Q_EMIT scripts.stdOut(text("a\n"));
        editor.consoleMessage(text("b"));
        editor.compile();
        editor.openFile(); // opens no dialog: nothing here would close it
        editor.findNext(text("x"), Qt::CaseSensitive);
        editor.findPrevious(text("x"), Qt::CaseSensitive);
        QCOMPARE(console->toPlainText(), text("a\nb"));
        editor.clear();
        QVERIFY(console->toPlainText().isEmpty());
        QCOMPARE(scripts.calls, QList<Call>());
    }

    void aScriptIsSetOnceItsContextIsRefreshed()
    {
        Edited edited;
        edited.text().setPlainText(text("old"));
        edited.editor->setScript(text("new\n\tline\n"));
        QCOMPARE(edited.editor->script(), text("new\n\tline\n"));
        QCOMPARE(edited.scripts.calls,
                 (QList<Call>{{Operation::Refresh, &edited.canvas, nullptr, text("old"), {}, &edited.text()}}));
    }

    void anotherCanvasIsUsedFromThenOn()
    {
        Edited edited;
        edited.editor->setScript(text("x"));
        edited.scripts.calls.clear();
        const QPlainTextEdit* area = &edited.text();
        TestCanvas other;
        edited.editor->setCurrentCanvas(&other);
        QVERIFY(edited.scripts.calls.isEmpty());
        QCOMPARE(&edited.text(), area);
        QCOMPARE(edited.editor->script(), text("x"));
        edited.editor->setScript(text("y"));
        edited.editor->compile();
        edited.editor->setCurrentCanvas(nullptr);
        edited.editor->setScript(text("z"));
        edited.editor->compile();
        QCOMPARE(edited.scripts.calls,
                 (QList<Call>{{Operation::Refresh, &other, nullptr, text("x"), {}, &edited.text()},
                              {Operation::RunForCanvas, &other, nullptr, text("y")},
                              {Operation::Refresh, &other, nullptr, text("y"), {}, &edited.text()},
                              {Operation::Refresh, nullptr, nullptr, text("y"), {}, &edited.text()},
                              {Operation::Run, nullptr, nullptr, text("z")}}));
    }

    void compilingRunsTheTextForItsCanvasAndRefreshes()
    {
        Edited edited;
        edited.text().setPlainText(text("go()"));
        edited.editor->consoleMessage(text("old"));
        QStringList atRun;
        edited.scripts.whileRunning = [&] {
            atRun = edited.paragraphs();
            Q_EMIT edited.scripts.stdOut(text("done\n"));
        };
        edited.editor->compile();
        QCOMPARE(edited.scripts.calls,
                 (QList<Call>{{Operation::RunForCanvas, &edited.canvas, nullptr, text("go()")},
                              {Operation::Refresh, &edited.canvas, nullptr, text("go()"), {}, &edited.text()}}));
        QCOMPARE(atRun, QStringList(QString())); // the console is empty by then
        QCOMPARE(edited.paragraphs(), QStringList(text("done")));
    }

    void withoutACanvasTheTextRunsByItself()
    {
        Edited edited(false);
        edited.text().setPlainText(text("go()"));
        edited.editor->consoleMessage(text("old"));
        edited.editor->compile();
        QCOMPARE(edited.scripts.calls, (QList<Call>{{Operation::Run, nullptr, nullptr, text("go()")}}));
        QCOMPARE(edited.paragraphs(), QStringList(QString()));
    }

    void theRunButtonAndF5Compile()
    {
        const Edited edited(false);
        QVERIFY(edited.showInFront());
        QTest::mouseClick(&edited.tool(RunTool), Qt::LeftButton);
        QCOMPARE(edited.scripts.calls.size(), 1);
        edited.text().setFocus();
        QTest::keyClick(&edited.text(), Qt::Key_F5);
        QTRY_COMPARE(edited.scripts.calls.size(), 2);
        QVERIFY(!edited.findDialog());
    }

    void outputIsShownLineByLine()
    {
        Edited edited;
        edited.editor->slotStdOut(text("a"));
        QCOMPARE(edited.paragraphs(), QStringList(QString()));
        edited.editor->slotStdOut(text("b\nc"));
        QCOMPARE(edited.paragraphs(), QStringList(text("ab")));
        edited.editor->slotStdOut(text("\n"));
        QCOMPARE(edited.paragraphs(), QStringList({text("ab"), text("c")}));
        edited.editor->slotStdOut(QString());
        QCOMPARE(edited.paragraphs(), QStringList({text("ab"), text("c")}));
    }

    void severalLinesComeInOneCall()
    {
        Edited edited;
        edited.editor->slotStdOut(text("x\n\ny\n"));
        QCOMPARE(edited.paragraphs(), QStringList({text("x"), QString(), text("y")}));
    }

    // Kept: only the line feed ends a line, and a carriage return that is shown begins another paragraph.
    void aCarriageReturnBeforeALineFeedLeavesAnEmptyParagraph()
    {
        Edited edited;
        edited.editor->slotStdOut(text("a\r"));
        QCOMPARE(edited.paragraphs(), QStringList(QString()));
        edited.editor->slotStdOut(text("\nb\r\n"));
        QCOMPARE(edited.paragraphs(), QStringList({text("a"), QString(), text("b"), QString()}));
    }

    // Kept: an empty paragraph added to an empty console shows nothing.
    void emptyLinesBeforeTheFirstTextShowNothing()
    {
        Edited edited;
        edited.editor->slotStdOut(text("\n\nx\n"));
        QCOMPARE(edited.paragraphs(), QStringList(text("x")));
    }

    void outputAndErrorsKeepTheirOwnUnfinishedLines()
    {
        Edited edited;
        Q_EMIT edited.scripts.stdOut(text("out"));
        Q_EMIT edited.scripts.stdErr(text("err"));
        Q_EMIT edited.scripts.stdErr(text("or\n"));
        QCOMPARE(edited.paragraphs(), QStringList(text("error")));
        Q_EMIT edited.scripts.stdOut(text("put\n"));
        QCOMPARE(edited.paragraphs(), QStringList({text("error"), text("output")}));
        const QTextBlock first = edited.console().document()->begin();
        QCOMPARE(first.begin().fragment().charFormat(), first.next().begin().fragment().charFormat()); // shown alike
    }

    void unfinishedLinesOutliveClearingAndCompiling()
    {
        Edited edited;
        edited.editor->slotStdOut(text("o"));
        edited.editor->slotStdErr(text("e"));
        edited.editor->clear();
        edited.editor->compile();
        edited.editor->slotStdOut(text("ut\n"));
        edited.editor->slotStdErr(text("rr\n"));
        QCOMPARE(edited.paragraphs(), QStringList({text("out"), text("err")}));
    }

    void outputIsNoMarkup()
    {
        Edited edited;
        edited.editor->slotStdOut(text("<b>x</b> &amp;\n"));
        edited.editor->consoleMessage(text("<i>y</i>"));
        QCOMPARE(edited.paragraphs(), QStringList({text("<b>x</b> &amp;"), text("<i>y</i>")}));
    }

    void aMessageIsShownAtOnce()
    {
        Edited edited;
        edited.editor->slotStdOut(text("half"));
        edited.editor->consoleMessage(text("hello"));
        edited.editor->consoleMessage(text("you"));
        QCOMPARE(edited.paragraphs(), QStringList({text("hello"), text("you")}));
        edited.editor->slotStdOut(text(" line\n"));
        QCOMPARE(edited.paragraphs(), QStringList({text("hello"), text("you"), text("half line")}));
    }

    void lineFeedsOfAMessageBeginParagraphs()
    {
        Edited edited;
        edited.editor->consoleMessage(text("a\n\nb\n"));
        QCOMPARE(edited.paragraphs(), QStringList({text("a"), QString(), text("b"), QString()}));
        edited.editor->consoleMessage(text("c")); // a paragraph of its own
        QCOMPARE(edited.paragraphs(), QStringList({text("a"), QString(), text("b"), QString(), text("c")}));
    }

    void outputGoesToTheEndWhateverTheUserHasSelected()
    {
        Edited edited;
        edited.editor->slotStdOut(text("first\nsecond\n"));
        QVERIFY(edited.console().find(text("irs"), QTextDocument::FindBackward) || edited.console().find(text("irs")));
        edited.editor->slotStdOut(text("third\n"));
        edited.editor->consoleMessage(text("fourth"));
        QCOMPARE(edited.paragraphs(), QStringList({text("first"), text("second"), text("third"), text("fourth")}));
        QCOMPARE(edited.console().textCursor().selectedText(), text("irs"));
    }

    void theConsoleFollowsItsEndUnlessScrolledAway()
    {
        Edited edited;
        QVERIFY(edited.showInFront());
        QScrollBar& bar = *edited.console().verticalScrollBar();
        const QString wrapped(2000, QLatin1Char('w'));
        for (int i = 0; i < 20; ++i) {
            edited.editor->slotStdOut(wrapped + QLatin1Char('\n'));
            QCOMPARE(bar.value(), bar.maximum());
        }
        QVERIFY(bar.maximum() > 0);
        bar.setValue(bar.maximum() / 2);
        const int away = bar.value();
        edited.editor->slotStdOut(text("more\nand more\n"));
        QCOMPARE(bar.value(), away);
    }

    void manyLinesInOnePiecesOrInMany()
    {
        QString all;
        QStringList expected;
        for (int i = 0; i < 3000; ++i) {
            expected.append(QString::number(i * 7919));
            all += expected.last() + QLatin1Char('\n');
        }
        Edited whole;
        whole.editor->slotStdOut(all);
        QCOMPARE(whole.paragraphs(), expected);
        Edited pieces;
        for (const QChar letter : qAsConst(all))
            pieces.editor->slotStdOut(QString(letter));
        QCOMPARE(pieces.paragraphs(), expected);
    }

    void anEndlessLineWaitsForItsEnd()
    {
        Edited edited;
        const QString piece(1000, QLatin1Char('x'));
        for (int i = 0; i < 100; ++i)
            edited.editor->slotStdErr(piece);
        QCOMPARE(edited.paragraphs(), QStringList(QString()));
        edited.editor->slotStdErr(text("\n"));
        QCOMPARE(edited.paragraphs(), QStringList(QString(100000, QLatin1Char('x'))));
    }

    void clearingEmptiesTextAndConsole()
    {
        Edited edited;
        edited.editor->setScript(text("x"));
        edited.editor->consoleMessage(text("y"));
        edited.scripts.calls.clear();
        edited.editor->clear();
        QVERIFY(edited.editor->script().isEmpty());
        QVERIFY(edited.console().toPlainText().isEmpty());
        QCOMPARE(edited.scripts.calls, QList<Call>());
    }
};

QTEST_MAIN(tst_KorvaneScriptorEditor)
#include "tst_korvanescriptoreditor.moc"
