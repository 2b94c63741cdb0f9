#include "apps/runtime/scriptdock.h"

#include "host/scripting/scriptengine.h"

#include <QFontDatabase>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBlock>
#include <QVBoxLayout>

namespace {

constexpr int mostLines = 5000;
constexpr int longestLine = 1000; // the cost of showing one grows with the square of its length

// The text with line feeds where its lines would become too long, the first of which has \p begun characters already.
QString inLines(const QString& text, int begun)
{
    QString lines;
    lines.reserve(text.size() + text.size() / longestLine);
    for (const QChar each : text) {
        if (begun >= longestLine && each != QLatin1Char('\n') && !each.isLowSurrogate()) {
            lines += QLatin1Char('\n');
            begun = 0;
        }
        begun = each == QLatin1Char('\n') ? 0 : begun + 1;
        lines += each;
    }
    return lines;
}

} // namespace

ScriptDock::ScriptDock(ScriptEngine& scripts, QWidget* parent) : QDockWidget(tr("Output of the scripts"), parent)
{
    setObjectName(QStringLiteral("scripts"));
    m_text.setObjectName(QStringLiteral("output"));
    m_text.setReadOnly(true);
    m_text.setMaximumBlockCount(mostLines);
    m_text.setUndoRedoEnabled(false);
    m_text.setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    m_text.setPlaceholderText(tr("Scripts have printed nothing yet."));
    connect(&scripts, &ScriptEngine::stdOut, this, &ScriptDock::insert);
    connect(&scripts, &ScriptEngine::stdErr, this, &ScriptDock::insert);
    connect(&scripts, &ScriptEngine::logged, this,
            [this](ScriptEngine::Severity, const QString& text) { append(text); });
    auto* clear = new QPushButton(tr("Clear"));
    connect(clear, &QPushButton::clicked, &m_text, &QPlainTextEdit::clear);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(&m_text);
    layout->addWidget(clear, 0, Qt::AlignRight);
    setWidget(content);
}

// On a line of its own.
void ScriptDock::append(const QString& text)
{
    const bool isLineOpen = !m_text.document()->lastBlock().text().isEmpty();
    insert((isLineOpen ? QStringLiteral("\n") : QString()) + text + QLatin1Char('\n'));
}

// Follows what comes, unless the user reads further up.
void ScriptDock::insert(const QString& text)
{
    QScrollBar* bar = m_text.verticalScrollBar();
    const bool isAtEnd = bar->value() == bar->maximum();
    QTextCursor end(m_text.document());
    end.movePosition(QTextCursor::End);
    end.insertText(inLines(text, end.positionInBlock()));
    if (isAtEnd)
        bar->setValue(bar->maximum());
}
