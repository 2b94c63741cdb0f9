#include "host/canvas/pagereader.h"

#include "host/actions/tagactionfactory.h"
#include "host/actions/unloadedaction.h"
#include "host/canvas/jsontext_p.h"
#include "host/canvas/jsonvalues_p.h"
#include "host/shapes/placeholder.h"
#include "host/shapes/shapefactory.h"
#include "host/shapes/shapeproperty.h"
#include "platform/data/scadatagactionstream.h"
#include "platform/data/tagresolution.h"
#include "scada/hub/canvasscadaactionmanagerfactoryinterface.h"

#include <QDataStream>
#include <QFile>
#include <QFileInfo>

#include <initializer_list>
#include <utility>

namespace {

using rapidjson::Value;

/// What is read into one page.
class Reading
{
public:
    Reading(Page& page, const JsonText& json, ScadaRuntimeInterface* runtime)
        : m_page(page), m_json(json), m_runtime(runtime)
    {
    }

    void readCanvas(const Value& root);
    void readLayers(const Value& layers);

private:
    void readLayer(const Value& stored);
    std::unique_ptr<Shape> readShape(const Value& stored);
    void readPlace(Shape& shape, const Value& stored);
    void readProperties(Shape& shape, const Value& stored);
    void readActions(Shape& shape, const Value& stored);
    std::unique_ptr<TagAction> readAction(Shape& shape, const Value& stored);
    void readTargets(TagAction& action, const Value& stored, const ScadaTagActionStream& stream);
    void readRules(TagAction& action, const Value& stored, const ScadaTagActionStream& stream);
    RuleCondition readCondition(const Value& stored, const ScadaTagActionStream& stream);
    void readSettings(TagAction& action, const Value& stored);
    void checkTag(const QString& tag, const Value& where);
    std::unique_ptr<Shape> placeholder(const Value& stored, const QString& reason);
    void problem(const Value& where, const QString& text);

