// The reference of everything scripts can use, as Markdown.

#include "host/scripting/scriptcatalogue_p.h"
#include "host/scripting/scriptengine.h"

#include <QStringList>

namespace {

using ScriptCatalogue::Entry;
using ScriptCatalogue::Owner;

bool isConstant(const Entry& entry)
{
    return entry.meaning.isEmpty();
}

// A function of a module as scripts write it, a method as it is.
QString callOf(const Owner& owner, const Entry& entry)
{
    const bool isModule = owner.name.at(0).isLower() && !owner.name.contains(QLatin1Char('.'));
    return isModule ? owner.name + QLatin1Char('.') + entry.call : entry.call;
}

QString sectionOf(const Owner& owner)
{
    QString text = QStringLiteral("### `%1`\n\n%2\n\n").arg(owner.name, owner.meaning);
    QStringList constants;
    for (const Entry& entry : owner.entries) {
        if (isConstant(entry))
            constants.append(QStringLiteral("`%1`").arg(entry.name));
        else
            text += QStringLiteral("- **`%1`** - %2\n").arg(callOf(owner, entry), entry.meaning);
    }
    if (!constants.isEmpty())
        text += QStringLiteral("- Constants: %1.\n").arg(constants.join(QStringLiteral(", ")));
    return text + QLatin1Char('\n');
}

QString handlerTable()
{
    QString text = QStringLiteral("### Handlers\n\n| function | whose | called when |\n|---|---|---|\n");
    for (int place = 0; place < scriptHandlerCount; ++place) {
        const ScriptHandlerInfo& info = scriptHandlerInfo(static_cast<ScriptHandler>(place));
        const char* whose = info.reach == ScriptHandlerInfo::Reach::Owner         ? "the object's"
                            : info.reach == ScriptHandlerInfo::Reach::OwnerOrPage ? "the object's, else the page's"
                                                                                  : "every object's and the page's";
        text += QStringLiteral("| `%1(%2)` | %3 | %4 |\n")
                    .arg(info.name, QLatin1String(info.arguments), QLatin1String(whose), QLatin1String(info.meaning));
    }
    return text;
}

} // namespace

QString ScriptEngine::reference()
{
    QString text;
    for (const Owner& owner : ScriptCatalogue::owners())
        text += sectionOf(owner);
    return text + handlerTable();
}
