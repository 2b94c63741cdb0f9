#include "host/canvas/pagewriter.h"

#include "host/actions/tagactionfactory.h"
#include "host/actions/unloadedaction.h"
#include "host/canvas/jsontext_p.h"
#include "host/canvas/jsonvalues_p.h"
#include "host/canvas/pagereader.h"
#include "host/canvas/storedevents_p.h"
#include "host/canvas/storedoperation_p.h"
#include "host/shapes/placeholder.h"
#include "host/shapes/shapefactory.h"
#include "host/shapes/shapeproperty.h"
#include "platform/data/scadatagactionstream.h"

#include <QDataStream>
#include <QHash>
#include <QSaveFile>

#include <utility>

namespace {

using JsonValues::Writer;

class Writing
{
public:
    explicit Writing(const Page& page) : m_page(page), m_writer(m_buffer)
    {
        m_writer.SetIndent(' ', 1);
        m_writer.SetFormatOptions(rapidjson::kFormatSingleLineArray);
        for (ScadaTagActionInterface* action : page.actions->actions()) {
            if (const auto* known = dynamic_cast<const TagAction*>(action))
                m_actions[action->shape()].append(known);
        }
    }

    QByteArray write(const Canvas& canvas);

private:
    void writeLayer(const Layer& layer);
    void writeShape(const Shape& shape);
    void writeProperties(const Shape& shape);
    void writeAction(const TagAction& action);
    void writeEvents(const Shape* shape);
    void writeOperation(const Shape& shape);
    void writeAccess();
    void writeTargets(const TagAction& action);
    void writeRules(const TagAction& action);
    void writeSettings(const TagAction& action);
    void writeRecord(const QByteArray& record);
    void writeKept(const QByteArray& object);
    static bool isKept(const QByteArray& object, const char* name);
    void writeRaw(const QByteArray& json);
    void text(const char* key, const QString& value);

