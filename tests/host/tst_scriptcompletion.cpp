#include "host/scriptediting/scripteditor.h"
#include "host/scriptediting/scriptvocabulary.h"
#include "tests/support/scripttext.h"

#include <QAbstractItemView>
#include <QDialog>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPointer>
#include <QScrollBar>
#include <QShortcut>
#include <QSignalSpy>
#include <QTextBlock>
#include <QVBoxLayout>
#include <QtTest>

namespace {

QString utf8(const char* text)
{
    return QString::fromUtf8(text);
}

ScriptVocabulary::Word word(const char* text, const char* hint = "")
{
    return {utf8(text), utf8(hint)};
}

ScriptVocabulary vocabulary()
{
    ScriptVocabulary all;
    all.words = {word("print", "print(*values)"),
                 word("property"),
                 word("tags", "the project's tags"),
                 word("canvas"),
                 word("Pump"),
                 word("onLoad"),
                 word("import")};
    all.members = {{utf8("tags"), {word("read", "read(tag)"), word("read_all"), word("write"), word("marks")}},
                   {utf8("korvane.tags"), {word("count")}},
                   {utf8("canvas.shape()"), {word("visible")}},
                   {utf8("canvas[]"), {word("hidden")}}};
    all.argumentKinds = {{utf8("tags.read"), utf8("tag")},
                         {utf8("canvas.shape"), utf8("shape")},
                         {utf8("canvas["), utf8("shape")},
                         {utf8("shape["), utf8("property")},
                         {utf8("canvas[]["), utf8("property")}};
    all.texts = {{utf8("tag"),
                  {utf8("FLOW_1"), utf8("PUMP_1"), utf8("PUMP_1:HighLimit"), utf8("north PUMP"), utf8("say \"on\""),
                   utf8("a\\b"), utf8("\xed\x8e\x8c\xed\x94\x84")}},
                 {utf8("shape"), {utf8("valve"), utf8("tank")}},
                 {utf8("property"), {utf8("FillColor"), utf8("LineWidth")}}};
    return all;
}

/// An editor with a vocabulary, in an active window.
struct TestEditor
{
    explicit TestEditor(const QString& marked = QStringLiteral("|"))
    {
        window.resize(500, 300);
        auto* layout = new QVBoxLayout(&window);
        layout->setSizeConstraint(QLayout::SetNoConstraint); // no hints to pass on to the screen
        editor = new ScriptEditor(&window);
        other = new QLineEdit(&window);
        layout->addWidget(editor);
        layout->addWidget(other);
        editor->setVocabulary(vocabulary());
        window.show();
        const bool isActive = QTest::qWaitForWindowActive(&window);
        Q_ASSERT(isActive);
        editor->setFocus();
        setMarkedText(*editor, marked);
        m_list = editor->findChild<QAbstractItemView*>(QStringLiteral("completions"));
    }

    QString text() const { return markedText(*editor); }
    void type(const char* text)
    {
        for (const QChar c : utf8(text))
            press(0, {}, QString(c));
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {}, const QString& text = {})
    {
        if (key)
            QTest::keyClick(editor, Qt::Key(key), modifiers);
        else
            QTest::sendKeyEvent(QTest::Click, editor, Qt::Key_unknown, text, modifiers);
    }
    void ask() { press(Qt::Key_Space, Qt::ControlModifier); }

    QAbstractItemView& list() const { return *m_list; }
    bool isOpen() const { return list().isVisible(); }
    /// What is offered, the current one in brackets; nothing when the list is closed.
    QString offered() const
    {
        QStringList texts;
        const QAbstractItemModel& model = *list().model();
        for (int row = 0; isOpen() && row < model.rowCount(); ++row) {
            const QString text = model.index(row, 0).data().toString();
            texts.append(row == list().currentIndex().row() ? QLatin1Char('[') + text + QLatin1Char(']') : text);
        }
        return texts.join(QLatin1Char(' '));
    }

    QDialog window;
    ScriptEditor* editor = nullptr;
    QLineEdit* other = nullptr;

private:
    QAbstractItemView* m_list = nullptr; ///< it lies in the editor's window while it is open
};

} // namespace

