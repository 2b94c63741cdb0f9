#pragma once

#include <QByteArray>
#include <QtEndian>

#include <array>
#include <cstring>
#include <type_traits>

// Numbers as bytes, little-endian, without names and gaps: writer and reader agree on the order.

/// Collects a few numbers, at most \p capacity bytes.
template <std::size_t capacity>
class NumberBuffer
{
public:
    template <typename Number>
    NumberBuffer& put(Number number)
    {
        static_assert(std::is_arithmetic_v<Number> && !std::is_same_v<Number, bool>);
        const Number little = qToLittleEndian(number);
        Q_ASSERT(m_size + sizeof little <= capacity);
        std::memcpy(m_bytes.data() + m_size, &little, sizeof little);
        m_size += sizeof little;
        return *this;
    }
    const char* data() const { return m_bytes.data(); }
    int size() const { return int(m_size); }

private:
    std::array<char, capacity> m_bytes = {};
    std::size_t m_size = 0;
};

/// Appends numbers to bytes.
class ByteWriter
{
public:
    explicit ByteWriter(QByteArray& bytes) : m_bytes(bytes) {}

    template <typename Number>
    ByteWriter& put(Number number)
    {
        NumberBuffer<sizeof(Number)> buffer;
        buffer.put(number);
        m_bytes.append(buffer.data(), buffer.size());
        return *this;
    }

private:
    QByteArray& m_bytes;
};

/// Takes numbers back out of bytes, which must outlive it. Behind the end they are 0.
class ByteReader
{
public:
    explicit ByteReader(const QByteArray& bytes) : m_at(bytes.constData()), m_end(m_at + bytes.size()) {}

    template <typename Number>
    Number take()
    {
        static_assert(std::is_arithmetic_v<Number> && !std::is_same_v<Number, bool>);
        if (m_end - m_at < std::ptrdiff_t(sizeof(Number))) {
            m_isShort = true;
            return {};
        }
        Number little;
        std::memcpy(&little, m_at, sizeof little);
        m_at += sizeof little;
        return qFromLittleEndian(little);
    }

    /// What was not taken yet.
    QByteArray rest() const { return QByteArray(m_at, int(m_end - m_at)); }
    /// Whether more was asked for than there was.
    bool isShort() const { return m_isShort; }
    /// Whether exactly everything was taken.
    bool isAtEnd() const { return !m_isShort && m_at == m_end; }

private:
    const char* m_at;
    const char* m_end;
    bool m_isShort = false;
};

/// A number that changes with any of the bytes: against damage, not against intent. Eight bytes a step, since a second
/// of samples may be many megabytes.
inline quint64 checkSum(const char* bytes, std::size_t count)
{
    quint64 sum = count;
    const auto mix = [&sum](quint64 word) {
        sum = (sum ^ word) * Q_UINT64_C(0x9e3779b97f4a7c15);
        sum ^= sum >> 32;
    };
    std::size_t at = 0;
    for (; count - at >= sizeof(quint64); at += sizeof(quint64))
        mix(qFromLittleEndian<quint64>(bytes + at));
    for (; at < count; ++at)
        mix(quint8(bytes[at]));
    return sum;
}

/// \p bytes with their check sum behind them.
inline QByteArray sealed(QByteArray bytes)
{
    const quint64 sum = checkSum(bytes.constData(), std::size_t(bytes.size()));
    ByteWriter(bytes).put(sum);
    return bytes;
}

/// Takes the check sum off.
/// \returns false when it is not that of the bytes before it.
inline bool unseal(QByteArray& bytes)
{
    const int size = bytes.size() - int(sizeof(quint64));
    if (size < 0 ||
        checkSum(bytes.constData(), std::size_t(size)) != qFromLittleEndian<quint64>(bytes.constData() + size))
        return false;
    bytes.chop(int(sizeof(quint64)));
    return true;
}
