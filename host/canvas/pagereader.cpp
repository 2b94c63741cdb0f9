#include "host/canvas/pagereader.h"

#include "host/actions/tagactionfactory.h"
#include "host/actions/unloadedaction.h"
#include "host/canvas/jsontext_p.h"
#include "host/canvas/jsonvalues_p.h"
#include "host/canvas/storedevents_p.h"
#include "host/canvas/storedoperation_p.h"
#include "host/shapes/placeholder.h"
#include "host/shapes/shapefactory.h"
#include "host/shapes/shapeproperty.h"
#include "platform/data/scadatagactionstream.h"
#include "platform/data/tagresolution.h"
#include "scada/hub/canvasscadaactionmanagerfactoryinterface.h"

#include <QDataStream>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <utility>
#include <vector>

namespace {

using rapidjson::Value;

using Taken = JsonText::Names;

constexpr int largestPage = 100000;  // page units; more than painting can count in at the largest zoom
constexpr double farthest = 1000000; // place of a shape

/// What is read into one page.
class Reading
{
public:
    Reading(Page& page, const JsonText& json, const ScadaRuntimeInterface* runtime)
        : m_page(page), m_json(json), m_runtime(runtime)
    {
    }

    void readCanvas(const Value& root);
    void readLayers(const Value& layers);

private:
    void readLayer(const Value& stored);
    std::unique_ptr<Shape> readShape(const Value& stored);
    bool readPlace(Shape& shape, const Value& stored);
    bool readProperties(Shape& shape, const Value& stored);
    void readActions(Shape& shape, const Value& stored);
    void readEvents(const Shape* shape, const Value& stored);
    void readOperation(const Shape& shape, const Value& stored);
    std::unique_ptr<TagAction> readAction(Shape& shape, const Value& stored);
    using Parts = tl::expected<void, QString>;
    tl::expected<std::unique_ptr<TagAction>, QString> readParts(Shape& shape, const Value& stored);
    Parts readTargets(TagAction& action, const Value& stored, const ScadaTagActionStream& stream);
    Parts readRules(TagAction& action, const Shape& shape, const Value& stored, const ScadaTagActionStream& stream);
    tl::expected<QVariantMap, QString> readSet(const Value& stored, const Shape& shape);
    tl::expected<RuleCondition, QString> readCondition(const Value& stored, const ScadaTagActionStream& stream);
    void readSettings(TagAction& action, const Value& stored);
    void checkTag(const QString& tag, const Value& where);
    std::unique_ptr<Shape> placeholder(const Value& stored, const QString& reason);
    const Value* textIn(const Value& object, const char* name, Taken& taken);
    bool flagIn(const Value& object, const char* name, Taken& taken);
    void problem(const Value& where, const QString& text);

