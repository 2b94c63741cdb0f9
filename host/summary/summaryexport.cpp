#include "host/summary/summaryexport_p.h"

#include "host/summary/summarycolumns.h"

#include <algorithm>

SummaryExport::SummaryExport(const RuntimeDatabase& database, std::vector<ObjectKey> points,
                             const QVector<int>& columns, const QString& fileName, QObject* parent)
    : QObject(parent), m_database(database), m_points(std::move(points)), m_columns(columns), m_file(fileName)
{
    connect(&m_timer, &QTimer::timeout, this, &SummaryExport::writeOn);
}

SummaryExport::~SummaryExport() = default;

tl::expected<void, QString> SummaryExport::start()
{
    if (auto opened = m_file.open(); !opened)
        return opened;
    QVariantList titles;
    for (const int column : qAsConst(m_columns))
        titles.append(SummaryColumns::title(column));
    m_file.write(titles);
    m_timer.start(0);
    return {};
}

void SummaryExport::writeOn()
{
    const std::size_t end = std::min(m_points.size(), m_written + writtenAtOnce);
    for (; m_written < end; ++m_written) {
        QVariantList values;
        for (const int column : qAsConst(m_columns))
            values.append(SummaryColumns::value(m_database, m_points[m_written], column));
        m_file.write(values);
    }
    Q_EMIT advanced(static_cast<int>(m_written), static_cast<int>(m_points.size()));
    if (m_written < m_points.size())
        return;
    m_timer.stop();
    const auto committed = m_file.commit();
    Q_EMIT finished(committed ? QString() : committed.error());
}
