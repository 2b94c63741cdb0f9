#pragma once

#include "host/alarmview/csvwriter.h"
#include "platform/data/objectkey.h"

#include <QObject>
#include <QTimer>
#include <QVector>

#include <tl/expected.hpp>

#include <vector>

class RuntimeDatabase;

/// Writes points of the summary to a file, some hundreds at a time, between which events are handled. Each point is written as
/// it is then. An export that goes before its end leaves the file as it was.
class SummaryExport : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY(SummaryExport)

public:
    /// \param database not owned, must outlive the export
    /// \param points, columns in the order in which they are written
    SummaryExport(const RuntimeDatabase& database, std::vector<ObjectKey> points, const QVector<int>& columns,
                  const QString& fileName, QObject* parent);
    ~SummaryExport() override;

    /// \returns the reason, naming the file, why it can't be written
    [[nodiscard]] tl::expected<void, QString> start();

    static constexpr int writtenAtOnce = 500;

Q_SIGNALS:
    /// \param written points, of \p all
    void advanced(int written, int all);
    /// All is written; \p problem is empty, or says what kept it from being so.
    void finished(const QString& problem);

private:
    void writeOn();

    const RuntimeDatabase& m_database;
    std::vector<ObjectKey> m_points;
    QVector<int> m_columns;
    CsvWriter m_file;
    std::size_t m_written = 0;
    QTimer m_timer;
};
