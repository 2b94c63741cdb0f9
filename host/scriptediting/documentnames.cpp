#include "host/scriptediting/documentnames_p.h"

#include "host/scriptediting/pythontokenizer_p.h"

#include <QSet>

namespace {

QStringList sorted(const QSet<QStringView>& names)
{
    QStringList list;
    list.reserve(names.size());
    for (const QStringView name : names)
        list.append(name.toString());
    list.sort();
    return list;
}

} // namespace

DocumentNames DocumentNames::of(const QString& source, int except)
{
    QSet<QStringView> bare;
    QSet<QStringView> members;
    PythonTokenizer tokens(source);
    PythonToken::Kind previous = PythonToken::Kind::End;
    for (PythonToken token = tokens.next(); token.kind != PythonToken::Kind::End; token = tokens.next()) {
        const bool isTyped = token.begin <= except && except <= token.end;
        if (token.kind == PythonToken::Kind::Name && !isTyped)
            (previous == PythonToken::Kind::Dot ? members : bare)
                .insert(QStringView(source).mid(token.begin, token.end - token.begin));
        previous = token.kind;
    }
    return {sorted(bare), sorted(members)};
}
