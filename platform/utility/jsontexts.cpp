#include "platform/utility/jsontexts.h"

#include <rapidjson/document.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
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

QString quoted(const QString& text)
{
    QString literal;
    literal.reserve(text.size() + 2);
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
    return literal;
}

QString numberText(double number)
{
    constexpr double exact = 9007199254740992.0; // 2^53: beyond it not every whole number is a double
    if (!std::isfinite(number))
        return QStringLiteral("null");
    if (number == 0 && std::signbit(number))
        return QStringLiteral("-0.0"); // readers take "-0" for the integer 0
    if (number == std::floor(number) && std::abs(number) <= exact)
        return QString::number(static_cast<qint64>(number));
    std::array<char, 32> text{}; // the longest has 24 characters
    const auto written = std::to_chars(text.data(), text.data() + text.size(), number);
    return QString::fromLatin1(text.data(), static_cast<int>(written.ptr - text.data()));
}

QString member(const QString& key, const QString& valueText, bool comma)
{
    QString text = quoted(key);
    text.reserve(text.size() + valueText.size() + 2);
    text += QLatin1Char(':');
    text += valueText;
    if (comma)
        text += QLatin1Char(',');
    return text;
}

/// All of the string; QString::fromUtf8 by itself drops a byte order mark in front.
QString textOf(const Value& string)
{
    static const QByteArray mark = QByteArrayLiteral("\xef\xbb\xbf");
    QByteArray utf8 = QByteArray::fromRawData(string.GetString(), static_cast<int>(string.GetStringLength()));
    QString marks;
    while (utf8.startsWith(mark)) {
        marks += QChar(QChar::ByteOrderMark);
        utf8 = QByteArray::fromRawData(utf8.constData() + mark.size(), utf8.size() - mark.size());
    }
    const QString text = QString::fromUtf8(utf8.constData(), utf8.size());
    return marks.isEmpty() ? text : marks + text;
}

bool isNested(const Value& value)
{
    return value.IsObject() || value.IsArray();
}

/// The text of a value that is neither an object nor an array.
QString plainText(const Value& value)
{
    if (value.IsString())
        return quoted(textOf(value));
    if (value.IsBool())
        return value.GetBool() ? QStringLiteral("true") : QStringLiteral("false");
    if (value.IsInt64())
        return QString::number(value.GetInt64());
    if (value.IsUint64())
        return QString::number(value.GetUint64());
    return value.IsDouble() ? numberText(value.GetDouble()) : QStringLiteral("null");
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
        text += quoted(textOf(member.name));
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
            text += plainText(value);
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
    return member(key, QString::number(value), comma);
}

QString Korvane::jsKeyInt64Value(const QString& key, qint64 value, bool comma)
{
    return member(key, QString::number(value), comma);
}

QString Korvane::jsKeyStringValue(const QString& key, const QString& value, bool comma)
{
    return member(key, quoted(value), comma);
}

QString Korvane::jsKeyDoubleValue(const QString& key, double value, bool comma)
{
    return member(key, numberText(value), comma);
}

QString Korvane::jsKeyObjectValue(const QString& key, const QString& valueText, bool comma)
{
    return member(key, valueText, comma);
}

QString Korvane::getJsonString(const Value& value)
{
    if (value.IsString())
        return textOf(value);
    return isNested(value) ? nestedText(value) : plainText(value);
}
