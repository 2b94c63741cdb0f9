#include "host/scriptediting/scripteditor.h"
#include "tests/support/scripttext.h"

#include <QHelpEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalSpy>
#include <QTextBlock>
#include <QToolTip>
#include <QVBoxLayout>
#include <QtTest>

namespace {

QString utf8(const char* text)
{
    return QString::fromUtf8(text);
}

QString lines(int count)
{
    QString text;
    for (int line = 0; line < count; ++line)
        text += QStringLiteral("x%1 = %1\n").arg(line);
    return text;
}

/// An editor in an active window.
struct TestEditor
{
    explicit TestEditor(const QString& marked = QStringLiteral("|"))
    {
        editor.resize(400, 300);
        editor.show();
        const bool isActive = QTest::qWaitForWindowActive(&editor);
        Q_ASSERT(isActive);
        setMarkedText(editor, marked);
    }

    QString text() const { return markedText(editor); }
    void press(int key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&editor, Qt::Key(key), modifiers); }
    void undo() { press(Qt::Key_Z, Qt::ControlModifier); }

    QWidget& margin() const { return *editor.findChild<QWidget*>(QStringLiteral("lineNumbers")); }
    /// The middle of a line in the margin, counted from 1.
    QPoint inMargin(int line)
    {
        const QTextCursor cursor(editor.document()->findBlockByNumber(line - 1));
        return {margin().width() / 2, editor.cursorRect(cursor).center().y()};
    }
    void drag(QEvent::Type type, int line, Qt::MouseButton held = Qt::LeftButton)
    {
        const bool isMove = type == QEvent::MouseMove;
        const bool isRelease = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, inMargin(line), isMove ? Qt::NoButton : held, isRelease ? Qt::NoButton : held, {});
        QCoreApplication::sendEvent(&margin(), &event);
    }
    /// The colour behind the end of a line, counted from 1.
    QColor behindLine(int line)
    {
        const QTextCursor cursor(editor.document()->findBlockByNumber(line - 1));
        const QImage image = editor.viewport()->grab().toImage();
        return image.pixelColor(image.width() - 3, editor.cursorRect(cursor).center().y());
    }
    /// How the character at a position is drawn.
    QTextCharFormat format(int position) const
    {
        const QTextBlock block = editor.document()->findBlock(position);
        for (const QTextLayout::FormatRange& range : block.layout()->formats()) {
            const int begin = block.position() + range.start;
            if (begin <= position && position < begin + range.length)
                return range.format;
        }
        return {};
    }
    QTextCharFormat format(const char* text) const { return format(editor.toPlainText().indexOf(utf8(text))); }
    QColor textColour(const char* text) const { return format(text).foreground().color(); }
    /// The texts that are marked beside the current line and the error line.
    QStringList markedParts() const
    {
        QStringList parts;
        for (const QTextEdit::ExtraSelection& mark : editor.extraSelections()) {
            if (mark.cursor.hasSelection())
                parts.append(
                    QStringLiteral("%1 at %2").arg(mark.cursor.selectedText()).arg(mark.cursor.selectionStart()));
        }
        return parts;
    }
    QString toolTipAt(int line)
    {
        const QTextCursor cursor(editor.document()->findBlockByNumber(line - 1));
        const QPoint position(editor.viewport()->width() - 5, editor.cursorRect(cursor).center().y());
        QHelpEvent help(QEvent::ToolTip, position, editor.viewport()->mapToGlobal(position));
        QCoreApplication::sendEvent(editor.viewport(), &help);
        return QToolTip::isVisible() ? QToolTip::text() : QString();
    }

    ScriptEditor editor;
};

QPalette darkPalette()
{
    QPalette palette;
    palette.setColor(QPalette::Base, QColor(0x20, 0x22, 0x26));
    palette.setColor(QPalette::Text, QColor(0xee, 0xee, 0xee));
    palette.setColor(QPalette::Window, QColor(0x30, 0x33, 0x38));
    return palette;
}

