#include "platform/utility/jsontexts.h"

#include <rapidjson/document.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string_view>
#include <vector>

namespace {

using rapidjson::SizeType;
using rapidjson::Value;

/// The letter of the escape that has one of its own; null for none.
char escapeLetter(ushort unit)
{
    switch (unit) {
    case '"':
    case '\\':
        return static_cast<char>(unit);
    case '\b':
        return 'b';
    case '\f':
        return 'f';
    case '\n':
        return 'n';
    case '\r':
        return 'r';
    case '\t':
        return 't';
    default:
        return '\0';
    }
}

bool standsAsItIs(QChar unit)
{
    return unit.unicode() >= 0x20 && unit.unicode() != '"' && unit.unicode() != '\\' && !unit.isSurrogate();
}

/// Appends the pair of units that begins at \p at, or U+FFFD for a half; \returns how many units that was.
int appendSurrogates(QString& literal, const QChar* at, const QChar* end)
{
    const bool isPair = at->isHighSurrogate() && at + 1 != end && at[1].isLowSurrogate();
    if (!isPair) {
        literal += QChar(QChar::ReplacementCharacter);
        return 1;
    }
    literal.append(at, 2);
    return 2;
}

void appendEscape(QString& literal, ushort unit)
{
    literal += QLatin1Char('\\');
    if (const char letter = escapeLetter(unit)) {
        literal += QLatin1Char(letter);
        return;
    }
    literal += QLatin1Char('u');
    literal += QString::number(unit, 16).rightJustified(4, QLatin1Char('0'));
}

void appendQuoted(QString& literal, const QString& text)
{
    literal += QLatin1Char('"');
    const QChar* const end = text.constEnd();
    for (const QChar* at = text.constBegin(); at != end;) {
        const QChar* const special = std::find_if_not(at, end, standsAsItIs);
        literal.append(at, static_cast<int>(special - at));
        at = special;
        if (at == end)
            break;
        if (at->isSurrogate())
            at += appendSurrogates(literal, at, end);
        else
            appendEscape(literal, (at++)->unicode());
    }
    literal += QLatin1Char('"');
}

/// A number as std::to_chars writes it.
template <class Number>
void appendDigits(QString& text, Number number)
{
    std::array<char, 32> digits{}; // the longest has 24 characters
    const auto written = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    text += QLatin1String(digits.data(), static_cast<int>(written.ptr - digits.data()));
}

void appendNumber(QString& text, double number)
{
    constexpr double exact = 9007199254740992.0; // 2^53: beyond it not every whole number is a double
    if (!std::isfinite(number))
        text += QLatin1String("null");
    else if (number == 0 && std::signbit(number))
        text += QLatin1String("-0.0"); // readers take "-0" for the integer 0
    else if (number == std::floor(number) && std::abs(number) <= exact)
        appendDigits(text, static_cast<qint64>(number));
    else
        appendDigits(text, number);
}

/// \param appendValue writes the value behind the text that it is given
template <class AppendValue>
QString member(const QString& key, int valueSize, bool comma, AppendValue appendValue)
{
    QString text;
    text.reserve(key.size() + valueSize + 4); // quotes, colon, comma
    appendQuoted(text, key);
    text += QLatin1Char(':');
    appendValue(text);
    if (comma)
        text += QLatin1Char(',');
    return text;
}

constexpr int mostDigits = 24;

/// All of the string; QString::fromUtf8 by itself drops a byte order mark in front.
QString textOf(const Value& string)
{
    constexpr std::string_view mark = "\xef\xbb\xbf";
    std::string_view utf8(string.GetString(), string.GetStringLength());
    int marks = 0;
    for (; utf8.substr(0, mark.size()) == mark; ++marks)
        utf8.remove_prefix(mark.size());
    const QString text = QString::fromUtf8(utf8.data(), static_cast<int>(utf8.size()));
    return marks == 0 ? text : QString(marks, QChar(QChar::ByteOrderMark)) + text;
}

bool isNested(const Value& value)
{
    return value.IsObject() || value.IsArray();
}

/// The text of a value that is neither an object nor an array.
void appendPlain(QString& text, const Value& value)
{
    if (value.IsString())
        appendQuoted(text, textOf(value));
    else if (value.IsBool())
        text += value.GetBool() ? QLatin1String("true") : QLatin1String("false");
    else if (value.IsInt64())
        appendDigits(text, value.GetInt64());
    else if (value.IsUint64())
        appendDigits(text, value.GetUint64());
    else if (value.IsDouble())
        appendNumber(text, value.GetDouble());
    else
        text += QLatin1String("null");
}

/// An object or array whose values are being written.
struct Open
{
    const Value* container;
    SizeType next = 0; ///< place of the value to come

    bool isAtEnd() const { return next == (container->IsObject() ? container->MemberCount() : container->Size()); }
    /// Writes what stands in front of the next value, and takes that.
    const Value& take(QString& text)
    {
        if (next > 0)
            text += QLatin1Char(',');
        if (container->IsArray())
            return (*container)[next++];
        const auto& member = *(container->MemberBegin() + static_cast<std::ptrdiff_t>(next++));
        appendQuoted(text, textOf(member.name));
        text += QLatin1Char(':');
        return member.value;
    }
};

/// Without recursion, unlike RapidJSON's own writer: a stored text may be nested deeper than the stack bears.
QString nestedText(const Value& root)
{
    QString text(QLatin1Char(root.IsObject() ? '{' : '['));
    std::vector<Open> open{Open{&root}};
    while (!open.empty()) {
        if (open.back().isAtEnd()) {
            text += QLatin1Char(open.back().container->IsObject() ? '}' : ']');
            open.pop_back();
            continue;
        }
        const Value& value = open.back().take(text);
        if (!isNested(value)) {
            appendPlain(text, value);
            continue;
        }
        text += QLatin1Char(value.IsObject() ? '{' : '[');
        open.push_back(Open{&value});
    }
    return text;
}

} // namespace

QString Korvane::jsKeyValue(const QString& key, int value, bool comma)
{
    return member(key, mostDigits, comma, [value](QString& text) { appendDigits(text, value); });
}

QString Korvane::jsKeyInt64Value(const QString& key, qint64 value, bool comma)
{
    return member(key, mostDigits, comma, [value](QString& text) { appendDigits(text, value); });
}

QString Korvane::jsKeyStringValue(const QString& key, const QString& value, bool comma)
{
    return member(key, value.size() + 2, comma, [&value](QString& text) { appendQuoted(text, value); });
}

QString Korvane::jsKeyDoubleValue(const QString& key, double value, bool comma)
{
    return member(key, mostDigits, comma, [value](QString& text) { appendNumber(text, value); });
}

QString Korvane::jsKeyObjectValue(const QString& key, const QString& valueText, bool comma)
{
    return member(key, valueText.size(), comma, [&valueText](QString& text) { text += valueText; });
}

QString Korvane::getJsonString(const Value& value)
{
    if (value.IsString())
        return textOf(value);
    if (isNested(value))
        return nestedText(value);
    QString text;
    appendPlain(text, value);
    return text;
}
