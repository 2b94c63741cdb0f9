#include "host/projectfiles/csvtext.h"

#include "host/sources/csvfile.h"

#include <QFile>

#include <algorithm>

namespace {

/// Where the field lies whose text begins at \p begin: with its quotes, of which those within are doubled.
CsvText::Field fieldAt(const QByteArray& bytes, int begin, std::string_view text)
{
    CsvText::Field field;
    field.value = QString::fromUtf8(text.data(), static_cast<int>(text.size()));
    field.begin = begin;
    field.end = begin + static_cast<int>(text.size());
    const bool isQuoted = begin > 0 && bytes.at(begin - 1) == '"';
    if (!isQuoted)
        return field;
    --field.begin;
    field.end += static_cast<int>(std::count(text.begin(), text.end(), '"')) + 1;
    return field;
}

/// Where the text of the first field of a line begins.
int firstFieldOf(const QByteArray& bytes, int line, char separator)
{
    int at = line == 1 && bytes.startsWith("\xEF\xBB\xBF") ? 3 : 0;
    for (; line > 1; --line)
        at = bytes.indexOf('\n', at) + 1;
    while (bytes.at(at) == ' ' || (bytes.at(at) == '\t' && separator != '\t'))
        ++at;
    return bytes.at(at) == '"' ? at + 1 : at;
}

} // namespace

tl::expected<CsvText, QString> CsvText::read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return tl::make_unexpected(QStringLiteral("%1: can't be read: %2").arg(path, file.errorString()));
    CsvText text;
    text.m_bytes = file.readAll();
    CsvReader reader(CsvReader::LineBreaks::AllowedInQuotes);
    reader.append(text.m_bytes.constData(), static_cast<std::size_t>(text.m_bytes.size()));
    reader.finish();
    // The reader's fields are views of its own copy, which stays where it is while nothing is appended.
    const char* base = nullptr;
    for (CsvReader::Result result = reader.next(); result != CsvReader::Result::Ended; result = reader.next()) {
        if (result == CsvReader::Result::Skipped)
            continue;
        Row row;
        row.line = static_cast<int>(reader.line());
        for (const std::string_view& view : reader.fields()) {
            if (!base)
                base = view.data() - firstFieldOf(text.m_bytes, row.line, reader.separator());
            row.fields.push_back(fieldAt(text.m_bytes, static_cast<int>(view.data() - base), view));
        }
        if (text.m_header.isEmpty()) {
            for (const Field& field : row.fields)
                text.m_header.append(field.value.toLower());
            text.m_headerRow = row;
        } else {
            text.m_rows.push_back(row);
        }
    }
    if (text.m_header.isEmpty())
        return tl::make_unexpected(QStringLiteral("%1: has no header line").arg(path));
    text.m_separator = reader.separator();
    return text;
}

QStringList CsvText::header(const QString& path)
{
    CsvFile file;
    QStringList names;
    if (!file.open(path) || file.next().value_or(CsvReader::Result::Ended) != CsvReader::Result::Record)
        return names;
    for (const std::string_view& name : file.record().fields())
        names.append(QString::fromUtf8(name.data(), static_cast<int>(name.size())));
    return names;
}

QString CsvText::value(const Row& row, int column)
{
    return column >= 0 && column < static_cast<int>(row.fields.size()) ? row.fields[std::size_t(column)].value
                                                                       : QString();
}

QByteArray CsvText::field(const QString& value, char separator)
{
    QByteArray text = value.toUtf8();
    const auto isSpecial = [separator](char c) { return c == separator || c == '"' || c == '\n' || c == '\r'; };
    const bool needsQuotes =
        std::any_of(text.begin(), text.end(), isSpecial) || value != value.trimmed() || text.startsWith('#');
    return needsQuotes ? '"' + text.replace('"', "\"\"") + '"' : text;
}
