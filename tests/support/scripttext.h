#pragma once

#include <QPlainTextEdit>
#include <QTextCursor>

/// The text of an editor with "|" where its cursor stands and, where something is selected, "^" where that began.
inline QString markedText(const QPlainTextEdit& editor)
{
    QString text = editor.toPlainText();
    const QTextCursor cursor = editor.textCursor();
    text.insert(cursor.position(), QLatin1Char('|'));
    if (cursor.hasSelection())
        text.insert(cursor.anchor() + (cursor.anchor() > cursor.position() ? 1 : 0), QLatin1Char('^'));
    return text;
}

/// The inverse: gives the editor the text, without the marks, and puts the cursor where they stand.
inline void setMarkedText(QPlainTextEdit& editor, QString text)
{
    int position = text.indexOf(QLatin1Char('|'));
    int anchor = text.indexOf(QLatin1Char('^'));
    text.remove(QLatin1Char('|')).remove(QLatin1Char('^'));
    if (anchor >= 0 && position > anchor)
        --position;
    else if (anchor > position)
        --anchor;
    editor.setPlainText(text);
    QTextCursor cursor = editor.textCursor();
    cursor.setPosition(anchor < 0 ? position : anchor);
    cursor.setPosition(position, QTextCursor::KeepAnchor);
    editor.setTextCursor(cursor);
}
