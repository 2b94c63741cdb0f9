#include "host/scriptediting/scripteditor.h"

#include "host/scriptediting/bracketpair_p.h"
#include "host/scriptediting/linecommands_p.h"
#include "host/scriptediting/linenumberarea_p.h"
#include "host/scriptediting/pythonindent_p.h"
#include "host/scriptediting/scriptcolours_p.h"
#include "host/scriptediting/scriptcompleter_p.h"
#include "host/scriptediting/scripthighlighter_p.h"

#include <QFontDatabase>
#include <QHelpEvent>
#include <QTextBlock>
#include <QToolTip>

namespace {

QTextEdit::ExtraSelection wholeLine(QTextCursor cursor, const QColor& colour)
{
    cursor.clearSelection();
    QTextEdit::ExtraSelection selection;
    selection.cursor = cursor;
    selection.format.setBackground(colour);
    selection.format.setProperty(QTextFormat::FullWidthSelection, true);
    return selection;
}

QTextEdit::ExtraSelection character(QTextCursor cursor, int position, const QColor& colour)
{
    cursor.setPosition(position);
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
    QTextEdit::ExtraSelection selection;
    selection.cursor = cursor;
    selection.format.setBackground(colour);
    return selection;
}

QFont fixedFont()
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (QFontInfo(font).fixedPitch())
        return font;
    font.setFamily(QStringLiteral("monospace")); // the platform names none of its own
    font.setStyleHint(QFont::Monospace);
    return font;
}

Qt::KeyboardModifiers modifiersOf(const QKeyEvent& event)
{
    return event.modifiers() & ~Qt::KeypadModifier;
}

} // namespace

ScriptEditor::ScriptEditor(QWidget* parent)
    : QPlainTextEdit(parent),
      m_margin(new LineNumberArea(*this)),
      m_highlighter(new ScriptHighlighter(*document(), palette())),
      m_completer(new ScriptCompleter(*this))
{
    setLayoutDirection(Qt::LeftToRight); // scripts read so whatever the interface's language
    setLineWrapMode(NoWrap);
    setFont(fixedFont());
    connect(this, &QPlainTextEdit::blockCountChanged, this, &ScriptEditor::fitMargin);
    connect(this, &QPlainTextEdit::updateRequest, this, &ScriptEditor::updateMargin);
    connect(this, &QPlainTextEdit::cursorPositionChanged, this, &ScriptEditor::markLines);
    connect(document(), &QTextDocument::contentsChange, this, &ScriptEditor::noteEdit);
    connect(this, &QPlainTextEdit::textChanged, this, &ScriptEditor::followText);
    fitTabs();
    fitMargin();
    markLines();
}

ScriptEditor::~ScriptEditor() = default;

void ScriptEditor::setVocabulary(const ScriptVocabulary& vocabulary)
{
    m_completer->setVocabulary(vocabulary);
}

void ScriptEditor::setErrorLine(int line, const QString& message)
{
    const QTextBlock block = document()->findBlockByNumber(line - 1);
    m_error = block.isValid() ? QTextCursor(block) : QTextCursor();
    m_errorText = block.text();
    m_errorMessage = message;
    markLines();
    m_margin->update();
}

void ScriptEditor::clearErrorLine()
{
    setErrorLine(0);
}

int ScriptEditor::errorLine() const
{
    return m_error.isNull() ? 0 : m_error.blockNumber() + 1;
}

void ScriptEditor::noteEdit()
{
    m_isEdited = true;
    m_bracketsAt = -1;
}

void ScriptEditor::followText()
{
    if (!m_isEdited)
        return; // only colours have changed, which textChanged() tells too
    m_isEdited = false;
    if (!m_error.isNull() && (!m_error.atBlockStart() || m_error.block().text() != m_errorText))
        clearErrorLine();
    markLines();
}

void ScriptEditor::markLines()
{
    const ScriptColours colours(palette());
    const QTextCursor cursor = textCursor();
    QList<QTextEdit::ExtraSelection> marks{wholeLine(cursor, colours.currentLine())};
    if (!m_error.isNull())
        marks.append(wholeLine(m_error, colours.errorLine()));
    if (m_bracketsAt != cursor.position())
        m_brackets = bracketPair(cursor);
    m_bracketsAt = cursor.position();
    if (m_brackets) {
        marks.append(character(cursor, m_brackets->first, colours.bracket()));
        marks.append(character(cursor, m_brackets->second, colours.bracket()));
    }
    setExtraSelections(marks);
}

bool ScriptEditor::event(QEvent* event)
{
    // A window's shortcut on one of the list's keys waits until the list is closed.
    if (event->type() == QEvent::ShortcutOverride && m_completer->wants(*static_cast<QKeyEvent*>(event))) {
        event->accept();
        return true;
    }
    return QPlainTextEdit::event(event);
}

