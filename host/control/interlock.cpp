#include "host/control/interlock.h"

#include "host/runtime/runtimedatabase.h"
#include "platform/data/datafieldinfo.h"
#include "platform/data/tagresolution.h"
#include "platform/data/valuemarks.h"

#include <optional>
#include <utility>

namespace {

using Korvane::LogicType;
using Korvane::OpType;

struct Word
{
    QString text;
    bool isQuoted = false;
};

tl::expected<std::vector<Word>, QString> split(const QString& text)
{
    std::vector<Word> words;
    int place = 0;
    while (place < text.size()) {
        if (text[place].isSpace()) {
            ++place;
            continue;
        }
        const bool isQuoted = text[place] == QLatin1Char('"');
        int end = isQuoted ? text.indexOf(QLatin1Char('"'), place + 1) : place;
        if (end < 0)
            return tl::make_unexpected(QStringLiteral("a quotation mark at place %1 is not closed").arg(place + 1));
        while (!isQuoted && end < text.size() && !text[end].isSpace())
            ++end;
        const int begin = isQuoted ? place + 1 : place;
        words.push_back({text.mid(begin, end - begin), isQuoted});
        place = isQuoted ? end + 1 : end;
    }
    return words;
}

std::optional<OpType> operatorOf(const Word& word)
{
    static const std::pair<const char*, OpType> operators[] = {
        {"==", OpType::Equal},       {"!=", OpType::NotEqual}, {"<", OpType::Less},
        {"<=", OpType::LessOrEqual}, {">", OpType::Greater},   {">=", OpType::GreaterOrEqual},
    };
    for (const auto& [text, operation] : operators) {
        if (!word.isQuoted && word.text == QLatin1String(text))
            return operation;
    }
    return std::nullopt;
}

LogicType linkOf(const Word& word)
{
    if (word.isQuoted)
        return LogicType::None;
    if (word.text == QLatin1String("and"))
        return LogicType::And;
    return word.text == QLatin1String("or") ? LogicType::Or : LogicType::None;
}

bool isTag(const Word& word)
{
    return !word.text.isEmpty() && (word.isQuoted || (!operatorOf(word) && linkOf(word) == LogicType::None));
}

bool isTextOfValue(DataCode::DataField field)
{
    return field == DataCode::DataField::ValueWithUnit || field == DataCode::DataField::StatusName;
}

/// The value of a side as it is now; an invalid one where nothing may be concluded from it.
tl::expected<QVariant, QString> valueOf(const QString& tag, const RuntimeDatabase& database)
{
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(tag, &database);
    if (link.type == Korvane::ScadaObjectType::NoObject)
        return QVariant(link.name.toDouble());
    const ObjectKey object{link.type, link.id};
    if (!database.object(object))
        return tl::make_unexpected(QStringLiteral("the interlock names \"%1\", which there is not").arg(tag));
    const DataFieldInfo* field = DataFieldInfo::find(QStringView(link.field));
    const QuorixData record = database.presentRecord(object);
    const QuorixValue* quality = record.GetValue("quality");
    const bool isReliable = quality && (quality->toInt32() & ValueMark::unreliable) == 0;
    if (field && isTextOfValue(field->field) && !isReliable)
        return QVariant();
    if (field && field->supplier() == DataFieldInfo::Supplier::RuntimeDatabase)
        return database.fieldValue(object, field->field);
    if (field && field->supplier() == DataFieldInfo::Supplier::History)
        return database.historyValue(object, field->field);
    const QuorixValue* value = record.GetValue(field ? field->recordMember : DataFieldInfo::currentValueMember);
    return value && isReliable ? value->toVariant() : QVariant();
}

} // namespace

tl::expected<Interlock, QString> Interlock::parse(const QString& text)
{
    Interlock interlock;
    const auto words = split(text);
    if (!words)
        return tl::make_unexpected(words.error());
    for (std::size_t place = 0; place < words->size();) {
        if (place + 2 >= words->size())
            return tl::make_unexpected(QStringLiteral("a comparison needs a tag, an operator and a bound"));
        const Word& left = (*words)[place];
        const auto operation = operatorOf((*words)[place + 1]);
        const Word& right = (*words)[place + 2];
        if (!isTag(left) || !isTag(right))
            return tl::make_unexpected(QStringLiteral("\"%1\" is no tag").arg(isTag(left) ? right.text : left.text));
        if (!operation)
            return tl::make_unexpected(
                QStringLiteral("\"%1\" is no operator: ==, !=, <, <=, > or >=").arg((*words)[place + 1].text));
        place += 3;
        LogicType link = LogicType::None;
        if (place < words->size()) {
            link = linkOf((*words)[place]);
            if (link == LogicType::None || place + 1 == words->size())
                return tl::make_unexpected(
                    QStringLiteral("\"%1\" does not join two comparisons: and, or").arg((*words)[place].text));
            ++place;
        }
        interlock.m_rule.conditions.emplace_back(ConditionData{left.text, right.text, *operation, link});
    }
    return interlock;
}

QStringList Interlock::tags() const
{
    QStringList tags;
    for (const RuleCondition& part : m_rule.conditions) {
        for (const QString& tag : {part.tag, part.bound}) {
            bool isNumber = false;
            tag.toDouble(&isNumber);
            if (!isNumber)
                tags.append(tag);
        }
    }
    return tags;
}

tl::expected<void, QString> Interlock::check(const RuntimeDatabase& database) const
{
    if (m_rule.conditions.empty())
        return {};
    ActionRule rule = m_rule;
    QStringList failed;
    for (RuleCondition& part : rule.conditions) {
        const auto left = valueOf(part.tag, database);
        const auto right = valueOf(part.bound, database);
        if (!left || !right)
            return tl::make_unexpected(left ? right.error() : left.error());
        part.condition.lValue()->setValue(*left);
        part.condition.rValue()->setValue(*right);
        if (!part.condition.hasBothValues() || !part.condition.checkCondition())
            failed.append(part.text());
    }
    if (rule.holds())
        return {};
    return tl::make_unexpected(failed.join(QStringLiteral(", ")));
}