    Page& m_page;
    const JsonText& m_json;
    ScadaRuntimeInterface* m_runtime;
    QString m_object; ///< what is being read, for problems
    int m_line = 0;   ///< where it begins
};

QByteArray unknownMembers(const Value& object, std::initializer_list<const char*> known)
{
    if (!object.IsObject())
        return {};
    rapidjson::Document unknown(rapidjson::kObjectType);
    for (const auto& member : object.GetObject()) {
        const bool isKnown =
            std::any_of(known.begin(), known.end(), [&member](const char* name) { return member.name == name; });
        if (isKnown)
            continue;
        unknown.AddMember(Value(member.name, unknown.GetAllocator()), Value(member.value, unknown.GetAllocator()),
                          unknown.GetAllocator());
    }
    return unknown.ObjectEmpty() ? QByteArray() : JsonText::textOf(unknown);
}

QString textMember(const Value& object, const char* name)
{
    const Value* found = JsonText::member(object, name);
    return found ? JsonText::stringOf(*found) : QString();
}

void Reading::problem(const Value& where, const QString& text)
{
    const int line = m_json.lineOf(where);
    const QString object = m_object.isEmpty() ? QString() : m_object + QStringLiteral(": ");
    m_page.problems.append(
        QStringLiteral("%1:%2: %3%4").arg(m_page.fileName, QString::number(line ? line : m_line), object, text));
}

void Reading::readCanvas(const Value& root)
{
    Canvas& canvas = *m_page.canvas;
    canvas.setUnknownMembers(unknownMembers(root, {"format", "version", "title", "size", "background", "layers"}));
    canvas.setTitle(textMember(root, "title"));
    m_object = QStringLiteral("page");
    if (const Value* stored = JsonText::member(root, "size")) {
        const QVariant size = JsonValues::read(*stored, ShapeProperty::Kind::Size);
        if (size.isValid() && size.toSizeF().width() >= 1 && size.toSizeF().height() >= 1)
            canvas.setSize(size.toSizeF());
        else
            problem(*stored, QStringLiteral("\"size\" is no pair of numbers from 1: the default is used"));
    }
    if (const Value* stored = JsonText::member(root, "background")) {
        const QVariant color = JsonValues::read(*stored, ShapeProperty::Kind::Color);
        if (color.isValid())
            canvas.setBackground(color.value<QColor>());
        else
            problem(*stored, QStringLiteral("\"background\" is no colour: the default is used"));
    }
    m_object.clear();
}

void Reading::readLayers(const Value& layers)
{
    for (const Value& stored : layers.GetArray())
        readLayer(stored);
}

void Reading::readLayer(const Value& stored)
{
    const QString name = textMember(stored, "name");
    Layer& layer = m_page.canvas->addLayer(name);
    m_object = QStringLiteral("layer \"%1\"").arg(name);
    m_line = m_json.lineOf(stored);
    if (!stored.IsObject()) {
        m_page.canvas->addShape(layer, placeholder(stored, QStringLiteral("a layer that is no object")));
        return;
    }
    layer.setUnknownMembers(unknownMembers(stored, {"name", "visible", "marks", "shapes"}));
    const auto flag = [&stored](const char* member) {
        const Value* found = JsonText::member(stored, member);
        return !found || !found->IsBool() || found->GetBool();
    };
    m_page.canvas->setLayerVisible(layer, flag("visible"));
    m_page.canvas->setMarksShown(layer, flag("marks"));
    const Value* shapes = JsonText::member(stored, "shapes");
    if (!shapes)
        return;
    if (!shapes->IsArray()) {
        m_page.canvas->addShape(layer, placeholder(*shapes, QStringLiteral("\"shapes\" is no array")));
        return;
    }
    m_page.canvas->reserve(layer, shapes->Size());
    for (const Value& shape : shapes->GetArray()) {
        if (const int line = m_json.lineOf(shape))
            m_line = line;
        m_object = QStringLiteral("shape \"%1\"").arg(textMember(shape, "name"));
        Shape& added = m_page.canvas->addShape(layer, readShape(shape));
        const Value* actions = JsonText::member(shape, "actions");
        if (actions && !dynamic_cast<Placeholder*>(&added))
            readActions(added, *actions);
    }
}

std::unique_ptr<Shape> Reading::placeholder(const Value& stored, const QString& reason)
{
    problem(stored, reason + QStringLiteral("; a placeholder stands in its place"));
    auto shape = std::make_unique<Placeholder>();
    shape->setUnknownMembers(JsonText::textOf(stored));
    shape->setNamedProperty(QStringLiteral("Text"), reason);
    if (stored.IsObject()) {
        shape->setName(textMember(stored, "name"));
        if (const Value* place = JsonText::member(stored, "place")) {
            const QVariant rect = JsonValues::read(*place, ShapeProperty::Kind::Rect);
            if (rect.isValid())
                shape->setPlace(rect.toRectF());
        }
    }
    return shape;
}

std::unique_ptr<Shape> Reading::readShape(const Value& stored)
{
    if (!stored.IsObject())
        return placeholder(stored, QStringLiteral("a shape that is no object"));
    const QString className = textMember(stored, "class");
    std::unique_ptr<Shape> shape = ShapeFactory::create(className);
    if (!shape)
        return placeholder(stored, QStringLiteral("unknown class \"%1\"").arg(className));
    shape->setName(textMember(stored, "name"));
    shape->setUnknownMembers(unknownMembers(stored, {"class", "name", "place", "properties", "actions"}));
    readPlace(*shape, stored);
    if (const Value* properties = JsonText::member(stored, "properties"))
        readProperties(*shape, *properties);
    return shape;
}

void Reading::readPlace(Shape& shape, const Value& stored)
{
    const Value* place = JsonText::member(stored, "place");
    const QVariant rect = place ? JsonValues::read(*place, ShapeProperty::Kind::Rect) : QVariant();
    if (rect.isValid())
        shape.setPlace(rect.toRectF());
    else
        problem(stored, QStringLiteral("\"place\" is not four numbers: the shape lies in the top left corner"));
}

void Reading::readProperties(Shape& shape, const Value& stored)
{
    if (!stored.IsObject()) {
        problem(stored, QStringLiteral("\"properties\" is no object and was skipped"));
        return;
    }
    rapidjson::Document kept(rapidjson::kObjectType);
    for (const auto& member : stored.GetObject()) {
        const QString name = JsonText::stringOf(member.name);
        const ShapeProperty* property = shape.shapeClass().find(name);
        if (property && property->isStored) {
            const QVariant value = JsonValues::read(member.value, property->kind);
            if (value.isValid() && property->write(shape, value))
                continue;
            problem(stored, QStringLiteral("property \"%1\" can't have the value %2: its default is used")
                                .arg(name, QString::fromUtf8(JsonText::textOf(member.value).left(80))));
        }
        kept.AddMember(Value(member.name, kept.GetAllocator()), Value(member.value, kept.GetAllocator()),
                       kept.GetAllocator());
    }
    if (!kept.ObjectEmpty())
        shape.setUnknownProperties(JsonText::textOf(kept));
}

void Reading::readActions(Shape& shape, const Value& stored)
{
    if (!stored.IsArray()) {
        problem(stored, QStringLiteral("\"actions\" is no array: the shape has none"));
        m_page.actions->addAction(new UnloadedAction(&shape, JsonText::textOf(stored)));
        return;
    }
    for (const Value& action : stored.GetArray())
        m_page.actions->addAction(readAction(shape, action).release());
}

std::unique_ptr<TagAction> Reading::readAction(Shape& shape, const Value& stored)
{
    const Value* type = JsonText::member(stored, "type");
    std::unique_ptr<TagAction> action =
        type && type->IsInt() ? TagActionFactory::make(type->GetInt(), &shape) : nullptr;
    if (!action) {
        problem(stored,
                QStringLiteral("unknown action type %1: the action does nothing")
                    .arg(type ? QString::fromUtf8(JsonText::textOf(*type).left(80)) : QStringLiteral("(none)")));
        return std::make_unique<UnloadedAction>(&shape, JsonText::textOf(stored));
    }
    action->setUnknownMembers(unknownMembers(stored, {"type", "version", "targets", "rules", "settings"}));
    const Value* storedVersion = JsonText::member(stored, "version");
    const ScadaTagActionStream stream(storedVersion && storedVersion->IsUint() ? storedVersion->GetUint()
                                                                               : ScadaTagActionStream::currentVersion);
    if (const Value* targets = JsonText::member(stored, "targets"))
        readTargets(*action, *targets, stream);
    if (const Value* rules = JsonText::member(stored, "rules"))
        readRules(*action, *rules, stream);
    if (const Value* settings = JsonText::member(stored, "settings"))
        readSettings(*action, *settings);
    return action;
}

/// The bytes of a stored record; nothing, and a reason, for a text that is no base64.
tl::expected<QByteArray, QString> recordOf(const Value& stored)
{
    const Value* record = JsonText::member(stored, "record");
    if (!record)
        return QByteArray();
    const auto decoded = QByteArray::fromBase64Encoding(QByteArray(record->IsString() ? record->GetString() : "!"),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded)
        return tl::make_unexpected(QStringLiteral("\"record\" is no base64"));
    return decoded.decoded;
}

void Reading::readTargets(TagAction& action, const Value& stored, const ScadaTagActionStream& stream)
{
    if (!stored.IsArray()) {
        problem(stored, QStringLiteral("\"targets\" is no array: the action has none"));
        return;
    }
    for (const Value& target : stored.GetArray()) {
        const Value* tag = JsonText::member(target, "tag");
        const auto record = recordOf(target);
        if (!record)
            problem(target, record.error() + QStringLiteral(": the tag's text is used"));
        ObjectTarget read;
        if (record && !record->isEmpty())
            read = ObjectTarget::makeFromByteStream(*record, stream);
        // The text says more than the record can, and is what people edit: where they differ, it wins.
        if (tag && tag->IsString() && JsonText::stringOf(*tag) != read.getTagString())
            read = ObjectTarget::fromTagString(JsonText::stringOf(*tag));
        checkTag(read.getTagString(), target);
        action.addTarget(read, unknownMembers(target, {"tag", "record"}));
    }
}

void Reading::checkTag(const QString& tag, const Value& where)
{
    if (tag.isEmpty()) {
        problem(where, QStringLiteral("a binding without a tag"));
        return;
    }
    if (!m_runtime)
        return;
    const Korvane::DataLinkInfo link = Korvane::resolveFromString(tag, m_runtime);
    if (link.id == 0 && link.type != Korvane::ScadaObjectType::NoObject &&
        link.type != Korvane::ScadaObjectType::ApplicationProperty)
        problem(where, QStringLiteral("tag \"%1\" names no known object").arg(tag));
}

void Reading::readRules(TagAction& action, const Value& stored, const ScadaTagActionStream& stream)
{
    if (!stored.IsArray()) {
        problem(stored, QStringLiteral("\"rules\" is no array: the action has none"));
        return;
    }
    std::vector<ActionRule> rules;
    for (const Value& rule : stored.GetArray()) {
        ActionRule read;
        const Value* conditions = JsonText::member(rule, "when");
        if (!conditions || !conditions->IsArray())
            problem(rule, QStringLiteral("a rule without conditions never holds"));
        else {
            for (const Value& condition : conditions->GetArray())
                read.conditions.push_back(readCondition(condition, stream));
        }
        const Value* set = JsonText::member(rule, "set");
        if (set && set->IsObject())
            read.set = JsonValues::readMap(*set);
        read.unknownMembers = unknownMembers(rule, {"when", "set"});
        rules.push_back(read);
    }
    action.setRules(rules);
}

RuleCondition Reading::readCondition(const Value& stored, const ScadaTagActionStream& stream)
{
    RuleCondition read;
    const auto record = recordOf(stored);
    if (!record)
        problem(stored, record.error() + QStringLiteral(": the condition's texts are used"));
    if (record && !record->isEmpty()) {
        QDataStream in(*record);
        in.setVersion(QDataStream::Qt_4_6);
        ScadaCondition condition;
        condition.fromStream(in, stream);
        if (in.status() == QDataStream::Ok)
            read = RuleCondition(condition);
        else
            problem(stored, QStringLiteral("\"record\" is cut off: the condition's texts are used"));
    }
    // Texts win over the record.
    ConditionData data = read.data();
    if (const Value* tag = JsonText::member(stored, "tag"))
        data.leftTag = JsonText::stringOf(*tag);
    if (const Value* bound = JsonText::member(stored, "bound"))
        data.rightText = JsonText::stringOf(*bound);
    if (const Value* text = JsonText::member(stored, "operator")) {
        const auto operation = JsonValues::operatorOf(JsonText::stringOf(*text));
        if (!operation)
            problem(
                stored,
                QStringLiteral("unknown operator \"%1\": the condition never holds").arg(JsonText::stringOf(*text)));
        data.operation = operation.value_or(static_cast<Korvane::OpType>(-1));
    }
    if (const Value* text = JsonText::member(stored, "link"))
        data.logic = JsonValues::linkOf(JsonText::stringOf(*text));
    checkTag(data.leftTag, stored);
    read = RuleCondition(data);
    read.unknownMembers = unknownMembers(stored, {"tag", "operator", "bound", "link", "record"});
    return read;
}

void Reading::readSettings(TagAction& action, const Value& stored)
{
    if (!stored.IsObject()) {
        problem(stored, QStringLiteral("\"settings\" is no object: the action has its defaults"));
        return;
    }
    rapidjson::Document kept(rapidjson::kObjectType);
    for (const auto& member : stored.GetObject()) {
        const QString name = JsonText::stringOf(member.name);
        if (action.setSetting(name, JsonValues::readAny(member.value)))
            continue;
        problem(stored,
                QStringLiteral("setting \"%1\" is unknown or can't have its value: left at the default").arg(name));
        kept.AddMember(Value(member.name, kept.GetAllocator()), Value(member.value, kept.GetAllocator()),
                       kept.GetAllocator());
    }
    if (!kept.ObjectEmpty())
        action.setUnknownSettings(JsonText::textOf(kept));
}

} // namespace

