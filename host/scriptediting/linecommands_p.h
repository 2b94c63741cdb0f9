#pragma once

#include <QTextCursor>

/// What keys do with the lines of a script. Each is one step to undo, and leaves the cursor where one goes on typing.
namespace LineCommands {

/// Breaks the line, in place of what is selected, and indents the new one.
void breakLine(QTextCursor& cursor);
/// Leads to the next level, in place of what is selected on one line; indents lines when several are selected.
void indent(QTextCursor& cursor);
/// Takes one level from the cursor's line or from all that are selected.
void unindent(QTextCursor& cursor);
/// Takes one level before the cursor.
/// \returns false, and does nothing, unless only white space stands before it and nothing is selected.
bool eraseLevel(QTextCursor& cursor);
/// Makes comments of the cursor's line or of all that are selected, or, when all are comments, code again.
void toggleComments(QTextCursor& cursor);
/// Goes to where the line's text begins, or to the line's begin when it is there already.
void goHome(QTextCursor& cursor, QTextCursor::MoveMode mode);

} // namespace LineCommands
