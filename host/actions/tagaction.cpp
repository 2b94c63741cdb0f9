#include "host/actions/tagaction.h"

#include "host/shapes/shape.h"
#include "platform/data/mwdatadepartment.h"
#include "platform/data/scadatagactionstream.h"
#include "platform/data/valuemarks.h"
#include "scada/hub/canvasscadaactionmanagerinterface.h"

#include <QDataStream>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>

namespace {

constexpr int streamFormat = QDataStream::Qt_4_6; // what the records inside are written with
constexpr quint8 layout = 1;
constexpr quint16 mostParts = 1000; // more than any action has: a count beyond it is damage

QByteArray toJson(const QVariantMap& values)
{
    return QJsonDocument(QJsonObject::fromVariantMap(values)).toJson(QJsonDocument::Compact);
}

QVariantMap fromJson(const QByteArray& text)
{
    return QJsonDocument::fromJson(text).object().toVariantMap();
}

void unbindCondition(RuleCondition& part)
{
    const QByteArray unknown = part.unknownMembers;
    part = RuleCondition(part.data());
    part.unknownMembers = unknown;
}

} // namespace

TagAction::TagAction(TesselInterface* shape) : ScadaTagActionInterface(nullptr)
{
    TagAction::setShape(shape);
}

TagAction::TagAction(const TagAction& other)
    : ScadaTagActionInterface(other),
      m_bindings(other.m_bindings),
      m_rules(other.m_rules),
      m_unknownMembers(other.m_unknownMembers),
      m_unknownSettings(other.m_unknownSettings)
{
    unbind();
}

TagAction::~TagAction() = default;

// Targets that were resolved get the tags back that the engineer wrote, and lose what they were bound to.
void TagAction::unbind()
{
    for (Binding& binding : m_bindings)
        binding.target = ObjectTarget::fromTagString(binding.tag);
    for (ActionRule& rule : m_rules) {
        for (RuleCondition& part : rule.conditions)
            unbindCondition(part);
    }
}

const std::vector<ActionSetting>& TagAction::settingTable() const
{
    static const std::vector<ActionSetting> none;
    return none;
}

QVariantMap TagAction::settings() const
{
    QVariantMap values;
    for (const ActionSetting& setting : settingTable())
        values.insert(setting.name, setting.read(*this));
    return values;
}

bool TagAction::setSetting(const QString& name, const QVariant& value)
{
    for (const ActionSetting& setting : settingTable()) {
        if (setting.name == name)
            return setting.write(*this, value);
    }
    return false;
}

QStringList TagAction::tags() const
{
    QStringList tags;
    for (const Binding& binding : m_bindings)
        tags.append(binding.tag);
    return tags;
}

void TagAction::setTags(const QStringList& tags)
{
    m_failed.clear();
    m_bindings.clear();
    m_bindings.reserve(static_cast<std::size_t>(tags.size()));
    for (const QString& tag : tags)
        addTarget(ObjectTarget::fromTagString(tag));
}

void TagAction::setTag(int place, const QString& tag)
{
    m_failed.clear();
    Binding& binding = m_bindings.at(static_cast<std::size_t>(place));
    binding.target = ObjectTarget::fromTagString(tag);
    binding.tag = tag;
}

void TagAction::removeValue(int place)
{
    m_failed.clear();
    Q_ASSERT(place >= 0 && static_cast<std::size_t>(place) < m_bindings.size());
    m_bindings.erase(m_bindings.begin() + place);
}

void TagAction::addTarget(const ObjectTarget& target, const QByteArray& unknownMembers)
{
    const QString tag = target.getTagString();
    m_bindings.push_back({target, tag.isEmpty() ? QString() : tag, unknownMembers});
}

QByteArray TagAction::unknownTargetMembers(int place) const
{
    const auto index = static_cast<std::size_t>(place);
    return place >= 0 && index < m_bindings.size() ? m_bindings[index].unknownMembers : QByteArray();
}

void TagAction::setRules(const std::vector<ActionRule>& rules)
{
    m_failed.clear();
    m_rules = rules;
}

QVariant TagAction::value(int place) const
{
    const auto index = static_cast<std::size_t>(place);
    return place >= 0 && index < m_bindings.size() ? m_bindings[index].target.value() : QVariant();
}

std::optional<double> TagAction::share(double low, double high) const
{
    bool isNumber = false;
    const double number = value().toDouble(&isNumber);
    if (!isNumber || std::isnan(number) || low == high)
        return {};
    return std::clamp((number - low) / (high - low), 0.0, 1.0);
}

void TagAction::setShape(TesselInterface* shape)
{
    ScadaTagActionInterface::setShape(shape);
    if (auto* drawn = dynamic_cast<Shape*>(shape))
        drawn->setLive(true);
}

bool TagAction::isEqual(const ScadaTagActionInterface& other) const
{
    const auto* action = dynamic_cast<const TagAction*>(&other);
    if (!action || action->type() != type() || action->tags() != tags() || action->settings() != settings() ||
        action->m_rules.size() != m_rules.size())
        return false;
    return std::equal(m_rules.begin(), m_rules.end(), action->m_rules.begin(),
                      [](const ActionRule& a, const ActionRule& b) { return a.text() == b.text() && a.set == b.set; });
}

