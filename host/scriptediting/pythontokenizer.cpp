#include "host/scriptediting/pythontokenizer_p.h"

namespace {

bool isNameBegin(QChar c)
{
    return c.isLetter() || c == QLatin1Char('_') || c.isSurrogate();
}

bool isNamePart(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c.isMark() || c.isSurrogate();
}

bool isNumberPart(QChar c)
{
    return c.isLetterOrNumber() || c == QLatin1Char('_') || c == QLatin1Char('.');
}

bool isNotLineEnd(QChar c)
{
    return c != QLatin1Char('\n');
}

bool isQuote(QChar c)
{
    return c == QLatin1Char('"') || c == QLatin1Char('\'');
}

/// Whether a name that a quote follows belongs to the string: r"", b'', Rb"", ...
bool isStringPrefix(QStringView name)
{
    if (name.size() > 2)
        return false;
    for (const QChar c : name) {
        if (!QStringView(u"rRbBuUfF").contains(c))
            return false;
    }
    return true;
}

PythonToken::Kind kindOf(QChar c)
{
    switch (c.unicode()) {
    case '\n':
        return PythonToken::Kind::LineEnd;
    case '(':
    case '[':
    case '{':
        return PythonToken::Kind::Open;
    case ')':
    case ']':
    case '}':
        return PythonToken::Kind::Close;
    case '.':
        return PythonToken::Kind::Dot;
    default:
        return PythonToken::Kind::Other;
    }
}

} // namespace

PythonToken PythonTokenizer::next()
{
    skipBlanks();
    PythonToken token;
    token.begin = m_at;
    token.end = m_at;
    if (m_at == size())
        return token;

    const QChar c = at(m_at);
    if (isQuote(c)) {
        readString(token, m_at);
    } else if (isNameBegin(c)) {
        readWord(token);
    } else if (c.isDigit()) {
        token.kind = PythonToken::Kind::Number;
        token.end = endOfRun(m_at, isNumberPart);
    } else if (c == QLatin1Char('#')) {
        token.kind = PythonToken::Kind::Comment;
        token.end = endOfRun(m_at, isNotLineEnd);
    } else {
        token.kind = kindOf(c);
        token.end = m_at + 1;
    }
    m_at = token.end;
    return token;
}

void PythonTokenizer::skipBlanks()
{
    for (; m_at < size(); ++m_at) {
        const QChar c = at(m_at);
        const bool isJoined = c == QLatin1Char('\\') && at(m_at + 1) == QLatin1Char('\n');
        if (isJoined)
            ++m_at;
        else if (c == QLatin1Char('\n') || !c.isSpace())
            return;
    }
}

int PythonTokenizer::endOfRun(int from, bool (*belongs)(QChar)) const
{
    while (from < size() && belongs(at(from)))
        ++from;
    return from;
}

void PythonTokenizer::readWord(PythonToken& token) const
{
    token.kind = PythonToken::Kind::Name;
    token.end = endOfRun(token.begin, isNamePart);
    const QStringView name = m_source.mid(token.begin, token.end - token.begin);
    if (!isQuote(at(token.end)) || !isStringPrefix(name))
        return;
    token.isRaw = name.contains(QLatin1Char('r'), Qt::CaseInsensitive);
    readString(token, token.end);
}

void PythonTokenizer::readString(PythonToken& token, int quotePosition) const
{
    const QChar quote = at(quotePosition);
    const bool isTripled = at(quotePosition + 1) == quote && at(quotePosition + 2) == quote;
    const int quotes = isTripled ? 3 : 1;
    token.kind = PythonToken::Kind::String;
    token.contentBegin = quotePosition + quotes;
    int position = token.contentBegin;
    for (; position < size(); ++position) {
        const QChar c = at(position);
        if (c == QLatin1Char('\\')) {
            ++position; // in raw strings too a quote behind a backslash closes nothing
            continue;
        }
        if (c == QLatin1Char('\n') && !isTripled)
            break;
        if (c != quote || (isTripled && (at(position + 1) != quote || at(position + 2) != quote)))
            continue;
        token.isClosed = true;
        position += quotes;
        break;
    }
    token.end = qMin(position, size());
}
