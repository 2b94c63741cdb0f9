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

/// Hands everything on to the document, and notes where objects and arrays begin.
struct Locator
{
    rapidjson::Document& document;
    const rapidjson::MemoryStream& stream;
    std::vector<std::size_t>& offsets;
    int depth = 0;
    bool isTooDeep = false;
    bool isTooLarge = false;

    bool open()
    {
        offsets.push_back(stream.Tell());
        isTooDeep = ++depth > JsonText::mostDepth;
        return !isTooDeep;
    }
    bool Null() { return document.Null(); }
    bool Bool(bool b) { return document.Bool(b); }
    bool Int(int i) { return document.Int(i); }
    bool Uint(unsigned i) { return document.Uint(i); }
    bool Int64(int64_t i) { return document.Int64(i); }
    bool Uint64(uint64_t i) { return document.Uint64(i); }
    bool Double(double d) { return document.Double(d); }
    bool RawNumber(const char* s, SizeType length, bool)
    {
        const char* end = s + length;
        int64_t whole = 0;
        if (const auto read = std::from_chars(s, end, whole); read.ec == std::errc() && read.ptr == end)
            return document.Int64(whole);
        double real = 0;
        const auto read = std::from_chars(s, end, real);
        if (read.ptr != end)
            return false;
        if (read.ec == std::errc())
            return document.Double(real);
        // Out of range: what is too small for a double is 0.
        isTooLarge = QByteArray::fromRawData(s, static_cast<int>(length)).indexOf("-", 1) < 0;
        return !isTooLarge && document.Double(0);
    }
    bool String(const char* s, SizeType length, bool copy) { return document.String(s, length, copy); }
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

/// Turns offsets, taken in rising order, into lines.
class LineCounter
{
public:
    explicit LineCounter(const QByteArray& text) : m_text(text) {}
    int lineAt(std::size_t offset)
    {
        const auto* begin = m_text.constData();
        const std::size_t end = std::min(offset, static_cast<std::size_t>(m_text.size()));
        m_line += static_cast<int>(std::count(begin + m_offset, begin + end, '\n'));
        m_offset = end;
        return m_line;
    }

private:
    const QByteArray& m_text;
    std::size_t m_offset = 0;
    int m_line = 1;
};

// Objects and arrays come in the order in which they begin; the depth is bounded.
template <typename Visit>
void visitContainers(const rapidjson::Value& value, const Visit& visit)
{
    if (value.IsObject()) {
        visit(value);
        for (const auto& member : value.GetObject())
            visitContainers(member.value, visit);
    } else if (value.IsArray()) {
        visit(value);
        for (const auto& element : value.GetArray())
            visitContainers(element, visit);
    }
}

} // namespace

JsonText::JsonText() = default;
JsonText::JsonText(JsonText&&) noexcept = default;
JsonText& JsonText::operator=(JsonText&&) noexcept = default;
JsonText::~JsonText() = default;

tl::expected<JsonText, QString> JsonText::parse(const QByteArray& text)
{
    JsonText parsed;
    std::vector<std::size_t> offsets;
    rapidjson::ParseResult result;
    bool isTooDeep = false;
    bool isTooLarge = false;
    std::size_t end = 0;
    auto fill = [&](rapidjson::Document& document) {
        rapidjson::MemoryStream stream(text.constData(), static_cast<std::size_t>(text.size()));
        Locator locator{document, stream, offsets};
        rapidjson::Reader reader;
        result = reader.Parse<parseFlags>(stream, locator);
        isTooDeep = locator.isTooDeep;
        isTooLarge = locator.isTooLarge;
        end = stream.Tell();
        return !result.IsError();
    };
    parsed.m_document.Populate(fill);
    LineCounter lines(text);
    if (isTooDeep)
        return tl::make_unexpected(
            QStringLiteral("line %1: nested deeper than %2 levels").arg(lines.lineAt(end)).arg(mostDepth));
    if (isTooLarge)
        return tl::make_unexpected(QStringLiteral("line %1: a number that is too large").arg(lines.lineAt(end)));
    if (result.IsError()) {
        return tl::make_unexpected(QStringLiteral("line %1: %2")
                                       .arg(lines.lineAt(result.Offset()))
                                       .arg(QLatin1String(rapidjson::GetParseError_En(result.Code()))));
    }
    parsed.m_lines.reserve(offsets.size());
    auto offset = offsets.begin();
    visitContainers(parsed.m_document,
                    [&](const rapidjson::Value& value) { parsed.m_lines.emplace(&value, lines.lineAt(*offset++)); });
    return parsed;
}

int JsonText::lineOf(const rapidjson::Value& value) const
{
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
