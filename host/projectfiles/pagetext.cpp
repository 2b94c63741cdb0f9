#include "host/projectfiles/pagetext.h"

#include "host/actions/actionrule.h"
#include "host/canvas/jsontext_p.h"
#include "host/canvas/jsonvalues_p.h"
#include "platform/data/scadatagactionstream.h"
#include "scada/binding/objecttarget.h"

#include <rapidjson/document.h>
#include <rapidjson/error/en.h>

#include <QDataStream>
#include <QStringList>

#include <algorithm>
#include <cstring>

namespace {

using rapidjson::Value;

// Without recursion, so that no text runs it out of stack. Numbers need not be exact here.
constexpr unsigned parseFlags =
    rapidjson::kParseInsituFlag | rapidjson::kParseIterativeFlag | rapidjson::kParseValidateEncodingFlag;

const Value* member(const Value& object, const char* name)
{
    return JsonText::member(object, name);
}

std::string_view viewOf(const Value& text)
{
    return {text.GetString(), text.GetStringLength()};
}

QString stringOf(std::string_view utf8)
{
    return QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
}

int numberIn(const Value& object, const char* name)
{
    const Value* found = member(object, name);
    return found && found->IsInt() ? found->GetInt() : 0;
}

} // namespace

/// Goes through the parsed text once and notes what stands where.
class PageText::Walk
{
public:
    explicit Walk(PageText& page) : m_page(page) {}

    void page(const Value& root);
    bool isTooDeep() const { return m_isTooDeep; }

private:
    void layer(const Value& stored);
    void shape(const Value& stored);
    void action(const Value& stored, Place place);
    void rule(const Value& stored, Place place);
    void events(const Value& stored, int shape);
    void event(const Value& stored, int shape, int number);
    void tags(const Value& stored, Place place);
    void others(const Value& stored, const Place& place, int depth);
    void note(const Value* text, const Value* record, Place place);
    template <typename Visit>
    void each(const Value& stored, const Place& place, const Visit& visit);

    int contentBegin(const Value& text) const { return static_cast<int>(text.GetString() - m_page.m_decoded.get()); }
    Range rangeOf(const Value& text) const;

    PageText& m_page;
    bool m_isTooDeep = false;
};

// The unescaped text begins where the escaped one does; that ends at the next quote without a backslash.
PageText::Range PageText::Walk::rangeOf(const Value& text) const
{
    const int begin = contentBegin(text);
    int end = begin;
    while (m_page.m_bytes.at(end) != '"')
        end += m_page.m_bytes.at(end) == '\\' ? 2 : 1;
    return {begin - 1, end + 1};
}

/// Visits the elements of an array; anything else is looked through for tags all the same.
template <typename Visit>
void PageText::Walk::each(const Value& stored, const Place& place, const Visit& visit)
{
    if (!stored.IsArray()) {
        others(stored, place, 0);
        return;
    }
    int number = 0;
    for (const Value& element : stored.GetArray())
        visit(element, number++);
}

void PageText::Walk::page(const Value& root)
{
    if (!root.IsObject())
        return;
    for (const auto& [name, value] : root.GetObject()) {
        const std::string_view key = viewOf(name);
        if (key == "events")
            events(value, -1);
        else if (key == "layers")
            each(value, {}, [this](const Value& stored, int) { layer(stored); });
        else
            others(value, {}, 0);
    }
}

// What is no layer, or holds no shapes, stands on the page as one shape.
void PageText::Walk::layer(const Value& stored)
{
    if (!stored.IsObject()) {
        shape(stored);
        return;
    }
    const Value* shapes = member(stored, "shapes");
    if (shapes && !shapes->IsArray()) {
        shape(*shapes);
        return;
    }
    for (const auto& [name, value] : stored.GetObject()) {
        if (&value == shapes)
            each(value, {}, [this](const Value& each, int) { shape(each); });
        else
            others(value, {}, 0);
    }
}

