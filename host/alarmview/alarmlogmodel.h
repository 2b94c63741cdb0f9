#pragma once

#include "host/alarms/alarmtransition.h"
#include "host/alarmview/alarmcsv.h"
#include "host/hostexport.h"

#include <QAbstractTableModel>

#include <vector>

/// Lines of the alarm log as a table, the newest first.
class KORVANE_HOST_EXPORT AlarmLogModel : public QAbstractTableModel
{
    Q_OBJECT
    Q_DISABLE_COPY(AlarmLogModel)

public:
    enum Column {
        Time,
        Kind,
        Severity,
        Area,
        Tag,
        Message,
        State,
        Value,
        Limit,
        Cause,
        User,
        Reason,
        Until,
        ColumnCount
    };

    explicit AlarmLogModel(QObject* parent = nullptr);
    ~AlarmLogModel() override;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;

    /// Shows these lines, the newest first. Where they only go on from those shown, what is selected stays so.
    void setLines(std::vector<AlarmTransition> lines);

private:
    static QVariant value(const AlarmTransition& line, int column);
    std::size_t newLinesBefore(const std::vector<AlarmTransition>& lines) const;

    std::vector<AlarmTransition> m_lines;
};
