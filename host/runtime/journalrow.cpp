#include "host/runtime/bytes_p.h"
#include "host/runtime/journalrow_p.h"

#include <cmath>
#include <limits>

namespace {

using Korvane::ScadaObjectType;

constexpr quint8 layout = 1;

// Each note begins with a byte that says what follows: the id, the time, the value, the quality.
constexpr unsigned familyBits = 0x03;
constexpr unsigned valueShift = 2;
constexpr unsigned valueBits = 0x0c;
constexpr unsigned hasWideTime = 0x10;
constexpr unsigned hasQuality = 0x20;
constexpr unsigned isOfCommunication = 0x40;

enum ValueForm : unsigned { Zero, SmallInteger, Single, Double };

unsigned familyOf(ScadaObjectType type)
{
    if (type == ScadaObjectType::RtuObject)
        return 1;
    return type == ScadaObjectType::ChannelObject ? 2 : 0;
}

ScadaObjectType typeOf(unsigned family)
{
    constexpr ScadaObjectType types[] = {ScadaObjectType::Point, ScadaObjectType::RtuObject,
                                         ScadaObjectType::ChannelObject, ScadaObjectType::NoObject};
    return types[family];
}

template <typename Number>
bool fits(double value)
{
    return value >= double(std::numeric_limits<Number>::lowest()) &&
           value <= double(std::numeric_limits<Number>::max()) && double(Number(value)) == value;
}

ValueForm formOf(double value)
{
    if (value == 0)
        return std::signbit(value) ? Single : Zero;
    if (fits<qint8>(value))
        return SmallInteger;
    return fits<float>(value) ? Single : Double;
}

double takeValue(ByteReader& reader, unsigned form)
{
    switch (form) {
    case Zero:
        return 0;
    case SmallInteger:
        return reader.take<qint8>();
    case Single:
        return double(reader.take<float>());
    default:
        return reader.take<double>();
    }
}

} // namespace

quint64 storedKey(ObjectKey key)
{
    return quint64(quint32(key.id)) << 2 | familyOf(key.type);
}

ObjectKey keyOfStored(quint64 stored)
{
    return {typeOf(unsigned(stored) & familyBits), qint32(quint32(stored >> 2))};
}

JournalRow::JournalRow()
{
    m_bytes.reserve(1024); // kept through clear()
}

void JournalRow::add(const Sample& sample)
{
    put(sample.object, sample.timeMs, sample.value, sample.quality, false);
}

void JournalRow::addCommunicationFailed(ObjectKey object, bool failed, qint64 timeMs)
{
    put(object, timeMs, failed ? 1 : 0, 0, true);
}

void JournalRow::clear()
{
    m_bytes.resize(0);
    m_count = 0;
}

void JournalRow::put(ObjectKey object, qint64 timeMs, double value, qint32 quality, bool isCommunication)
{
    if (m_count++ == 0) {
        m_baseMs = timeMs;
        ByteWriter(m_bytes).put(layout).put(m_baseMs);
    }
    // Differences of times far apart may overflow; unsigned ones come back right.
    const auto delta = qint64(quint64(timeMs) - quint64(m_baseMs));
    const bool isWide = delta < std::numeric_limits<qint32>::min() || delta > std::numeric_limits<qint32>::max();
    const ValueForm form = formOf(value);
    const unsigned head = familyOf(object.type) | form << valueShift | (isWide ? hasWideTime : 0) |
                          (quality != 0 ? hasQuality : 0) | (isCommunication ? isOfCommunication : 0);
    NumberBuffer<32> note;
    note.put(quint8(head)).put(object.id);
    if (isWide)
        note.put(delta);
    else
        note.put(qint32(delta));
    if (form == SmallInteger)
        note.put(qint8(value));
    else if (form == Single)
        note.put(float(value));
    else if (form == Double)
        note.put(value);
    if (quality != 0)
        note.put(quality);
    m_bytes.append(note.data(), note.size());
}

QByteArray JournalRow::bytes() const
{
    return sealed(m_bytes);
}

std::optional<std::vector<JournalRow::Note>> JournalRow::read(QByteArray bytes)
{
    if (!unseal(bytes))
        return {};
    ByteReader reader(bytes);
    if (reader.take<quint8>() != layout)
        return {};
    const auto baseMs = reader.take<qint64>();
    std::vector<Note> notes;
    while (!reader.isAtEnd() && !reader.isShort()) {
        const unsigned head = reader.take<quint8>();
        Note note;
        note.isCommunication = (head & isOfCommunication) != 0;
        note.sample.object = {typeOf(head & familyBits), reader.take<qint32>()};
        const qint64 delta = (head & hasWideTime) != 0 ? reader.take<qint64>() : reader.take<qint32>();
        note.sample.timeMs = qint64(quint64(baseMs) + quint64(delta));
        note.sample.value = takeValue(reader, (head & valueBits) >> valueShift);
        note.sample.quality = (head & hasQuality) != 0 ? reader.take<qint32>() : 0;
        notes.push_back(note);
    }
    if (reader.isShort())
        return {};
    return notes;
}
