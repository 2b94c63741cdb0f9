#include "host/canvas/jsontext_p.h"

#include <rapidjson/error/en.h>
#include <rapidjson/memorystream.h>
#include <rapidjson/reader.h>
#include <rapidjson/stringbuffer.h>
#include <rapidjson/writer.h>

#include <algorithm>
#include <charconv>
#include <system_error>
#include <vector>

namespace {

using rapidjson::SizeType;

// Numbers are read here: the parser's own reading is not exact, or, with its flag for that, undefined for some.
constexpr unsigned parseFlags =
    rapidjson::kParseIterativeFlag | rapidjson::kParseNumbersAsStringsFlag | rapidjson::kParseValidateEncodingFlag;

/// Hands everything on to the document, and notes where values begin.
struct Locator
{
    rapidjson::Document& document;
    const rapidjson::MemoryStream& stream;
    std::vector<quint32>& offsets;
    int depth = 0;
    bool isTooDeep = false;

    void note(std::size_t length) { offsets.push_back(static_cast<quint32>(stream.Tell() - length)); }
    bool open()
    {
        note(0);
        isTooDeep = ++depth > JsonText::mostDepth;
        return !isTooDeep;
    }
    bool Null() { return note(0), document.Null(); }
    bool Bool(bool b) { return note(0), document.Bool(b); }
    bool Int(int i) { return note(0), document.Int(i); }
    bool Uint(unsigned i) { return note(0), document.Uint(i); }
    bool Int64(int64_t i) { return note(0), document.Int64(i); }
    bool Uint64(uint64_t i) { return note(0), document.Uint64(i); }
    bool Double(double d) { return note(0), document.Double(d); }
    bool RawNumber(const char* s, SizeType length, bool)
    {
        note(length);
        const char* end = s + length;
        int64_t whole = 0;
        if (const auto read = std::from_chars(s, end, whole); read.ec == std::errc() && read.ptr == end)
            return document.Int64(whole);
        double real = 0; // stays so for what is too small for a double; what is too large the parser has refused
        const auto read = std::from_chars(s, end, real);
        return read.ptr == end && document.Double(read.ec == std::errc() ? real : 0);
    }
    bool String(const char* s, SizeType length, bool copy) { return note(length), document.String(s, length, copy); }
    bool Key(const char* s, SizeType length, bool copy) { return document.Key(s, length, copy); }
    bool StartObject() { return open() && document.StartObject(); }
    bool EndObject(SizeType count)
    {
        --depth;
        return document.EndObject(count);
    }
    bool StartArray() { return open() && document.StartArray(); }
    bool EndArray(SizeType count)
    {
        --depth;
        return document.EndArray(count);
    }
};

// Values come in the order in which they begin; the depth is bounded.
template <typename Visit>
void visitValues(const rapidjson::Value& value, const Visit& visit)
{
    visit(value);
    if (value.IsObject()) {
        for (const auto& member : value.GetObject())
            visitValues(member.value, visit);
    } else if (value.IsArray()) {
        for (const auto& element : value.GetArray())
            visitValues(element, visit);
    }
}

std::vector<quint32> lineEndsOf(const QByteArray& text)
{
    std::vector<quint32> ends;
    for (int place = text.indexOf('\n'); place >= 0; place = text.indexOf('\n', place + 1))
        ends.push_back(static_cast<quint32>(place));
    return ends;
}

int lineAt(const std::vector<quint32>& lineEnds, std::size_t offset)
{
    const auto end = std::lower_bound(lineEnds.begin(), lineEnds.end(), offset);
    return static_cast<int>(end - lineEnds.begin()) + 1;
}

} // namespace

JsonText::JsonText() = default;
JsonText::JsonText(JsonText&&) noexcept = default;
JsonText& JsonText::operator=(JsonText&&) noexcept = default;
JsonText::~JsonText() = default;

tl::expected<JsonText, QString> JsonText::parse(const QByteArray& text)
{
    JsonText parsed;
    rapidjson::ParseResult result;
    bool isTooDeep = false;
    std::size_t end = 0;
    auto fill = [&](rapidjson::Document& document) {
        rapidjson::MemoryStream stream(text.constData(), static_cast<std::size_t>(text.size()));
        Locator locator{document, stream, parsed.m_offsets};
        rapidjson::Reader reader;
        result = reader.Parse<parseFlags>(stream, locator);
        isTooDeep = locator.isTooDeep;
        end = stream.Tell();
        return !result.IsError();
    };
    parsed.m_document.Populate(fill);
    parsed.m_lineEnds = lineEndsOf(text);
    if (isTooDeep)
        return tl::make_unexpected(
            QStringLiteral("line %1: nested deeper than %2 levels").arg(lineAt(parsed.m_lineEnds, end)).arg(mostDepth));
    if (result.IsError()) {
        return tl::make_unexpected(QStringLiteral("line %1: %2")
                                       .arg(lineAt(parsed.m_lineEnds, result.Offset()))
                                       .arg(QLatin1String(rapidjson::GetParseError_En(result.Code()))));
    }
    return parsed;
}

int JsonText::lineOf(const rapidjson::Value& value) const
{
    if (m_lines.empty()) {
        m_lines.reserve(m_offsets.size());
        auto offset = m_offsets.begin();
        visitValues(m_document,
                    [&](const rapidjson::Value& each) { m_lines.emplace(&each, lineAt(m_lineEnds, *offset++)); });
    }
    const auto found = m_lines.find(&value);
    return found == m_lines.end() ? 0 : found->second;
}

QByteArray JsonText::textOf(const rapidjson::Value& value)
{
    rapidjson::StringBuffer buffer;
    rapidjson::Writer<rapidjson::StringBuffer> writer(buffer);
    value.Accept(writer);
    return {buffer.GetString(), static_cast<int>(buffer.GetSize())};
}

QString JsonText::stringOf(const rapidjson::Value& value)
{
    return value.IsString() ? QString::fromUtf8(value.GetString(), static_cast<int>(value.GetStringLength()))
                            : QString();
}

const rapidjson::Value* JsonText::member(const rapidjson::Value& object, const char* name)
{
    if (!object.IsObject())
        return nullptr;
    const auto found = object.FindMember(name);
    return found == object.MemberEnd() ? nullptr : &found->value;
}

QByteArray JsonText::otherMembers(const rapidjson::Value& object, const Names& known)
{
    if (!object.IsObject())
        return {};
    rapidjson::Document others(rapidjson::kObjectType);
    for (const auto& member : object.GetObject()) {
        const bool isKnown =
            std::any_of(known.begin(), known.end(), [&member](const char* name) { return member.name == name; });
        if (isKnown)
            continue;
        others.AddMember(rapidjson::Value(member.name, others.GetAllocator()),
                         rapidjson::Value(member.value, others.GetAllocator()), others.GetAllocator());
    }
    return others.ObjectEmpty() ? QByteArray() : textOf(others);
}