/// Contrast as WCAG 2 counts it, from 1 to 21.
double contrast(const QColor& a, const QColor& b)
{
    const auto channel = [](double value) {
        return value <= 0.03928 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    const auto luminance = [&](const QColor& c) {
        return 0.2126 * channel(c.redF()) + 0.7152 * channel(c.greenF()) + 0.0722 * channel(c.blueF());
    };
    const double first = luminance(a) + 0.05;
    const double second = luminance(b) + 0.05;
    return first > second ? first / second : second / first;
}

} // namespace

class tst_ScriptEditor : public QObject
{
    Q_OBJECT

private:
    static void addRow(const char* name, const char* before, const char* after)
    {
        QTest::newRow(name) << utf8(before) << utf8(after);
    }
    static void addColumns()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("after");
    }
    /// Presses a key, compares, and goes back to what was by one undo.
    static void pressAndUndo(int key, Qt::KeyboardModifiers modifiers = {})
    {
        QFETCH(QString, before);
        TestEditor test(before);
        const QString plain = test.editor.toPlainText();
        test.press(key, modifiers);
        QTEST(test.text(), "after");
        if (test.editor.toPlainText() == plain)
            return;
        test.undo();
        QCOMPARE(test.editor.toPlainText(), plain);
        QVERIFY(!test.editor.document()->isUndoAvailable());
    }

