#include "host/alarmview/alarmcsv.h"

#include "host/alarmview/csvwriter.h"

#include <QAbstractItemModel>

namespace {

template <typename ValueOf>
QVariantList valuesOf(const QVector<int>& columns, ValueOf&& valueOf)
{
    QVariantList values;
    for (const int column : columns)
        values.append(valueOf(column));
    return values;
}

} // namespace

tl::expected<void, QString> AlarmCsv::write(const QString& fileName, const QAbstractItemModel& model,
                                            const QVector<int>& columns)
{
    CsvWriter file(fileName);
    if (auto opened = file.open(); !opened)
        return opened;
    file.write(valuesOf(columns, [&](int column) { return model.headerData(column, Qt::Horizontal); }));
    for (int row = 0; row < model.rowCount(); ++row)
        file.write(valuesOf(columns, [&](int column) { return model.index(row, column).data(ValueRole); }));
    return file.commit();
}
