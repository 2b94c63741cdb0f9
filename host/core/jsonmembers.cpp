#include "host/core/jsonmembers_p.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>
#include <vector>

namespace {

/// Places in the text: [begin, end).
struct Span
{
    int begin;
    int end;
};

struct Member
{
    Span key; ///< with its quotes
    Span value;
};

bool isSpace(char c)
{
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

int skipSpace(const QByteArray& text, int at)
{
    while (isSpace(text[at]))
        ++at;
    return at;
}

int endOfString(const QByteArray& text, int at)
{
    for (++at; text[at] != '"'; ++at) {
        if (text[at] == '\\')
            ++at;
    }
    return at + 1;
}

int endOfValue(const QByteArray& text, int at)
{
    int depth = 0;
    for (;;) {
        const char c = text[at];
        const bool isEnd = c == '}' || c == ']';
        if (depth == 0 && (isEnd || c == ',' || isSpace(c)))
            return at; // of a number or a word
        depth += c == '{' || c == '[' ? 1 : isEnd ? -1 : 0;
        at = c == '"' ? endOfString(text, at) : at + 1;
        if (depth == 0 && (isEnd || c == '"'))
            return at;
    }
}

// The root may stand behind a byte order mark.
int rootOf(const QByteArray& text)
{
    return text.indexOf('{');
}

std::vector<Member> membersOf(const QByteArray& text, int object)
{
    std::vector<Member> members;
    int at = skipSpace(text, object + 1);
    while (text[at] == '"') {
        Member member{};
        member.key = {at, endOfString(text, at)};
        at = skipSpace(text, member.key.end) + 1; // behind the colon
        member.value.begin = skipSpace(text, at);
        member.value.end = endOfValue(text, member.value.begin);
        members.push_back(member);
        at = skipSpace(text, member.value.end);
        if (text[at] == ',')
            at = skipSpace(text, at + 1);
    }
    return members;
}

std::vector<Member>::const_iterator find(const std::vector<Member>& members, const QByteArray& text,
                                         const QString& name)
{
    const auto isNamed = [&](const Member& member) {
        const QByteArray key = text.mid(member.key.begin, member.key.end - member.key.begin);
        return QJsonDocument::fromJson('[' + key + ']').array().first().toString() == name;
    };
    const auto last = std::find_if(members.rbegin(), members.rend(), isNamed);
    return last == members.rend() ? members.end() : std::prev(last.base());
}

QByteArray scalar(const QJsonValue& value)
{
    const QByteArray list = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return list.mid(1, list.size() - 2);
}

QByteArray memberText(const QString& name, const QByteArray& value)
{
    return scalar(name) + ": " + value;
}

QByteArray added(const QByteArray& text, int object, const std::vector<Member>& members, const QByteArray& member)
{
    if (members.empty())
        return QByteArray(text).insert(object + 1, member);
    const int key = members.back().key.begin;
    int before = key;
    while (isSpace(text[before - 1]))
        --before;
    const QByteArray space = members.size() == 1 && before == key ? QByteArray(" ") : text.mid(before, key - before);
    return QByteArray(text).insert(members.back().value.end, ',' + space + member);
}

QByteArray erased(QByteArray text, int object, const std::vector<Member>& members,
                  std::vector<Member>::const_iterator member)
{
    Span span{object + 1, endOfValue(text, object) - 1};
    if (member != members.begin())
        span = {std::prev(member)->value.end, member->value.end};
    else if (members.size() > 1)
        span = {member->key.begin, std::next(member)->key.begin};
    return text.remove(span.begin, span.end - span.begin);
}

std::optional<QByteArray> listText(const QVariantList& list)
{
    QByteArrayList texts;
    for (const QVariant& each : list) {
        const auto text = JsonMembers::textOf(each);
        if (!text)
            return std::nullopt;
        texts.append(*text);
    }
    return '[' + texts.join(", ") + ']';
}

std::optional<QByteArray> mapText(const QVariantMap& map)
{
    QByteArrayList texts;
    for (auto each = map.begin(); each != map.end(); ++each) {
        const auto text = JsonMembers::textOf(each.value());
        if (!text)
            return std::nullopt;
        texts.append(memberText(each.key(), *text));
    }
    return '{' + texts.join(", ") + '}';
}

} // namespace

tl::expected<QByteArray, QString> JsonMembers::with(const QByteArray& text, const QStringList& path,
                                                    const QByteArray& value)
{
    int object = rootOf(text);
    for (int level = 0;; ++level) {
        const std::vector<Member> members = membersOf(text, object);
        const auto member = find(members, text, path[level]);
        const bool isLast = level == path.size() - 1;
        if (member == members.end()) {
            QByteArray made = memberText(path.last(), value);
            for (int outer = path.size() - 2; outer >= level; --outer)
                made = memberText(path[outer], '{' + made + '}');
            return added(text, object, members, made);
        }
        if (isLast)
            return QByteArray(text).replace(member->value.begin, member->value.end - member->value.begin, value);
        object = member->value.begin;
        if (text[object] != '{')
            return tl::make_unexpected(QStringLiteral("\"%1\" is no object").arg(path[level]));
    }
}

QByteArray JsonMembers::without(const QByteArray& text, const QStringList& path)
{
    int object = rootOf(text);
    for (const QString& name : path.mid(0, path.size() - 1)) {
        const std::vector<Member> members = membersOf(text, object);
        const auto member = find(members, text, name);
        if (member == members.end() || text[member->value.begin] != '{')
            return text;
        object = member->value.begin;
    }
    QByteArray rest = text;
    for (;;) { // one of the same name would show up in its place
        const std::vector<Member> members = membersOf(rest, object);
        const auto member = find(members, rest, path.last());
        if (member == members.end())
            return rest;
        rest = erased(rest, object, members, member);
    }
}

std::optional<QByteArray> JsonMembers::textOf(const QVariant& value)
{
    switch (value.userType()) {
    case QMetaType::Float:
    case QMetaType::Double:
        if (!std::isfinite(value.toDouble()))
            return std::nullopt;
        return scalar(value.toDouble());
    case QMetaType::Nullptr:
    case QMetaType::Bool:
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
    case QMetaType::QString:
        return scalar(QJsonValue::fromVariant(value));
    case QMetaType::QVariantList:
    case QMetaType::QStringList:
        return listText(value.toList());
    case QMetaType::QVariantMap:
        return mapText(value.toMap());
    default:
        return std::nullopt;
    }
}
