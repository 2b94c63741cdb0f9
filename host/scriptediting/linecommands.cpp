#include "host/scriptediting/linecommands_p.h"

#include "host/scriptediting/pythonindent_p.h"

#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>
#include <vector>

namespace {

using Lines = std::vector<QTextBlock>;

/// The lines that a selection covers; one that it only reaches the begin of does not count.
Lines selectedLines(const QTextCursor& cursor)
{
    const QTextDocument& document = *cursor.document();
    QTextBlock line = document.findBlock(cursor.selectionStart());
    QTextBlock last = document.findBlock(cursor.selectionEnd());
    if (last != line && cursor.selectionEnd() == last.position())
        last = last.previous();
    Lines lines{line};
    while (line != last) {
        line = line.next();
        lines.push_back(line);
    }
    return lines;
}

bool hasSeveralLines(const QTextCursor& cursor)
{
    const QTextDocument& document = *cursor.document();
    return document.findBlock(cursor.selectionStart()) != document.findBlock(cursor.selectionEnd());
}

void replace(const QTextBlock& line, int begin, int count, const QString& text)
{
    QTextCursor cursor(line);
    cursor.setPosition(line.position() + begin);
    cursor.setPosition(cursor.position() + count, QTextCursor::KeepAnchor);
    cursor.insertText(text);
}

/// Replaces only where the two differ, so that cursors in the part that stays keep their place.
void setIndentation(const QTextBlock& line, const QString& indentation)
{
    const QString present = PythonIndent::leading(line.text());
    const auto same =
        std::mismatch(present.begin(), present.end(), indentation.begin(), indentation.end()).first - present.begin();
    replace(line, int(same), present.size() - int(same), indentation.mid(int(same)));
}

/// Selects several lines whole, in the direction in which they were selected.
void selectWhole(QTextCursor& cursor, const Lines& lines)
{
    if (!hasSeveralLines(cursor))
        return;
    const bool isBackward = cursor.position() < cursor.anchor();
    const int begin = lines.front().position();
    const int end = qMax(cursor.selectionEnd(), lines.back().position() + lines.back().length() - 1);
    cursor.setPosition(isBackward ? end : begin);
    cursor.setPosition(isBackward ? begin : end, QTextCursor::KeepAnchor);
}

bool isBlank(const QTextBlock& line)
{
    return line.text().trimmed().isEmpty();
}

bool isComment(const QTextBlock& line)
{
    return line.text().trimmed().startsWith(QLatin1Char('#'));
}

void uncomment(const QTextBlock& line)
{
    const int sign = PythonIndent::leading(line.text()).size();
    const bool hasBlank = line.text().mid(sign + 1, 1) == QLatin1String(" ");
    replace(line, sign, hasBlank ? 2 : 1, QString());
}

void reindent(QTextCursor& cursor, const Lines& lines, QString (PythonIndent::*change)(const QString&) const)
{
    const PythonIndent indent = PythonIndent::around(lines.front());
    cursor.beginEditBlock();
    for (const QTextBlock& line : lines) {
        if (!isBlank(line) || lines.size() == 1)
            setIndentation(line, (indent.*change)(PythonIndent::leading(line.text())));
    }
    cursor.endEditBlock();
    selectWhole(cursor, lines);
}

} // namespace

void LineCommands::breakLine(QTextCursor& cursor)
{
    const QString source = cursor.document()->toPlainText().left(cursor.selectionStart());
    const QTextBlock line = cursor.document()->findBlock(cursor.selectionStart());
    cursor.insertText(QLatin1Char('\n') + PythonIndent::around(line).behind(source));
}

void LineCommands::indent(QTextCursor& cursor)
{
    if (hasSeveralLines(cursor)) {
        reindent(cursor, selectedLines(cursor), &PythonIndent::deeper);
        return;
    }
    const QTextBlock line = cursor.block();
    const QString before = line.text().left(cursor.selectionStart() - line.position());
    cursor.insertText(PythonIndent::around(line).step(PythonIndent::columnBehind(before)));
}

void LineCommands::unindent(QTextCursor& cursor)
{
    reindent(cursor, selectedLines(cursor), &PythonIndent::shallower);
}

bool LineCommands::eraseLevel(QTextCursor& cursor)
{
    const QString before = cursor.block().text().left(cursor.positionInBlock());
    if (cursor.hasSelection() || before.isEmpty() || PythonIndent::leading(before) != before)
        return false;
    const QString kept = PythonIndent::around(cursor.block()).shallower(before);
    const auto same = std::mismatch(before.begin(), before.end(), kept.begin(), kept.end()).first - before.begin();
    cursor.setPosition(cursor.block().position() + int(same), QTextCursor::KeepAnchor);
    cursor.insertText(kept.mid(int(same)));
    return true;
}

void LineCommands::toggleComments(QTextCursor& cursor)
{
    const Lines all = selectedLines(cursor);
    Lines lines;
    std::remove_copy_if(all.begin(), all.end(), std::back_inserter(lines), isBlank);
    if (lines.empty())
        return;
    cursor.beginEditBlock();
    if (std::all_of(lines.begin(), lines.end(), isComment)) {
        std::for_each(lines.begin(), lines.end(), uncomment);
    } else {
        int column = PythonIndent::leading(lines.front().text()).size();
        for (const QTextBlock& line : lines)
            column = qMin(column, PythonIndent::leading(line.text()).size());
        for (const QTextBlock& line : lines)
            replace(line, column, 0, QStringLiteral("# "));
    }
    cursor.endEditBlock();
    selectWhole(cursor, all);
}

void LineCommands::goHome(QTextCursor& cursor, QTextCursor::MoveMode mode)
{
    const int begin = cursor.block().position();
    const int text = begin + PythonIndent::leading(cursor.block().text()).size();
    cursor.setPosition(cursor.position() == text ? begin : text, mode);
}
