#include "host/alarmview/alarmcsv.h"

#include <QAbstractItemModel>
#include <QDateTime>
#include <QDir>
#include <QSaveFile>

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

template <typename ValueOf>
QByteArray line(const QVector<int>& columns, ValueOf&& valueOf)
{
    QStringList fields;
    for (const int column : columns)
        fields.append(fieldOf(valueOf(column)));
    return fields.join(QLatin1Char(',')).toUtf8() + "\r\n";
}

tl::unexpected<QString> failure(const QSaveFile& file)
{
    return tl::make_unexpected(
        QStringLiteral("%1: cannot be written: %2").arg(QDir::toNativeSeparators(file.fileName()), file.errorString()));
}

} // namespace

tl::expected<void, QString> AlarmCsv::write(const QString& fileName, const QAbstractItemModel& model,
                                            const QVector<int>& columns)
{
    QSaveFile file(fileName);
    if (!file.open(QIODevice::WriteOnly))
        return failure(file);
    file.write("\xef\xbb\xbf");
    file.write(line(columns, [&](int column) { return model.headerData(column, Qt::Horizontal); }));
    for (int row = 0; row < model.rowCount(); ++row)
        file.write(line(columns, [&](int column) { return model.index(row, column).data(ValueRole); }));
    if (!file.commit()) // tells of any write that failed, too
        return failure(file);
    return {};
}
