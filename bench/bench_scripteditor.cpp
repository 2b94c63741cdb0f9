// A script's output in the script editor's console: 1 and 10 megabytes, in pieces of one letter and in one piece, beside
// a plain text and a plain text browser that are given the same.

#include "bench/support/ratioreport.h"
#include "platform/core/korvanescriptinterface.h"
#include "scada/actions/korvanescriptoreditor.h"

#include <QApplication>
#include <QPlainTextEdit>
#include <QTextBrowser>

#include <vector>

namespace {

constexpr int lineLength = 80; // line feed included

/// A script engine without scripts: the benchmark prints.
class SilentScripts : public KorvaneScriptInterface
{
public:
    void runAction(KVCanvasInterface*, TesselInterface*, const QString&, Korvane::TriggerType) override {}
    void runForCanvas(KVCanvasInterface*, const QString&) override {}
    void run(const QString&) override {}
    QString lastError() const override { return {}; }
    QWidget* createScriptEditor(KVCanvasInterface*) override { return new QPlainTextEdit; }
    void refreshEditingContext(QPlainTextEdit*, KVCanvasInterface*) override {}
};

/// An editor in sight.
struct Editor
{
    Editor()
    {
        widget.init(nullptr, &scripts);
        widget.resize(600, 500);
        widget.show();
    }

    SilentScripts scripts;
    KorvaneScriptorEditor widget;
};

int bytesOf(const benchmark::State& state)
{
    return static_cast<int>(state.range(0)) * 1000000;
}

QString lineText()
{
    return QString(lineLength - 1, QLatin1Char('x'));
}

QString printed(int size)
{
    return (lineText() + QLatin1Char('\n')).repeated(size / lineLength);
}

/// The letters of a text, each a text of its own, made outside what is measured.
std::vector<QString> letters(const QString& text)
{
    std::vector<QString> made;
    made.reserve(static_cast<std::size_t>(text.size()));
    const QString feed(QLatin1Char('\n'));
    const QString letter(QLatin1Char('x'));
    for (const QChar c : text)
        made.push_back(c == QLatin1Char('\n') ? feed : letter);
    return made;
}

void printPieces(benchmark::State& state, const std::vector<QString>& pieces, double limit)
{
    for (auto _ : state) {
        Editor editor;
        for (const QString& piece : pieces)
            editor.widget.slotStdOut(piece);
    }
    korvaneItems(state, static_cast<std::size_t>(bytesOf(state)));
    korvaneRatioLimit(state, limit);
}

void printEndlessLine(benchmark::State& state)
{
    printPieces(state, letters(QString(bytesOf(state), QLatin1Char('x'))), 4);
}

void appendToText(benchmark::State& state)
{
    const std::vector<QString> pieces = letters(QString(bytesOf(state), QLatin1Char('x')));
    for (auto _ : state) {
        QString text;
        for (const QString& piece : pieces)
            text += piece;
        benchmark::DoNotOptimize(text);
    }
    korvaneItems(state, static_cast<std::size_t>(bytesOf(state)));
}

void printLetters(benchmark::State& state)
{
    printPieces(state, letters(printed(bytesOf(state))), 1.5);
}

void printAtOnce(benchmark::State& state)
{
    printPieces(state, {printed(bytesOf(state))}, 1);
}

void appendToBrowser(benchmark::State& state)
{
    const QString line = lineText();
    for (auto _ : state) {
        QTextBrowser browser;
        browser.resize(600, 500);
        browser.show();
        for (int i = 0; i < bytesOf(state) / lineLength; ++i)
            browser.append(line);
    }
    korvaneItems(state, static_cast<std::size_t>(bytesOf(state)));
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const auto add = [](const char* name, auto function) {
        benchmark::RegisterBenchmark(name, function)->Arg(1)->Arg(10)->Repetitions(3); // seconds each
    };
    add("an endless line by letters, megabytes", printEndlessLine);
    add("an endless line by letters, megabytes (plain)", appendToText);
    add("lines of 80 by letters, megabytes", printLetters);
    add("lines of 80 by letters, megabytes (plain)", appendToBrowser);
    add("lines of 80 in one piece, megabytes", printAtOnce);
    add("lines of 80 in one piece, megabytes (plain)", appendToBrowser);
    return korvaneBenchmarkMain(argc, argv);
}