tl::expected<Page, QString> PageReader::readFile(const QString& fileName) const
{
    const QFileInfo info(fileName);
    if (!info.exists())
        return tl::make_unexpected(QStringLiteral("%1: there is no such page").arg(fileName));
    if (!info.isFile())
        return tl::make_unexpected(QStringLiteral("%1: is no regular file").arg(fileName));
    if (info.size() > mostBytes) {
        return tl::make_unexpected(
            QStringLiteral("%1: is larger than a page can be (%2 MB)").arg(fileName).arg(mostBytes / (1024 * 1024)));
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return tl::make_unexpected(QStringLiteral("%1: can't be read: %2").arg(fileName, file.errorString()));
    return read(file.readAll(), fileName);
}

tl::expected<Page, QString> PageReader::read(const QByteArray& text, const QString& fileName) const
{
    const auto refused = [&fileName](const QString& reason) {
        return tl::make_unexpected(QStringLiteral("%1: %2").arg(fileName, reason));
    };
    const auto json = JsonText::parse(text);
    if (!json)
        return refused(json.error());
    const Value& root = json->root();
    if (textMember(root, "format") != QLatin1String("korvane-page"))
        return refused(QStringLiteral("is no page: \"format\" is not \"korvane-page\""));
    const Value* storedVersion = JsonText::member(root, "version");
    if (!storedVersion || !storedVersion->IsInt() || storedVersion->GetInt() < 1)
        return refused(QStringLiteral("\"version\" is no whole number from 1"));
    if (storedVersion->GetInt() > version) {
        return refused(QStringLiteral("is of version %1; this program reads up to version %2")
                           .arg(storedVersion->GetInt())
                           .arg(version));
    }
    const Value* layers = JsonText::member(root, "layers");
    if (layers && !layers->IsArray())
        return refused(QStringLiteral("\"layers\" is no array"));

    Page page;
    page.fileName = fileName;
    page.canvas = std::make_unique<Canvas>(QFileInfo(fileName).completeBaseName());
    page.actions.reset(m_managers.createActionManager(page.canvas.get(), nullptr));
    Reading reading(page, *json, m_runtime);
    reading.readCanvas(root);
    if (layers)
        reading.readLayers(*layers);
    page.canvas->takeChanged();
    return page;
}
