#include "platform/utility/pythonstringconverter.h"

#include <QLatin1Char>

namespace {

/// The letter of the escape that has one of its own; null for none.
char escapeLetter(ushort unit)
{
    switch (unit) {
    case '\\':
    case '\'':
    case '"':
        return static_cast<char>(unit);
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

void appendCode(QString& body, char kind, int digits, uint code)
{
    body += QLatin1Char('\\');
    body += QLatin1Char(kind);
    body += QString::number(code, 16).rightJustified(digits, QLatin1Char('0'));
}

} // namespace

QString PythonStringConverter::convert(const QString& text)
{
    QString body;
    body.reserve(text.size() + text.size() / 8);
    for (int i = 0; i < text.size(); ++i) {
        const QChar unit = text.at(i);
        if (const char letter = escapeLetter(unit.unicode())) {
            body += QLatin1Char('\\');
            body += QLatin1Char(letter);
        } else if (unit >= QLatin1Char(' ') && unit <= QLatin1Char('~')) {
            body += unit;
        } else if (unit.unicode() < 0x80) {
            appendCode(body, 'x', 2, unit.unicode());
        } else if (unit.isHighSurrogate() && i + 1 < text.size() && text.at(i + 1).isLowSurrogate()) {
            appendCode(body, 'U', 8, QChar::surrogateToUcs4(unit, text.at(++i)));
        } else {
            appendCode(body, 'u', 4, unit.unicode());
        }
    }
    return body;
}