void PageText::Walk::shape(const Value& stored)
{
    Place place;
    place.shape = static_cast<int>(m_page.m_shapes.size());
    m_page.m_shapes.emplace_back();
    if (!stored.IsObject()) {
        others(stored, place, 0);
        return;
    }
    for (const auto& [name, value] : stored.GetObject()) {
        const std::string_view key = viewOf(name);
        if (m_page.m_shapes.back().offset == 0)
            m_page.m_shapes.back().offset = contentBegin(name);
        if (key == "name" && value.IsString()) {
            m_page.m_shapes.back().name = viewOf(value);
        } else if (key == "actions") {
            each(value, place, [&](const Value& each, int number) {
                place.action = number;
                action(each, place);
            });
            place.action = -1;
        } else if (key == "events") {
            events(value, place.shape);
        } else if (key == "operation") {
            Place operation = place;
            operation.kind = Kind::Operation;
            tags(value, operation);
        } else {
            others(value, place, 0);
        }
    }
}

void PageText::Walk::action(const Value& stored, Place place)
{
    if (!stored.IsObject()) {
        others(stored, place, 0);
        return;
    }
    const Value* version = member(stored, "version");
    place.version = version && version->IsUint() ? version->GetUint() : ScadaTagActionStream::currentVersion;
    for (const auto& [name, value] : stored.GetObject()) {
        const std::string_view key = viewOf(name);
        if (key == "targets") {
            each(value, place, [&](const Value& target, int number) {
                Place binding = place;
                binding.kind = Kind::Binding;
                binding.item = number;
                tags(target, binding);
            });
        } else if (key == "rules") {
            each(value, place, [&](const Value& part, int number) {
                place.rule = number;
                rule(part, place);
            });
            place.rule = -1;
        } else {
            others(value, place, 0);
        }
    }
}

void PageText::Walk::rule(const Value& stored, Place place)
{
    if (!stored.IsObject()) {
        others(stored, place, 0);
        return;
    }
    for (const auto& [name, value] : stored.GetObject()) {
        if (viewOf(name) != "when") {
            others(value, place, 0);
            continue;
        }
        each(value, place, [&](const Value& part, int number) {
            Place condition = place;
            condition.kind = Kind::Condition;
            condition.item = number;
            tags(part, condition);
        });
    }
}

void PageText::Walk::events(const Value& stored, int shape)
{
    Place place;
    place.shape = shape;
    each(stored, place, [&](const Value& each, int number) { event(each, shape, number); });
}

void PageText::Walk::event(const Value& stored, int shape, int number)
{
    Script script;
    script.shape = shape;
    script.event = number;
    script.trigger = numberIn(stored, "trigger");
    const Value* text = member(stored, "script");
    const Value* data = member(stored, "data");
    constexpr int scriptAction = 1001;
    if (text && text->IsString()) {
        script.lines.push_back({rangeOf(*text), viewOf(*text)});
    } else if (text && text->IsArray()) {
        for (const Value& line : text->GetArray()) {
            if (line.IsString())
                script.lines.push_back({rangeOf(line), viewOf(line)});
        }
    } else if (data && data->IsString() && numberIn(stored, "type") == scriptAction) {
        script.data = rangeOf(*data);
    } else {
        return;
    }
    m_page.m_scripts.push_back(std::move(script));
}

// An object with a tag, a bound and a record, as any of them is there.
void PageText::Walk::tags(const Value& stored, Place place)
{
    if (!stored.IsObject()) {
        others(stored, place, 0);
        return;
    }
    const auto textOf = [&stored](const char* name) {
        const Value* found = member(stored, name);
        return found && found->IsString() ? found : nullptr;
    };
    const Value* record = textOf("record");
    note(textOf("tag"), record, place);
    if (place.kind == Kind::Condition || textOf("bound")) {
        if (place.kind == Kind::Condition)
            place.kind = Kind::Bound;
        note(textOf("bound"), place.kind == Kind::Bound ? record : nullptr, place);
    }
    place.kind = Kind::Other;
    for (const auto& each : stored.GetObject()) {
        if (each.value.IsObject() || each.value.IsArray())
            others(each.value, place, 0);
    }
}

void PageText::Walk::note(const Value* text, const Value* record, Place place)
{
    if (!text && !record)
        return;
    if (text) {
        place.text = rangeOf(*text);
        place.tag = viewOf(*text);
    }
    if (record)
        place.record = rangeOf(*record);
    m_page.m_places.push_back(place);
}

