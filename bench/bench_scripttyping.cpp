// Writing scripts, off screen: opening one of 10,000 lines, typing in its middle, completing among 100,000 tags, each
// with everything that follows up to the painted frame, beside a QPlainTextEdit without any of it.

#include "bench/support/ratioreport.h"
#include "host/scriptediting/scripteditor.h"
#include "host/scriptediting/scriptvocabulary.h"

#include <QApplication>
#include <QKeyEvent>
#include <QTextBlock>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <memory>

namespace {

constexpr int functions = 1000; ///< of ten lines each
constexpr int tagCount = 100000;
constexpr double frameMs = 16;
constexpr double openMs = 300;

QString script()
{
    QString text;
    for (int number = 0; number < functions; ++number) {
        text += QStringLiteral("def handler_%1(obj, name, value):\n"
                               "\t\"\"\"Reads the point\n"
                               "\tand moves the valve.\"\"\"\n"
                               "\tlevel = tags.read(\"STATION_%1.TANK.LEVEL\")  # in metres\n"
                               "\tif level is not None and level > %1.5:\n"
                               "\t\tcanvas[\"valve%1\"][\"FillColor\"] = \"#ff0000\"\n"
                               "\t\tprint(\"too high\", level, sep=', ')\n"
                               "\telse:\n"
                               "\t\tshape.visible = False\n"
                               "\treturn\n")
                    .arg(number);
    }
    return text;
}

const ScriptVocabulary& vocabulary()
{
    static ScriptVocabulary all;
    if (!all.words.empty())
        return all;
    for (const char* text : {"and", "canvas", "def", "else", "for", "if", "import", "None", "not", "print", "return",
                             "shape", "tags", "while"})
        all.words.push_back({QString::fromLatin1(text), QStringLiteral("what it means")});
    all.argumentKinds.insert(QStringLiteral("tags.read"), QStringLiteral("tag"));
    QStringList& tags = all.texts[QStringLiteral("tag")];
    for (int number = 0; number < tagCount; ++number)
        tags.append(QStringLiteral("STATION_%1.POINT_%2")
                        .arg(number % 1000, 3, 10, QLatin1Char('0'))
                        .arg(number, 7, 10, QLatin1Char('0')));
    return all;
}

std::unique_ptr<QPlainTextEdit> madeEditor(bool isPlain)
{
    auto plain = isPlain ? std::make_unique<QPlainTextEdit>() : nullptr;
    auto full = isPlain ? nullptr : std::make_unique<ScriptEditor>();
    if (full)
        full->setVocabulary(vocabulary());
    std::unique_ptr<QPlainTextEdit> editor = isPlain ? std::move(plain) : std::move(full);
    editor->setLineWrapMode(QPlainTextEdit::NoWrap);
    editor->resize(800, 600);
    editor->show();
    QCoreApplication::processEvents();
    return editor;
}

/// With the script, and the cursor on a new line in its middle, behind \p begun.
std::unique_ptr<QPlainTextEdit> openedEditor(bool isPlain, const QString& begun)
{
    auto editor = madeEditor(isPlain);
    editor->setPlainText(script());
    QTextCursor cursor(editor->document()->findBlockByNumber(functions * 5 + 4));
    cursor.insertText(QLatin1Char('\t') + begun + QLatin1Char('\n'));
    cursor.movePosition(QTextCursor::PreviousCharacter);
    editor->setTextCursor(cursor);
    editor->setFocus();
    QCoreApplication::processEvents();
    return editor;
}

/// Types a character, with a backspace in its place for a "\b", and waits until everything is drawn.
void type(QPlainTextEdit& editor, QChar c)
{
    const bool isErasing = c == QLatin1Char('\b');
    QKeyEvent event(QEvent::KeyPress, isErasing ? Qt::Key_Backspace : 0, Qt::NoModifier, QString(c));
    QCoreApplication::sendEvent(&editor, &event);
    QCoreApplication::processEvents();
}

void open(benchmark::State& state, bool isPlain)
{
    const auto editor = madeEditor(isPlain);
    const QString text = script();
    for (auto _ : state) {
        editor->setPlainText(text);
        QCoreApplication::processEvents();
    }
    korvaneItems(state, 1);
    korvaneRatioLimit(state, 8);
}

void typeBehind(benchmark::State& state, bool isPlain, const char* begun, const char* typed)
{
    const auto editor = openedEditor(isPlain, QString::fromLatin1(begun));
    const QString keys = QString::fromLatin1(typed);
    for (auto _ : state) {
        for (const QChar c : keys)
            type(*editor, c);
    }
    korvaneItems(state, static_cast<std::size_t>(keys.size()));
}

/// What the processor does, in milliseconds: others may be at work on the machine.
template <typename Work>
double timeOf(const Work& work)
{
    const std::clock_t begin = std::clock();
    work();
    return double(std::clock() - begin) * 1000 / CLOCKS_PER_SEC;
}

void printLimit(const char* what, double ms, double mostMs)
{
    std::printf("%s: %.1f ms, at most %.0f%s\n", what, ms, mostMs, ms > mostMs ? "  EXCEEDED" : "");
}

/// What the medians do not show: the first opening, and the key that takes longest.
void printLimits()
{
    const auto editor = madeEditor(false);
    const QString text = script();
    printLimit("opening 10,000 lines for the first time", timeOf([&] {
                   editor->setPlainText(text);
                   QCoreApplication::processEvents();
               }),
               openMs);

    const auto opened = openedEditor(false, {});
    double slowest = 0;
    for (const QChar c :
         QStringLiteral("level = tags.read(\"STATION_12\b\b\b\b\b\b\b\b\b\bPOINT_99999\b\b\b\b\b\b\b\b\b"
                        "zz\") + handler_12(shape.visible, canvas, value)  # '''\b\b\b\b\b\b\b'''\b"))
        slowest = std::max(slowest, timeOf([&] { type(*opened, c); }));
    printLimit("the key that takes longest", slowest, frameMs);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    const auto add = [](const char* name, const char* plainName, auto function) {
        for (const bool isPlain : {false, true})
            benchmark::RegisterBenchmark(isPlain ? plainName : name, [=](benchmark::State& state) {
                function(state, isPlain);
            })->Unit(benchmark::kMillisecond);
    };
    const auto addTyping = [&](const char* name, const char* plainName, const char* begun, const char* typed) {
        add(name, plainName, [=](benchmark::State& state, bool isPlain) { typeBehind(state, isPlain, begun, typed); });
    };
    add("open 10,000 lines", "open 10,000 lines (plain)", open);
    addTyping("type in the middle, a comment", "type in the middle, a comment (plain)", "# ", "x\b");
    addTyping("type in the middle, the list open", "type in the middle, the list open (plain)", "va", "l\b");
    addTyping("type in the middle, the list comes and goes", "type in the middle, the list comes and goes (plain)", "",
              "va\b\b");
    addTyping("complete among 100,000 tags, begins", "complete among 100,000 tags, begins (plain)",
              "tags.read(\"STATION_0", "1\b");
    addTyping("complete among 100,000 tags, contains", "complete among 100,000 tags, contains (plain)",
              "tags.read(\"POINT_00999", "9\b");
    addTyping("complete among 100,000 tags, none", "complete among 100,000 tags, none (plain)", "tags.read(\"z", "z\b");
    const int result = korvaneBenchmarkMain(argc, argv);
    printLimits();
    return result;
}
