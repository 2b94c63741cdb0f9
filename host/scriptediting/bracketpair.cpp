#include "host/scriptediting/bracketpair_p.h"

#include "host/scriptediting/pythoncontext_p.h"
#include "host/scriptediting/pythontokenizer_p.h"

#include <QTextCursor>
#include <QTextDocument>

namespace {

using Pair = std::optional<std::pair<int, int>>;

Pair pairOf(const QTextDocument& document, int position)
{
    const QString brackets = QStringLiteral("()[]{}");
    if (position < 0 || !brackets.contains(document.characterAt(position)))
        return {};
    const QString source = document.toPlainText();
    PythonTokenizer tokens(source);
    PythonContext context(source);
    for (PythonToken token = tokens.next(); token.kind != PythonToken::Kind::End; token = tokens.next()) {
        context.take(token);
        const bool isClosed = context.opening() >= 0;
        if (isClosed && (token.begin == position || context.opening() == position))
            return std::make_pair(context.opening(), token.begin);
    }
    return {};
}

} // namespace

Pair bracketPair(const QTextCursor& cursor)
{
    const Pair before = pairOf(*cursor.document(), cursor.position() - 1);
    return before ? before : pairOf(*cursor.document(), cursor.position());
}