class tst_ScriptCompletion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsOffered_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("offered");
        const auto row = [](const char* name, const char* before, const char* typed, const char* offered) {
            QTest::newRow(name) << utf8(before) << utf8(typed) << utf8(offered);
        };
        row("one letter is not enough", "|", "p", "");
        row("two letters are", "|", "pr", "[print] property");
        row("those that contain it come behind", "|", "p\x72o", "[property]");
        row("case counts only for what is the same", "|", "PU", "[Pump]");
        row("what begins so goes before what contains it", "|", "im", "[import]");
        row("inner matches", "|", "rt", "[property] import");
        row("nothing matches", "|", "zz", "");
        row("a word that is typed whole", "|", "canvas", "");
        row("digits and underlines belong to words", "p_1x = 1\n|", "p_1", "[p_1x]");
        row("a number is no word", "|", "12pr", "");
        row("behind a comma", "f(a,|)", "pr", "[print] property");
        row("a handler's name", "def |", "on", "[onLoad]");
        row("words of the script behind the vocabulary's", "prior = prior_2\n|", "pri", "[print] prior prior_2");
        row("words of the script below too", "|\nprior = 1", "prio", "[prior]");
        row("the word itself is no word of the script", "|", "prio", "");
        row("a word of the script that is the vocabulary's comes once", "print()\n|", "prin", "[print]");
        row("words in strings and comments are none", "'prior'  # prior\n|", "prio", "");
        row("names behind a dot are no bare words", "a.prior\n|", "prio", "");
        row("words of any script", "\xed\x8e\x8c\xed\x94\x84\x31 = 1\n|", "\xed\x8e\x8c\xed\x94\x84",
            "[\xed\x8e\x8c\xed\x94\x84\x31]");
        row("members at the dot", "|", "tags.", "[read] read_all write marks");
        row("members by one letter", "|", "tags.r", "[read] read_all write marks");
        row("members by more", "|", "tags.ma", "[marks]");
        row("members of a member", "|", "korvane.tags.", "[count]");
        row("members of a call's result", "|", "canvas.shape('a(').", "[visible]");
        row("members of an item", "|", "canvas['a'].", "[hidden]");
        row("blanks don't count", "|", "canvas . shape ( 'a' ).", "[visible]");
        row("a chain over lines in brackets", "f(canvas.shape(\n\t'a'\n)|)", ".", "[visible]");
        row("an unknown receiver has the script's members", "a.first = b.second\nc|", ".", "[first] second");
        row("a known one has not", "a.first\nkorvane.tags|", ".", "[count]");
        row("a receiver inside brackets", "f(1, tags|)", ".", "[read] read_all write marks");
        row("an operator begins anew", "a.first\ntags+tags|", ".", "[read] read_all write marks");
        row("a number has no members", "a.first\n12|", ".", "");
        row("nothing before the dot", "a.first\n|", ".", "");
        row("a comment", "# |", "print tags.", "");
        row("an ordinary string", "a = |", "'print tags.", "");
        row("an ordinary string behind a known call", "tags.read('a', 1) + |", "'PU", "");
        row("a string of three quotes", "'''\n|\n'''", "pr", "");
        row("behind a string", "a = 'b'|", "pr", "[print] property");
        row("behind a string of three quotes", "a = '''b\nc'''\n|", "pr", "[print] property");
        row("behind an escaped quote it is still a string", "a = 'b\\'|", " pr", "");
        row("behind an unfinished string of the line above", "a = 'b\n|", "pr", "[print] property");
        row("texts at the quote", "canvas.shape(|", "'", "[valve] tank");
        row("texts at a double quote", "canvas.shape(|", "\"", "[valve] tank");
        row("texts before the closing quote", "canvas.shape('|')", "t", "[tank]");
        row("texts of three quotes", "canvas.shape('''|", "t", "[tank]");
        row("texts of a raw string", "canvas.shape(r|", "'t", "[tank]");
        row("texts by what they contain", "tags.read(|", "'1", "[FLOW_1] PUMP_1 PUMP_1:HighLimit");
        row("what begins so first, case aside", "tags.read(|", "'pump", "[PUMP_1] PUMP_1:HighLimit north PUMP");
        row("the same before what begins so", "tags.read(|", "'PUMP_1", "[PUMP_1] PUMP_1:HighLimit");
        row("texts with blanks and signs", "tags.read(|", "'north P", "[north PUMP]");
        row("texts of any script", "tags.read(|", "'\xed\x94\x84", "[\xed\x8e\x8c\xed\x94\x84]");
        row("an escaped quote in a text", "tags.read(|", "\"say \\\"", "[say \"on\"]");
        row("an escaped backslash in a text", "tags.read(|", "'a\\\\", "[a\\b]");
        row("a backslash in a raw text", "tags.read(|", "r'a\\", "[a\\b]");
        row("a subscript", "canvas[|", "'", "[valve] tank");
        row("another subscript", "shape[|", "'L", "[LineWidth] FillColor");
        row("a subscript of an item", "canvas['a'][|", "'", "[FillColor] LineWidth");
        row("a subscript of an unknown name", "other[|", "'", "");
        row("a later argument", "tags.read(1, |", "'FL", "[FLOW_1]");
        row("a named argument", "tags.read(tag=|", "'FL", "[FLOW_1]");
        row("a list as the argument", "tags.read(['a', |", "'FL", "[FLOW_1]");
        row("an argument on the next line", "tags.read(\n\t|", "'FL", "[FLOW_1]");
        row("the inner call decides", "tags.read(other(|", "'FL", "");
        row("behind the inner call the outer one", "tags.read(other('a'), |", "'FL", "[FLOW_1]");
        row("a call left open above does not reach into a function", "tags.read(\ndef f():\n\ta = |", "'FL", "");
        row("blanks before the bracket", "tags.read (|", "'FL", "[FLOW_1]");
    }
    void whatIsOffered()
    {
        QFETCH(QString, before);
        QFETCH(QString, typed);
        TestEditor test(before);
        test.type(typed.toUtf8().constData());
        QTEST(test.offered(), "offered");
    }

    void whatIsOfferedByRequest_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("offered");
        const auto row = [](const char* name, const char* before, const char* offered) {
            QTest::newRow(name) << utf8(before) << utf8(offered);
        };
        row("nothing typed", "|", "[print] property tags canvas Pump onLoad import");
        row("one letter", "t|", "[tags] print property import");
        row("a member", "tags.w|", "[write]");
        row("a text", "canvas.shape('t|", "[tank]");
        row("the letters before the cursor count", "ta|nk", "[tags]");
        row("a comment", "# ta|", "");
        row("an ordinary string", "'ta|", "");
    }
    void whatIsOfferedByRequest()
    {
        QFETCH(QString, before);
        TestEditor test(before);
        test.ask();
        QTEST(test.offered(), "offered");
        QCOMPARE(test.text(), before);
        test.ask();
        QTEST(test.offered(), "offered");
    }

    void hintsStandBeside()
    {
        TestEditor test;
        test.type("pri");
        QCOMPARE(test.list().model()->index(0, 1).data().toString(), utf8("print(*values)"));
    }

    void twoHundredAtMost()
    {
        ScriptVocabulary many;
        many.argumentKinds = {{utf8("read"), utf8("tag")}};
        QStringList& tags = many.texts[utf8("tag")];
        for (int i = 0; i < 150; ++i)
            tags.append(QStringLiteral("A%1").arg(i));
        for (int i = 0; i < 150; ++i)
            tags.append(QStringLiteral("PUMP_A%1").arg(i));
        for (int i = 0; i < 150; ++i)
            tags.append(QStringLiteral("PUMP_%1").arg(i));
        TestEditor test(utf8("read(|"));
        test.editor->setVocabulary(many);
        test.type("'");
        const QAbstractItemModel& model = *test.list().model();
        QCOMPARE(model.rowCount(), 200);
        test.type("A");
        QCOMPARE(model.rowCount(), 200);
        QCOMPARE(model.index(149, 0).data().toString(), utf8("A149"));
        QCOMPARE(model.index(150, 0).data().toString(), utf8("PUMP_A0"));
        test.press(Qt::Key_Backspace);
        test.type("PUMP");
        QCOMPARE(model.rowCount(), 200);
        QCOMPARE(model.index(199, 0).data().toString(), utf8("PUMP_49"));
    }

    void acceptedBy_data()
    {
        QTest::addColumn<int>("key");
        QTest::newRow("return") << int(Qt::Key_Return);
        QTest::newRow("enter") << int(Qt::Key_Enter);
        QTest::newRow("tab") << int(Qt::Key_Tab);
    }
    void acceptedBy()
    {
        QFETCH(int, key);
        TestEditor test(utf8("a = 1\n|"));
        test.type("PRI");
        test.press(key);
        QCOMPARE(test.text(), utf8("a = 1\nprint|"));
        QVERIFY(!test.isOpen());
        test.press(Qt::Key_Z, Qt::ControlModifier);
        QCOMPARE(test.editor->toPlainText(), utf8("a = 1\nPRI"));
    }

    void acceptedByAClick()
    {
        TestEditor test;
        test.type("pr");
        const QRect second = test.list().visualRect(test.list().model()->index(1, 0));
        QTest::mouseClick(test.list().viewport(), Qt::LeftButton, {}, second.center());
        QCOMPARE(test.text(), utf8("property|"));
        QVERIFY(!test.isOpen());
        QVERIFY(test.editor->hasFocus());
    }

    void whatIsPutIn_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("after");
        const auto row = [](const char* name, const char* before, const char* typed, const char* after) {
            QTest::newRow(name) << utf8(before) << utf8(typed) << utf8(after);
        };
        row("a member", "x = |", "tags.wr", "x = tags.write|");
        row("an inner match replaces what was typed", "|", "per", "property|");
        row("a text", "tags.read('|')", "pump_1:", "tags.read('PUMP_1:HighLimit|')");
        row("a text with a quote is escaped", "tags.read(|", "\"say", "tags.read(\"say \\\"on\\\"|");
        row("a quote of the other kind is not", "tags.read(|", "'say", "tags.read('say \"on\"|");
        row("a backslash is escaped", "tags.read(|", "'a\\\\", "tags.read('a\\\\b|");
        row("in a raw string nothing is", "tags.read(|", "r'a\\", "tags.read(r'a\\b|");
        row("what follows stays", "|(a)", "pri", "print|(a)");
        row("a name that follows stays", "|x", "pri", "print|x");
        row("the rest of the word isn't doubled", "|int", "pr", "print|");
        row("the rest of the text isn't doubled", "tags.read('PU|_1')", "M", "tags.read('PUMP_1|')");
    }
    void whatIsPutIn()
    {
        QFETCH(QString, before);
        QFETCH(QString, typed);
        TestEditor test(before);
        test.type(typed.toUtf8().constData());
        test.press(Qt::Key_Return);
        QTEST(test.text(), "after");
    }

    void arrowsChoose()
    {
        TestEditor test;
        test.type("pr");
        test.press(Qt::Key_Down);
        QCOMPARE(test.offered(), utf8("print [property]"));
        test.press(Qt::Key_Down);
        QCOMPARE(test.offered(), utf8("[print] property"));
        test.press(Qt::Key_Up);
        QCOMPARE(test.offered(), utf8("print [property]"));
        test.press(Qt::Key_PageUp);
        QCOMPARE(test.offered(), utf8("[print] property"));
        test.press(Qt::Key_PageDown);
        QCOMPARE(test.offered(), utf8("print [property]"));
        test.press(Qt::Key_Return);
        QCOMPARE(test.text(), utf8("property|"));
    }

    void theListFollowsWhatIsTyped()
    {
        TestEditor test;
        test.type("pr");
        test.type("o");
        QCOMPARE(test.offered(), utf8("[property]"));
        test.press(Qt::Key_Backspace);
        QCOMPARE(test.offered(), utf8("[print] property"));
        test.type("x");
        QCOMPARE(test.offered(), QString());
        test.press(Qt::Key_Backspace);
        QCOMPARE(test.offered(), QString()); // only typing opens it
        test.type("i");
        QCOMPARE(test.offered(), utf8("[print]"));
    }

    void theListGoesWhenNothingIsTypedAnyMore()
    {
        TestEditor test;
        test.type("pr");
        test.press(Qt::Key_Backspace);
        QVERIFY(test.isOpen());
        test.press(Qt::Key_Backspace);
        QVERIFY(!test.isOpen());
    }

    void theListThatWasAskedForStays()
    {
        TestEditor test(utf8("p|"));
        test.ask();
        test.press(Qt::Key_Backspace);
        QVERIFY(test.isOpen());
    }

    void whatEndsAWordClosesTheList_data()
    {
        QTest::addColumn<int>("key");
        QTest::addColumn<QString>("typed");
        QTest::addColumn<QString>("after");
        const auto row = [](const char* name, int key, const char* typed, const char* after) {
            QTest::newRow(name) << key << utf8(typed) << utf8(after);
        };
        row("a space", 0, " ", "pr |\nprint");
        row("a bracket", 0, "(", "pr(|\nprint");
        row("home", Qt::Key_Home, "", "|pr\nprint");
        row("to the next word", Qt::Key_Right, "", "pr\n|print");
        row("escape", Qt::Key_Escape, "", "pr|\nprint");
    }
    void whatEndsAWordClosesTheList()
    {
        QFETCH(int, key);
        QFETCH(QString, typed);
        TestEditor test(utf8("|\nprint"));
        test.type("pr");
        QVERIFY(test.isOpen());
        test.press(key, {}, typed);
        QVERIFY(!test.isOpen());
        QTEST(test.text(), "after");
        QVERIFY(test.window.isVisible());
    }

    void escapeLastsForTheWord()
    {
        TestEditor test;
        test.type("pr");
        test.press(Qt::Key_Escape);
        test.type("i");
        QVERIFY(!test.isOpen());
        test.ask();
        QVERIFY(test.isOpen());
        test.press(Qt::Key_Escape);
        test.type(" pri");
        QVERIFY(test.isOpen());
    }

    void escapeLastsForTheTextToo()
    {
        TestEditor test(utf8("tags.read(|"));
        test.type("'");
        test.press(Qt::Key_Escape);
        test.type("P");
        QVERIFY(!test.isOpen());
        test.press(Qt::Key_Backspace);
        test.press(Qt::Key_Backspace);
        test.type("'");
        QVERIFY(test.isOpen());
    }

    void aClosedListLeavesKeysAlone()
    {
        TestEditor test(utf8("\ta|\n"));
        test.press(Qt::Key_Return);
        test.press(Qt::Key_Tab);
        test.press(Qt::Key_Down);
        test.press(Qt::Key_Up);
        QCOMPARE(test.text(), utf8("\ta\n\t\t|\n"));
        test.press(Qt::Key_Escape); // the dialog's
        QVERIFY(!test.window.isVisible());
    }

    void returnOnAWholeWordBreaksTheLine()
    {
        TestEditor test(utf8("tags|"));
        test.type(".read");
        QCOMPARE(test.offered(), utf8("[read] read_all"));
        test.press(Qt::Key_Return);
        QCOMPARE(test.text(), utf8("tags.read\n|"));
    }

    void tabOnAWholeWordOnlyClosesTheList()
    {
        TestEditor test(utf8("tags|"));
        test.type(".read");
        test.press(Qt::Key_Tab);
        QCOMPARE(test.text(), utf8("tags.read|"));
        QVERIFY(!test.isOpen());
    }

    void returnOnAWholeTextBreaksNoLine()
    {
        TestEditor test(utf8("tags.read(|"));
        test.type("'PUMP_1");
        QVERIFY(test.isOpen());
        test.press(Qt::Key_Return);
        QCOMPARE(test.text(), utf8("tags.read('PUMP_1|"));
        QVERIFY(!test.isOpen());
    }

    void keysWithModifiersAreTheEditors()
    {
        TestEditor test(utf8("\t|"));
        test.type("pr");
        test.press(Qt::Key_Backtab, Qt::ShiftModifier);
        QCOMPARE(test.text(), utf8("pr|"));
        test.press(Qt::Key_Return, Qt::ShiftModifier);
        QCOMPARE(test.text(), utf8("pr\n|"));
        QVERIFY(!test.isOpen());
    }

    void theOpenListGoesBeforeShortcuts()
    {
        TestEditor test;
        QShortcut onReturn(Qt::Key_Return, &test.window);
        QShortcut onEscape(Qt::Key_Escape, &test.window);
        QShortcut onRun(Qt::Key_F5, &test.window);
        const QSignalSpy returned(&onReturn, &QShortcut::activated);
        const QSignalSpy escaped(&onEscape, &QShortcut::activated);
        const QSignalSpy run(&onRun, &QShortcut::activated);
        test.type("pr");
        test.press(Qt::Key_F5);
        QCOMPARE(run.count(), 1);
        QVERIFY(test.isOpen());
        test.press(Qt::Key_Return);
        QCOMPARE(test.text(), utf8("print|"));
        test.type(" pr");
        test.press(Qt::Key_Escape);
        QVERIFY(!test.isOpen());
        QCOMPARE(returned.count() + escaped.count(), 0);
        test.press(Qt::Key_Escape);
        QCOMPARE(escaped.count(), 1);
    }

    void theListNeverTakesTheFocus()
    {
        TestEditor test;
        test.type("pr");
        QVERIFY(test.isOpen());
        QVERIFY(test.editor->hasFocus());
        QVERIFY(test.window.isActiveWindow());
    }

    void theListGoesWithTheFocus()
    {
        TestEditor test;
        test.type("pr");
        test.other->setFocus();
        QVERIFY(!test.isOpen());
    }

    void theListGoesWhenTheEditorMoves()
    {
        TestEditor test;
        test.type("pr");
        test.window.layout()->setContentsMargins(50, 50, 50, 50);
        QTRY_VERIFY(!test.isOpen());
    }

    void theListGoesWhenTheEditorIsHidden()
    {
        TestEditor test;
        test.type("pr");
        test.editor->hide();
        QVERIFY(!test.isOpen());
    }

    void theListGoesWhenTheScriptMayNotBeChangedAnyMore()
    {
        TestEditor test;
        test.type("pr");
        test.editor->setReadOnly(true);
        QVERIFY(!test.isOpen());
    }

    void theListGoesWithAClickElsewhere()
    {
        TestEditor test(utf8("|\n\nabc"));
        test.type("pr");
        const QTextCursor last(test.editor->document()->lastBlock());
        QTest::mouseClick(test.editor->viewport(), Qt::LeftButton, {}, test.editor->cursorRect(last).center());
        QVERIFY(!test.isOpen());
    }

    void theListScrollsWithTheText()
    {
        TestEditor test(QString(40, QLatin1Char('\n')) + QLatin1Char('|') + QString(40, QLatin1Char('\n')));
        test.editor->centerCursor();
        test.type("pr");
        const int before = test.list().y();
        QScrollBar& bar = *test.editor->verticalScrollBar();
        bar.setValue(bar.value() + 2);
        QCOMPARE(test.list().y(), before - 2 * test.editor->fontMetrics().height());
        bar.setValue(bar.maximum());
        QVERIFY(!test.isOpen());
    }

    void theListStaysInTheWindow_data()
    {
        QTest::addColumn<QString>("before");
        QTest::addColumn<QSize>("size");
        QTest::addColumn<bool>("isBelow");
        const QString many(60, QLatin1Char('\n'));
        QTest::newRow("below the line") << QStringLiteral("|") + many << QSize(500, 300) << true;
        QTest::newRow("above the last line") << many + QLatin1Char('|') << QSize(500, 300) << false;
        QTest::newRow("in a window that is too low") << QStringLiteral("|") + many << QSize(500, 120) << true;
        QTest::newRow("in a window that is too narrow") << QStringLiteral("|") + many << QSize(120, 300) << true;
        QTest::newRow("beside the right edge")
            << QString(50, QLatin1Char(' ')) + QLatin1Char('|') << QSize(500, 300) << true;
    }
    void theListStaysInTheWindow()
    {
        QFETCH(QString, before);
        QFETCH(QSize, size);
        QFETCH(bool, isBelow);
        TestEditor test(before);
        test.window.resize(size);
        QCoreApplication::processEvents();
        test.editor->ensureCursorVisible();
        test.ask();
        QVERIFY(test.isOpen());
        const QRect list = test.list().geometry();
        QVERIFY(test.window.rect().contains(list));
        const int line = test.editor->viewport()->mapTo(&test.window, test.editor->cursorRect().center()).y();
        QCOMPARE(list.top() > line, isBelow);
        QVERIFY(list.top() > line || list.bottom() < line);
    }

    void theListWorksInAWindowOfItsOwn()
    {
        ScriptEditor editor;
        editor.setVocabulary(vocabulary());
        editor.show();
        QVERIFY(QTest::qWaitForWindowActive(&editor));
        QTest::keyClicks(&editor, QStringLiteral("pri"));
        QVERIFY(editor.findChild<QWidget*>(QStringLiteral("completions"))->isVisible());
        QTest::keyClick(&editor, Qt::Key_Tab);
        QCOMPARE(editor.toPlainText(), utf8("print"));
    }

    void theListMovesOnWithItsEditor()
    {
        TestEditor test;
        test.type("pr");
        QWidget next;
        test.editor->setParent(&next);
        test.editor->setGeometry(0, 0, 300, 200);
        next.show();
        test.editor->show();
        QVERIFY(QTest::qWaitForWindowActive(&next));
        QVERIFY(!test.isOpen());
        test.editor->setFocus();
        test.type("o");
        QCOMPARE(test.offered(), utf8("[property]"));
        QCOMPARE(test.list().window(), &next);
    }

    void theWindowMayGoWhileTheListIsOpen()
    {
        auto test = std::make_unique<TestEditor>();
        test->type("pr");
        const QPointer<QAbstractItemView> list = &test->list();
        QVERIFY(list->isVisible());
        test.reset();
        QVERIFY(list.isNull());
    }

    void aNewVocabularyTakesEffectAtOnce()
    {
        TestEditor test;
        test.type("pr");
        test.press(Qt::Key_Down);
        ScriptVocabulary next;
        next.words = {word("process"), word("print"), word("property"), word("private")};
        test.editor->setVocabulary(next);
        QCOMPARE(test.offered(), utf8("process print [property] private"));
        next.words = {word("process"), word("print")};
        test.editor->setVocabulary(next);
        QCOMPARE(test.offered(), utf8("[process] print"));
        test.type("i");
        QCOMPARE(test.offered(), utf8("[print]"));
        test.editor->setVocabulary({});
        QVERIFY(!test.isOpen());
        test.editor->setVocabulary(next);
        QVERIFY(!test.isOpen());
    }

    void anEditorMayGoWhileItsListIsOpen()
    {
        TestEditor test;
        test.type("pr");
        const QPointer<QAbstractItemView> list = &test.list();
        QVERIFY(list->isVisible());
        delete test.editor;
        QVERIFY(list.isNull());
    }

    void theScriptMayBeReplacedWhileTheListIsOpen()
    {
        TestEditor test(utf8("a = 1\nb = 2\n|"));
        test.type("pr");
        test.editor->setPlainText(utf8("x"));
        QVERIFY(!test.isOpen());
        test.press(Qt::Key_End, Qt::ControlModifier);
        test.press(Qt::Key_Return);
        QCOMPARE(test.text(), utf8("x\n|"));
    }

    void anInputMethodOpensTheListToo()
    {
        TestEditor test(utf8("tags.read('|"));
        QInputMethodEvent event;
        event.setCommitString(utf8("\xed\x8e\x8c"));
        QCoreApplication::sendEvent(test.editor, &event);
        QCOMPARE(test.offered(), utf8("[\xed\x8e\x8c\xed\x94\x84]"));
    }

    void pastingOpensNothing()
    {
        TestEditor test;
        test.editor->insertPlainText(utf8("pr"));
        QVERIFY(!test.isOpen());
    }
};

QTEST_MAIN(tst_ScriptCompletion)
#include "tst_scriptcompletion.moc"