    const Page& m_page;
    rapidjson::StringBuffer m_buffer;
    Writer m_writer;
    QHash<const TesselInterface*, QList<const TagAction*>> m_actions;
};

void Writing::text(const char* key, const QString& value)
{
    m_writer.Key(key);
    JsonValues::write(m_writer, value);
}

// The members of an object that the reader kept.
void Writing::writeKept(const QByteArray& object)
{
    if (object.isEmpty())
        return;
    const auto kept = JsonText::parse(object);
    if (!kept)
        return;
    for (const auto& member : kept->root().GetObject()) {
        m_writer.Key(member.name.GetString(), member.name.GetStringLength());
        member.value.Accept(m_writer);
    }
}

// Whether the reader kept a member as it stands, since it could not use its value.
bool Writing::isKept(const QByteArray& object, const char* name)
{
    if (object.isEmpty())
        return false;
    const auto kept = JsonText::parse(object);
    return kept && JsonText::member(kept->root(), name);
}

void Writing::writeRaw(const QByteArray& json)
{
    if (json.isEmpty())
        return;
    if (const auto kept = JsonText::parse(json))
        kept->root().Accept(m_writer);
}

QByteArray Writing::write(const Canvas& canvas)
{
    m_writer.StartObject();
    text("format", QStringLiteral("korvane-page"));
    m_writer.Key("version");
    m_writer.Int(PageReader::version);
    const QByteArray kept = canvas.unknownMembers();
    if (canvas.title() != canvas.canvasName())
        text("title", canvas.title());
    if (!isKept(kept, "size")) {
        m_writer.Key("size");
        JsonValues::write(m_writer, QVariant(canvas.size()));
    }
    if (!isKept(kept, "background")) {
        m_writer.Key("background");
        JsonValues::write(m_writer, QVariant(canvas.background()));
    }
    writeAccess();
    writeEvents(nullptr);
    writeKept(kept);
    m_writer.Key("layers");
    m_writer.StartArray();
    for (const auto& layer : canvas.layers())
        writeLayer(*layer);
    m_writer.EndArray();
    m_writer.EndObject();
    return QByteArray(m_buffer.GetString(), static_cast<int>(m_buffer.GetSize())) + '\n';
}

void Writing::writeLayer(const Layer& layer)
{
    m_writer.StartObject();
    text("name", layer.name());
    for (const auto& [name, flag] :
         {std::pair("visible", layer.isVisible()), std::pair("marks", layer.areMarksShown())}) {
        if (isKept(layer.unknownMembers(), name))
            continue;
        m_writer.Key(name);
        m_writer.Bool(flag);
    }
    writeKept(layer.unknownMembers());
    m_writer.Key("shapes");
    m_writer.StartArray();
    for (const auto& shape : layer.shapes()) {
        if (dynamic_cast<const Placeholder*>(shape.get()))
            writeRaw(shape->unknownMembers()); // as it was read
        else
            writeShape(*shape);
    }
    m_writer.EndArray();
    m_writer.EndObject();
}

void Writing::writeShape(const Shape& shape)
{
    m_writer.StartObject();
    text("class", shape.shapeClass().name);
    if (!shape.name().isEmpty())
        text("name", shape.name());
    if (!isKept(shape.unknownMembers(), "place")) {
        m_writer.Key("place");
        JsonValues::write(m_writer, QVariant(shape.place()));
    }
    if (!isKept(shape.unknownMembers(), "properties"))
        writeProperties(shape);
    writeKept(shape.unknownMembers());
    const auto actions = m_actions.constFind(&shape);
    if (actions != m_actions.constEnd()) {
        m_writer.Key("actions");
        m_writer.StartArray();
        for (const TagAction* action : *actions)
            writeAction(*action);
        m_writer.EndArray();
    }
    writeEvents(&shape);
    writeOperation(shape);
    m_writer.EndObject();
}

void Writing::writeOperation(const Shape& shape)
{
    const Operation* operation = m_page.operations.of(&shape);
    const QByteArray unreadable = m_page.operations.unreadable(&shape);
    if (!operation && unreadable.isEmpty())
        return;
    m_writer.Key("operation");
    if (!operation) {
        writeRaw(unreadable); // as it was read
        return;
    }
    m_writer.StartObject();
    StoredOperation::write(m_writer, *operation);
    writeKept(operation->unknown);
    m_writer.EndObject();
}

void Writing::writeAccess()
{
    const PageAccess& access = m_page.access;
    if (!access.isProtected && access.users.isEmpty() && access.unreadable.isEmpty())
        return;
    m_writer.Key("access");
    if (access.unreadable.isEmpty())
        StoredOperation::write(m_writer, access);
    else
        writeRaw(access.unreadable); // as it was read
}

// Of a shape, or of the page for null.
void Writing::writeEvents(const Shape* shape)
{
    const std::vector<EventActions::Entry>& entries = m_page.events.of(shape);
    const QByteArray unreadable = m_page.events.unreadable(shape);
    if (entries.empty() && unreadable.isEmpty())
        return;
    m_writer.Key("events");
    if (entries.empty()) {
        writeRaw(unreadable); // as it was read
        return;
    }
    m_writer.StartArray();
    writeRaw(unreadable); // there are actions now, and it stays among them
    for (const EventActions::Entry& entry : entries) {
        if (!entry.action) {
            writeRaw(entry.unknown); // as it was read
            continue;
        }
        m_writer.StartObject();
        StoredEvents::writeMembers(m_writer, *entry.action);
        writeKept(entry.unknown);
        m_writer.EndObject();
    }
    m_writer.EndArray();
}

// Only what was set otherwise than a new shape has it.
void Writing::writeProperties(const Shape& shape)
{
    static QHash<const ShapeClass*, std::shared_ptr<Shape>> fresh;
    std::shared_ptr<Shape>& prototype = fresh[&shape.shapeClass()];
    if (!prototype)
        prototype = shape.shapeClass().create();
    m_writer.Key("properties");
    m_writer.StartObject();
    for (const ShapeProperty& property : shape.shapeClass().properties) {
        const QVariant value = property.read(shape);
        if (!property.isStored || value == property.read(*prototype))
            continue;
        m_writer.Key(property.name.data(), static_cast<rapidjson::SizeType>(property.name.size()));
        JsonValues::write(m_writer, value);
    }
    writeKept(shape.unknownProperties());
    m_writer.EndObject();
}

void Writing::writeAction(const TagAction& action)
{
    if (const auto* unloaded = dynamic_cast<const UnloadedAction*>(&action)) {
        writeRaw(unloaded->source());
        return;
    }
    m_writer.StartObject();
    m_writer.Key("type");
    m_writer.Int(action.type());
    m_writer.Key("version");
    m_writer.Uint(ScadaTagActionStream::currentVersion);
    if (!action.tags().isEmpty())
        writeTargets(action);
    if (!action.rules().empty())
        writeRules(action);
    writeSettings(action);
    writeKept(action.unknownMembers());
    m_writer.EndObject();
}

void Writing::writeRecord(const QByteArray& record)
{
    const QByteArray base64 = record.toBase64();
    m_writer.Key("record");
    m_writer.String(base64.constData(), static_cast<rapidjson::SizeType>(base64.size()));
}

void Writing::writeTargets(const TagAction& action)
{
    m_writer.Key("targets");
    m_writer.StartArray();
    const QStringList tags = action.tags();
    for (int place = 0; place < tags.size(); ++place) {
        m_writer.StartObject();
        text("tag", tags.at(place));
        writeRecord(ObjectTarget::fromTagString(tags.at(place)).makeByteStream());
        writeKept(action.unknownTargetMembers(place));
        m_writer.EndObject();
    }
    m_writer.EndArray();
}

void Writing::writeRules(const TagAction& action)
{
    m_writer.Key("rules");
    m_writer.StartArray();
    for (const ActionRule& rule : action.rules()) {
        m_writer.StartObject();
        m_writer.Key("when");
        m_writer.StartArray();
        for (const RuleCondition& part : rule.conditions) {
            const ScadaCondition& condition = part.condition;
            m_writer.StartObject();
            text("tag", part.tag);
            text("operator", condition.opString());
            text("bound", part.bound);
            if (!condition.logicString().isEmpty())
                text("link", condition.logicString());
            QByteArray record;
            QDataStream out(&record, QIODevice::WriteOnly);
            out.setVersion(QDataStream::Qt_4_6);
            ScadaTagActionStream stream;
            RuleCondition(part.data()).condition.toStream(out, stream);
            writeRecord(record);
            writeKept(part.unknownMembers);
            m_writer.EndObject();
        }
        m_writer.EndArray();
        m_writer.Key("set");
        m_writer.StartObject();
        for (auto value = rule.set.begin(); value != rule.set.end(); ++value) {
            m_writer.Key(value.key().toUtf8().constData());
            JsonValues::write(m_writer, value.value());
        }
        m_writer.EndObject();
        writeKept(rule.unknownMembers);
        m_writer.EndObject();
    }
    m_writer.EndArray();
}

void Writing::writeSettings(const TagAction& action)
{
    const auto fresh = TagActionFactory::make(action.type(), nullptr);
    m_writer.Key("settings");
    m_writer.StartObject();
    for (const ActionSetting& setting : action.settingTable()) {
        const QVariant value = setting.read(action);
        if (value == setting.read(*fresh))
            continue;
        m_writer.Key(setting.name.data(), static_cast<rapidjson::SizeType>(setting.name.size()));
        JsonValues::write(m_writer, value);
    }
    writeKept(action.unknownSettings());
    m_writer.EndObject();
}

} // namespace

QByteArray PageWriter::write(const Page& page)
{
    return Writing(page).write(*page.canvas);
}

tl::expected<void, QString> PageWriter::writeFile(const Page& page, const QString& fileName)
{
    const QByteArray text = write(page);
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size() || !file.commit())
        return tl::make_unexpected(QStringLiteral("%1: can't be written: %2").arg(fileName, file.errorString()));
    return {};
}
