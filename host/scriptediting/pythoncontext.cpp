#include "host/scriptediting/pythoncontext_p.h"

#include "host/scriptediting/pythontokenizer_p.h"

#include <algorithm>

namespace {

bool beginsStatement(QStringView name)
{
    static constexpr QStringView keywords[] = {
        u"assert", u"break",  u"class", u"continue", u"def",   u"del", u"elif",   u"except", u"finally",
        u"global", u"import", u"pass",  u"nonlocal", u"raise", u"try", u"return", u"while",  u"with",
    };
    return std::find(std::begin(keywords), std::end(keywords), name) != std::end(keywords);
}

QChar closing(QChar opening)
{
    if (opening == QLatin1Char('('))
        return QLatin1Char(')');
    return opening == QLatin1Char('[') ? QLatin1Char(']') : QLatin1Char('}');
}

} // namespace

void PythonContext::take(const PythonToken& token)
{
    const bool wasJoined = m_isJoined;
    m_isJoined = token.kind == PythonToken::Kind::Dot;
    m_opening = -1;
    switch (token.kind) {
    case PythonToken::Kind::Name:
        if (!wasJoined)
            takeName(token);
        break;
    case PythonToken::Kind::Number:
    case PythonToken::Kind::String:
        m_expression = token.begin;
        break;
    case PythonToken::Kind::Open:
        m_brackets.push_back({token.begin, m_expression});
        m_expression = -1;
        break;
    case PythonToken::Kind::Close:
        close(token);
        break;
    case PythonToken::Kind::LineEnd:
        if (m_brackets.empty())
            m_expression = -1;
        break;
    case PythonToken::Kind::Other:
        m_expression = -1;
        break;
    case PythonToken::Kind::Dot:
    case PythonToken::Kind::Comment:
    case PythonToken::Kind::End:
        break;
    }
}

void PythonContext::takeName(const PythonToken& token)
{
    m_expression = token.begin;
    if (!m_brackets.empty() && beginsStatement(m_source.mid(token.begin, token.end - token.begin)))
        m_brackets.clear();
}

void PythonContext::close(const PythonToken& token)
{
    m_expression = -1;
    const QChar sign = m_source[token.begin];
    const auto found = std::find_if(m_brackets.rbegin(), m_brackets.rend(), [&](const Bracket& bracket) {
        return closing(m_source[bracket.position]) == sign;
    });
    if (found == m_brackets.rend())
        return;
    m_opening = found->position;
    m_expression = found->owner >= 0 ? found->owner : found->position;
    m_brackets.erase(std::prev(found.base()), m_brackets.end()); // with those inside that were left open
}

QString PythonContext::outline(int begin, int end) const
{
    QString text;
    int depth = 0;
    const QStringView part = m_source.mid(begin, end - begin);
    PythonTokenizer tokens(part);
    for (PythonToken token = tokens.next(); token.kind != PythonToken::Kind::End; token = tokens.next()) {
        depth -= token.kind == PythonToken::Kind::Close ? 1 : 0;
        const bool isShown = token.kind != PythonToken::Kind::Comment && token.kind != PythonToken::Kind::LineEnd;
        if (depth == 0 && token.kind == PythonToken::Kind::String)
            text += QLatin1String("\"\"");
        else if (depth == 0 && isShown)
            text += part.mid(token.begin, token.end - token.begin);
        depth += token.kind == PythonToken::Kind::Open ? 1 : 0;
    }
    return text;
}
