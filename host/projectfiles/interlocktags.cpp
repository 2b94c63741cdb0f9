#include "host/projectfiles/interlocktags.h"

namespace {

bool isOperator(QChar letter)
{
    return QStringLiteral("=!<>").contains(letter);
}

bool isBare(QChar letter)
{
    return !letter.isSpace() && !isOperator(letter) && letter != QLatin1Char('"');
}

bool isWord(const QString& text)
{
    return text == QLatin1String("and") || text == QLatin1String("or");
}

bool isNumber(const QString& text)
{
    bool isRead = false;
    text.toDouble(&isRead);
    return isRead;
}

} // namespace

std::vector<InterlockTag> InterlockTag::of(const QString& interlock)
{
    std::vector<InterlockTag> tags;
    int at = 0;
    while (at < interlock.size()) {
        InterlockTag found;
        found.begin = at;
        if (interlock.at(at) == QLatin1Char('"')) {
            const int close = interlock.indexOf(QLatin1Char('"'), at + 1);
            if (close < 0)
                return tags;
            found.tag = interlock.mid(at + 1, close - at - 1);
            found.end = at = close + 1;
            tags.push_back(found);
            continue;
        }
        while (at < interlock.size() && isBare(interlock.at(at)))
            ++at;
        found.end = at;
        found.tag = interlock.mid(found.begin, at - found.begin);
        if (found.tag.isEmpty())
            ++at;
        else if (!isWord(found.tag) && !isNumber(found.tag))
            tags.push_back(found);
    }
    return tags;
}

std::optional<QString> InterlockTag::written(const QString& tag)
{
    if (tag.contains(QLatin1Char('"')))
        return std::nullopt;
    bool isPlain = !isWord(tag);
    for (const QChar letter : tag)
        isPlain = isPlain && isBare(letter);
    return isPlain ? tag : QLatin1Char('"') + tag + QLatin1Char('"');
}
