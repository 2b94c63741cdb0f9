#include "host/projectfiles/scriptliterals.h"

#include "host/scriptediting/pythontokenizer_p.h"

#include <array>
#include <utility>

namespace {

using Kind = PythonToken::Kind;

constexpr std::array<std::pair<char, char>, 6> escapes = {
    {{'\\', '\\'}, {'\'', '\''}, {'"', '"'}, {'n', '\n'}, {'t', '\t'}, {'r', '\r'}}};

QChar unescaped(QChar letter)
{
    for (const auto& [written, meant] : escapes) {
        if (letter == QLatin1Char(written))
            return QLatin1Char(meant);
    }
    return {};
}

/// Nothing where the text is only known when the script runs.
std::optional<QString> valueOf(const QString& content, bool isRaw, bool isFormatted)
{
    QString value;
    for (int at = 0; at < content.size(); ++at) {
        QChar letter = content.at(at);
        const bool isBrace = letter == QLatin1Char('{') || letter == QLatin1Char('}');
        if (isFormatted && isBrace) {
            if (at + 1 == content.size() || content.at(at + 1) != letter)
                return std::nullopt;
            ++at;
        } else if (letter == QLatin1Char('\\') && !isRaw) {
            letter = at + 1 < content.size() ? unescaped(content.at(++at)) : QChar();
            if (letter.isNull())
                return std::nullopt;
        }
        value += letter;
    }
    return value;
}

/// The tokens of a source, and what is asked of them.
class Words
{
public:
    explicit Words(const QString& source) : m_source(source)
    {
        PythonTokenizer tokenizer(source);
        do
            m_tokens.push_back(tokenizer.next());
        while (m_tokens.back().kind != Kind::End);
    }

    ScriptWords read();

private:
    QStringView textOf(const PythonToken& token) const
    {
        return QStringView(m_source).mid(token.begin, token.end - token.begin);
    }
    Kind kindAt(std::size_t place) const { return place < m_tokens.size() ? m_tokens[place].kind : Kind::End; }
    bool isText(std::size_t place, char text) const
    {
        return place < m_tokens.size() && textOf(m_tokens[place]).size() == 1 &&
               textOf(m_tokens[place]).front() == QLatin1Char(text);
    }
    std::optional<ScriptLiteral> literalAt(std::size_t place) const;
    QString memberCallAt(std::size_t place) const;
    QString callAround(std::size_t place) const;

    const QString& m_source;
    std::vector<PythonToken> m_tokens;
};

ScriptWords Words::read()
{
    ScriptWords words;
    int line = 1;
    int at = 0;
    for (std::size_t place = 0; place < m_tokens.size(); ++place) {
        for (; at < m_tokens[place].begin; ++at)
            line += m_source.at(at) == QLatin1Char('\n') ? 1 : 0;
        if (m_tokens[place].kind == Kind::String) {
            if (auto literal = literalAt(place)) {
                literal->line = line;
                words.literals.push_back(*literal);
            }
        } else if (const QString call = memberCallAt(place); !call.isEmpty()) {
            words.calls.push_back({call, line});
        }
    }
    return words;
}

std::optional<ScriptLiteral> Words::literalAt(std::size_t place) const
{
    const PythonToken& token = m_tokens[place];
    if (!token.isClosed)
        return std::nullopt;
    ScriptLiteral literal;
    literal.begin = token.contentBegin;
    literal.quote = m_source.at(token.contentBegin - 1);
    const bool isTripled = token.contentBegin - token.begin >= 3 &&
                           m_source.at(token.contentBegin - 2) == literal.quote &&
                           m_source.at(token.contentBegin - 3) == literal.quote;
    const int quotes = isTripled ? 3 : 1;
    literal.end = token.end - quotes;
    const QStringView prefix = QStringView(m_source).mid(token.begin, token.contentBegin - quotes - token.begin);
    if (prefix.contains(QLatin1Char('b'), Qt::CaseInsensitive))
        return std::nullopt;
    literal.isRaw = token.isRaw;
    literal.isFormatted = prefix.contains(QLatin1Char('f'), Qt::CaseInsensitive);
    const auto value =
        valueOf(m_source.mid(literal.begin, literal.end - literal.begin), literal.isRaw, literal.isFormatted);
    if (!value)
        return std::nullopt;
    literal.value = *value;
    literal.call = callAround(place);
    return literal;
}

/// "part.function" where a call of a part of the module begins at \p place, also behind "korvane."; else nothing.
QString Words::memberCallAt(std::size_t place) const
{
    if (kindAt(place) != Kind::Name || kindAt(place + 1) != Kind::Dot || kindAt(place + 2) != Kind::Name ||
        !isText(place + 3, '('))
        return {};
    if (place > 0 && m_tokens[place - 1].kind == Kind::Dot &&
        (place < 2 || textOf(m_tokens[place - 2]) != QLatin1String("korvane")))
        return {};
    return textOf(m_tokens[place]).toString() + QLatin1Char('.') + textOf(m_tokens[place + 2]).toString();
}

QString Words::callAround(std::size_t place) const
{
    const bool isWhole = isText(place + 1, ')') || isText(place + 1, ',');
    return isWhole && place >= 4 ? memberCallAt(place - 4) : QString();
}

} // namespace

ScriptWords ScriptWords::of(const QString& source)
{
    return Words(source).read();
}

std::optional<QString> ScriptLiteral::written(const QString& text) const
{
    QString result;
    for (const QChar letter : text) {
        const bool isSpecial = letter == QLatin1Char('\\') || letter == quote;
        if (isSpecial && isRaw)
            return std::nullopt;
        if (isSpecial)
            result += QLatin1Char('\\');
        else if (isFormatted && (letter == QLatin1Char('{') || letter == QLatin1Char('}')))
            result += letter;
        result += letter;
    }
    return result;
}
