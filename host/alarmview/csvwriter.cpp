#include "host/alarmview/csvwriter.h"

#include <QDateTime>
#include <QDir>

#include <algorithm>

namespace {

bool looksLikeFormula(const QString& text)
{
    return !text.isEmpty() && QStringLiteral("=+-@\t\r").contains(text.at(0));
}

QString quoted(QString text)
{
    const bool needsQuotes = std::any_of(text.cbegin(), text.cend(),
                                         [](QChar letter) { return QStringLiteral(",\"\r\n").contains(letter); });
    if (!needsQuotes)
        return text;
    return QLatin1Char('"') + text.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

QString fieldOf(const QVariant& value)
{
    if (value.userType() == QMetaType::QDateTime)
        return value.toDateTime().toUTC().toString(Qt::ISODateWithMs);
    const QString text = value.toString();
    if (value.userType() == QMetaType::QString && looksLikeFormula(text))
        return quoted(QLatin1Char('\'') + text);
    return quoted(text);
}

} // namespace

CsvWriter::CsvWriter(const QString& fileName) : m_file(fileName)
{
}

CsvWriter::~CsvWriter() = default;

tl::expected<void, QString> CsvWriter::open()
{
    if (!m_file.open(QIODevice::WriteOnly))
        return failure();
    m_file.write("\xef\xbb\xbf");
    return {};
}

QByteArray CsvWriter::line(const QVariantList& values)
{
    QStringList fields;
    for (const QVariant& value : values)
        fields.append(fieldOf(value));
    return fields.join(QLatin1Char(',')).toUtf8() + "\r\n";
}

void CsvWriter::write(const QVariantList& values)
{
    m_file.write(line(values));
}

tl::expected<void, QString> CsvWriter::commit()
{
    if (!m_file.commit()) // tells of any write that failed, too
        return failure();
    return {};
}

tl::unexpected<QString> CsvWriter::failure() const
{
    return tl::make_unexpected(QStringLiteral("%1: cannot be written: %2")
                                   .arg(QDir::toNativeSeparators(m_file.fileName()), m_file.errorString()));
}