void ScriptEditor::keyPressEvent(QKeyEvent* event)
{
    if (m_completer->takeKey(*event) || leaveByKey(*event) || runCommand(*event))
        return;
    const int revision = document()->revision();
    QPlainTextEdit::keyPressEvent(event);
    const bool isTyped =
        document()->revision() != revision && !event->text().isEmpty() && event->text().back().isPrint();
    if (isTyped)
        m_completer->noteTyped();
}

void ScriptEditor::inputMethodEvent(QInputMethodEvent* event)
{
    QPlainTextEdit::inputMethodEvent(event);
    if (!isReadOnly() && !event->commitString().isEmpty())
        m_completer->noteTyped();
}

bool ScriptEditor::leaveByKey(const QKeyEvent& event)
{
    const bool isTab = event.key() == Qt::Key_Tab || event.key() == Qt::Key_Backtab;
    if (!isTab || !(event.modifiers() & Qt::ControlModifier))
        return false;
    const bool isForward = event.key() == Qt::Key_Tab && !(event.modifiers() & Qt::ShiftModifier);
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): QPlainTextEdit's own stays, as a tab is a character there
    return QAbstractScrollArea::focusNextPrevChild(isForward);
}

bool ScriptEditor::runCommand(const QKeyEvent& event)
{
    if (isReadOnly())
        return false;
    const bool isSelecting = event.matches(QKeySequence::SelectStartOfLine);
    if (isSelecting || event.matches(QKeySequence::MoveToStartOfLine)) {
        QTextCursor cursor = textCursor();
        LineCommands::goHome(cursor, isSelecting ? QTextCursor::KeepAnchor : QTextCursor::MoveAnchor);
        setTextCursor(cursor);
        return true;
    }
    if (event.key() == Qt::Key_Space && modifiersOf(event) == Qt::ControlModifier) {
        m_completer->open();
        return true;
    }
    return runEditingCommand(event);
}

bool ScriptEditor::runEditingCommand(const QKeyEvent& event)
{
    const Qt::KeyboardModifiers modifiers = modifiersOf(event);
    const bool isPlain = !(modifiers & ~Qt::ShiftModifier);
    switch (event.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (isPlain)
            changeBy(&LineCommands::breakLine);
        return isPlain;
    case Qt::Key_Tab:
        if (isPlain)
            changeBy(modifiers ? &LineCommands::unindent : &LineCommands::indent);
        return isPlain;
    case Qt::Key_Backtab:
        if (isPlain)
            changeBy(&LineCommands::unindent);
        return isPlain;
    case Qt::Key_Slash:
        if ((modifiers & ~Qt::ShiftModifier) != Qt::ControlModifier) // some keyboards have the slash above a digit
            return false;
        changeBy(&LineCommands::toggleComments);
        return true;
    case Qt::Key_Backspace: {
        QTextCursor cursor = textCursor();
        if (!isPlain || !LineCommands::eraseLevel(cursor))
            return false;
        setTextCursor(cursor);
        return true;
    }
    default:
        return false;
    }
}

void ScriptEditor::changeBy(void (*command)(QTextCursor&))
{
    QTextCursor cursor = textCursor();
    command(cursor);
    setTextCursor(cursor);
    ensureCursorVisible();
}

bool ScriptEditor::viewportEvent(QEvent* event)
{
    if (event->type() != QEvent::ToolTip)
        return QPlainTextEdit::viewportEvent(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    return showErrorMessage(help->pos(), help->globalPos()) || QPlainTextEdit::viewportEvent(event);
}

bool ScriptEditor::showErrorMessage(const QPoint& position, const QPoint& globalPosition)
{
    if (m_error.isNull() || m_errorMessage.isEmpty())
        return false;
    const QRectF line = blockBoundingGeometry(m_error.block()).translated(contentOffset());
    if (position.y() < line.top() || position.y() >= line.bottom())
        return false;
    QToolTip::showText(globalPosition, m_errorMessage, viewport(), line.toAlignedRect());
    return true;
}

void ScriptEditor::changeEvent(QEvent* event)
{
    QPlainTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange) {
        m_highlighter->setPalette(palette());
        markLines();
    } else if (event->type() == QEvent::FontChange) {
        fitTabs();
        fitMargin();
    }
}

void ScriptEditor::resizeEvent(QResizeEvent* event)
{
    QPlainTextEdit::resizeEvent(event);
    fitMargin();
}

void ScriptEditor::fitTabs()
{
    setTabStopDistance(PythonIndent::tabWidth * QFontMetricsF(font()).horizontalAdvance(QLatin1Char(' ')));
}

void ScriptEditor::fitMargin()
{
    const int width = m_margin->sizeHint().width();
    setViewportMargins(width, 0, 0, 0);
    const QRect inside = contentsRect();
    m_margin->setGeometry(inside.left(), inside.top(), width, inside.height());
}

void ScriptEditor::updateMargin(const QRect& area, int dy)
{
    if (dy)
        m_margin->scroll(0, dy);
    else
        m_margin->update(0, area.top(), m_margin->width(), area.height());
}
