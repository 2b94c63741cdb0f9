#include "host/scriptediting/completionplace_p.h"

#include "host/scriptediting/pythoncontext_p.h"
#include "host/scriptediting/pythontokenizer_p.h"

namespace {

using TokenKind = PythonToken::Kind;

/// The callee of the nearest bracket that belongs to one: a list or a group inside a call counts as its argument.
QString calleeOf(const PythonContext& context, QStringView source)
{
    const auto& brackets = context.brackets();
    for (auto bracket = brackets.rbegin(); bracket != brackets.rend(); ++bracket) {
        if (bracket->owner < 0)
            continue;
        const QString callee = context.outline(bracket->owner, bracket->position);
        return source[bracket->position] == QLatin1Char('[') ? callee + QLatin1Char('[') : callee;
    }
    return {};
}

QString withoutEscapes(QStringView content)
{
    QString text;
    for (int i = 0; i < content.size(); ++i) {
        const bool isEscape = content[i] == QLatin1Char('\\') && i + 1 < content.size();
        text += isEscape ? content[++i] : content[i];
    }
    return text;
}

CompletionPlace textPlace(const PythonToken& string, const PythonContext& context, QStringView source)
{
    CompletionPlace place;
    place.kind = CompletionPlace::Kind::Text;
    place.begin = string.contentBegin;
    const QStringView content = source.mid(string.contentBegin);
    place.typed = string.isRaw ? content.toString() : withoutEscapes(content);
    place.owner = calleeOf(context, source);
    place.quote = source[string.contentBegin - 1];
    place.isRaw = string.isRaw;
    return place;
}

CompletionPlace memberPlace(int dot, int begin, int expression, const PythonContext& context, QStringView source)
{
    CompletionPlace place;
    if (expression < 0)
        return place;
    place.kind = CompletionPlace::Kind::Member;
    place.begin = begin;
    place.typed = source.mid(begin).toString();
    place.owner = context.outline(expression, dot);
    return place;
}

} // namespace

CompletionPlace CompletionPlace::atEndOf(QStringView source)
{
    PythonTokenizer tokens(source);
    PythonContext context(source);
    PythonToken last;
    PythonToken previous;
    for (PythonToken token = tokens.next(); token.kind != TokenKind::End; token = tokens.next()) {
        context.take(token);
        previous = last;
        last = token;
    }

    const int end = static_cast<int>(source.size());
    const bool isTouched = last.kind != TokenKind::End && last.end == end;
    if (last.kind == TokenKind::String && isTouched && !last.isClosed)
        return textPlace(last, context, source);
    if (isTouched && last.kind == TokenKind::Dot)
        return memberPlace(last.begin, end, context.expression(), context, source);
    if (isTouched && last.kind == TokenKind::Name && previous.kind == TokenKind::Dot)
        return memberPlace(previous.begin, last.begin, context.expression(), context, source);
    if (isTouched &&
        (last.kind == TokenKind::Comment || last.kind == TokenKind::Number || last.kind == TokenKind::String))
        return {};
    CompletionPlace place;
    place.kind = CompletionPlace::Kind::Word;
    place.begin = isTouched && last.kind == TokenKind::Name ? last.begin : end;
    place.typed = source.mid(place.begin).toString();
    return place;
}