private Q_SLOTS:
    void returnIndents_data()
    {
        addColumns();
        addRow("an empty script", "|", "\n|");
        addRow("a line without indentation", "a = 1|", "a = 1\n|");
        addRow("the indentation is kept", "\t\ta = 1|", "\t\ta = 1\n\t\t|");
        addRow("one level more behind a colon", "def f():|", "def f():\n\t|");
        addRow("one level more behind a colon and a comment", "if a:  # why:|", "if a:  # why:\n\t|");
        addRow("a colon in a comment alone counts nothing", "a = 1  # so:|", "a = 1  # so:\n|");
        addRow("a colon in a string counts nothing", "a = 'b:'|", "a = 'b:'\n|");
        addRow("a colon in an open bracket counts nothing", "\ta = {'b':|", "\ta = {'b':\n\t|");
        addRow("a colon behind a call over two lines follows its first", "\tdef f(a,\n\t\t\t\tb):|",
               "\tdef f(a,\n\t\t\t\tb):\n\t\t|");
        addRow("behind a call over two lines the indentation of its first", "\tf(a,\n\t\t\tb)|",
               "\tf(a,\n\t\t\tb)\n\t|");
        addRow("one level less behind return", "\t\treturn a|", "\t\treturn a\n\t|");
        addRow("one level less behind break", "\t\tbreak|", "\t\tbreak\n\t|");
        addRow("one level less behind continue", "\t\tcontinue|", "\t\tcontinue\n\t|");
        addRow("one level less behind pass", "\tpass  # yet|", "\tpass  # yet\n|");
        addRow("one level less behind raise", "\traise Error('a')|", "\traise Error('a')\n|");
        addRow("a name that begins like a keyword is none", "\treturned = 1|", "\treturned = 1\n\t|");
        addRow("a return behind a condition leaves nothing", "\tif a: return|", "\tif a: return\n\t|");
        addRow("a return that goes on leaves nothing yet", "\treturn (a +|", "\treturn (a +\n\t|");
        addRow("a return that a backslash carries on leaves nothing yet", "\treturn a + \\|", "\treturn a + \\\n\t|");
        addRow("a return that three quotes carry on leaves nothing yet", "\treturn '''a|", "\treturn '''a\n\t|");
        addRow("a return without indentation", "return|", "return\n|");
        addRow("three quotes keep the indentation", "\t'''return:|", "\t'''return:\n\t|");
        addRow("a line is broken in the middle", "\tab|cd", "\tab\n\t|cd");
        addRow("a line is pushed down from its begin", "|\ta", "\n|\ta");
        addRow("a line is pushed down from its text", "\t|a", "\t\n\t|a");
        addRow("spaces where the line has spaces", "    a = 1|", "    a = 1\n    |");
        addRow("a level of spaces like those around", "if a:\n  if b:|\n    c", "if a:\n  if b:\n    |\n    c");
        addRow("a level of spaces like those below", "if a:|\n   b", "if a:\n   |\n   b");
        addRow("a level of spaces like those above", "if a:\n  b\nif c:|", "if a:\n  b\nif c:\n  |");
        addRow("the nearest lines decide", "if a:\n    b\nif c:\n\td\nif e:|", "if a:\n    b\nif c:\n\td\nif e:\n\t|");
        addRow("what is selected is replaced", "\ta^b\nc|d", "\ta\n\t|d");
    }
    void returnIndents() { pressAndUndo(Qt::Key_Return); }

    void aStubIsGoneOnWith()
    {
        TestEditor test(utf8("def onTextChanged(obj):|\n\treturn\n"));
        test.press(Qt::Key_Return);
        QTest::keyClicks(&test.editor, QStringLiteral("a"));
        QCOMPARE(test.text(), utf8("def onTextChanged(obj):\n\ta|\n\treturn\n"));
    }

    void everyReturnKeyIndents()
    {
        TestEditor test(utf8("\ta|"));
        test.press(Qt::Key_Enter, Qt::KeypadModifier);
        test.press(Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(test.text(), utf8("\ta\n\t\n\t|"));
        QCOMPARE(test.editor.blockCount(), 3);
    }

    void backspaceTakesALevel_data()
    {
        addColumns();
        addRow("a tab", "\t\t|a", "\t|a");
        addRow("a level of spaces", "    if a:\n        |b", "    if a:\n    |b");
        addRow("what lies between two levels", "if a:\n    b\n      |c", "if a:\n    b\n    |c");
        addRow("two spaces where two are a level", "if a:\n  if b:\n    |c", "if a:\n  if b:\n  |c");
        addRow("spaces behind a tab", "\t  |a", "\t|a");
        addRow("in the middle of the white space", "\t|\ta", "|\ta");
        addRow("a line of white space alone", "\t\t|", "\t|");
        addRow("behind text a single character", "\ta |", "\ta|");
        addRow("a space between words is one character", "a  |b", "a |b");
        addRow("at the begin of a line the line break", "a\n|\tb", "a|\tb");
        addRow("what is selected and no more", "\t^\t|a", "\t|a");
    }
    void backspaceTakesALevel() { pressAndUndo(Qt::Key_Backspace); }

    void tabIndents_data()
    {
        addColumns();
        addRow("a tab at the cursor", "a|b", "a\t|b");
        addRow("an empty script", "|", "\t|");
        addRow("spaces to the next level", "    a\n  |b", "    a\n    |b");
        addRow("what is selected in a line is replaced", "a^bc|d", "a\t|d");
        addRow("lines that are selected", "a^\n\tb\nc|", "^\ta\n\t\tb\n\tc|");
        addRow("lines that are selected upward", "a|\n\tb\nc^", "|\ta\n\t\tb\n\tc^");
        addRow("lines that are selected from their begins", "^a\nb\n|c", "^\ta\n\tb\n|c");
        addRow("lines of spaces", "^if a:\n  b\n|", "^  if a:\n    b\n|");
        addRow("blank lines stay as they are", "^a\n\nb|", "^\ta\n\n\tb|");
    }
    void tabIndents() { pressAndUndo(Qt::Key_Tab); }

    void shiftTabUnindents_data()
    {
        addColumns();
        addRow("the line of the cursor", "\ta|b", "a|b");
        addRow("a line that isn't indented", "a|b", "a|b");
        addRow("a level of spaces", "if a:\n    b\n      c|", "if a:\n    b\n    c|");
        addRow("lines that are selected", "\ta^\n\t\tb\nc|", "^a\n\tb\nc|");
        addRow("a line that the selection only reaches", "^\ta\n\tb\n|\tc", "^a\nb\n|\tc");
        addRow("a line of white space alone", "\t\t|", "\t|");
    }
    void shiftTabUnindents() { pressAndUndo(Qt::Key_Backtab, Qt::ShiftModifier); }

    void controlSlashTogglesComments_data()
    {
        addColumns();
        addRow("a line becomes a comment", "\ta|b", "\t# a|b");
        addRow("a comment becomes code", "\t# a|b", "\ta|b");
        addRow("a comment without a space becomes code", "#a|b", "a|b");
        addRow("only one space goes", "#  a|b", " a|b");
        addRow("lines line up at the least indented", "^\ta\n\t\tb|", "^\t# a\n\t# \tb|");
        addRow("comments among code are comments in comments", "^# a\nb|", "^# # a\n# b|");
        addRow("comments alone become code", "^# a\n\t# b|", "^a\n\tb|");
        addRow("blank lines stay as they are", "^a\n\nb|", "^# a\n\n# b|");
        addRow("a line that the selection only reaches", "^a\n|b", "^# a\n|b");
        addRow("nothing but blank lines", "\t|", "\t|");
        addRow("any script", "\xed\x8e\x8c\xed\x94\x84|", "# \xed\x8e\x8c\xed\x94\x84|");
    }
    void controlSlashTogglesComments() { pressAndUndo(Qt::Key_Slash, Qt::ControlModifier); }

    void homeIsSmart_data()
    {
        addColumns();
        addRow("to the text first", "\t\tab|c", "\t\t|abc");
        addRow("then to the begin", "\t\t|abc", "|\t\tabc");
        addRow("and back to the text", "|\t\tabc", "\t\t|abc");
        addRow("from inside the white space to the text", "\t|\tabc", "\t\t|abc");
        addRow("a line without white space", "ab|c", "|abc");
        addRow("an empty line", "a\n|", "a\n|");
    }
    void homeIsSmart() { pressAndUndo(Qt::Key_Home); }

    void shiftHomeSelects()
    {
        TestEditor test(utf8("\tab|c"));
        test.press(Qt::Key_Home, Qt::ShiftModifier);
        QCOMPARE(test.text(), utf8("\t|ab^c"));
        test.press(Qt::Key_Home, Qt::ShiftModifier);
        QCOMPARE(test.text(), utf8("|\tab^c"));
    }

    void controlTabLeavesTheEditor()
    {
        QWidget window;
        QVBoxLayout layout(&window);
        layout.setSizeConstraint(QLayout::SetNoConstraint); // no hints to pass on to the screen
        auto* before = new QLineEdit(&window);
        auto* editor = new ScriptEditor(&window);
        auto* after = new QLineEdit(&window);
        for (QWidget* widget :
             {static_cast<QWidget*>(before), static_cast<QWidget*>(editor), static_cast<QWidget*>(after)})
            layout.addWidget(widget);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        editor->setFocus();
        QTest::keyClick(editor, Qt::Key_Tab, Qt::ControlModifier);
        QVERIFY(after->hasFocus());
        editor->setFocus();
        QTest::keyClick(editor, Qt::Key_Backtab, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(before->hasFocus());
        QCOMPARE(editor->toPlainText(), QString());
    }

    void theWindowKeepsItsShortcuts_data()
    {
        QTest::addColumn<QKeySequence>("keys");
        QTest::newRow("find") << QKeySequence(QKeySequence::Find);
        QTest::newRow("run") << QKeySequence(Qt::Key_F5);
        QTest::newRow("save") << QKeySequence(QKeySequence::Save);
    }
    void theWindowKeepsItsShortcuts()
    {
        QFETCH(QKeySequence, keys);
        TestEditor test(utf8("a|"));
        QShortcut shortcut(keys, &test.editor);
        const QSignalSpy activated(&shortcut, &QShortcut::activated);
        QTest::keySequence(&test.editor, keys);
        QCOMPARE(activated.count(), 1);
        QCOMPARE(test.text(), utf8("a|"));
    }

    void aReadOnlyScriptStaysAsItIs_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<int>("modifiers");
        const auto row = [](const char* name, int key, int modifiers) { QTest::newRow(name) << key << modifiers; };
        row("return", Qt::Key_Return, 0);
        row("backspace", Qt::Key_Backspace, 0);
        row("tab", Qt::Key_Tab, 0);
        row("shift and tab", Qt::Key_Backtab, Qt::ShiftModifier);
        row("control and slash", Qt::Key_Slash, Qt::ControlModifier);
        row("control and space", Qt::Key_Space, Qt::ControlModifier);
        row("a letter", Qt::Key_A, 0);
    }
    void aReadOnlyScriptStaysAsItIs()
    {
        QFETCH(int, key);
        QFETCH(int, modifiers);
        TestEditor test(utf8("\t|a"));
        test.editor.setReadOnly(true);
        test.press(key, Qt::KeyboardModifiers(modifiers));
        QCOMPARE(test.text(), utf8("\t|a"));
        QVERIFY(!test.editor.findChild<QWidget*>(QStringLiteral("completions"))->isVisible());
    }

    void typingIsUndoneApartFromTheLineBreak()
    {
        TestEditor test(utf8("\ta|"));
        test.press(Qt::Key_Return);
        test.undo();
        QCOMPARE(test.text(), utf8("\ta|"));
        test.press(Qt::Key_Y, Qt::ControlModifier);
        QCOMPARE(test.editor.toPlainText(), utf8("\ta\n\t"));
    }

    void thePlainInterfaceWorks()
    {
        TestEditor test;
        test.editor.setPlainText(utf8("def onLoad():\n\treturn\n"));
        QCOMPARE(test.editor.toPlainText(), utf8("def onLoad():\n\treturn\n"));
        const QTextCursor found = test.editor.document()->find(QStringLiteral("return"));
        QCOMPARE(found.selectionStart(), 15);
        test.editor.setTextCursor(found);
        test.editor.insertPlainText(QStringLiteral("pass"));
        QCOMPARE(test.text(), utf8("def onLoad():\n\tpass|\n"));
        QCOMPARE(test.editor.lineWrapMode(), QPlainTextEdit::NoWrap);
        test.editor.clear();
        QCOMPARE(test.editor.blockCount(), 1);
    }

    void aTabIsFourColumns()
    {
        TestEditor test(utf8("\ta\n    b|"));
        const QTextDocument& document = *test.editor.document();
        const auto x = [&](int line, int column) {
            QTextCursor cursor(document.findBlockByNumber(line));
            cursor.setPosition(cursor.position() + column);
            return test.editor.cursorRect(cursor).left();
        };
        // Tests take the screen for one of 96 dots per inch, which Qt's tabs then are four hundredths off.
        const auto isAligned = [&] { return qAbs(x(0, 1) - x(1, 4)) * 20 <= x(1, 4); };
        QVERIFY(isAligned());
        const int before = x(0, 1);
        QFont large = test.editor.font();
        large.setPointSize(large.pointSize() * 2);
        test.editor.setFont(large);
        QVERIFY(isAligned());
        QVERIFY(x(0, 1) > before * 3 / 2);
        QVERIFY(QFontInfo(test.editor.font()).fixedPitch());
    }

    void theMarginFitsTheNumbers()
    {
        TestEditor test(lines(98) + QLatin1Char('|')); // with the empty last one 99 lines
        const int two = test.margin().width();
        QCOMPARE(test.editor.viewport()->geometry().left(), test.margin().geometry().right() + 1);
        const int digit = test.editor.fontMetrics().horizontalAdvance(QLatin1Char('9'));
        test.press(Qt::Key_Return);
        QCOMPARE(test.margin().width(), two + digit);
        QCOMPARE(test.editor.viewport()->geometry().left(), test.margin().geometry().right() + 1);
        test.undo();
        QCOMPARE(test.margin().width(), two);
    }

    void aPressInTheMarginSelectsTheLine()
    {
        TestEditor test(utf8("ab\ncd\nef|"));
        QTest::mouseClick(&test.margin(), Qt::LeftButton, {}, test.inMargin(2));
        QCOMPARE(test.text(), utf8("ab\n^cd\n|ef"));
        QTest::mouseClick(&test.margin(), Qt::LeftButton, {}, test.inMargin(3));
        QCOMPARE(test.text(), utf8("ab\ncd\n^ef|"));
        QTest::mouseClick(&test.margin(), Qt::RightButton, {}, test.inMargin(1));
        QCOMPARE(test.text(), utf8("ab\ncd\n^ef|"));
    }

    void aDragInTheMarginSelectsLines()
    {
        TestEditor test(utf8("ab\ncd\nef\ngh|"));
        test.drag(QEvent::MouseButtonPress, 2);
        test.drag(QEvent::MouseMove, 3);
        QCOMPARE(test.text(), utf8("ab\n^cd\nef\n|gh"));
        test.drag(QEvent::MouseMove, 1);
        QCOMPARE(test.text(), utf8("|ab\ncd\n^ef\ngh"));
        test.drag(QEvent::MouseButtonRelease, 1);
        test.drag(QEvent::MouseMove, 4, Qt::NoButton);
        QCOMPARE(test.text(), utf8("|ab\ncd\n^ef\ngh"));
    }

    void theWheelTurnsOverTheMarginToo()
    {
        TestEditor test(QLatin1Char('|') + lines(200));
        QWheelEvent event(QPointF(2, 20), test.margin().mapToGlobal({2, 20}), {}, {0, -120}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&test.margin(), &event);
        QVERIFY(test.editor.verticalScrollBar()->value() > 0);
    }

    void theMarginScrollsWithTheText()
    {
        TestEditor test(QLatin1Char('|') + lines(200));
        const QImage before = test.margin().grab().toImage();
        test.editor.verticalScrollBar()->setValue(100);
        QVERIFY(test.margin().grab().toImage() != before);
        QTest::mouseClick(&test.margin(), Qt::LeftButton, {}, {2, 2});
        QCOMPARE(test.editor.textCursor().anchor(), test.editor.document()->findBlockByNumber(100).position());
    }

    void theCurrentLineIsMarked()
    {
        TestEditor test(utf8("ab\ncd|\nef"));
        const QColor base = test.editor.palette().color(QPalette::Base);
        QCOMPARE(test.behindLine(1), base);
        QVERIFY(test.behindLine(2) != base);
        test.press(Qt::Key_Down);
        QCOMPARE(test.behindLine(2), base);
        QVERIFY(test.behindLine(3) != base);
    }

    void bracketsAreMarked_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("marked");
        const auto row = [](const char* name, const char* text, const char* marked) {
            QTest::newRow(name) << utf8(text) << utf8(marked);
        };
        row("before the opening one", "f|(a)", "( at 1;) at 3");
        row("behind the closing one", "f(a)|", "( at 1;) at 3");
        row("before the closing one", "f(a|)", "( at 1;) at 3");
        row("the one before the cursor first", "f(a)|[b]", "( at 1;) at 3");
        row("nested ones", "f(g(a), [b]|)", "[ at 8;] at 10");
        row("over lines", "f|(\n\ta,\n)", "( at 1;) at 7");
        row("curly ones", "|{a}", "{ at 0;} at 2");
        row("one that stands alone", "f|(a", "");
        row("one that closes nothing", "a)|", "");
        row("one of another kind closes nothing", "(a|]", "");
        row("one in a string", "a = '|('  # )", "");
        row("strings between don't count", "f|(')')", "( at 1;) at 5");
        row("comments between don't count", "f|( # )\n)", "( at 1;) at 7");
        row("no bracket beside the cursor", "f(a| + b)", "");
        row("an open one does not reach into the next function", "f|(\ndef g():\n\treturn)", "");
        row("an empty script", "|", "");
    }
    void bracketsAreMarked()
    {
        QFETCH(QString, text);
        const TestEditor test(text);
        QTEST(test.markedParts().join(QLatin1Char(';')), "marked");
    }

    void bracketsAreMarkedWhileTheyAreTyped()
    {
        TestEditor test(utf8("f(a|"));
        QTest::keyClicks(&test.editor, QStringLiteral(")"));
        QCOMPARE(test.markedParts().join(QLatin1Char(';')), utf8("( at 1;) at 3"));
        test.press(Qt::Key_Backspace);
        QCOMPARE(test.markedParts(), QStringList());
        test.press(Qt::Key_Home);
        test.press(Qt::Key_Delete);
        QCOMPARE(test.markedParts(), QStringList()); // before "(a"
    }

    void pythonIsColoured()
    {
        TestEditor test(utf8("def f():\n\treturn 'text'  # note\n|"));
        const QTextCharFormat plain = test.format("():");
        QVERIFY(test.format("def") != plain);
        QVERIFY(test.format("return") != plain);
        QVERIFY(test.textColour("'text'") != plain.foreground().color());
        QVERIFY(test.textColour("# note") != plain.foreground().color());
        QVERIFY(test.textColour("'text'") != test.textColour("# note"));
    }

    void aStringOverLinesIsColouredAsOneTypes()
    {
        TestEditor test(utf8("a = |\nreturn\nreturn\nb = 1"));
        const QTextCharFormat keyword = test.format("return");
        QTest::keyClicks(&test.editor, QStringLiteral("'''"));
        QTRY_VERIFY(test.format("b = 1") == test.format("return"));
        QVERIFY(test.format("return") != keyword);
        test.press(Qt::Key_Backspace);
        QTRY_VERIFY(test.format("return") == keyword);
        QTRY_VERIFY(test.format("b = 1") != test.format("'"));
    }

    void coloursFollowThePalette()
    {
        TestEditor test(utf8("def f():\n\treturn 'text'  # note\n|"));
        const QPalette light = test.editor.palette();
        const QColor lightKeyword = test.textColour("return");
        const QColor lightLine = test.behindLine(3);
        test.editor.setPalette(darkPalette());
        QVERIFY(test.textColour("return") != lightKeyword);
        QVERIFY(test.behindLine(3) != lightLine);
        QVERIFY(test.textColour("'text'").hsvSaturationF() >
                0.3); // a colour for dark ground, not one that was bleached
        test.editor.setPalette(light);
        QCOMPARE(test.textColour("return"), lightKeyword);
        QCOMPARE(test.behindLine(3), lightLine);
    }

    void textsReadOnEveryGround_data()
    {
        QTest::addColumn<bool>("isDark");
        QTest::addColumn<int>("cursorLine");
        QTest::newRow("light") << false << 1;
        QTest::newRow("light, the current line") << false << 2;
        QTest::newRow("dark") << true << 1;
        QTest::newRow("dark, the current line") << true << 2;
    }
    void textsReadOnEveryGround()
    {
        QFETCH(bool, isDark);
        QFETCH(int, cursorLine);
        TestEditor test(utf8("|\n\treturn f('text', 12)  # note\n"));
        if (isDark)
            test.editor.setPalette(darkPalette());
        if (cursorLine == 2)
            test.press(Qt::Key_Down);
        const QColor ground = test.behindLine(2);
        for (const char* text : {"return", "f(", "'text'", "12", "# note"})
            QVERIFY2(contrast(test.textColour(text), ground) > 4.5, text);
    }

    void anErrorLineIsMarked()
    {
        TestEditor test(utf8("|a\nb\nc"));
        const QColor plain = test.behindLine(2);
        QCOMPARE(test.editor.errorLine(), 0);
        test.editor.setErrorLine(2, QStringLiteral("NameError: b"));
        QCOMPARE(test.editor.errorLine(), 2);
        QVERIFY(test.behindLine(2) != plain);
        QCOMPARE(test.behindLine(3), plain);
        test.editor.setErrorLine(3);
        QCOMPARE(test.editor.errorLine(), 3);
        QCOMPARE(test.behindLine(2), plain);
        test.editor.clearErrorLine();
        QCOMPARE(test.editor.errorLine(), 0);
        QCOMPARE(test.behindLine(3), plain);
    }

    void anErrorLineOutsideTheScriptMarksNone()
    {
        TestEditor test(utf8("|a\nb"));
        for (const int line : {-1, 0, 3}) {
            test.editor.setErrorLine(2);
            test.editor.setErrorLine(line);
            QCOMPARE(test.editor.errorLine(), 0);
        }
    }

    void anErrorLineTellsWhatIsWrong()
    {
        TestEditor test(utf8("|a\nb\nc"));
        test.editor.setErrorLine(2, QStringLiteral("NameError: b"));
        QCOMPARE(test.toolTipAt(1), QString());
        QCOMPARE(test.toolTipAt(3), QString());
        QTest::ignoreMessage(QtWarningMsg, "This plugin does not support raise()");
        QCOMPARE(test.toolTipAt(2), QStringLiteral("NameError: b"));
        QToolTip::hideText();
        QTRY_VERIFY(!QToolTip::isVisible());
        test.editor.setErrorLine(2);
        QCOMPARE(test.toolTipAt(2), QString());
    }

    void anErrorLineIsMarkedInTheMargin()
    {
        TestEditor test(utf8("|a\nb\nc"));
        const auto ground = [&] { return test.margin().grab().toImage().pixelColor(1, test.inMargin(2).y()); };
        const QColor plain = ground();
        test.editor.setErrorLine(2);
        QVERIFY(ground() != plain);
        test.editor.clearErrorLine();
        QCOMPARE(ground(), plain);
    }

    void anErrorLineMovesWithTheLinesAbove()
    {
        TestEditor test(utf8("a|\nb\nc"));
        test.editor.setErrorLine(2);
        test.press(Qt::Key_Return);
        QCOMPARE(test.editor.errorLine(), 3);
        QTest::keyClicks(&test.editor, QStringLiteral("x"));
        QCOMPARE(test.editor.errorLine(), 3);
        test.press(Qt::Key_Up);
        test.press(Qt::Key_Home);
        test.press(Qt::Key_Down, Qt::ShiftModifier);
        test.press(Qt::Key_Delete);
        QCOMPARE(test.text(), utf8("|x\nb\nc"));
        QCOMPARE(test.editor.errorLine(), 2);
    }

    void anErrorLineIsPushedDownWhole()
    {
        TestEditor test(utf8("a\n|b\nc"));
        test.editor.setErrorLine(2);
        test.press(Qt::Key_Return);
        QCOMPARE(test.editor.errorLine(), 3);
    }

    void anErrorLineStaysWhileOthersAreEdited()
    {
        TestEditor test(utf8("a\nb\nc|"));
        test.editor.setErrorLine(2);
        QTest::keyClicks(&test.editor, QStringLiteral("'''"));
        test.press(Qt::Key_Return);
        QCOMPARE(test.editor.errorLine(), 2);
    }

    void anEditOfTheErrorLineClearsIt_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("key");
        QTest::newRow("a letter in it") << utf8("a\nb|b\nc") << int(Qt::Key_X);
        QTest::newRow("a letter before it") << utf8("a\n|bb\nc") << int(Qt::Key_X);
        QTest::newRow("a letter behind it") << utf8("a\nbb|\nc") << int(Qt::Key_X);
        QTest::newRow("broken in two") << utf8("a\nb|b\nc") << int(Qt::Key_Return);
        QTest::newRow("joined to the line above") << utf8("a\n|bb\nc") << int(Qt::Key_Backspace);
        QTest::newRow("joined to the line below") << utf8("a\nbb|\nc") << int(Qt::Key_Delete);
        QTest::newRow("deleted") << utf8("a\n^bb\n|c") << int(Qt::Key_Delete);
        QTest::newRow("indented") << utf8("^a\nbb\n|c") << int(Qt::Key_Tab);
    }
    void anEditOfTheErrorLineClearsIt()
    {
        QFETCH(QString, text);
        QFETCH(int, key);
        TestEditor test(text);
        test.editor.setErrorLine(2);
        test.press(key);
        QCOMPARE(test.editor.errorLine(), 0);
        QCOMPARE(test.editor.extraSelections().size(), 1);
    }

    void anotherScriptHasNoErrorLine()
    {
        TestEditor test(utf8("a|"));
        test.editor.setErrorLine(1);
        test.editor.setPlainText(utf8("a"));
        QCOMPARE(test.editor.errorLine(), 0);
    }
};

QTEST_MAIN(tst_ScriptEditor)
#include "tst_scripteditor.moc"
