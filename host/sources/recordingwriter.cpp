#include "host/sources/recordingwriter.h"

#include "platform/data/valuemarks.h"

#include <QDateTime>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <numeric>
#include <tuple>

namespace {

bool isLess(ObjectKey a, ObjectKey b)
{
    return std::tie(a.type, a.id) < std::tie(b.type, b.id);
}

/// The whole second by which a sample counts.
qint64 secondOf(qint64 timeMs)
{
    const qint64 second = timeMs / 1000;
    return second * 1000 < timeMs ? second + 1 : second;
}

/// The shortest text that reads back as the same number; nothing for what is none.
QByteArray textOf(const Sample& sample)
{
    if ((sample.quality & ValueMark::Invalid) != 0 || !std::isfinite(sample.value))
        return {};
    std::array<char, 32> text = {};
    const auto written = std::to_chars(text.data(), text.data() + text.size(), sample.value);
    return QByteArray(text.data(), int(written.ptr - text.data()));
}

QByteArray quoted(const QString& name)
{
    QByteArray text = name.toUtf8();
    return '"' + text.replace("\"", "\"\"") + '"';
}

} // namespace

RecordingWriter::RecordingWriter(const QString& path, const std::vector<SourcePoint>& points) : m_file(path)
{
    m_header = "datetime";
    for (const SourcePoint& point : points) {
        m_header += ';' + quoted(point.name);
        m_columns.push_back({point.object, {}});
    }
    m_header += '\n';
    m_byObject.resize(m_columns.size());
    std::iota(m_byObject.begin(), m_byObject.end(), std::size_t(0));
    std::sort(m_byObject.begin(), m_byObject.end(),
              [this](std::size_t a, std::size_t b) { return isLess(m_columns[a].object, m_columns[b].object); });
}

RecordingWriter::~RecordingWriter() = default;

tl::expected<void, QString> RecordingWriter::open()
{
    if (!m_file.open(QIODevice::WriteOnly)) {
        return tl::make_unexpected(
            QStringLiteral("%1: cannot be created: %2").arg(m_file.fileName(), m_file.errorString()));
    }
    m_file.write(m_header);
    return {};
}

void RecordingWriter::write(const std::vector<Sample>& samples)
{
    for (const Sample& sample : samples) {
        Column* const column = findColumn(sample.object);
        if (!column)
            continue;
        const qint64 second = secondOf(sample.timeMs);
        if (m_row && second > *m_row)
            writeRow();
        m_row = std::max(second, m_row.value_or(second));
        column->text = textOf(sample);
    }
}

RecordingWriter::Column* RecordingWriter::findColumn(ObjectKey object)
{
    const auto found =
        std::lower_bound(m_byObject.begin(), m_byObject.end(), object,
                         [this](std::size_t column, ObjectKey key) { return isLess(m_columns[column].object, key); });
    return found != m_byObject.end() && m_columns[*found].object == object ? &m_columns[*found] : nullptr;
}

void RecordingWriter::writeRow()
{
    const QDateTime time = QDateTime::fromSecsSinceEpoch(*m_row, Qt::UTC);
    m_line = time.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss")).toLatin1();
    for (const Column& column : m_columns)
        m_line.append(';').append(column.text);
    m_line.append('\n');
    m_file.write(m_line);
}

tl::expected<void, QString> RecordingWriter::finish()
{
    if (m_row)
        writeRow();
    m_row.reset();
    if (m_file.commit())
        return {};
    return tl::make_unexpected(
        QStringLiteral("%1: cannot be written: %2").arg(m_file.fileName(), m_file.errorString()));
}
