#include "host/scriptediting/pythonindent_p.h"

#include "host/scriptediting/pythoncontext_p.h"
#include "host/scriptediting/pythontokenizer_p.h"

#include <QTextBlock>

#include <algorithm>

namespace {

bool isIndented(const QString& line)
{
    const QString leading = PythonIndent::leading(line);
    return !leading.isEmpty() && leading.size() < line.size();
}

QTextBlock nearestIndented(const QTextBlock& line)
{
    for (QTextBlock above = line; above.isValid(); above = above.previous()) {
        if (isIndented(above.text()))
            return above;
    }
    for (QTextBlock below = line.next(); below.isValid(); below = below.next()) {
        if (isIndented(below.text()))
            return below;
    }
    return {};
}

/// By how much a line is indented against the line that its block hangs on; the usual width where that is no level, as
/// for lines that are aligned with a bracket.
int levelOf(const QTextBlock& line)
{
    constexpr int widest = 8;
    const int columns = PythonIndent::leading(line.text()).size();
    for (QTextBlock above = line.previous(); above.isValid(); above = above.previous()) {
        const QString text = above.text();
        const int difference = columns - PythonIndent::leading(text).size();
        if (!text.trimmed().isEmpty() && difference > 0)
            return difference > 1 && difference <= widest ? difference : PythonIndent::tabWidth;
    }
    return columns <= widest ? columns : PythonIndent::tabWidth;
}

bool leavesBlock(QStringView name)
{
    static constexpr QStringView keywords[] = {u"return", u"break", u"continue", u"pass", u"raise"};
    return std::find(std::begin(keywords), std::end(keywords), name) != std::end(keywords);
}

/// Where source ends: the statement it ends in, and what a line break there meets.
struct SourceEnd
{
    explicit SourceEnd(QStringView text) : source(text)
    {
        PythonTokenizer tokens(source);
        PythonContext context(source);
        for (PythonToken token = tokens.next(); token.kind != PythonToken::Kind::End; token = tokens.next()) {
            context.take(token);
            take(token, context.brackets().empty());
        }
        const bool isJoined = textOf(last) == QLatin1String("\\");
        isWhole = context.brackets().empty() && !isInString && !isJoined;
    }

    void take(const PythonToken& token, bool isOutside)
    {
        if (token.kind == PythonToken::Kind::Comment)
            return;
        if (token.kind == PythonToken::Kind::LineEnd) {
            if (isOutside)
                statement = token.end;
            first = isOutside ? PythonToken() : first;
            last = isOutside ? PythonToken() : last;
            isInString = false;
            return;
        }
        if (first.kind == PythonToken::Kind::End)
            first = token;
        last = token;
        isInString = token.kind == PythonToken::Kind::String && !token.isClosed;
    }

    QStringView textOf(const PythonToken& token) const { return source.mid(token.begin, token.end - token.begin); }

    QStringView source;
    int statement = 0; ///< where its first line begins
    PythonToken first; ///< of the statement; of the kind End while it has none
    PythonToken last;
    bool isInString = false;
    bool isWhole = false; ///< neither a bracket nor a string is open, and no backslash joins the next line
};

} // namespace

QString PythonIndent::leading(QStringView line)
{
    const auto end =
        std::find_if(line.begin(), line.end(), [](QChar c) { return c != QLatin1Char(' ') && c != QLatin1Char('\t'); });
    return line.left(end - line.begin()).toString();
}

int PythonIndent::columnBehind(QStringView text)
{
    int column = 0;
    for (const QChar c : text)
        column += c == QLatin1Char('\t') ? tabWidth - column % tabWidth : 1;
    return column;
}

PythonIndent PythonIndent::around(const QTextBlock& line)
{
    PythonIndent indent;
    const QTextBlock like = nearestIndented(line);
    if (!like.isValid() || leading(like.text()).contains(QLatin1Char('\t')))
        return indent;
    indent.m_hasTabs = false;
    indent.m_width = levelOf(like);
    return indent;
}

QString PythonIndent::step(int column) const
{
    return m_hasTabs ? QStringLiteral("\t") : QString(m_width - column % m_width, QLatin1Char(' '));
}

QString PythonIndent::deeper(const QString& indentation) const
{
    return indentation + step(columnBehind(indentation));
}

QString PythonIndent::shallower(const QString& indentation) const
{
    const int target = qMax(0, columnBehind(indentation) - 1) / m_width * m_width;
    QString shorter = indentation;
    while (columnBehind(shorter) > target)
        shorter.chop(1);
    return shorter + QString(target - columnBehind(shorter), QLatin1Char(' '));
}

QString PythonIndent::behind(QStringView source) const
{
    const SourceEnd end(source);
    if (!end.isWhole || end.first.kind == PythonToken::Kind::End)
        return leading(source.mid(source.lastIndexOf(QLatin1Char('\n')) + 1));
    const QString indentation = leading(source.mid(end.statement));
    if (end.textOf(end.last) == QLatin1String(":"))
        return deeper(indentation);
    return leavesBlock(end.textOf(end.first)) ? shallower(indentation) : indentation;
}