void PageText::Walk::others(const Value& stored, const Place& place, int depth)
{
    m_isTooDeep |= depth > JsonText::mostDepth;
    if (m_isTooDeep || !(stored.IsObject() || stored.IsArray()))
        return;
    if (stored.IsArray()) {
        for (const Value& element : stored.GetArray())
            others(element, place, depth + 1);
        return;
    }
    Place other = place;
    other.kind = Kind::Other;
    for (const char* name : {"tag", "bound"}) {
        const Value* text = member(stored, name);
        if (text && text->IsString())
            note(text, nullptr, other);
    }
    for (const auto& each : stored.GetObject())
        others(each.value, place, depth + 1);
}

PageText::PageText() = default;
PageText::PageText(PageText&&) noexcept = default;
PageText& PageText::operator=(PageText&&) noexcept = default;
PageText::~PageText() = default;

tl::expected<PageText, QString> PageText::parse(const QByteArray& text)
{
    PageText page;
    page.m_bytes = text;
    const auto size = static_cast<std::size_t>(text.size());
    page.m_decoded = std::make_unique<char[]>(size + 1);
    std::memcpy(page.m_decoded.get(), text.constData(), size);
    page.m_decoded[size] = '\0';
    rapidjson::Document document;
    document.ParseInsitu<parseFlags>(page.m_decoded.get());
    if (document.HasParseError()) {
        return tl::make_unexpected(QStringLiteral("line %1: %2")
                                       .arg(page.lineOf(static_cast<int>(document.GetErrorOffset())))
                                       .arg(QLatin1String(rapidjson::GetParseError_En(document.GetParseError()))));
    }
    Walk walk(page);
    walk.page(document);
    if (walk.isTooDeep())
        return tl::make_unexpected(QStringLiteral("line 1: nested deeper than %1 levels").arg(JsonText::mostDepth));
    return page;
}

QString PageText::shapeName(int shape) const
{
    return shape < 0 ? QString() : stringOf(m_shapes[static_cast<std::size_t>(shape)].name);
}

int PageText::shapeOffset(int shape) const
{
    return shape < 0 ? 0 : m_shapes[static_cast<std::size_t>(shape)].offset;
}

int PageText::lineOf(int offset) const
{
    if (m_lineEnds.empty()) {
        for (int end = m_bytes.indexOf('\n'); end >= 0; end = m_bytes.indexOf('\n', end + 1))
            m_lineEnds.push_back(end);
    }
    return static_cast<int>(std::lower_bound(m_lineEnds.begin(), m_lineEnds.end(), offset) - m_lineEnds.begin()) + 1;
}

QByteArray PageText::recordAt(const Place& place) const
{
    if (place.record.isEmpty())
        return {};
    // Base64 has nothing that would be escaped but, at most, the slash.
    QByteArray base64 = m_bytes.mid(place.record.begin + 1, place.record.end - place.record.begin - 2);
    const auto decoded =
        QByteArray::fromBase64Encoding(base64.replace("\\/", "/"), QByteArray::AbortOnBase64DecodingErrors);
    return decoded ? decoded.decoded : QByteArray();
}

QString PageText::tagAt(const Place& place) const
{
    if (!place.text.isEmpty())
        return stringOf(place.tag);
    const QByteArray record = recordAt(place);
    if (record.isEmpty())
        return {};
    QDataStream in(record);
    in.setVersion(QDataStream::Qt_4_6);
    const ScadaTagActionStream stream(place.version);
    if (place.kind == Kind::Binding) {
        ObjectTarget target;
        target.fromStream(in, stream);
        return in.status() == QDataStream::Ok ? target.getTagString() : QString();
    }
    ScadaCondition condition;
    condition.fromStream(in, stream);
    const RuleCondition read(condition);
    return in.status() != QDataStream::Ok ? QString() : place.kind == Kind::Bound ? read.bound : read.tag;
}

QString PageText::source(const Script& script) const
{
    if (!script.data.isEmpty()) {
        QString text;
        QDataStream in(
            QByteArray::fromBase64(m_bytes.mid(script.data.begin + 1, script.data.end - script.data.begin - 2)));
        in >> text;
        return in.status() == QDataStream::Ok ? text : QString();
    }
    QStringList lines;
    for (const Line& line : script.lines)
        lines.append(stringOf(line.text));
    return lines.join(QLatin1Char('\n'));
}

QByteArray PageText::literal(const QString& text)
{
    rapidjson::StringBuffer buffer;
    JsonValues::Writer writer(buffer);
    JsonValues::write(writer, text);
    return {buffer.GetString(), static_cast<int>(buffer.GetSize())};
}