    Page& m_page;
    const JsonText& m_json;
    const ScadaRuntimeInterface* m_runtime;
    QString m_object; ///< what is being read, for problems
};

QString textMember(const Value& object, const char* name)
{
    const Value* found = JsonText::member(object, name);
    return found ? JsonText::stringOf(*found) : QString();
}

void Reading::problem(const Value& where, const QString& text)
{
    const QString object = m_object.isEmpty() ? QString() : m_object + QStringLiteral(": ");
    m_page.problems.append(
        QStringLiteral("%1:%2: %3%4").arg(m_page.fileName, QString::number(m_json.lineOf(where)), object, text));
}

void Reading::readCanvas(const Value& root)
{
    Canvas& canvas = *m_page.canvas;
    Taken taken = {"format", "version", "layers", "events", "access"};
    m_object = QStringLiteral("page");
    if (const Value* stored = textIn(root, "title", taken))
        canvas.setTitle(JsonText::stringOf(*stored));
    if (const Value* stored = JsonText::member(root, "size")) {
        const QSizeF size = JsonValues::read(*stored, ShapeProperty::Kind::Size).toSizeF();
        if (size.width() >= 1 && size.height() >= 1 && size.width() <= largestPage && size.height() <= largestPage) {
            canvas.setSize(size);
            taken.push_back("size");
        } else {
            problem(
                *stored,
                QStringLiteral("\"size\" is no pair of numbers from 1 to %1: the default is used").arg(largestPage));
        }
    }
    if (const Value* stored = JsonText::member(root, "background")) {
        const QVariant color = JsonValues::read(*stored, ShapeProperty::Kind::Color);
        if (color.value<QColor>().isValid()) {
            canvas.setBackground(color.value<QColor>());
            taken.push_back("background");
        } else {
            problem(*stored, QStringLiteral("\"background\" is no colour: the default is used"));
        }
    }
    if (const Value* events = JsonText::member(root, "events"))
        readEvents(nullptr, *events);
    canvas.setUnknownMembers(JsonText::otherMembers(root, taken));
    m_object.clear();
}

// A member that has to be a text; anything else is a problem and is kept.
const Value* Reading::textIn(const Value& object, const char* name, Taken& taken)
{
    const Value* found = JsonText::member(object, name);
    if (found && found->IsString()) {
        taken.push_back(name);
        return found;
    }
    if (found)
        problem(*found, QStringLiteral("\"%1\" is no text").arg(QLatin1String(name)));
    return nullptr;
}

// A member that has to be true or false, true unless it stands there; anything else is a problem and is kept.
bool Reading::flagIn(const Value& object, const char* name, Taken& taken)
{
    const Value* found = JsonText::member(object, name);
    if (found && !found->IsBool()) {
        problem(*found, QStringLiteral("\"%1\" is neither true nor false: true is used").arg(QLatin1String(name)));
        return true;
    }
    taken.push_back(name);
    return !found || found->GetBool();
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
    if (!stored.IsObject()) {
        m_page.canvas->addShape(layer, placeholder(stored, QStringLiteral("a layer that is no object")));
        return;
    }
    Taken taken = {"name", "shapes"};
    m_page.canvas->setLayerVisible(layer, flagIn(stored, "visible", taken));
    m_page.canvas->setMarksShown(layer, flagIn(stored, "marks", taken));
    layer.setUnknownMembers(JsonText::otherMembers(stored, taken));
    const Value* shapes = JsonText::member(stored, "shapes");
    if (!shapes)
        return;
    if (!shapes->IsArray()) {
        m_page.canvas->addShape(layer, placeholder(*shapes, QStringLiteral("\"shapes\" is no array")));
        return;
    }
    m_page.canvas->reserve(layer, shapes->Size());
    for (const Value& shape : shapes->GetArray()) {
        m_object = QStringLiteral("shape \"%1\"").arg(textMember(shape, "name"));
        Shape& added = m_page.canvas->addShape(layer, readShape(shape));
        const Value* actions = JsonText::member(shape, "actions");
        const Value* events = JsonText::member(shape, "events");
        const Value* operation = JsonText::member(shape, "operation");
        if (dynamic_cast<Placeholder*>(&added))
            continue; // has them with the rest of the stored shape
        if (actions)
            readActions(added, *actions);
        if (events)
            readEvents(&added, *events);
        if (operation)
            readOperation(added, *operation);
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
    Taken taken = {"class", "actions", "events", "operation"};
    if (const Value* name = textIn(stored, "name", taken))
        shape->setName(JsonText::stringOf(*name));
    if (readPlace(*shape, stored))
        taken.push_back("place");
    const Value* properties = JsonText::member(stored, "properties");
    if (!properties || readProperties(*shape, *properties))
        taken.push_back("properties");
    shape->setUnknownMembers(JsonText::otherMembers(stored, taken));
    return shape;
}

bool Reading::readPlace(Shape& shape, const Value& stored)
{
    const Value* place = JsonText::member(stored, "place");
    const QVariant rect = place ? JsonValues::read(*place, ShapeProperty::Kind::Rect) : QVariant();
    const QRectF read = rect.toRectF();
    if (rect.isValid() && std::abs(read.x()) <= farthest && std::abs(read.y()) <= farthest &&
        read.width() <= farthest && read.height() <= farthest) {
        shape.setPlace(read);
        return true;
    }
    problem(place ? *place : stored,
            QStringLiteral("\"place\" is not four numbers up to %1: the shape lies in the top left corner")
                .arg(farthest, 0, 'f', 0));
    return false;
}

bool Reading::readProperties(Shape& shape, const Value& stored)
{
    if (!stored.IsObject()) {
        problem(stored, QStringLiteral("\"properties\" is no object: the defaults are used"));
        return false;
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
    return true;
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

// Of a shape, or of the page for null.
void Reading::readEvents(const Shape* shape, const Value& stored)
{
    if (!stored.IsArray()) {
        problem(stored, QStringLiteral("\"events\" is no array: there are none"));
        m_page.events.setUnreadable(shape, JsonText::textOf(stored));
        return;
    }
    for (const Value& event : stored.GetArray()) {
        StoredEvents::Read read = StoredEvents::read(event);
        if (!read.problem.isEmpty())
            problem(event, read.problem);
        m_page.events.add(shape, std::move(read.entry));
    }
}

void Reading::readOperation(const Shape& shape, const Value& stored)
{
    const auto operation = StoredOperation::read(stored);
    if (operation) {
        checkTag(operation->tag, stored);
        m_page.operations.set(&shape, *operation);
        return;
    }
    problem(stored, QStringLiteral("\"operation\" %1: the shape does nothing").arg(operation.error()));
    m_page.operations.setUnreadable(&shape, JsonText::textOf(stored));
}

// An action of which a part can't be read does nothing, and stays in the file as it stands.
std::unique_ptr<TagAction> Reading::readAction(Shape& shape, const Value& stored)
{
    auto action = readParts(shape, stored);
    if (action)
        return std::move(*action);
    problem(stored, action.error() + QStringLiteral(": the action does nothing"));
    return std::make_unique<UnloadedAction>(&shape, JsonText::textOf(stored));
}

tl::expected<std::unique_ptr<TagAction>, QString> Reading::readParts(Shape& shape, const Value& stored)
{
    const Value* type = JsonText::member(stored, "type");
    std::unique_ptr<TagAction> action =
        type && type->IsInt() ? TagActionFactory::make(type->GetInt(), &shape) : nullptr;
    if (!action) {
        return tl::make_unexpected(
            QStringLiteral("unknown action type %1")
                .arg(type ? QString::fromUtf8(JsonText::textOf(*type).left(80)) : QStringLiteral("(none)")));
    }
    const Value* storedVersion = JsonText::member(stored, "version");
    if (storedVersion && !storedVersion->IsUint())
        return tl::make_unexpected(QStringLiteral("\"version\" is no whole number"));
    const ScadaTagActionStream stream(storedVersion ? storedVersion->GetUint() : ScadaTagActionStream::currentVersion);
    action->setUnknownMembers(JsonText::otherMembers(stored, {"type", "version", "targets", "rules", "settings"}));
    if (const Value* targets = JsonText::member(stored, "targets")) {
        if (const auto read = readTargets(*action, *targets, stream); !read)
            return tl::make_unexpected(read.error());
    }
    if (const Value* rules = JsonText::member(stored, "rules")) {
        if (const auto read = readRules(*action, shape, *rules, stream); !read)
            return tl::make_unexpected(read.error());
    }
    if (const Value* settings = JsonText::member(stored, "settings")) {
        if (!settings->IsObject())
            return tl::make_unexpected(QStringLiteral("\"settings\" is no object"));
        readSettings(*action, *settings);
    }
    return action;
}

struct ReadAccess
{
    PageAccess access;
    QString problem;
};

/// What can't be read lets nobody in.
ReadAccess accessIn(const JsonText& json, const QString& fileName)
{
    const Value* stored = JsonText::member(json.root(), "access");
    if (!stored)
        return {};
    const auto read = StoredOperation::readAccess(*stored);
    if (read)
        return {*read, {}};
    return {{true, {}, JsonText::textOf(*stored)},
            QStringLiteral("%1:%2: page: %3: nobody may open it while security is on")
                .arg(fileName, QString::number(json.lineOf(*stored)), read.error())};
}

/// The bytes of a stored record; nothing where there is none, and a reason for a text that is no base64.
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

/// What a stored record gives: read by \p read, or a reason why it can't be.
template <typename Read>
tl::expected<void, QString> readRecord(const Value& stored, const Read& read)
{
    const auto record = recordOf(stored);
    if (!record)
        return tl::make_unexpected(record.error());
    if (record->isEmpty())
        return tl::make_unexpected(QString());
    QDataStream in(*record);
    in.setVersion(QDataStream::Qt_4_6);
    read(in);
    if (in.status() != QDataStream::Ok)
        return tl::make_unexpected(QStringLiteral("\"record\" is cut off"));
    return {};
}

Reading::Parts Reading::readTargets(TagAction& action, const Value& stored, const ScadaTagActionStream& stream)
{
    if (!stored.IsArray())
        return tl::make_unexpected(QStringLiteral("\"targets\" is no array"));
    for (const Value& target : stored.GetArray()) {
        ObjectTarget read;
        const auto record = readRecord(target, [&](QDataStream& in) { read.fromStream(in, stream); });
        const Value* tag = JsonText::member(target, "tag");
        if (!target.IsObject() || (tag && !tag->IsString()) || (!tag && !record))
            return tl::make_unexpected(QStringLiteral("a target without a tag that could be read"));
        if (!record && !record.error().isEmpty())
            problem(target, record.error() + QStringLiteral(": the tag's text is used"));
        // The text says more than the record can, and is what people edit: where they differ, it wins.
        if (!record || (tag && JsonText::stringOf(*tag) != read.getTagString()))
            read = ObjectTarget::fromTagString(JsonText::stringOf(*tag));
        checkTag(read.getTagString(), target);
        action.addTarget(read, JsonText::otherMembers(target, {"tag", "record"}));
    }
    return {};
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

Reading::Parts Reading::readRules(TagAction& action, const Shape& shape, const Value& stored,
                                  const ScadaTagActionStream& stream)
{
    if (!stored.IsArray())
        return tl::make_unexpected(QStringLiteral("\"rules\" is no array"));
    std::vector<ActionRule> rules;
    for (const Value& rule : stored.GetArray()) {
        ActionRule read;
        const Value* conditions = JsonText::member(rule, "when");
        if (!conditions || !conditions->IsArray())
            return tl::make_unexpected(QStringLiteral("a rule without conditions"));
        for (const Value& condition : conditions->GetArray()) {
            auto part = readCondition(condition, stream);
            if (!part)
                return tl::make_unexpected(part.error());
            read.conditions.push_back(*part);
        }
        if (const Value* set = JsonText::member(rule, "set")) {
            if (const auto values = readSet(*set, shape); values)
                read.set = *values;
            else
                return tl::make_unexpected(values.error());
        }
        read.unknownMembers = JsonText::otherMembers(rule, {"when", "set"});
        rules.push_back(read);
    }
    action.setRules(rules);
    return {};
}

// What a rule sets: properties of the shape, and whether it blinks.
tl::expected<QVariantMap, QString> Reading::readSet(const Value& stored, const Shape& shape)
{
    if (!stored.IsObject())
        return tl::make_unexpected(QStringLiteral("\"set\" is no object"));
    QVariantMap values;
    for (const auto& member : stored.GetObject()) {
        const QString name = JsonText::stringOf(member.name);
        const ShapeProperty* property = shape.shapeClass().find(name);
        const bool isBlink = name == QLatin1String("Blink");
        if (!property && !isBlink)
            return tl::make_unexpected(QStringLiteral("a rule sets \"%1\", which the shape does not have").arg(name));
        const QVariant value = JsonValues::read(member.value, isBlink ? ShapeProperty::Kind::Boolean : property->kind);
        if (!value.isValid())
            return tl::make_unexpected(QStringLiteral("a rule sets \"%1\" to what it can't be").arg(name));
        values.insert(name, value);
    }
    return values;
}

tl::expected<RuleCondition, QString> Reading::readCondition(const Value& stored, const ScadaTagActionStream& stream)
{
    ScadaCondition condition;
    const auto record = readRecord(stored, [&](QDataStream& in) { condition.fromStream(in, stream); });
    ConditionData data = record ? RuleCondition(condition).data() : ConditionData();
    const bool isWritten = JsonText::member(stored, "tag") && JsonText::member(stored, "bound");
    if (!stored.IsObject() || (!record && !isWritten))
        return tl::make_unexpected(QStringLiteral("a condition that can't be read"));
    if (!record && !record.error().isEmpty())
        problem(stored, record.error() + QStringLiteral(": the condition's texts are used"));
    // Texts win over the record.
    for (const auto& [name, text] : {std::pair("tag", &data.leftTag), std::pair("bound", &data.rightText)}) {
        if (const Value* written = JsonText::member(stored, name)) {
            if (!written->IsString())
                return tl::make_unexpected(
                    QStringLiteral("a condition whose \"%1\" is no text").arg(QLatin1String(name)));
            *text = JsonText::stringOf(*written);
        }
    }
    if (const Value* text = JsonText::member(stored, "operator")) {
        const auto operation = JsonValues::operatorOf(JsonText::stringOf(*text));
        if (!operation)
            return tl::make_unexpected(
                QStringLiteral("unknown operator %1").arg(QString::fromUtf8(JsonText::textOf(*text))));
        data.operation = *operation;
    }
    if (const Value* text = JsonText::member(stored, "link")) {
        data.logic = JsonValues::linkOf(JsonText::stringOf(*text));
        if (data.logic == Korvane::LogicType::None)
            return tl::make_unexpected(
                QStringLiteral("unknown link %1").arg(QString::fromUtf8(JsonText::textOf(*text))));
    }
    if (data.operation < Korvane::OpType::Equal || data.operation > Korvane::OpType::NotEqual)
        return tl::make_unexpected(QStringLiteral("unknown operator %1").arg(static_cast<int>(data.operation)));
    checkTag(data.leftTag, stored);
    checkTag(data.rightText, stored);
    RuleCondition read(data);
    read.unknownMembers = JsonText::otherMembers(stored, {"tag", "operator", "bound", "link", "record"});
    return read;
}

void Reading::readSettings(TagAction& action, const Value& stored)
{
    rapidjson::Document kept(rapidjson::kObjectType);
    for (const auto& member : stored.GetObject()) {
        const QString name = JsonText::stringOf(member.name);
        if (action.setSetting(name, JsonValues::readAny(member.value)))
            continue;
        problem(member.value,
                QStringLiteral("setting \"%1\" is unknown or can't have its value: left at the default").arg(name));
        kept.AddMember(Value(member.name, kept.GetAllocator()), Value(member.value, kept.GetAllocator()),
                       kept.GetAllocator());
    }
    if (!kept.ObjectEmpty())
        action.setUnknownSettings(JsonText::textOf(kept));
}

} // namespace

tl::expected<QByteArray, QString> PageReader::textOf(const QString& fileName)
{
    const QFileInfo info(fileName);
    if (!info.exists())
        return tl::make_unexpected(QStringLiteral("%1: there is no such page").arg(fileName));
    if (!info.isFile())
        return tl::make_unexpected(QStringLiteral("%1: is no regular file").arg(fileName));
    if (info.size() > mostBytes) {
        return tl::make_unexpected(
            QStringLiteral("%1: is larger than a page can be (%2 MB)").arg(fileName).arg(mostBytes >> 20));
    }
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        return tl::make_unexpected(QStringLiteral("%1: can't be read: %2").arg(fileName, file.errorString()));
    return file.readAll();
}

tl::expected<PageAccess, QString> PageReader::readAccess(const QString& fileName)
{
    const auto text = textOf(fileName);
    if (!text)
        return tl::make_unexpected(text.error());
    const auto json = JsonText::parse(*text);
    if (!json)
        return tl::make_unexpected(QStringLiteral("%1: %2").arg(fileName, json.error()));
    return accessIn(*json, fileName).access;
}

tl::expected<Page, QString> PageReader::readFile(const QString& fileName) const
{
    const auto text = textOf(fileName);
    if (!text)
        return tl::make_unexpected(text.error());
    return read(*text, fileName);
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

    // Before anything of the page is made: one that may not be opened is not there for a moment.
    const auto [access, accessProblem] = accessIn(*json, fileName);
    if (m_mayOpen) {
        if (const auto allowed = m_mayOpen(access); !allowed)
            return refused(allowed.error());
    }

    Page page;
    page.fileName = fileName;
    page.access = access;
    if (!accessProblem.isEmpty())
        page.problems.append(accessProblem);
    page.canvas = std::make_unique<Canvas>(QFileInfo(fileName).completeBaseName());
    page.actions.reset(m_managers.createActionManager(page.canvas.get(), nullptr));
    Reading reading(page, *json, m_runtime);
    reading.readCanvas(root);
    if (layers)
        reading.readLayers(*layers);
    page.canvas->takeChanged();
    return page;
}
