#include "host/sources/recordingsource.h"

#include "host/sources/problemtexts_p.h"

#include <QFileInfo>

#include <algorithm>
#include <utility>

namespace {

constexpr qint64 latestTimeMs = 253402300799999; // the end of 9999

} // namespace

/// What one call may still read.
struct RecordingSource::Budget
{
    int rows = mostRows;
    std::size_t fields = mostFields;

    bool isLeft() const { return rows > 0 && fields > 0; }
    void take(std::size_t fieldCount)
    {
        --rows;
        fields -= std::min(fields, fieldCount);
    }
};

RecordingSource::RecordingSource(const QString& file, const std::vector<SourcePoint>& points,
                                 const RecordingOptions& options, QObject* parent)
    : ValueSource(parent),
      m_path(file),
      m_options(options),
      m_map(points),
      m_problems(
          std::make_unique<ProblemTexts>(QStringLiteral("%1: further malformed rows are only counted").arg(file))),
      m_unknownNames(
          std::make_unique<ProblemTexts>(QStringLiteral("%1: further names that no point has are not told").arg(file)))
{
    Budget budget;
    const auto first = open().and_then([&] { return readRow(budget); });
    if (!first)
        setState(State::Failed, first.error());
}

RecordingSource::~RecordingSource() = default;

QString RecordingSource::description() const
{
    return QStringLiteral("recording %1").arg(QFileInfo(m_path).fileName());
}

std::vector<ObjectKey> RecordingSource::objects() const
{
    return m_table ? m_table->objects() : std::vector<ObjectKey>();
}

qint64 RecordingSource::problemCount() const
{
    return m_problems->count();
}

void RecordingSource::start(qint64 nowMs)
{
    if (m_isStarted)
        restart();
    m_isStarted = true;
    if (m_options.times == SourceAddress::Times::Arrival) {
        m_nextDueMs = nowMs;
        if (m_hasRow)
            m_shiftMs = *std::exchange(m_nextDueMs, std::nullopt) - m_lastTimeMs;
    }
    const auto ready = makeReadable();
    setState(ready ? State::Running : State::Failed, ready ? QString() : ready.error());
    tellProblems();
}

/// Back to the first row.
void RecordingSource::restart()
{
    m_file.close();
    m_lastLine = 0;
    m_rowsOfPass = 0;
    m_isAtEnd = false;
    m_hasRow = false;
    m_shiftMs = 0;
    m_nextDueMs.reset();
    m_soughtMs.reset();
    if (m_table)
        m_table->rewind();
}

bool RecordingSource::seek(qint64 timeMs)
{
    if (!m_isStarted || m_options.times == SourceAddress::Times::Arrival || timeMs > latestTimeMs)
        return false;
    if (!isAhead(timeMs)) {
        restart();
        if (state() == State::Ended)
            setState(State::Running);
    }
    m_soughtMs = timeMs;
    return true;
}

/// Whether the first row at or after that time comes behind the row read last.
bool RecordingSource::isAhead(qint64 timeMs) const
{
    return m_rowsOfPass > 0 && timeMs > m_lastTimeMs + m_shiftMs;
}

tl::expected<void, QString> RecordingSource::reconnect(qint64)
{
    if (!m_isStarted)
        return tl::make_unexpected(QStringLiteral("%1 was not started").arg(description()));
    m_file.close();
    m_isAtEnd = false;
    auto ready = makeReadable();
    setState(ready ? State::Running : State::Failed, ready ? QString() : ready.error());
    tellProblems();
    return ready;
}

void RecordingSource::advance(qint64 nowMs)
{
    if (!m_isStarted || state() == State::Ended)
        return;
    m_batch.clear();
    const auto collected = makeReadable().and_then([&] { return collectDue(nowMs); });
    if (!m_batch.empty())
        Q_EMIT delivered(m_batch);
    tellProblems();
    if (!collected)
        setState(State::Failed, collected.error());
    else
        setState(m_isAtEnd && !m_hasRow ? State::Ended : State::Running);
}

tl::expected<void, QString> RecordingSource::makeReadable()
{
    if (!m_file.isOpen())
        return m_isAtEnd ? tl::expected<void, QString>() : open();
    // An open file can be read on after it was removed; but then its recording is gone, which must be said.
    if (QFileInfo::exists(m_path))
        return {};
    m_file.close();
    return tl::make_unexpected(QStringLiteral("%1: the file is gone").arg(m_path));
}

tl::expected<void, QString> RecordingSource::open()
{
    if (!m_table) {
        if (!m_options.map.isEmpty()) {
            const auto left = m_map.read(m_options.map);
            if (!left)
                return tl::make_unexpected(left.error());
            m_notes.append(*left);
        }
        m_table.emplace(m_map, m_options.zone, RecordingTable::TimeColumn::Read);
    }
    auto opened = m_file.open(m_path).and_then([this] { return readHeader(); });
    if (!opened)
        m_file.close();
    return opened;
}

