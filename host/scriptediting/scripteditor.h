#pragma once

#include "host/hostexport.h"

#include <QPlainTextEdit>

#include <optional>
#include <utility>

class LineNumberArea;
class ScriptCompleter;
class ScriptHighlighter;
struct ScriptVocabulary;

/// The text area in which an engineer writes a Python script: coloured, with line numbers, automatic indentation and a
/// list that completes what is typed.
///
/// Everything of QPlainTextEdit works as there. Tab indents; Ctrl+Tab and Ctrl+Shift+Tab go to the next and the previous
/// widget, Ctrl+/ makes comments of lines and Ctrl+Space asks for the list. Other keys with Ctrl, and function keys, are
/// left to the window.
class KORVANE_HOST_EXPORT ScriptEditor : public QPlainTextEdit
{
    Q_OBJECT
    Q_DISABLE_COPY(ScriptEditor)

public:
    explicit ScriptEditor(QWidget* parent = nullptr);
    ~ScriptEditor() override;

    /// What is offered from now on, beside the names in the script itself; the open list is brought up to date.
    void setVocabulary(const ScriptVocabulary& vocabulary);

    /// Marks a line until its text changes or clearErrorLine(); lines above it may come and go. One line at a time.
    /// \param line from 1, as Python counts; one that the script does not have marks none
    /// \param message shown as the line's tool tip; may be empty
    void setErrorLine(int line, const QString& message = {});
    void clearErrorLine();
    /// The marked line's present number, from 1; 0 for none.
    int errorLine() const;

protected:
    bool event(QEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void inputMethodEvent(QInputMethodEvent* event) override;

private:
    friend class LineNumberArea; // it needs the geometry that QPlainTextEdit keeps to its heirs

    bool leaveByKey(const QKeyEvent& event);
    bool runCommand(const QKeyEvent& event);
    bool runEditingCommand(const QKeyEvent& event);
    void changeBy(void (*command)(QTextCursor&));
    bool showErrorMessage(const QPoint& position, const QPoint& globalPosition);
    void noteEdit();
    void followText();
    void markLines();
    void fitMargin();
    void fitTabs();
    void updateMargin(const QRect& area, int dy);

    LineNumberArea* m_margin;
    ScriptHighlighter* m_highlighter;
    ScriptCompleter* m_completer;
    QTextCursor m_error; ///< at the begin of the marked line; null for none
    QString m_errorText; ///< what the marked line says
    QString m_errorMessage;
    std::optional<std::pair<int, int>> m_brackets; ///< positions of the two that are marked
    bool m_isEdited = false;                       ///< and textChanged() not heard yet
    int m_bracketsAt = -1; ///< the cursor's position that they belong to; -1 once the text has changed
};