// Behind each record stands its tag once more: field codes above 16 bits do not fit into a record.
void TagAction::toStream(ScadaTagActionStream& stream) const
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(streamFormat);
    out << layout << static_cast<quint16>(m_bindings.size());
    for (const Binding& binding : m_bindings) {
        ObjectTarget::fromTagString(binding.tag).toStream(out);
        out << binding.tag;
    }
    out << static_cast<quint16>(m_rules.size());
    for (const ActionRule& rule : m_rules) {
        out << static_cast<quint16>(rule.conditions.size());
        for (const RuleCondition& part : rule.conditions) {
            RuleCondition(part.data()).condition.toStream(out, stream);
            out << part.tag << part.bound;
        }
        out << toJson(rule.set);
    }
    out << toJson(settings());
    stream.setData(bytes);
}

void TagAction::fromStream(const ScadaTagActionStream& stream, QMap<QString, QVariant>& values)
{
    QDataStream in(stream.data());
    in.setVersion(streamFormat);
    quint8 storedLayout = 0;
    quint16 count = 0;
    in >> storedLayout >> count;
    if (in.status() != QDataStream::Ok || storedLayout != layout || count > mostParts)
        return;
    QStringList tags;
    for (; count > 0 && in.status() == QDataStream::Ok; --count) {
        ObjectTarget record;
        QString tag;
        record.fromStream(in, stream);
        in >> tag;
        tags.append(tag);
    }
    std::vector<ActionRule> rules;
    in >> count;
    if (count > mostParts)
        return;
    for (; count > 0 && in.status() == QDataStream::Ok; --count) {
        quint16 parts = 0;
        in >> parts;
        if (parts > mostParts)
            return;
        ActionRule rule;
        for (; parts > 0 && in.status() == QDataStream::Ok; --parts) {
            ScadaCondition condition;
            ConditionData data;
            condition.fromStream(in, stream);
            in >> data.leftTag >> data.rightText;
            data.operation = condition.opType();
            data.logic = condition.logicType();
            rule.conditions.emplace_back(data);
        }
        QByteArray set;
        in >> set;
        rule.set = fromJson(set);
        rules.push_back(rule);
    }
    QByteArray stored;
    in >> stored;
    if (in.status() != QDataStream::Ok)
        return; // what is cut off leaves the action as it was
    setTags(tags);
    setRules(rules);
    const QVariantMap settings = fromJson(stored);
    for (auto setting = settings.begin(); setting != settings.end(); ++setting) {
        if (setSetting(setting.key(), setting.value()))
            values.insert(setting.key(), setting.value());
    }
    values.insert(QStringLiteral("pname"), tags.value(0));
}

void TagAction::collectTargets(QList<ObjectTarget*>& out)
{
    for (Binding& binding : m_bindings)
        out.append(&binding.target);
    for (ActionRule& rule : m_rules) {
        for (RuleCondition& part : rule.conditions) {
            out.append(part.condition.lValue());
            out.append(part.condition.rValue());
        }
    }
}

void TagAction::copyTargets(QList<ObjectTarget>& out)
{
    QList<ObjectTarget*> targets;
    collectTargets(targets);
    for (const ObjectTarget* target : qAsConst(targets))
        out.append(*target);
}

void TagAction::setTagString(const QString& tag)
{
    for (Binding& binding : m_bindings) {
        binding.tag = tag;
        binding.target.setTagString(tag);
    }
    for (ActionRule& rule : m_rules) {
        for (RuleCondition& part : rule.conditions) {
            part.tag = tag;
            part.condition.lValue()->setTagString(tag);
        }
    }
}

bool TagAction::replaceText(const QString& before, const QString& after)
{
    bool isReplaced = false;
    const auto replace = [&](QString& written) {
        isReplaced |= written.contains(before);
        written.replace(before, after);
    };
    for (Binding& binding : m_bindings)
        replace(binding.tag);
    for (ActionRule& rule : m_rules) {
        for (RuleCondition& part : rule.conditions) {
            replace(part.tag);
            replace(part.bound);
        }
    }
    return ScadaTagActionInterface::replaceText(before, after) || isReplaced;
}

int TagAction::replacePointNames(KorvaneScadaCoreInterface* hub, const QList<QPair<QString, QString>>& renames)
{
    int count = 0;
    const auto rename = [&](ObjectTarget& target, QString& tag) {
        if (!target.replacePointName(hub, renames))
            return;
        tag = target.getTagString();
        m_failed.clear(); // of other objects, perhaps
        ++count;
    };
    for (Binding& binding : m_bindings)
        rename(binding.target, binding.tag);
    for (ActionRule& rule : m_rules) {
        for (RuleCondition& part : rule.conditions) {
            rename(*part.condition.lValue(), part.tag);
            rename(*part.condition.rValue(), part.bound);
        }
    }
    return count;
}

void TagAction::runItSelf(CanvasScadaActionManagerInterface* manager, KorvaneScadaCoreInterface*)
{
    m_manager = manager;
}

bool TagAction::isSourceFailed() const
{
    return !m_failed.empty() || (m_manager && m_manager->isSourceFailed());
}

bool TagAction::noteFailure(ObjectKey object, const QuorixData& record)
{
    const QuorixValue* quality = record.GetValue("quality");
    const bool hasFailed = quality && (quality->toInt32() & ValueMark::CommunicationFailed);
    const auto known = std::find(m_failed.begin(), m_failed.end(), object);
    if (hasFailed == (known != m_failed.end()))
        return false;
    if (hasFailed)
        m_failed.push_back(object);
    else
        m_failed.erase(known);
    return true;
}

bool TagAction::noteFailures(const MwDataDepartment& batch)
{
    QList<ObjectTarget*> targets;
    collectTargets(targets);
    bool isNews = false;
    for (const ObjectTarget* target : qAsConst(targets)) {
        const ObjectKey object{target->objectKindType(), target->getPid()};
        if (const QuorixData* record = batch.find(object.type, object.id))
            isNews |= noteFailure(object, *record);
    }
    return isNews;
}