tl::expected<void, QString> RecordingSource::readHeader()
{
    const auto next = m_file.next();
    if (!next)
        return tl::make_unexpected(next.error());
    if (*next == CsvReader::Result::Ended)
        return tl::make_unexpected(QStringLiteral("%1: has no header line").arg(m_path));
    const CsvReader& record = m_file.record();
    const auto read = *next == CsvReader::Result::Skipped ? tl::make_unexpected(record.problem())
                                                          : m_table->readHeader(record.fields(), record.separator());
    if (!read)
        return tl::make_unexpected(QStringLiteral("%1: %2").arg(csvPlace(m_path, record.line()), read.error()));
    const QStringList unknown = m_table->takeUnknownNames();
    for (const QString& name : m_furthestLine < record.line() ? unknown : QStringList()) {
        m_unknownNames->add(
            QStringLiteral("%1: column \"%2\" belongs to no point").arg(csvPlace(m_path, record.line()), name));
    }
    m_furthestLine = std::max(m_furthestLine, record.line());
    m_lastLine = std::max(m_lastLine, record.line());
    return {};
}

/// Delivers to m_batch what is due.
tl::expected<void, QString> RecordingSource::collectDue(qint64 nowMs)
{
    Budget budget;
    while (true) {
        if (!m_hasRow) {
            const auto found = readRow(budget);
            if (!found)
                return tl::make_unexpected(found.error());
            if (!*found)
                return {};
        }
        const qint64 dueMs = m_lastTimeMs + m_shiftMs;
        if (m_soughtMs && dueMs < *m_soughtMs) {
            m_hasRow = false;
            continue;
        }
        m_soughtMs.reset();
        if (dueMs > nowMs)
            return {};
        for (Sample& sample : m_row) {
            sample.timeMs += m_shiftMs;
            m_batch.push_back(sample);
        }
        m_hasRow = false;
    }
}

/// Reads on to the next good row.
/// \returns whether there is one; not at the end or when the budget is spent.
tl::expected<bool, QString> RecordingSource::readRow(Budget& budget)
{
    while (!m_isAtEnd && budget.isLeft()) {
        const auto step = readRecord(budget);
        if (!step)
            return tl::make_unexpected(step.error());
        if (*step == Step::Row)
            return true;
        if (*step == Step::End) {
            auto begun = beginAgain();
            if (!begun)
                return begun;
            m_isAtEnd = !*begun;
        }
    }
    return false;
}

tl::expected<RecordingSource::Step, QString> RecordingSource::readRecord(Budget& budget)
{
    const auto next = m_file.next();
    if (!next) {
        m_file.close();
        return tl::make_unexpected(next.error());
    }
    if (*next == CsvReader::Result::Ended)
        return Step::End;
    const CsvReader& record = m_file.record();
    budget.take(record.fields().size());
    // After a failure the file is read from its beginning.
    if (record.line() <= m_lastLine)
        return Step::Nothing;
    m_lastLine = record.line();
    m_row.clear();
    const auto timeMs = *next == CsvReader::Result::Skipped
                            ? tl::make_unexpected(RecordingTable::Problem{record.problem()})
                            : m_table->appendRow(record.fields(), m_row);
    if (timeMs)
        takeRow(*timeMs);
    else if (m_lastLine > m_furthestLine)
        m_problems->add(m_table->problemText(m_path, m_lastLine, timeMs.error()));
    m_furthestLine = std::max(m_furthestLine, m_lastLine);
    return timeMs ? Step::Row : Step::Nothing;
}

void RecordingSource::takeRow(qint64 timeMs)
{
    if (m_rowsOfPass > 0 && timeMs > m_lastTimeMs)
        m_stepMs = timeMs - m_lastTimeMs;
    if (!m_firstTimeMs)
        m_firstTimeMs = timeMs;
    if (m_nextDueMs)
        m_shiftMs = *std::exchange(m_nextDueMs, std::nullopt) - timeMs;
    m_lastTimeMs = timeMs;
    ++m_rowsOfPass;
    m_hasRow = true;
    for (const QString& name : m_table->takeUnknownNames()) {
        m_unknownNames->add(QStringLiteral("%1: the name \"%2\" belongs to no point")
                                .arg(csvPlace(m_path, m_file.record().line()), name));
    }
}

/// At the file's end, goes back to its beginning if it is to be played again.
/// \returns false at the recording's end.
tl::expected<bool, QString> RecordingSource::beginAgain()
{
    if (!m_options.isLooped || m_rowsOfPass == 0) {
        if (!m_firstTimeMs)
            m_notes.append(QStringLiteral("%1: has no row to play").arg(m_path));
        m_file.close();
        return false;
    }
    m_nextDueMs = m_lastTimeMs + m_shiftMs + m_stepMs;
    skipPasses();
    m_lastLine = 0;
    m_rowsOfPass = 0;
    m_table->rewind();
    return open().map([] { return true; });
}

/// Whole passes before the time that is sought need not be read.
void RecordingSource::skipPasses()
{
    // Another file may have come in the place of the one whose first row is known.
    const qint64 passMs = std::max(m_lastTimeMs + m_stepMs - *m_firstTimeMs, m_stepMs);
    if (m_soughtMs && *m_soughtMs > *m_nextDueMs)
        *m_nextDueMs += (*m_soughtMs - *m_nextDueMs) / passMs * passMs;
}

void RecordingSource::tellProblems()
{
    const QStringList texts = std::exchange(m_notes, {}) + m_unknownNames->take() + m_problems->take();
    for (const QString& text : texts)
        Q_EMIT problemFound(text);
}
