#include "host/sources/streamsource.h"

#include "host/sources/problemtexts_p.h"

#include <QSocketNotifier>

#include <utility>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <poll.h>
#include <unistd.h>
#endif

namespace {

/// Most bytes of one read: the pipe's writer need not wait long, nor the event loop.
constexpr std::size_t readBytes = std::size_t(1) << 18;

QString streamName()
{
    return QStringLiteral("standard input");
}

#ifdef Q_OS_UNIX
constexpr bool canWait = true;
constexpr qint64 nothingYet = -2;

/// How many bytes came, at the end 0, or nothingYet; -1 when reading fails. The descriptor is shared with other
/// programs, so it is asked first instead of being made one that doesn't block.
qint64 readWithoutBlocking(int descriptor, std::vector<char>& bytes)
{
    pollfd waiting = {descriptor, POLLIN, 0};
    if (poll(&waiting, 1, 0) == 0)
        return nothingYet;
    const ssize_t count = read(descriptor, bytes.data(), bytes.size());
    const bool isLater = count < 0 && (errno == EINTR || errno == EAGAIN || errno == EWOULDBLOCK);
    return isLater ? nothingYet : qint64(count);
}
#else
constexpr bool canWait = false;
constexpr qint64 nothingYet = -2;

qint64 readWithoutBlocking(int, std::vector<char>&)
{
    return -1;
}
#endif

} // namespace

StreamSource::StreamSource(int descriptor, const std::vector<SourcePoint>& points, const RecordingOptions& options,
                           Clock clock, QObject* parent)
    : ValueSource(parent),
      m_descriptor(descriptor),
      m_options(options),
      m_clock(std::move(clock)),
      m_map(points),
      m_problems(std::make_unique<ProblemTexts>(
          QStringLiteral("%1: further malformed rows are only counted").arg(streamName()))),
      m_unknownNames(std::make_unique<ProblemTexts>(
          QStringLiteral("%1: further names that no point has are not told").arg(streamName())))
{
}

StreamSource::~StreamSource() = default;

QString StreamSource::description() const
{
    return QStringLiteral("recording from %1").arg(streamName());
}

std::vector<ObjectKey> StreamSource::objects() const
{
    return m_table && m_hasHeader ? m_table->objects() : std::vector<ObjectKey>();
}

qint64 StreamSource::problemCount() const
{
    return m_problems->count();
}

void StreamSource::start(qint64)
{
    if (std::exchange(m_isStarted, true))
        return;
    if (canWait)
        listen();
    else
        setState(State::Failed, QStringLiteral("%1 cannot be read on this system").arg(streamName()));
}

void StreamSource::advance(qint64)
{
    if (m_isStarted && canWait && !m_table)
        listen();
}

/// Begins to read, once it is known what the columns are.
void StreamSource::listen()
{
    if (!m_options.map.isEmpty()) {
        const auto left = m_map.read(m_options.map);
        if (!left) {
            setState(State::Failed, left.error());
            return;
        }
        m_notes = *left;
    }
    const bool isByArrival = m_options.times == SourceAddress::Times::Arrival;
    m_table.emplace(m_map, m_options.zone,
                    isByArrival ? RecordingTable::TimeColumn::Ignored : RecordingTable::TimeColumn::Read);
    m_bytes.resize(readBytes);
    m_notifier = std::make_unique<QSocketNotifier>(m_descriptor, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &StreamSource::readAvailable);
    setState(State::Running);
    tellProblems();
}

void StreamSource::readAvailable()
{
    const qint64 count = readWithoutBlocking(m_descriptor, m_bytes);
    if (count == nothingYet)
        return;
    if (count > 0)
        m_reader.append(m_bytes.data(), std::size_t(count));
    else
        m_reader.finish();
    readRecords();
    if (count < 0)
        end(QStringLiteral("%1 cannot be read").arg(streamName()));
    else if (count == 0)
        end(m_hasHeader ? QString() : QStringLiteral("%1: ended before a header line").arg(streamName()));
}

void StreamSource::readRecords()
{
    m_arrivalMs = m_clock();
    m_batch.clear();
    while (true) {
        const CsvReader::Result result = m_reader.next();
        if (result == CsvReader::Result::NeedsBytes || result == CsvReader::Result::Ended)
            break;
        if (result == CsvReader::Result::Skipped)
            m_problems->add(m_table->problemText(streamName(), m_reader.line(), {m_reader.problem()}));
        else if (m_hasHeader)
            readRow();
        else
            readHeader();
    }
    if (!m_batch.empty())
        Q_EMIT delivered(m_batch);
    tellProblems();
}

void StreamSource::readHeader()
{
    const auto read = m_table->readHeader(m_reader.fields(), m_reader.separator());
    const QString place = csvPlace(streamName(), m_reader.line());
    m_hasHeader = read.has_value();
    if (!read) {
        setState(State::Failed, QStringLiteral("%1: %2").arg(place, read.error()));
        m_reader.forgetSeparator();
        return;
    }
    setState(State::Running);
    for (const QString& name : m_table->takeUnknownNames())
        m_unknownNames->add(QStringLiteral("%1: column \"%2\" belongs to no point").arg(place, name));
}

void StreamSource::readRow()
{
    const std::size_t before = m_batch.size();
    const auto timeMs = m_table->appendRow(m_reader.fields(), m_batch);
    if (!timeMs) {
        m_problems->add(m_table->problemText(streamName(), m_reader.line(), timeMs.error()));
        return;
    }
    if (m_options.times == SourceAddress::Times::Arrival) {
        for (std::size_t i = before; i < m_batch.size(); ++i)
            m_batch[i].timeMs = m_arrivalMs;
    }
    for (const QString& name : m_table->takeUnknownNames()) {
        m_unknownNames->add(QStringLiteral("%1: the name \"%2\" belongs to no point")
                                .arg(csvPlace(streamName(), m_reader.line()), name));
    }
}

/// Nothing more is read.
void StreamSource::end(const QString& failure)
{
    m_notifier->setEnabled(false);
    setState(failure.isEmpty() ? State::Ended : State::Failed, failure);
}

void StreamSource::tellProblems()
{
    const QStringList texts = std::exchange(m_notes, {}) + m_unknownNames->take() + m_problems->take();
    for (const QString& text : texts)
        Q_EMIT problemFound(text);
}
